#include "host/doctor/zyr_checked_graphics.h"
#include "host/doctor/zyr_checked_system.h"
#include "host/doctor/zyr_child_question.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr::host {

namespace {

constexpr unsigned SCREEN_SECONDS = 10;
constexpr int NOT_FOUND = 127; // The shell's status.
constexpr const char* EXTENSIONS[] = {"DAMAGE", "MIT-SHM", "RANDR", "XFIXES", "XTEST"};

/// What a command prints on both streams, behind its exit status and a line feed.
std::string runCommand(const char* p_command) {
    FILE* stream = popen(p_command, "re");
    if (stream == nullptr) {
        throw std::runtime_error("no shell could be started");
    }
    std::string text;
    std::array<char, 4096> buffer{};
    for (size_t count = 0; (count = fread(buffer.data(), 1, buffer.size(), stream)) > 0;) {
        text.append(buffer.data(), count);
    }
    const int status = pclose(stream);
    return std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : -1) + "\n" + text;
}

std::string trimmed(const std::string& p_text) {
    const size_t start = p_text.find_first_not_of(" \n");
    return start == std::string::npos ? "" : p_text.substr(start, p_text.find_last_not_of(" \n") - start + 1);
}

} // namespace

void checkScreen(FindingList& p_findings) {
    const char* display = getenv("DISPLAY");
    Finding finding{"screen", "X screen", FindingState::OK, "", ""};
    if (display == nullptr || *display == 0) {
        finding.m_state = FindingState::UNKNOWN;
        finding.m_text = "DISPLAY is not set: there is no X screen to look at";
        p_findings.push_back(finding);
        return;
    }
    finding.m_name += " " + std::string(display);
    const ChildAnswer answer = askChild(SCREEN_SECONDS, [] { return runCommand("xdpyinfo 2>&1"); });
    const size_t end = answer.m_text.find('\n');
    const int status = answer.m_isGiven ? atoi(answer.m_text.c_str()) : -1;
    const std::string words = answer.m_isGiven ? answer.m_text.substr(end) + "\n" : "";
    if (status == NOT_FOUND) {
        finding.m_state = FindingState::UNKNOWN;
        finding.m_text = "xdpyinfo, which looks at it, is not installed";
        finding.m_cure = "apt-get install x11-utils";
    } else if (status != 0) {
        finding.m_state = FindingState::NO;
        finding.m_text = answer.m_isGiven ? trimmed(words) : "xdpyinfo: " + answer.m_reason;
        finding.m_cure = "xhost +si:localuser:" + accountOf(geteuid()) + ", as the user of the screen";
    } else {
        const size_t size = words.find("dimensions:");
        finding.m_text = size == std::string::npos
                             ? "no size"
                             : trimmed(words.substr(size + 11, words.find(" pixels", size) - size - 11));
        std::string missing;
        for (const char* extension : EXTENSIONS) {
            if (words.find("    " + std::string(extension) + "\n") == std::string::npos) {
                missing += (missing.empty() ? "" : ", ") + std::string(extension);
            }
        }
        if (missing.empty()) {
            finding.m_text += ", with DAMAGE, MIT-SHM, RANDR, XFIXES and XTEST";
        } else {
            finding.m_state = FindingState::NO;
            finding.m_text += ", without " + missing;
            finding.m_cure = "an X server on this machine that has them, such as Xorg or Xvfb";
        }
    }
    p_findings.push_back(finding);
}

} // namespace zyr::host
