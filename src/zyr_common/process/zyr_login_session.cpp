#include "zyr_common/process/zyr_login_session.h"

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/process/zyr_user_process_launch.h"

#include <cstdlib>
#include <cstring>
#include <pwd.h>
#include <security/pam_appl.h>
#include <unistd.h>

namespace zyr {

namespace {

constexpr size_t RECORD_BUFFER_SIZE = 65536;

struct Credentials {
    String m_user;
    String m_password;
};

// Answers a hidden prompt with the password and an open one with the user's name. The responses are the module's, which
// frees them.
int passwordConversation(int p_count, const pam_message** p_messages, pam_response** p_responses, void* p_data) {
    if (p_count < 1 || p_data == nullptr) {
        return PAM_CONV_ERR;
    }
    pam_response* responses = static_cast<pam_response*>(calloc(static_cast<size_t>(p_count), sizeof(pam_response)));
    if (responses == nullptr) {
        return PAM_BUF_ERR;
    }
    const Credentials* credentials = static_cast<const Credentials*>(p_data);
    for (int i = 0; i < p_count; i++) {
        if (p_messages[i]->msg_style == PAM_PROMPT_ECHO_OFF) {
            responses[i].resp = strdup(credentials->m_password.getData());
        } else if (p_messages[i]->msg_style == PAM_PROMPT_ECHO_ON) {
            responses[i].resp = strdup(credentials->m_user.getData());
        }
    }
    *p_responses = responses;
    return PAM_SUCCESS;
}

// Takes messages and refuses every question.
int silentConversation(int p_count, const pam_message** p_messages, pam_response** p_responses, void*) {
    *p_responses = nullptr;
    for (int i = 0; i < p_count; i++) {
        if (p_messages[i]->msg_style != PAM_ERROR_MSG && p_messages[i]->msg_style != PAM_TEXT_INFO) {
            return PAM_CONV_ERR;
        }
    }
    *p_responses = static_cast<pam_response*>(calloc(static_cast<size_t>(p_count), sizeof(pam_response)));
    return *p_responses != nullptr ? PAM_SUCCESS : PAM_BUF_ERR;
}

// The steps that open a session, each only behind the success of all before it. The handle is the caller's, also where
// a step fails.
int openPamSession(const String& p_service, const String& p_user, pam_handle_t*& p_handle) {
    static const pam_conv s_conversation = {&silentConversation, nullptr};
    static const char* const s_environment[] = {"XDG_SESSION_TYPE=unspecified", "XDG_SESSION_CLASS=background",
                                                "XDG_SEAT=", "XDG_VTNR="};
    int result = pam_start(p_service.getData(), p_user.getData(), &s_conversation, &p_handle);
    if (result == PAM_SUCCESS) {
        result = pam_set_item(p_handle, PAM_TTY, "zvd-virtual");
    }
    for (const char* variable : s_environment) {
        if (result == PAM_SUCCESS) {
            result = pam_putenv(p_handle, variable);
        }
    }
    if (result == PAM_SUCCESS) {
        result = pam_acct_mgmt(p_handle, PAM_SILENT);
    }
    if (result == PAM_SUCCESS) {
        result = pam_setcred(p_handle, PAM_ESTABLISH_CRED | PAM_SILENT);
    }
    if (result == PAM_SUCCESS) {
        result = pam_open_session(p_handle, PAM_SILENT);
    }
    return result;
}

} // namespace

bool_t zyr_userAuthentication(const String& p_user, const String& p_password) {
    Credentials credentials = {p_user, p_password};
    const pam_conv conversation = {&passwordConversation, &credentials};
    const char* service = access("/etc/pam.d/system", F_OK) == 0 ? "system" : "login";
    pam_handle_t* handle = nullptr;
    int result = pam_start(service, credentials.m_user.getData(), &conversation, &handle);
    if (result == PAM_SUCCESS) {
        result = pam_authenticate(handle, 0);
    }
    if (result != PAM_SUCCESS) {
        ZYR_LOG_DEBUG("Authentication failed with error:%s", pam_strerror(handle, result));
    }
    if (handle != nullptr) {
        pam_end(handle, result);
    }
    return result == PAM_SUCCESS;
}

UserLoginSession::UserLoginSession() : m_pamHandle(nullptr), m_open(0) {}

UserLoginSession::~UserLoginSession() {
    close();
}

bool_t UserLoginSession::open(const String& p_user, const String& p_service, String& p_error) {
    // The error may be one of the other two texts.
    const String user = p_user;
    const String service = p_service;
    close();
    p_error = "User login sessions are unsupported on this platform";

    Array<char> buffer;
    buffer.resize(RECORD_BUFFER_SIZE);
    passwd record = {};
    passwd* found = nullptr;
    int error = getpwnam_r(user.getData(), &record, buffer.getData(), RECORD_BUFFER_SIZE, &found);
    uid_t caller = geteuid();
    if (error != 0 || found == nullptr || (caller != 0 && caller != found->pw_uid)) {
        p_error = "User account is unavailable or access is denied";
        return 0;
    }
    m_userName = found->pw_name;
    m_homeDirectory = found->pw_dir;
    m_shell = found->pw_shell;

    if (!service.isEmpty()) {
        int result = openPamSession(service, m_userName, m_pamHandle);
        if (result != PAM_SUCCESS) {
            p_error = "PAM session failed: ";
            p_error += pam_strerror(m_pamHandle, result);
            close();
            return 0;
        }
    }
    m_open = 1;
    p_error.clear();
    return 1;
}

void UserLoginSession::close() {
    if (m_pamHandle != nullptr) {
        if (m_open) {
            pam_close_session(m_pamHandle, PAM_SILENT);
        }
        pam_setcred(m_pamHandle, PAM_DELETE_CRED | PAM_SILENT);
        pam_end(m_pamHandle, PAM_SUCCESS);
    }
    m_pamHandle = nullptr;
    m_open = 0;
    m_userName.clear();
    m_homeDirectory.clear();
    m_shell.clear();
}

void UserLoginSession::getEnvironment(List<String>& p_environment) const {
    p_environment.clear();
    if (!m_open) {
        return;
    }
    char** variables = m_pamHandle != nullptr ? pam_getenvlist(m_pamHandle) : nullptr;
    if (variables != nullptr) {
        for (char** variable = variables; *variable != nullptr; variable++) {
            p_environment.pushBack(*variable);
            free(*variable);
        }
        free(variables);
    }
    setProcessEnvironmentValue(p_environment, "HOME", m_homeDirectory);
    setProcessEnvironmentValue(p_environment, "USER", m_userName);
    setProcessEnvironmentValue(p_environment, "LOGNAME", m_userName);
    setProcessEnvironmentValue(p_environment, "SHELL", m_shell);
    setProcessEnvironmentValue(p_environment, "PATH", "/usr/local/bin:/usr/bin:/bin");
    setProcessEnvironmentValue(p_environment, "LANG", "C.UTF-8");
}

} // namespace zyr
