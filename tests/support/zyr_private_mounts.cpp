#include "support/zyr_private_mounts.h"

#include <cstring>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace zyr {

static bool writeText(const char* p_path, const std::string& p_text) {
    std::ofstream file(p_path);
    file << p_text << std::flush;
    return file.good();
}

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

bool canMountPrivately() {
    const pid_t child = fork();
    if (child == 0) {
        _exit(geteuid() == 0 && enterNamespace().empty() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void enterPrivateMounts() {
    ASSERT_EQ(PrivateMounts::getRefusal(), "");
}

static bool bindFile(const std::string& p_source, const std::string& p_path) {
    return chmod(p_source.c_str(), 0644) == 0 &&
           mount(p_source.c_str(), p_path.c_str(), nullptr, MS_BIND, nullptr) == 0;
}

void appendToSystemFile(const std::string& p_path, const std::string& p_lines) {
    const std::string text = TemporaryDirectory::readFile(p_path) + p_lines;
    char copy[] = "/tmp/zyr-test-file-XXXXXX";
    const int descriptor = mkstemp(copy);
    ASSERT_GE(descriptor, 0);
    close(descriptor);
    EXPECT_TRUE(writeText(copy, text) && bindFile(copy, p_path)) << p_path << " can't be replaced: " << strerror(errno);
    // The mount outlives the name, but nothing can be mounted over it a second time.
    unlink(copy);
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

void PrivateMounts::mountOrFail(const std::string& p_path, const char* p_type, const std::string& p_options) {
    if (mount("none", p_path.c_str(), p_type, 0, p_options.c_str()) != 0) {
        GTEST_FAIL() << p_path << " can't be mounted: " << strerror(errno);
    }
    m_mounted.push_back(p_path);
}

void PrivateMounts::mountEmpty(const std::string& p_path) {
    mountOrFail(p_path, "tmpfs", "mode=0755");
}

void PrivateMounts::replaceFile(const std::string& p_path, const std::string& p_text) {
    if (!bindFile(m_directory.writeFile(std::to_string(m_mounted.size()), p_text), p_path)) {
        GTEST_FAIL() << p_path << " can't be replaced: " << strerror(errno);
    }
    m_mounted.push_back(p_path);
}

void PrivateMounts::makeChangeable(const std::string& p_path) {
    const std::string layers = m_directory.getPath() + std::to_string(m_mounted.size());
    std::filesystem::create_directory(layers);
    mountEmpty(layers);
    std::filesystem::create_directory(layers + "/upper");
    std::filesystem::create_directory(layers + "/work");
    mountOrFail(p_path, "overlay", "lowerdir=" + p_path + ",upperdir=" + layers + "/upper,workdir=" + layers + "/work");
}

} // namespace zyr
