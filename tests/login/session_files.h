/// What logind and a display manager would show, made up for one test.
#pragma once

#include "support/zyr_private_mounts.h"

#include <cstdlib>
#include <sys/stat.h>

namespace zyr {

/// Writes a file as a whole; a reader sees the old one or the new one.
inline void writeFileByRename(const std::string& p_path, const std::string& p_text) {
    // Outside of the directory, since each name that comes into it is an event.
    const std::string path = std::filesystem::path(p_path).parent_path().string() + ".new";
    std::ofstream(path) << p_text;
    std::filesystem::rename(path, p_path);
}

/// The files in which logind tells about seats and sessions. At first there are none.
class SessionFiles {
public:
    explicit SessionFiles(PrivateMounts& p_mounts) {
        p_mounts.mountEmpty("/run");
        for (const char* name : {"seats", "sessions", "users", "machines"}) {
            std::filesystem::create_directories(getPath(name));
        }
    }

    static std::string getPath(const std::string& p_name) { return "/run/systemd/" + p_name; }

    void writeSeat(const std::string& p_name, const std::string& p_text) {
        writeFileByRename(getPath("seats/" + p_name), p_text);
    }
    void writeSession(const std::string& p_name, const std::string& p_text) {
        writeFileByRename(getPath("sessions/" + p_name), p_text);
    }
    void remove(const std::string& p_name) { std::filesystem::remove_all(getPath(p_name)); }

    /// Session 7 of a user at the console.
    void showUser(uid_t p_uid) {
        const std::string uid = std::to_string(p_uid);
        writeSession("7", "UID=" + uid + "\nSTATE=active\nCLASS=user\nSEAT=seat0\n");
        writeSeat("seat0", "ACTIVE=7\nACTIVE_UID=" + uid + "\n");
    }
};

/// A command "pidof" for which one program runs. It writes down what it was asked for.
class FakePidof {
public:
    FakePidof() {
        setRunning("");
        const char* path = getenv("PATH");
        m_oldPath = path != nullptr ? path : "";
        setenv("PATH", (m_directory.getPath() + ":" + m_oldPath).c_str(), 1);
    }
    ~FakePidof() { setenv("PATH", m_oldPath.c_str(), 1); }
    FakePidof(const FakePidof&) = delete;
    FakePidof& operator=(const FakePidof&) = delete;

    /// Names of running programs, with blanks in between.
    void setRunning(const std::string& p_names) {
        const std::string path = m_directory.writeFile("pidof", "#!/bin/sh\n"
                                                                "echo \"$@\" >> " +
                                                                    m_directory.getPath() +
                                                                    "asked\n"
                                                                    "echo 1234; echo noise >&2\n"
                                                                    "case ' " +
                                                                    p_names +
                                                                    " ' in *\" $1 \"*) exit 0 ;; esac\n"
                                                                    "exit 1\n");
        chmod(path.c_str(), 0755);
    }

    /// The words of each call so far, one line each.
    std::string getCalls() const { return TemporaryDirectory::readFile(m_directory.getPath() + "asked"); }

private:
    TemporaryDirectory m_directory;
    std::string m_oldPath;
};

/// An account database with root and the given accounts, and nothing that would look elsewhere.
inline void replaceAccounts(PrivateMounts& p_mounts, const std::string& p_accounts) {
    if (std::filesystem::exists("/etc/nsswitch.conf")) {
        p_mounts.replaceFile("/etc/nsswitch.conf", "passwd: files\ngroup: files\nshadow: files\n");
    }
    p_mounts.replaceFile("/etc/passwd", "root:x:0:0:root:/root:/bin/bash\n" + p_accounts);
}

} // namespace zyr
