// A large graph of objects saved and loaded in each format: time, and the memory beside the graph itself.
//
//     bench_stored_graph [OBJECTS [LEVELS [MEGABYTES]]]     200000 60 18
//
// The megabytes are those of the objects' texts; the graph has about 100 in memory then. "peak" is what the memory in
// use grew by in the call, also as a multiple of the graph; a load's holds the loaded graph too.
#include "host/zyr_framework.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <string>

using namespace zyr;

namespace {

struct Graph {
    uint64_t m_numOfObjects;
    uint64_t m_numOfLevels;
    uint64_t m_numOfBytes;

    /// Lists inside each other, with as many objects in each.
    Ref<IListOfObjects> make() const {
        auto root = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
        IListOfObjects* list = root.get();
        const uint64_t numOfTexts = m_numOfObjects - m_numOfLevels;
        uint64_t number = 0;
        for (uint64_t level = 1; level <= m_numOfLevels; level++) {
            for (; number < numOfTexts * level / m_numOfLevels; number++) {
                list->pushBack(makeText(number, m_numOfBytes / numOfTexts).get());
            }
            if (level < m_numOfLevels) {
                const auto next = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
                list->pushBack(next.get());
                list = next.get();
            }
        }
        return root;
    }
    static Ref<IDataFormatInfo> makeText(uint64_t p_number, size_t p_size) {
        auto info = Ref<IDataFormatInfo>::adopt(zyr_createObject<IDataFormatInfo>());
        std::string text = "object " + std::to_string(p_number) + " ";
        for (uint64_t i = p_number; text.size() < p_size; i = i * 25214903917 + 11) {
            text += static_cast<char>('a' + (i >> 16) % 26);
        }
        info->setFormatName(text.c_str());
        return info;
    }
};

/// Bytes of the process's memory by their name in its status.
double getMemory(const char* p_name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == p_name) {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    return 0;
}

/// Calls the function and prints what it took.
template <typename F> void measure(const char* p_what, double p_graphSize, F p_function) {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5"; // The largest size from now on.
    const double before = getMemory("VmRSS:");
    const auto start = std::chrono::steady_clock::now();
    if (!p_function()) {
        fprintf(stderr, "%s failed\n", p_what);
        exit(1);
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    const double peak = getMemory("VmHWM:") - before;
    printf("  %s %6.3f s, peak %4.0f MB = %.2f", p_what, time.count(), peak / 1e6, peak / p_graphSize);
}

uint64_t getArgument(int p_argc, char** p_argv, int p_place, uint64_t p_default) {
    return p_place < p_argc ? strtoull(p_argv[p_place], nullptr, 10) : p_default;
}

} // namespace

int main(int p_argc, char** p_argv) {
    const Graph graph = {getArgument(p_argc, p_argv, 1, 200000), getArgument(p_argc, p_argv, 2, 60),
                         getArgument(p_argc, p_argv, 3, 18) * 1000000};
    char directory[] = "/tmp/zyr-bench.XXXXXX";
    if (mkdtemp(directory) == nullptr) {
        perror("mkdtemp");
        return 1;
    }
    host::FrameworkOptions options;
    options.m_coreOnly = true;
    options.m_logDirectory = directory;
    options.m_logLevel = ZYR_LOG_LEVEL_WARN;
    const host::Framework framework(options);
    const double before = getMemory("VmRSS:");
    const Ref<IListOfObjects> object = graph.make();
    const double size = getMemory("VmRSS:") - before;
    printf("%zu objects, %zu levels, %.0f MB of texts, %.0f MB in memory\n", graph.m_numOfObjects, graph.m_numOfLevels,
           static_cast<double>(graph.m_numOfBytes) / 1e6, size / 1e6);
    for (const char* format : {"raw", "zbf", "xml", "json"}) {
        const std::string path = std::string(directory) + "/graph." + format;
        printf("%-4s", format);
        measure("save", size, [&] { return zyr_saveToFile(object.get(), path.c_str(), "", 0, ""); });
        printf(", %4.0f MB in the file;", static_cast<double>(std::filesystem::file_size(path)) / 1e6);
        Ref<IObject> loaded;
        measure("load", size, [&] {
            loaded = Ref<IObject>::adopt(zyr_loadFromFile(path.c_str(), "", ""));
            return static_cast<bool>(loaded);
        });
        printf("\n");
        std::filesystem::remove(path);
    }
    std::filesystem::remove_all(directory);
    return 0;
}
