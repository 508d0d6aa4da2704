#include "zyr_process_test.h"

#include <cerrno>
#include <csignal>
#include <dirent.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr {

namespace {

constexpr int PATIENCE_ROUNDS = 10000;
constexpr useconds_t ROUND = 1000;

} // namespace

List<String> listOf(std::initializer_list<const char*> p_texts) {
    List<String> list;
    for (const char* text : p_texts) {
        list.pushBack(text);
    }
    return list;
}

Texts textsOf(const List<String>& p_list) {
    Texts texts;
    for (const String& text : p_list) {
        texts.emplace_back(text.getData(), text.getLengthInBytes());
    }
    return texts;
}

int waitForStatus(uint32_t p_processId) {
    int status = -1;
    pid_t result = waitpid(pid_t(p_processId), &status, 0);
    while (result < 0 && errno == EINTR) {
        result = waitpid(pid_t(p_processId), &status, 0);
    }
    return result < 0 ? -1 : status;
}

int waitForExit(uint32_t p_processId) {
    const int status = waitForStatus(p_processId);
    return status >= 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::vector<int> getOpenDescriptors() {
    std::vector<int> descriptors;
    DIR* directory = opendir("/proc/self/fd");
    while (const dirent* entry = readdir(directory)) {
        const int number = atoi(entry->d_name);
        if (entry->d_name[0] != '.' && number != dirfd(directory)) {
            descriptors.push_back(number);
        }
    }
    closedir(directory);
    return descriptors;
}

bool isRunning(uint32_t p_processId) {
    std::ifstream status("/proc/" + std::to_string(p_processId) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("State:", 0) == 0) {
            return line.find('Z') == std::string::npos && line.find('X') == std::string::npos;
        }
    }
    return false;
}

bool waitUntilEnded(uint32_t p_processId) {
    for (int i = 0; i < PATIENCE_ROUNDS; i++) {
        if (!isRunning(p_processId)) {
            return true;
        }
        usleep(ROUND);
    }
    return false;
}

bool waitUntilRuns(uint32_t p_processId, const std::string& p_program) {
    const std::string path = "/proc/" + std::to_string(p_processId) + "/cmdline";
    for (int i = 0; i < PATIENCE_ROUNDS; i++) {
        if (TemporaryDirectory::readFile(path).rfind(p_program + '\0', 0) == 0) {
            return true;
        }
        usleep(ROUND);
    }
    return false;
}

std::string waitForFile(const std::string& p_path) {
    for (int i = 0; i < PATIENCE_ROUNDS && access(p_path.c_str(), F_OK) != 0; i++) {
        usleep(ROUND);
    }
    return TemporaryDirectory::readFile(p_path);
}

ProbeReport::ProbeReport(const std::string& p_path) {
    std::istringstream text(waitForFile(p_path));
    for (std::string line; std::getline(text, line);) {
        const size_t blank = line.find_first_of(" ");
        std::string value = blank == std::string::npos ? "" : line.substr(blank + 1);
        value.erase(0, value.find_first_not_of('\t'));
        m_values[line.substr(0, blank)].push_back(value);
    }
}

Texts ProbeReport::get(const std::string& p_key) const {
    const auto found = m_values.find(p_key);
    return found == m_values.end() ? Texts() : found->second;
}

std::string ProbeReport::getOnly(const std::string& p_key) const {
    const Texts values = get(p_key);
    return values.size() == 1 ? values[0] : "(" + std::to_string(values.size()) + " values)";
}

bool ProbeReport::hasSignal(const std::string& p_mask, int p_signal) const {
    return (std::stoull(getOnly(p_mask), nullptr, 16) >> (p_signal - 1) & 1) != 0;
}

ProbeDirectory::ProbeDirectory() {
    EXPECT_EQ(chmod(m_directory.getPath().c_str(), 0777), 0);
    std::filesystem::copy_file(ZYR_LAUNCH_PROBE, m_directory.getPath() + "probe");
    EXPECT_EQ(chmod((m_directory.getPath() + "probe").c_str(), 0755), 0);
}

} // namespace zyr
