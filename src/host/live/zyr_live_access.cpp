#include "host/live/zyr_live_access.h"

#include "host/live/zyr_access_token.h"
#include "zyr_common/process/zyr_login_session.h"

#include <algorithm>

namespace zyr::host {

void AccessCheck::begin(const LiveAccess& p_access, const LiveHello& p_hello) {
    if (p_hello.m_user.empty()) {
        m_granted = isSameSecret(p_access.m_token, p_hello.m_secret);
        return;
    }
    if (p_access.m_users.empty()) {
        return;
    }
    const bool isKnown =
        std::find(p_access.m_users.begin(), p_access.m_users.end(), p_hello.m_user) != p_access.m_users.end();
    m_answer = std::async(std::launch::async, [isKnown, user = p_hello.m_user, password = p_hello.m_secret] {
        return zyr_userAuthentication(String(user), String(password)) != 0 && isKnown;
    });
}

bool AccessCheck::isDone() {
    if (m_answer.valid()) {
        if (m_answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
            return false;
        }
        m_granted = m_answer.get();
    }
    return true;
}

} // namespace zyr::host
