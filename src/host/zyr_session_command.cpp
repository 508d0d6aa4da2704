#include "host/zyr_command_line.h"
#include "host/zyr_console.h"
#include "host/zyr_standard_output.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_process_identity.h"
#include "zyr_common/process/zyr_session_lookup.h"
#include "zyr_common/process/zyr_session_monitor.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <pwd.h>
#include <unistd.h>

namespace zyr::host {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

constexpr const char* DRM_DIRECTORY = "/sys/class/drm";

json makeUser(uid_t p_uid) {
    const passwd* record = getpwuid(p_uid);
    return {{"uid", p_uid}, {"name", record != nullptr ? json(record->pw_name) : json(nullptr)}};
}

std::string userText(const json& p_user) {
    const std::string uid = "uid " + std::to_string(p_user["uid"].get<uid_t>());
    return p_user["name"].is_null() ? uid + " (no account)" : p_user["name"].get<std::string>() + " (" + uid + ")";
}

/// The messages of one function among what is logged meanwhile.
template <typename Call>
std::vector<std::string> collectMessages(HostApplicationData& p_data, const char* p_function, Call&& p_call) {
    p_data.startListening();
    p_call();
    std::vector<std::string> messages;
    for (const std::string& line : p_data.stopListening()) {
        LogLine parts;
        if (parseLogLine(line, parts) && parts.m_function.find(p_function) != std::string::npos) {
            messages.push_back(parts.m_message);
        }
    }
    return messages;
}

bool isInPath(const char* p_program) {
    const char* variable = getenv("PATH");
    const std::string path = variable != nullptr ? variable : "";
    for (size_t start = 0; start <= path.size();) {
        const size_t end = std::min(path.find(':', start), path.size());
        if (access((path.substr(start, end - start) + "/" + p_program).c_str(), X_OK) == 0) {
            return true;
        }
        start = end + 1;
    }
    return false;
}

std::string managerReason() {
    return isInPath("pidof") ? "no display manager that is known here is running, or the one that is has no account"
                             : "pidof is not in PATH, so display managers cannot be looked for";
}

json findDisplayManager() {
    uid_t uid = 0;
    if (detectDisplayManagerUserUid(uid)) {
        return {{"account", makeUser(uid)}};
    }
    return {{"account", nullptr}, {"reason", managerReason()}};
}

json findConsoleUser(HostApplicationData& p_data) {
    uint32_t session = NO_USER_SESSION;
    const bool isGreeter = !collectMessages(p_data, "detectDisplayManagerUserUid", [&] {
                                session = zyr_getActiveUserSessionID();
                            }).empty();
    if (session != NO_USER_SESSION) {
        return {{"user", makeUser(session)}, {"from", isGreeter ? "display manager" : "session"}};
    }
    return {{"user", nullptr}, {"reason", explainEmptyConsole()}};
}

json findVariable(HostApplicationData& p_data, uid_t p_uid, const char* p_name, const json& p_launch) {
    // The messages of two look-ups may be the same, and only the first of equal lines would be seen.
    ZYR_LOG_INFO("Looking for %s in the processes of user %u", p_name, static_cast<unsigned int>(p_uid));
    char* value = nullptr;
    const std::vector<std::string> messages =
        collectMessages(p_data, "getEnvVarFromUid", [&] { value = getEnvVarFromUid(p_uid, p_name); });
    // What a program gets that is launched into the session.
    json entry = {{"name", p_name}, {"value", nullptr}, {"launch", p_launch}};
    if (value != nullptr) {
        entry["value"] = value;
        int process = 0;
        // The last process that was looked at is the one that has it.
        if (!messages.empty() && sscanf(messages.back().c_str(), "pid:%d", &process) == 1) {
            entry["process"] = process;
        }
        free(value);
        return entry;
    }
    if (messages.empty()) {
        entry["reason"] = "no process of this user is running";
    } else if (geteuid() != 0 && geteuid() != p_uid) {
        entry["reason"] = "only root can read the environment of another user's processes";
    } else {
        entry["reason"] = "none of this user's processes has it (" + std::to_string(messages.size()) + " looked at)";
    }
    return entry;
}

json findEnvironment(HostApplicationData& p_data, uid_t p_uid) {
    const passwd* record = getpwuid(p_uid);
    const std::string home = record != nullptr ? record->pw_dir : "";
    const std::string bus = "unix:path=/run/user/" + std::to_string(p_uid) + "/bus";
    json variables = json::array();
    const auto add = [&](const char* p_name, const json& p_fallback) {
        json entry = findVariable(p_data, p_uid, p_name, p_fallback);
        if (!entry["value"].is_null()) {
            entry["launch"] = entry["value"];
        }
        variables.push_back(entry);
    };
    add("DISPLAY", ":0");
    add("WAYLAND_DISPLAY", nullptr);
    add("XAUTHORITY", home + "/.Xauthority");
    // A launch takes the bus at its fixed place, whatever the processes have.
    variables.push_back(findVariable(p_data, p_uid, "DBUS_SESSION_BUS_ADDRESS", bus));
    return variables;
}

std::string firstLine(const fs::path& p_path) {
    std::string line;
    std::getline(std::ifstream(p_path) >> std::ws, line);
    return line;
}

/// Why there is no single AMD output, from the same files.
std::string outputReason() {
    std::error_code error;
    std::vector<std::string> connected;
    for (const auto& entry : fs::directory_iterator(DRM_DIRECTORY, error)) {
        const std::string name = entry.path().filename();
        if (name.starts_with("card") && name.find('-') != std::string::npos &&
            firstLine(entry.path() / "status").starts_with("connected")) {
            connected.push_back(name);
        }
    }
    if (error) {
        return std::string(DRM_DIRECTORY) + ": " + error.message();
    }
    if (connected.empty()) {
        return "no display is connected";
    }
    if (connected.size() > 1) {
        std::sort(connected.begin(), connected.end());
        std::string names;
        for (const std::string& name : connected) {
            names += (names.empty() ? "" : ", ") + name;
        }
        return std::to_string(connected.size()) + " displays are connected: " + names;
    }
    const std::string& name = connected[0];
    const fs::path directory(DRM_DIRECTORY);
    if (!firstLine(directory / name / "enabled").starts_with("enabled")) {
        return "the connected display, " + name + ", is not enabled";
    }
    const std::string vendor = firstLine(directory / name.substr(0, name.find('-')) / "device" / "vendor");
    return "the connected display, " + name + ", is on a card of vendor " + (vendor.empty() ? "unknown" : vendor);
}

json findOutput() {
    String output;
    if (zyr_getSingleActiveAMDOutput(output)) {
        return {{"connector", toText(output)}};
    }
    return {{"connector", nullptr}, {"reason", outputReason()}};
}

std::string noneText(const json& p_entry) {
    return "none: " + p_entry["reason"].get<std::string>();
}

/// One line of the text form. What others chose, a process's environment above all, must not act on a terminal.
std::string makeLine(const char* p_name, size_t p_width, const std::string& p_text) {
    std::string name = p_name;
    name.resize(std::max(name.size(), p_width), ' ');
    return name + maskControls(p_text) + "\n";
}

std::string makeText(const json& p_all) {
    const json& console = p_all["console"];
    const json& manager = p_all["display_manager"];
    const json& environment = p_all["environment"];
    const json& output = p_all["amd_output"];
    std::string text;
    text += makeLine("console user", 18,
                     console["user"].is_null()
                         ? noneText(console)
                         : userText(console["user"]) + ", from the " + console["from"].get<std::string>());
    text += makeLine("display manager", 18,
                     manager["account"].is_null() ? noneText(manager) : userText(manager["account"]));
    text += makeLine("AMD output", 18,
                     output["connector"].is_null() ? noneText(output) : output["connector"].get<std::string>());
    text += makeLine("environment of", 18,
                     environment["user"].is_null() ? noneText(environment) : userText(environment["user"]));
    for (const json& entry : environment["variables"]) {
        const bool found = !entry["value"].is_null();
        std::string value = found ? entry["value"].get<std::string>() : noneText(entry);
        if (entry.contains("process")) {
            value += " (process " + std::to_string(entry["process"].get<int>()) + ")";
        }
        if (entry["launch"] != entry["value"]) {
            value += "; a launch sets " + entry["launch"].get<std::string>();
        }
        text += makeLine(("  " + entry["name"].get<std::string>()).c_str(), 29, value);
    }
    return text;
}

} // namespace

