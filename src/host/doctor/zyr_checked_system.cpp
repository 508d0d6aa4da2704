#include "host/doctor/zyr_checked_system.h"

#include "host/doctor/zyr_checked_graphics.h"
#include "host/doctor/zyr_child_question.h"
#include "host/zyr_console.h"
#include "host/zyr_log_place.h"

#include "zyr_common/process/zyr_session_monitor.h"

extern "C" {
#include <libavutil/cpu.h>
}

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace zyr::host {

namespace {

namespace fs = std::filesystem;

constexpr unsigned CONSOLE_SECONDS = 20;
constexpr size_t TRIAL_BYTES = 65536;
constexpr uint64_t FEW_BYTES = uint64_t(16) << 20;

std::string mebibytes(uint64_t p_bytes) {
    return std::to_string(p_bytes >> 20) + " MiB";
}

/// The directory, or the nearest one above it that exists.
fs::path findExisting(fs::path p_path) {
    std::error_code error;
    while (!fs::exists(p_path, error) && p_path.has_parent_path() && p_path != p_path.parent_path()) {
        p_path = p_path.parent_path();
    }
    return p_path;
}

/// Gives the error of writing a file there, or 0.
int tryWriting(const fs::path& p_directory) {
    std::string name = p_directory / ".zyr-host-XXXXXX";
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) {
        return errno;
    }
    unlink(name.c_str());
    const std::string bytes(TRIAL_BYTES, '.');
    const ssize_t count = write(file, bytes.data(), bytes.size());
    const int error = count < 0 ? errno : (size_t(count) < bytes.size() ? ENOSPC : 0);
    close(file);
    return error;
}

std::string cureOfWriting(int p_error, const fs::path& p_directory) {
    switch (p_error) {
    case ENOSPC:
    case EDQUOT:
        return "df -h " + p_directory.string() + "; df -i " + p_directory.string() + ", and make room there";
    case EROFS:
        return "mount -o remount,rw $(findmnt -no TARGET -T " + p_directory.string() + ")";
    default:
        return "chown " + accountOf(geteuid()) + " " + p_directory.string();
    }
}

std::string directoryOf(const char* p_variable, const std::string& p_default) {
    const char* value = getenv(p_variable);
    return value != nullptr && value[0] == '/' ? value : p_default;
}

} // namespace

Finding checkDirectory(const std::string& p_name, const std::string& p_path) {
    Finding finding{"directories", p_name, FindingState::OK, p_path, ""};
    const fs::path existing = findExisting(p_path);
    const int error = tryWriting(existing);
    if (existing != fs::path(p_path)) {
        finding.m_text += " (to be made in " + existing.string() + ")";
    }
    if (error != 0) {
        finding.m_state = FindingState::NO;
        finding.m_text += ": no file can be written: " + std::string(strerror(error));
        finding.m_cure = cureOfWriting(error, existing);
        return finding;
    }
    struct statvfs room {};
    if (statvfs(existing.c_str(), &room) == 0 && room.f_blocks > 0) {
        const uint64_t bytes = uint64_t(room.f_bavail) * room.f_frsize;
        finding.m_text += ", " + mebibytes(bytes) + " free";
        if (bytes < FEW_BYTES) {
            finding.m_state = FindingState::NO;
            finding.m_cure = cureOfWriting(ENOSPC, existing);
        }
    }
    return finding;
}

void checkDirectories(const FrameworkOptions& p_options, FindingList& p_findings) {
    const std::string log = p_options.m_logDirectory.empty() ? getDefaultLogDirectory() : p_options.m_logDirectory;
    if (log.empty()) {
        p_findings.push_back({"directories", "log", FindingState::NO,
                              "neither XDG_STATE_HOME nor HOME names a directory",
                              "export HOME=$(getent passwd " + accountOf(geteuid()) + " | cut -d: -f6)"});
    } else {
        p_findings.push_back(checkDirectory("log", log));
    }
    p_findings.push_back(checkDirectory("temporary files", directoryOf("TMPDIR", "/tmp")));
    p_findings.push_back(checkDirectory("shared memory", "/dev/shm"));
    const std::string runtime = directoryOf("XDG_RUNTIME_DIR", "");
    if (runtime.empty()) {
        p_findings.push_back({"directories", "runtime", FindingState::UNKNOWN,
                              "XDG_RUNTIME_DIR is not set, as outside of a login session", ""});
    } else {
        p_findings.push_back(checkDirectory("runtime", runtime));
    }
}

