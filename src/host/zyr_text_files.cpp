#include "host/zyr_text_files.h"

#include "host/zyr_descriptor.h"
#include "host/zyr_output_file.h"
#include "host/zyr_run_error.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zyr::host {

namespace {

bool failToRead(const std::string& p_path, const std::string& p_reason) {
    fprintf(stderr, "zyr-host: cannot read '%s': %s\n", p_path.c_str(), p_reason.c_str());
    return false;
}

void writeDirectly(const std::string& p_path, const std::string& p_text) {
    OutputFile file(p_path);
    file.write(p_text.data(), p_text.size());
    file.close();
}

/// The plain file that the path leads to, or would make, and its permissions, -1 for a new one. False for what is
/// written to directly: pipes, devices, links to nowhere, and what must not be written to, which then says why.
bool findTarget(const std::string& p_path, std::string& p_target, int& p_mode) {
    struct stat status {};
    p_target = p_path;
    p_mode = -1;
    if (p_path == "-" || lstat(p_path.c_str(), &status) != 0) {
        return p_path != "-";
    }
    char* const whole = realpath(p_path.c_str(), nullptr);
    p_target = whole != nullptr ? whole : "";
    free(whole);
    p_mode = stat(p_target.c_str(), &status) == 0 ? int(status.st_mode & 07777) : -1;
    return p_mode >= 0 && S_ISREG(status.st_mode) && faccessat(AT_FDCWD, p_target.c_str(), W_OK, AT_EACCESS) == 0;
}

int writeAll(int p_file, const std::string& p_text) {
    for (size_t written = 0; written < p_text.size();) {
        const ssize_t count = write(p_file, p_text.data() + written, p_text.size() - written);
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        written += count > 0 ? size_t(count) : 0;
    }
    return 0;
}

/// Gives 0 or the number of the error, with nothing left beside.
int replaceFile(Descriptor p_file, const std::string& p_beside, const std::string& p_target, int p_mode,
                const std::string& p_text) {
    int error = writeAll(p_file.get(), p_text);
    if (error == 0 && p_mode >= 0 && fchmod(p_file.get(), mode_t(p_mode)) != 0) {
        error = errno;
    }
    // Some file systems tell only here that they are full.
    if (error == 0 && fsync(p_file.get()) != 0 && errno != EINVAL) {
        error = errno;
    }
    if (error == 0 && rename(p_beside.c_str(), p_target.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        unlink(p_beside.c_str());
    }
    return error;
}

} // namespace

bool readText(const std::string& p_path, std::string& p_text) {
    FILE* file = p_path == "-" ? stdin : fopen(p_path.c_str(), "r");
    if (file == nullptr) {
        return failToRead(p_path, strerror(errno));
    }
    struct stat status {};
    bool fits = fstat(fileno(file), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= LARGEST_TEXT;
    char buffer[65536];
    for (size_t count; fits && (count = fread(buffer, 1, sizeof(buffer), file)) != 0;) {
        p_text.append(buffer, count);
        fits = p_text.size() <= size_t(LARGEST_TEXT);
    }
    const int error = ferror(file) != 0 ? errno : 0;
    if (file != stdin) {
        fclose(file);
    }
    return !fits        ? failToRead(p_path, "it has more than " + std::to_string(LARGEST_TEXT >> 20) + " MiB")
           : error != 0 ? failToRead(p_path, strerror(error))
                        : true;
}

void writeWholeText(const std::string& p_path, const std::string& p_text) {
    std::string target;
    int mode = -1;
    if (!findTarget(p_path, target, mode)) {
        return writeDirectly(p_path, p_text);
    }
    const std::string beside = target + "." + std::to_string(getpid()) + ".part";
    Descriptor file(open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (file.get() < 0) {
        // Nothing can be made there: the file itself may take it all the same, or tells the reason.
        return writeDirectly(p_path, p_text);
    }
    const int error = replaceFile(std::move(file), beside, target, mode, p_text);
    if (error != 0) {
        throw RunError("cannot write '" + p_path + "': " + strerror(error));
    }
}

bool writeText(const std::string& p_path, const std::string& p_text) {
    try {
        writeWholeText(p_path, p_text);
    } catch (const RunError& error) {
        fprintf(stderr, "zyr-host: %s\n", error.what());
        return false;
    }
    return true;
}

} // namespace zyr::host
