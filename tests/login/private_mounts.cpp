#include "private_mounts.h"

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace zyr {

static bool writeText(const char* p_path, const std::string& p_text) {
    std::ofstream file(p_path);
    file << p_text << std::flush;
    return file.good();
}

// Root enters a namespace directly; others become the owner of a user namespace, with their own user in it.
static std::string enterNamespace() {
    const std::string uid = std::to_string(geteuid());
    const std::string gid = std::to_string(getegid());
    const bool isRoot = geteuid() == 0;
    if (unshare(isRoot ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0) {
        return std::string("no private mount namespace: ") + strerror(errno);
    }
    if (!isRoot &&
        (!writeText("/proc/self/setgroups", "deny") || !writeText("/proc/self/uid_map", uid + " " + uid + " 1") ||
         !writeText("/proc/self/gid_map", gid + " " + gid + " 1"))) {
        return "no private mount namespace: the user can't be mapped";
    }
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        return std::string("no private mounts: ") + strerror(errno);
    }
    return "";
}

const std::string& PrivateMounts::getRefusal() {
    static const std::string s_refusal = enterNamespace();
    return s_refusal;
}

PrivateMounts::~PrivateMounts() {
    while (!m_mounted.empty()) {
        unmountLast();
    }
}

void PrivateMounts::unmountLast() {
    umount2(m_mounted.back().c_str(), MNT_DETACH);
    m_mounted.pop_back();
}

void PrivateMounts::mountOrFail(const char* p_source, const std::string& p_path, const char* p_type,
                                unsigned long p_flags, const std::string& p_options) {
    if (mount(p_source, p_path.c_str(), p_type, p_flags, p_options.c_str()) != 0) {
        GTEST_FAIL() << p_path << " can't be mounted: " << strerror(errno);
    }
    m_mounted.push_back(p_path);
}

void PrivateMounts::mountEmpty(const std::string& p_path) {
    mountOrFail("none", p_path, "tmpfs", 0, "mode=0755");
}

void PrivateMounts::replaceFile(const std::string& p_path, const std::string& p_text) {
    const std::string name = std::to_string(m_mounted.size());
    mountOrFail(m_directory.writeFile(name, p_text).c_str(), p_path, "none", MS_BIND, "");
}

void PrivateMounts::makeChangeable(const std::string& p_path) {
    const std::string layers = m_directory.getPath() + std::to_string(m_mounted.size());
    std::filesystem::create_directory(layers);
    mountEmpty(layers);
    std::filesystem::create_directory(layers + "/upper");
    std::filesystem::create_directory(layers + "/work");
    mountOrFail("none", p_path, "overlay", 0,
                "lowerdir=" + p_path + ",upperdir=" + layers + "/upper,workdir=" + layers + "/work");
}

void writeFileByRename(const std::string& p_path, const std::string& p_text) {
    // Outside of the directory, since each name that comes into it is an event.
    const std::string path = std::filesystem::path(p_path).parent_path().string() + ".new";
    std::ofstream(path) << p_text;
    std::filesystem::rename(path, p_path);
}

} // namespace zyr
