/// Lines that code under test reports, caught before they reach the log. Link zyr_test_log_capture.
///
///     LogCapture capture;
///     list.popBack();
///     EXPECT_EQ(capture.getLines().at(0).message, "Cannot pop further, the list is empty");
#pragma once

#include "zyr_common/memory/zyr_report.h"

#include <string>
#include <vector>

namespace zyr {

struct CapturedLine {
    std::string module;
    bool echo;
    int level;
    std::string function;
    std::string message;
};

/// Catches what this program's copy of the library reports while it lives, on any thread; nothing then reaches the
/// log. At most one lives at a time. Without one, lines go their usual way.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();

    /// A copy of the lines so far.
    std::vector<CapturedLine> getLines() const;
};

} // namespace zyr
