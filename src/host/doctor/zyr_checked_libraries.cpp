#include "host/doctor/zyr_checked_libraries.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avutil.h>
#include <libswscale/swscale.h>
}

#include <dlfcn.h>

namespace zyr::host {

namespace {

std::string versionText(unsigned p_version) {
    return std::to_string(AV_VERSION_MAJOR(p_version)) + "." + std::to_string(AV_VERSION_MINOR(p_version)) + "." +
           std::to_string(AV_VERSION_MICRO(p_version));
}

std::string fileOf(unsigned (*p_function)()) {
    Dl_info info{};
    const bool found = dladdr(reinterpret_cast<const void*>(p_function), &info) != 0 && info.dli_fname != nullptr;
    return found ? info.dli_fname : "";
}

} // namespace

Finding judgeLibrary(const std::string& p_name, unsigned p_built, unsigned p_running, const std::string& p_file) {
    Finding finding{"libraries", p_name, FindingState::OK, versionText(p_running) + ", " + p_file, ""};
    const bool isOther = AV_VERSION_MAJOR(p_built) != AV_VERSION_MAJOR(p_running);
    const bool isOlder = !isOther && AV_VERSION_MINOR(p_running) < AV_VERSION_MINOR(p_built);
    if (isOther || isOlder) {
        finding.m_state = FindingState::NO;
        finding.m_text += ", but this program was built for " + versionText(p_built);
        finding.m_cure = "apt-get install " + p_name + std::to_string(AV_VERSION_MAJOR(p_built)) + ", and no other " +
                         p_name + " in LD_LIBRARY_PATH";
    }
    return finding;
}

void checkLibraries(FindingList& p_findings) {
    const struct {
        const char* m_name;
        unsigned m_built;
        unsigned (*m_running)();
    } libraries[] = {{"libavcodec", LIBAVCODEC_VERSION_INT, avcodec_version},
                     {"libavutil", LIBAVUTIL_VERSION_INT, avutil_version},
                     {"libswscale", LIBSWSCALE_VERSION_INT, swscale_version},
                     {"libavformat", LIBAVFORMAT_VERSION_INT, avformat_version}};
    for (const auto& library : libraries) {
        p_findings.push_back(
            judgeLibrary(library.m_name, library.m_built, library.m_running(), fileOf(library.m_running)));
    }
}

std::string cureOfRefusal(const std::string& p_reason) {
    const std::string complaint = ": cannot open shared object file";
    const size_t end = p_reason.find(complaint);
    const size_t start = end == std::string::npos ? end : p_reason.rfind("lib", end);
    if (start == std::string::npos) {
        return "";
    }
    // "libavcodec.so.59" is in the package libavcodec59, as Debian names them.
    const std::string library = p_reason.substr(start, end - start);
    const size_t extension = library.find(".so.");
    if (extension == std::string::npos || library.find('/') != std::string::npos) {
        return "";
    }
    const std::string name = library.substr(0, extension);
    const std::string dash = name.back() >= '0' && name.back() <= '9' ? "-" : "";
    return "apt-get install " + name + dash + library.substr(extension + 4) +
           ", or a build of the plug-in for the libraries that are here";
}

} // namespace zyr::host
