// Log lines beside spdlog's, each side with one flush a line into a file of its own.
#include "support/zyr_temporary_directory.h"
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_report.h"

#include <benchmark/benchmark.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

using namespace zyr;

namespace {

TemporaryDirectory& directory() {
    static TemporaryDirectory instance;
    return instance;
}

/// Never destroyed, as in a host.
ApplicationData& logged() {
    static ApplicationData* data = [] {
        ApplicationData* made = new ApplicationData(0, 0);
        made->setLogDirectory(String(directory().getPath()));
        zyr_setApplicationData(made);
        return made;
    }();
    return *data;
}

spdlog::logger& peer() {
    static std::shared_ptr<spdlog::logger> logger = [] {
        auto made = spdlog::basic_logger_mt("peer", directory().getPath() + "peer.log");
        made->set_pattern("%Y-%m-%d %H:%M:%S.%f [%6P:%-6t] %^%l%$ %n %! - %v");
        made->flush_on(spdlog::level::trace);
        made->set_level(spdlog::level::debug);
        return made;
    }();
    return *logger;
}

void writeLine(benchmark::State& p_state) {
    logged();
    unsigned number = 0;
    for (auto _ : p_state) {
        ZYR_LOG_WARN("Created new context:%s (width:%u, height:%u)", "libvpx-vp9", number++, 720u);
    }
}
BENCHMARK(writeLine);

void writeLineSpdlog(benchmark::State& p_state) {
    unsigned number = 0;
    for (auto _ : p_state) {
        peer().log(spdlog::source_loc{__FILE__, __LINE__, __PRETTY_FUNCTION__}, spdlog::level::warn,
                   "Created new context:{} (width:{}, height:{})", "libvpx-vp9", number++, 720u);
    }
}
BENCHMARK(writeLineSpdlog);

/// A repeat is folded: it writes nothing. The peer has no like of it.
void repeatLine(benchmark::State& p_state) {
    logged();
    for (auto _ : p_state) {
        ZYR_LOG_WARN("Set crf value:%d (quality:%u)", 29, 60u);
    }
}
BENCHMARK(repeatLine);

void dropLine(benchmark::State& p_state) {
    logged();
    for (auto _ : p_state) {
        ZYR_LOG_TRACE("RGB->YUV in %lf ms", 1.5);
    }
}
BENCHMARK(dropLine);

void dropLineSpdlog(benchmark::State& p_state) {
    for (auto _ : p_state) {
        peer().log(spdlog::source_loc{__FILE__, __LINE__, __PRETTY_FUNCTION__}, spdlog::level::trace,
                   "RGB->YUV in {} ms", 1.5);
    }
}
BENCHMARK(dropLineSpdlog);

} // namespace
