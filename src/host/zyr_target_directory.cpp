#include "host/zyr_target_directory.h"

#include "host/zyr_descriptor.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zyr::host {

namespace {

using Place = std::vector<std::string>;

[[noreturn]] void fail(const Place& p_place, int p_error) {
    std::string text;
    for (const std::string& word : p_place) {
        text += (text.empty() ? "" : "/") + word;
    }
    throw RunError(maskControls(text) + ": it cannot be written: " + strerror(p_error));
}

Descriptor openDirectory(int p_parent, const std::string& p_name) {
    return Descriptor(openat(p_parent, p_name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// The directory of the place, made where it is not there.
Descriptor makeParent(int p_root, const Place& p_place) {
    Descriptor parent(dup(p_root));
    for (size_t i = 0; parent.get() >= 0 && i + 1 < p_place.size(); i++) {
        Descriptor next = openDirectory(parent.get(), p_place[i]);
        if (next.get() < 0 && errno == ENOENT) {
            if (mkdirat(parent.get(), p_place[i].c_str(), 0777) != 0 && errno != EEXIST) {
                fail(p_place, errno);
            }
            next = openDirectory(parent.get(), p_place[i]);
        }
        parent = std::move(next);
    }
    if (parent.get() < 0) {
        fail(p_place, errno);
    }
    return parent;
}

/// Gives 0 or the number of the error.
int writeWhole(int p_descriptor, const char* p_data, size_t p_size) {
    while (p_size > 0) {
        const ssize_t count = ::write(p_descriptor, p_data, p_size);
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        p_data += count > 0 ? count : 0;
        p_size -= count > 0 ? static_cast<size_t>(count) : 0;
    }
    return 0;
}

/// Moves a file to its place; 0 or the number of the error.
int moveFile(int p_parent, const char* p_from, const char* p_to, bool p_replace) {
    if (p_replace) {
        return renameat(p_parent, p_from, p_parent, p_to) == 0 ? 0 : errno;
    }
    if (renameat2(p_parent, p_from, p_parent, p_to, RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
    // Not every file system knows that. A second name is not made where one is.
    if (linkat(p_parent, p_from, p_parent, p_to, 0) != 0) {
        return errno;
    }
    unlinkat(p_parent, p_from, 0);
    return 0;
}

} // namespace

TargetDirectory::TargetDirectory(std::string p_path)
    : m_path(std::move(p_path)), m_descriptor(open(m_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (m_descriptor < 0) {
        throw RunError(m_path + ": it cannot be opened: " + strerror(errno));
    }
}

TargetDirectory::~TargetDirectory() {
    close(m_descriptor);
}

std::vector<std::string> TargetDirectory::splitPath(const std::string& p_path) {
    Place place;
    size_t start = 0;
    for (size_t end = 0; end != std::string::npos; start = end + 1) {
        end = p_path.find('/', start);
        const std::string word = p_path.substr(start, end == std::string::npos ? end : end - start);
        if (word.empty() || word == "." || word == ".." || word.find('\0') != std::string::npos) {
            throw RunError(maskControls(p_path) + ": no path of a file below the directory");
        }
        place.push_back(word);
    }
    return place;
}

bool TargetDirectory::has(const Place& p_place) const {
    Descriptor parent(dup(m_descriptor));
    for (size_t i = 0; parent.get() >= 0 && i + 1 < p_place.size(); i++) {
        parent = openDirectory(parent.get(), p_place[i]);
    }
    struct stat status {};
    return parent.get() >= 0 && fstatat(parent.get(), p_place.back().c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

void TargetDirectory::write(const Place& p_place, const void* p_data, size_t p_size, bool p_replace) const {
    const Descriptor parent = makeParent(m_descriptor, p_place);
    // One at a time and process: a remainder of an earlier one with this number is in the way of nobody else.
    const std::string name = ".zyr-host-" + std::to_string(getpid()) + ".part";
    unlinkat(parent.get(), name.c_str(), 0);
    int error = 0;
    {
        const Descriptor file(
            openat(parent.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
        if (file.get() < 0) {
            fail(p_place, errno);
        }
        error = writeWhole(file.get(), static_cast<const char*>(p_data), p_size);
    }
    if (error == 0) {
        error = moveFile(parent.get(), name.c_str(), p_place.back().c_str(), p_replace);
    }
    if (error != 0) {
        unlinkat(parent.get(), name.c_str(), 0);
        fail(p_place, error);
    }
}

} // namespace zyr::host
