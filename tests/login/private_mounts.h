/// A mount namespace of the test process's own, in which files of the system are replaced for one test. Nothing outside
/// of the process changes.
#pragma once

#include "support/zyr_temporary_directory.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zyr {

/// What is mounted through it is gone at its end.
class PrivateMounts {
public:
    PrivateMounts() = default;
    ~PrivateMounts();
    PrivateMounts(const PrivateMounts&) = delete;
    PrivateMounts& operator=(const PrivateMounts&) = delete;

    /// Why this machine doesn't let the process have such a namespace; empty where it does. The first call enters it.
    static const std::string& getRefusal();

    /// An empty directory in the place of an existing one.
    void mountEmpty(const std::string& p_path);
    /// Another file in the place of an existing one.
    void replaceFile(const std::string& p_path, const std::string& p_text);
    /// A directory that looks as before and takes changes to itself. Takes root.
    void makeChangeable(const std::string& p_path);
    void unmountLast();

private:
    void mountOrFail(const char* p_source, const std::string& p_path, const char* p_type, unsigned long p_flags,
                     const std::string& p_options);

    TemporaryDirectory m_directory;
    std::vector<std::string> m_mounted;
};

/// Tests that need the namespace.
class PrivateMountsTest : public testing::Test {
protected:
    void SetUp() override {
        if (!PrivateMounts::getRefusal().empty()) {
            GTEST_SKIP() << PrivateMounts::getRefusal();
        }
    }

    PrivateMounts m_mounts;
};

/// Writes a file as a whole; a reader sees the old one or the new one.
void writeFileByRename(const std::string& p_path, const std::string& p_text);

} // namespace zyr
