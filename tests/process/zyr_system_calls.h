/// Calls of the C library between the code under test and the system: written down and made to fail on demand.
///
/// They are put in between at link time (see CMakeLists.txt), and pass everything on while nothing is asked of them.
/// What they know stands in memory that forked children share, so it covers the child of a launch up to its exec.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zyr {

/// Watches this process and its children while it lives. At most one lives at a time.
class SystemCalls {
public:
    SystemCalls();
    ~SystemCalls();
    SystemCalls(const SystemCalls&) = delete;
    SystemCalls& operator=(const SystemCalls&) = delete;

    /// Calls of this name fail with an errno from now on: so many of them, behind some that pass.
    void fail(const std::string& p_name, int p_error, int p_times = 1000000, int p_passing = 0);

    /// Runs the code in front of the next call of this name in this process.
    void interpose(const std::string& p_name, const std::function<void()>& p_code);

    /// The names of the calls so far, in this process and its children, with the numbers that matter:
    /// "close_range 3 5", "sigaction 15". The parent's and the child's are told apart by their process ids.
    std::vector<std::string> getCallsOfChildren() const;
    std::vector<std::string> getCallsOfThisProcess() const;
};

/// Blocks of the heap that are held now, by what the test program itself asks for.
int64_t getHeldBlocks();

} // namespace zyr
