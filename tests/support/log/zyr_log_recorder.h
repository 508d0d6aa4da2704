/// Takes the place of the log in a test program that links zyr_test_log_recorder: lines are kept for the test to look
/// at. Lines that are echoed, which are those of broken invariants, also go to the standard error, where death tests
/// look. Safe on any thread.
#pragma once

#include <string>
#include <vector>

namespace zyr::test {

/// "module|echo|level|function|message" for each line since the last call, which also forgets them.
std::vector<std::string> takeLogLines();

/// The line of a broken invariant of the common library, as a death test finds it.
std::string assertionLine(const std::string& p_function, const std::string& p_condition);

} // namespace zyr::test
