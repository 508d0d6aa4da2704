// The lexer of the core module on a large text that looks like JSON, and whole SVG paths through it.
#include "host/zyr_framework.h"
#include "zyr_common/documents/zyr_lexer.h"
#include "zyr_common/geometry/zyr_path2d.h"
#include "zyr_common/object/zyr_factories.h"

#include <benchmark/benchmark.h>
#include <string>

using namespace zyr;

static const std::string& getDocument() {
    static const std::string document = [] {
        std::string text = "[\n";
        for (size_t i = 0; text.size() < 10 << 20; i++) {
            text += "  { \"identifier\": " + std::to_string(i * 7919 % 100000) + ", \"name\": \"frame number " +
                    std::to_string(i) + " of the stream\", \"visible\": " + (i % 3 == 0 ? "true" : "false") +
                    ",\n    \"position\": [" + std::to_string(i % 640) + ".25, " + std::to_string(i % 480) +
                    ".5e1], \"parent\": null, \"escaped\": \"a \\\"word\\\"\" },\n";
        }
        return text + "]\n";
    }();
    return document;
}

static void readDocument(benchmark::State& p_state) {
    Array<unsigned char> bytes;
    bytes.bindFixedSizeData(const_cast<char*>(getDocument().data()), getDocument().size());
    size_t tokens = 0;
    for (auto _ : p_state) {
        ILexer* lexer = zyr_createObject<ILexer>();
        lexer->pushBackFiller(" ");
        lexer->pushBackFiller("\n");
        lexer->pushBackPunctuators("{ } [ ] : ,");
        lexer->pushBackKeywords("true false null undefined let const var if else for while do switch case default "
                                "function return new delete this typeof instanceof in of");
        lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString("\"", "\"", "\\"));
        lexer->setInputData(&bytes);
        tokens = 0;
        for (Token token; lexer->readToken(token); tokens++) {
            benchmark::DoNotOptimize(token);
        }
        lexer->release();
    }
    p_state.SetBytesProcessed(p_state.iterations() * int64_t(getDocument().size()));
    p_state.counters["tokens"] = double(tokens);
}
BENCHMARK(readDocument)->Unit(benchmark::kMillisecond);

static void readPath(benchmark::State& p_state) {
    std::string text = "M0,0";
    for (int i = 1; i < 100000; i++) {
        text += "L" + std::to_string(i % 997) + ".5," + std::to_string(i % 991);
    }
    const String path(text);
    for (auto _ : p_state) {
        Path2D<double> shape;
        shape.pushBackSVGPath(path);
        benchmark::DoNotOptimize(shape);
    }
    p_state.SetItemsProcessed(p_state.iterations() * 100000);
}
BENCHMARK(readPath)->Unit(benchmark::kMillisecond);

int main(int p_argc, char** p_argv) {
    benchmark::Initialize(&p_argc, p_argv);
    host::FrameworkOptions options;
    options.m_coreOnly = true;
    options.m_logDirectory = "/tmp/zyr-bench-lexer/";
    host::Framework framework(options);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
