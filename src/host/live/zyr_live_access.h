/// Who may look on.
#pragma once

#include "host/live/zyr_live_messages.h"

#include <chrono>
#include <future>
#include <string>
#include <vector>

namespace zyr::host {

struct LiveAccess {
    std::string m_token;              ///< Empty: nobody comes in by a token.
    std::vector<std::string> m_users; ///< Accounts that come in by their passwords.
};

/// A check of what a viewer said. A password is looked at on a thread of its own, since that takes as long as the
/// system wants it to.
class AccessCheck {
public:
    /// Begins. Passwords of unknown accounts are checked too, so that the time tells nothing.
    void begin(const LiveAccess& p_access, const LiveHello& p_hello);

    /// True once isGranted() is settled.
    bool isDone();
    bool isGranted() const { return m_granted; }

private:
    std::future<bool> m_answer;
    bool m_granted = false;
};

} // namespace zyr::host