void checkLimits(FindingList& p_findings) {
    const struct {
        const char* m_name;
        __rlimit_resource_t m_resource;
        rlim_t m_wanted;
        const char* m_cure;
    } limits[] = {{"open files", RLIMIT_NOFILE, 256, "ulimit -n 1024"},
                  {"processes and threads", RLIMIT_NPROC, 128, "ulimit -u 1024"},
                  {"address space", RLIMIT_AS, rlim_t(1) << 30, "ulimit -v unlimited"},
                  {"size of a file", RLIMIT_FSIZE, rlim_t(1) << 30, "ulimit -f unlimited"},
                  {"CPU seconds", RLIMIT_CPU, 3600, "ulimit -t unlimited"}};
    for (const auto& limit : limits) {
        rlimit value{};
        getrlimit(limit.m_resource, &value);
        const bool isEnough = value.rlim_cur >= limit.m_wanted;
        const std::string number = value.rlim_cur == RLIM_INFINITY ? "no limit" : std::to_string(value.rlim_cur);
        p_findings.push_back({"limits", limit.m_name, isEnough ? FindingState::OK : FindingState::NO,
                              number + (isEnough ? "" : ", less than " + std::to_string(limit.m_wanted)),
                              isEnough ? "" : limit.m_cure});
    }
}

void checkProcessor(FindingList& p_findings) {
    const struct {
        int m_flag;
        const char* m_name;
    } features[] = {
#if defined(__x86_64__)
        {AV_CPU_FLAG_SSE2, "SSE2"},
        {AV_CPU_FLAG_SSSE3, "SSSE3"},
        {AV_CPU_FLAG_SSE42, "SSE4.2"},
        {AV_CPU_FLAG_AVX, "AVX"},
        {AV_CPU_FLAG_AVX2, "AVX2"},
        {AV_CPU_FLAG_FMA3, "FMA3"},
        {AV_CPU_FLAG_AVX512, "AVX-512"},
#elif defined(__aarch64__)
        {AV_CPU_FLAG_NEON, "NEON"},
        {AV_CPU_FLAG_VFP, "VFP"},
        {AV_CPU_FLAG_DOTPROD, "DOTPROD"},
        {AV_CPU_FLAG_I8MM, "I8MM"},
#else
        {0, ""},
#endif
    };
    const int flags = av_get_cpu_flags();
    std::string names;
    for (const auto& feature : features) {
        if ((flags & feature.m_flag) != 0) {
            names += (names.empty() ? "" : " ") + std::string(feature.m_name);
        }
    }
    p_findings.push_back(
        {"processor", "cores", FindingState::OK, std::to_string(av_cpu_count()) + " for this process", ""});
    p_findings.push_back({"processor", "features", names.empty() ? FindingState::NO : FindingState::OK,
                          names.empty() ? "none that codecs use: they will be slow" : names, ""});
}

void checkPamServices(const std::vector<std::string>& p_directories, FindingList& p_findings) {
    std::set<std::string> names;
    std::string places;
    for (const std::string& directory : p_directories) {
        places += (places.empty() ? "" : " or ") + directory;
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(directory, error)) {
            const std::string name = entry.path().filename();
            if (!name.starts_with("common-") && access(entry.path().c_str(), R_OK) == 0) {
                names.insert(name);
            }
        }
    }
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : " ") + name;
    }
    const bool found = !names.empty();
    p_findings.push_back({"login", "PAM services", found ? FindingState::OK : FindingState::NO,
                          found ? text : "there is no service file in " + places,
                          found ? "" : "apt-get install libpam-runtime libpam-modules login"});
}

void checkConsole(const FrameworkOptions& p_options, FindingList& p_findings) {
    const ChildAnswer answer = askChild(CONSOLE_SECONDS, [&] {
        const CommonLibrary library(p_options);
        return std::to_string(zyr_getActiveUserSessionID());
    });
    Finding finding{"login", "console", FindingState::OK, answer.m_reason, ""};
    const uint32_t user = uint32_t(strtoul(answer.m_text.c_str(), nullptr, 10));
    if (!answer.m_isGiven) {
        finding.m_state = FindingState::NO;
    } else if (user == NO_USER_SESSION) {
        finding.m_state = FindingState::UNKNOWN;
        finding.m_text = "nobody is there: " + explainEmptyConsole();
        finding.m_cure = access("/run/systemd/seats", F_OK) == 0 ? "" : "apt-get install systemd libpam-systemd";
    } else {
        finding.m_text = accountOf(user);
    }
    p_findings.push_back(finding);
}

} // namespace zyr::host
