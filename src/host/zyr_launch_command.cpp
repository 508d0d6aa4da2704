#include "host/zyr_command_line.h"
#include "host/zyr_launch_signals.h"

#include "zyr_common/platform/zyr_process_identity.h"
#include "zyr_common/process/zyr_login_session.h"
#include "zyr_common/process/zyr_user_process_launch.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr::host {

namespace {

/// Whether a program of that path could be run: directories may be entered, which looks the same.
bool isProgram(const std::string& p_path) {
    struct stat status {};
    return stat(p_path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(p_path.c_str(), X_OK) == 0;
}

/// The path of a program that is named without a slash, by the PATH of its own environment; else the name as it is. An
/// empty element is the current directory, and what does not begin at the root stands in it.
std::string findProgram(const std::string& p_name, const List<String>& p_environment) {
    if (p_name.find('/') != std::string::npos) {
        return p_name;
    }
    const char* path = nullptr;
    for (const String& entry : p_environment) {
        if (strncmp(entry.getData(), "PATH=", 5) == 0) {
            path = entry.getData() + 5;
        }
    }
    for (const char* start = path; start != nullptr;) {
        const char* end = strchrnul(start, ':');
        std::error_code error;
        const std::filesystem::path candidate = std::filesystem::path(std::string(start, end)) / p_name;
        const std::string absolute = std::filesystem::absolute(candidate, error).string();
        if (!error && isProgram(absolute)) {
            return absolute;
        }
        start = *end == ':' ? end + 1 : nullptr;
    }
    return p_name;
}

/// The child gives one error number for all of its steps; a working directory that is not there is told as such.
String explainFailure(const LaunchOptions& p_options, const String& p_error) {
    struct stat status {};
    const char* directory = p_options.m_directory.c_str();
    const bool isMissing = *directory != 0 && stat(directory, &status) != 0;
    if (isMissing || (*directory != 0 && !S_ISDIR(status.st_mode))) {
        return String("the working directory '" + p_options.m_directory +
                      "' cannot be entered: " + strerror(isMissing ? errno : ENOTDIR));
    }
    return p_error;
}

int fail(const String& p_reason) {
    fprintf(stderr, "zyr-host: %s\n", p_reason.getData());
    return EXIT_RUN_FAILED;
}

} // namespace

int runLaunch(const LaunchOptions& p_options) {
    if (p_options.m_command[0].empty()) {
        fprintf(stderr, "zyr-host: the name of the program is empty\n");
        return EXIT_USAGE;
    }
    // Before a session is opened: from here on no signal ends this process and leaves the session standing.
    installForwarding();
    UserProcessOptions options;
    options.userName = String(p_options.m_user);
    options.workingDirectory = String(p_options.m_directory);
    for (size_t i = 1; i < p_options.m_command.size(); i++) {
        options.arguments.pushBack(String(p_options.m_command[i]));
    }
    // The session stands until the program has ended.
    UserLoginSession session;
    String error;
    if (p_options.m_user.empty() && p_options.m_service.empty()) {
        for (char** entry = environ; *entry != nullptr; entry++) {
            options.environment.pushBack(*entry);
        }
    } else {
        String user = options.userName;
        if (user.isEmpty() && !zyr_getCurrentProcessUserName(user)) {
            return fail("this process's user has no account");
        }
        if (!session.open(user, String(p_options.m_service), error)) {
            return fail(error);
        }
        session.getEnvironment(options.environment);
    }
    options.executablePath = String(findProgram(p_options.m_command[0], options.environment));
    if (const int signal = getKeptSignal(); signal != 0) {
        return 128 + signal;
    }
    // On the main thread, which lives as long as the process: the program ends with the thread that launched it.
    const uint32_t processId = launchUserProcess(options, error);
    if (processId == 0) {
        return fail(explainFailure(p_options, error));
    }
    return waitForProgram(static_cast<int>(processId));
}

} // namespace zyr::host
