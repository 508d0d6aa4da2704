#include "host/report/zyr_machine_facts.h"

#include "zyr_common/platform/zyr_version.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/avutil.h>
}

#include <cstdint>
#include <fstream>
#include <sys/utsname.h>
#include <thread>
#include <unistd.h>

namespace zyr::host {

namespace {

/// What stands behind the first line that begins so, without blanks, colons and quotes around it.
std::string lineOf(const char* p_path, const std::string& p_beginning) {
    std::ifstream file(p_path);
    std::string line;
    while (std::getline(file, line)) {
        if (line.compare(0, p_beginning.size(), p_beginning) == 0) {
            const size_t begin = line.find_first_not_of(" \t:=\"", p_beginning.size());
            const size_t end = line.find_last_not_of(" \t\"");
            return begin == std::string::npos ? std::string() : line.substr(begin, end - begin + 1);
        }
    }
    return {};
}

std::string versionText(unsigned p_version) {
    return std::to_string(AV_VERSION_MAJOR(p_version)) + "." + std::to_string(AV_VERSION_MINOR(p_version)) + "." +
           std::to_string(AV_VERSION_MICRO(p_version));
}

} // namespace

std::vector<std::pair<std::string, std::string>> collectMachineFacts() {
    utsname kernel{};
    uname(&kernel);
    std::string processor = lineOf("/proc/cpuinfo", "model name");
    if (processor.empty()) {
        // ARM's kernels tell numbers alone.
        processor = std::string(kernel.machine) + ", part " + lineOf("/proc/cpuinfo", "CPU part");
    }
    const uint64_t memory = uint64_t(sysconf(_SC_PHYS_PAGES)) * uint64_t(sysconf(_SC_PAGESIZE));
    return {{"processor", processor},
            {"cores", std::to_string(std::thread::hardware_concurrency())},
            {"memory", std::to_string(memory >> 20) + " MiB"},
            {"system", lineOf("/etc/os-release", "PRETTY_NAME")},
            {"kernel", std::string(kernel.sysname) + " " + kernel.release + " " + kernel.machine},
            {"zyr-host", zyr_getFrameworkVersionString()},
            {"compiler", __VERSION__},
            {"ffmpeg", av_version_info()},
            {"libavcodec", versionText(avcodec_version())}};
}

} // namespace zyr::host
