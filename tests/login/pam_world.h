/// Services and accounts of PAM, made up for one test: overlays of /etc, /var and /home, with real accounts in them and
/// service files that name the module of these tests.
#pragma once

#include "link_hooks.h"
#include "support/zyr_private_mounts.h"

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/text/zyr_string.h"

#include <pwd.h>
#include <security/pam_appl.h>
#include <sstream>
#include <unistd.h>

namespace zyr {

class PamTest : public PrivateMountsTest {
protected:
    static constexpr const char* USER = "zyrtester";
    static constexpr const char* PASSWORD = "correct horse";

    void SetUp() override {
        if (geteuid() != 0) {
            GTEST_SKIP() << "accounts and services of PAM take root";
        }
        PrivateMountsTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        for (const char* path : {"/etc", "/var", "/home"}) {
            m_mounts.makeChangeable(path);
        }
        ASSERT_EQ(runCommand("useradd --create-home --shell /bin/dash --uid 48123 zyrtester"), 0);
        std::filesystem::remove("/etc/pam.d/system");
    }
    void TearDown() override {
        hooks::g_recordPam = false;
        hooks::g_pamCalls.clear();
        hooks::g_failingPamCall.clear();
        hooks::g_refusedItems = 0;
    }

    static int runCommand(const std::string& p_command) { return system((p_command + " > /dev/null 2>&1").c_str()); }

    /// A service whose every step is the module with these arguments.
    void writeService(const std::string& p_name, const std::string& p_arguments) {
        std::string text;
        for (const char* step : {"auth", "account", "session"}) {
            text +=
                std::string(step) + " required " ZYR_TEST_PAM_MODULE " log=" + getLogPath() + " " + p_arguments + "\n";
        }
        std::ofstream("/etc/pam.d/" + p_name) << text;
    }

    /// Whether libpam finds the modules that usually come with it.
    static bool hasUsualModules() {
        std::ofstream("/etc/pam.d/zyr-probe") << "account required pam_permit.so\n";
        const pam_conv conversation = {nullptr, nullptr};
        pam_handle_t* handle = nullptr;
        if (pam_start("zyr-probe", "root", &conversation, &handle) != PAM_SUCCESS) {
            return false;
        }
        const int result = pam_acct_mgmt(handle, PAM_SILENT);
        pam_end(handle, result);
        return result == PAM_SUCCESS;
    }

    std::string getLogPath() const { return m_directory.getPath() + "calls"; }

    /// The lines that the module has written since the last time.
    std::vector<std::string> takeLog() const {
        std::vector<std::string> lines;
        std::istringstream text(TemporaryDirectory::readFile(getLogPath()));
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        std::filesystem::remove(getLogPath());
        return lines;
    }

    static std::vector<std::string> toVector(const List<String>& p_list) {
        std::vector<std::string> texts;
        for (const String& text : p_list) {
            texts.push_back(text.getData());
        }
        return texts;
    }

private:
    TemporaryDirectory m_directory;
};

} // namespace zyr
