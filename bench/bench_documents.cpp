// Parsing JSON into elements beside nlohmann's tree: 2,000 records of 20 fields in an array.
#include "bench_versus.h"
#include "host/zyr_framework.h"
#include "zyr_common/documents/zyr_json_parser.h"
#include "zyr_common/memory/zyr_ref.h"

#include <nlohmann/json.hpp>

using namespace zyr;

namespace {

constexpr int NUM_OF_RECORDS = 2000;

std::string makeText() {
    nlohmann::ordered_json records = nlohmann::ordered_json::array();
    for (int i = 0; i < NUM_OF_RECORDS; i++) {
        nlohmann::ordered_json record;
        for (int k = 0; k < 6; k++) {
            record["number" + std::to_string(k)] = i * 7 + k;
            record["real" + std::to_string(k)] = i * 0.25 + k;
            record["text" + std::to_string(k)] = "text of record " + std::to_string(i);
        }
        record["enabled"] = i % 2 == 0;
        record["position"] = {{"x", i}, {"y", -i}};
        records.push_back(record);
    }
    return records.dump(2);
}

} // namespace

static void parseJson(benchmark::State& p_state) {
    host::FrameworkOptions options;
    options.m_coreOnly = true;
    options.m_logLevel = ZYR_LOG_LEVEL_WARN;
    static host::Framework framework(options);
    const std::string text = makeText();
    Array<unsigned char> bytes;
    bytes.pushBackRange(text.data(), text.size());
    const auto parser = Ref<IJsonParser>::adopt(zyr_createObject<IJsonParser>());
    parser->setInputData(&bytes);
    bench::compareSides(p_state, NUM_OF_RECORDS,
                        {{"zyr",
                          [&] {
                              if (!parser->parse()) {
                                  abort();
                              }
                              parser->deinitialize();
                          }},
                         {"nlohmann", [&] {
                              {
                                  const nlohmann::json tree = nlohmann::json::parse(text);
                                  benchmark::DoNotOptimize(&tree);
                              }
                          }}});
}
BENCHMARK(parseJson);

BENCHMARK_MAIN();
