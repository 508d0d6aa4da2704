/// Asking in a child process, for what may crash or hang.
#pragma once

#include <functional>
#include <string>

namespace zyr::host {

struct ChildAnswer {
    bool m_isGiven = false;
    std::string m_text; ///< The answer.
    std::string
        m_reason; ///< Why there is none: "it crashed (SIGSEGV)", "no answer within 20 s", the text of an exception.
    bool m_crashed = false;
};

/// Runs `p_work` in a child and gives what it returns. What the child writes to its streams is dropped, but for the
/// last line of one that crashed. The child, with its own children, ends when the calling thread does.
ChildAnswer askChild(unsigned p_seconds, const std::function<std::string()>& p_work);

} // namespace zyr::host
