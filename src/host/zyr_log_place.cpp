#include "host/zyr_log_place.h"

#include "host/zyr_standard_output.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace zyr::host {

namespace {

namespace fs = std::filesystem;

/// In a directory that everybody writes in, only one of this user's own will do: no link, and nobody else's.
std::string temporaryDirectory() {
    const std::string directory = "/tmp/zyr-host-" + std::to_string(geteuid());
    struct stat status {};
    if ((mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) || lstat(directory.c_str(), &status) != 0 ||
        !S_ISDIR(status.st_mode) || status.st_uid != geteuid() || (status.st_mode & 022) != 0) {
        return "";
    }
    return directory + "/";
}

/// Makes the directory where it is missing. Empty when a file can be written in it, else the reason why not.
std::string tryDirectory(const std::string& p_directory) {
    std::error_code error;
    fs::create_directories(p_directory, error);
    if (error) {
        return error.message();
    }
    // What a permission says is not enough: a file system can be read only or full of quotas.
    std::string name = p_directory + ".zyr-host-XXXXXX";
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) {
        return strerror(errno);
    }
    close(file);
    unlink(name.c_str());
    return "";
}

} // namespace

std::string getDefaultLogDirectory() {
    const char* state = getenv("XDG_STATE_HOME");
    const char* home = getenv("HOME");
    if (state != nullptr && state[0] == '/') {
        return fs::path(state) / "zyr-host/log/";
    }
    return home != nullptr && home[0] == '/' ? fs::path(home) / ".local/state/zyr-host/log/" : "";
}

std::string prepareLogDirectory(const std::string& p_wanted) {
    std::error_code ignored;
    std::string wanted = p_wanted.empty() ? getDefaultLogDirectory() : fs::absolute(p_wanted, ignored).string();
    if (!wanted.empty() && wanted.back() != '/') {
        wanted += '/';
    }
    std::string reason = wanted.empty() ? "there is no home directory" : tryDirectory(wanted);
    if (reason.empty()) {
        return wanted;
    }
    const std::string state = getDefaultLogDirectory();
    std::string other = !state.empty() && state != wanted && tryDirectory(state).empty() ? state : temporaryDirectory();
    if (!other.empty() && !tryDirectory(other).empty()) {
        other.clear();
    }
    fprintf(stderr, "zyr-host: the log cannot be written in '%s' (%s); %s%s\n", maskControls(wanted).c_str(),
            reason.c_str(), other.empty() ? "there is none" : "it goes to ", other.c_str());
    return other;
}

void pruneLogFiles(const std::string& p_directory, size_t p_count) {
    std::vector<std::pair<fs::file_time_type, fs::path>> files;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(p_directory, error)) {
        const std::string name = entry.path().filename();
        std::error_code missing;
        const fs::file_time_type time = entry.last_write_time(missing);
        if (name.starts_with("zyr-host_") && name.ends_with(".log") && !missing) {
            files.emplace_back(time, entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    for (size_t i = 0; i + p_count < files.size(); i++) {
        const int file = open(files[i].second.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
        // Running processes hold a shared lock on theirs.
        if (file >= 0 && flock(file, LOCK_EX | LOCK_NB) == 0) {
            unlink(files[i].second.c_str());
        }
        if (file >= 0) {
            close(file);
        }
    }
}

} // namespace zyr::host