int runSession(const SessionOptions& p_options) {
    claimStandardOutput();
    // Where it is ignored, which a caller may leave behind, no program's answer is seen and no display manager found.
    signal(SIGCHLD, SIG_DFL);
    CommonLibrary library(p_options.m_framework);
    HostApplicationData& data = library.getApplicationData();
    // What the look-ups come across is told by their messages.
    data.setLogLevel(std::max(p_options.m_framework.m_logLevel, ZYR_LOG_LEVEL_INFO));

    const json console = findConsoleUser(data);
    json environment = {{"user", nullptr}, {"variables", json::array()}};
    if (!p_options.m_user.empty()) {
        String identity;
        long uid = -1;
        if (!zyr_getUserAccountIdentity(String(p_options.m_user), identity, uid)) {
            fprintf(stderr, "zyr-host: there is no account %s\n", maskControls(p_options.m_user).c_str());
            return EXIT_RUN_FAILED;
        }
        environment["user"] = makeUser(static_cast<uid_t>(uid));
    } else if (!console["user"].is_null()) {
        environment["user"] = console["user"];
    } else {
        environment["reason"] = "there is no user at the console; name one with --user";
    }
    if (!environment["user"].is_null()) {
        environment["variables"] = findEnvironment(data, environment["user"]["uid"].get<uid_t>());
    }
    const json all = {{"console", console},
                      {"display_manager", findDisplayManager()},
                      {"environment", environment},
                      {"amd_output", findOutput()}};
    const std::string text =
        p_options.m_json ? all.dump(2, ' ', true, json::error_handler_t::replace) + "\n" : makeText(all);
    return printText(text) ? EXIT_DONE : EXIT_RUN_FAILED;
}

} // namespace zyr::host
