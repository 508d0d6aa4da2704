/// Runs a program and takes what it says.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zyr {

struct ProgramRun {
    int m_exitCode = -1; ///< -1 when the program did not end by itself.
    std::string m_out;
    std::string m_err;
};

/// Runs `p_program` with its arguments and waits for its end. `p_onFirstError` gets the process id once the program has
/// written to its standard error.
ProgramRun runProgram(const std::string& p_program, const std::vector<std::string>& p_arguments,
                      const std::function<void(int)>& p_onFirstError = {});

} // namespace zyr
