/// A locale of the process for the time of a test.
#pragma once

#include "support/zyr_temporary_directory.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace zyr {

/// Sets a locale such as "de_DE" for the whole process, as a host does. It is made from its source, since systems
/// rarely have one that is ready.
class HostLocale {
public:
    explicit HostLocale(const std::string& p_name) {
        const std::string file = m_directory.getPath() + p_name + ".UTF-8";
        const std::string command = "localedef -i " + p_name + " -f UTF-8 " + file + " >/dev/null 2>&1";
        EXPECT_EQ(system(command.c_str()), 0) << "localedef and its sources are in the package locales";
        setenv("LOCPATH", m_directory.getPath().c_str(), 1);
        EXPECT_NE(setlocale(LC_ALL, (p_name + ".UTF-8").c_str()), nullptr);
    }
    ~HostLocale() {
        setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
    }
    HostLocale(const HostLocale&) = delete;
    HostLocale& operator=(const HostLocale&) = delete;

private:
    TemporaryDirectory m_directory;
};

} // namespace zyr
