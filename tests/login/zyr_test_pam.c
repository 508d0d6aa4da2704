// A PAM module that does what its arguments in the service file say, and writes down how it is called.
//
//   log=FILE          append one line for each call to FILE
//   password=TEXT     authentication asks for a password and compares it with TEXT
//   ask_user          authentication asks for the user's name with an open prompt and writes it down
//   probe             authentication and account management try the edges of the conversation function
//   prompt, text      account management asks for something, or shows two messages
//   deny=CALL:CODE    the call (auth, acct, cred, session, delete, close) fails with the code
//   env=NAME=value    account management sets a variable
//   hang_up           a hang-up comes to the process while the session is opened
#include <security/pam_appl.h>
#include <security/pam_modules.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

typedef struct {
    pam_handle_t* handle;
    int argc;
    const char** argv;
    FILE* log;
} Call;

// What stands behind "name=" in the arguments; null without it. A name alone gives an empty text.
static const char* findArgument(const Call* p_call, const char* p_name) {
    const size_t length = strlen(p_name);
    for (int i = 0; i < p_call->argc; i++) {
        if (strncmp(p_call->argv[i], p_name, length) == 0) {
            if (p_call->argv[i][length] == '=') {
                return p_call->argv[i] + length + 1;
            }
            if (p_call->argv[i][length] == '\0') {
                return "";
            }
        }
    }
    return NULL;
}

static const char* getItem(pam_handle_t* p_handle, int p_type) {
    const void* item = NULL;
    return pam_get_item(p_handle, p_type, &item) == PAM_SUCCESS && item != NULL ? item : "(none)";
}

// The end of the transaction comes as the end of the module's data.
static void writeEnd(pam_handle_t* p_handle, void* p_data, int p_status) {
    (void)p_handle;
    FILE* log = fopen(p_data, "ae");
    if (log != NULL) {
        fprintf(log, "end status=%#x\n", (unsigned int)p_status);
        fclose(log);
    }
    free(p_data);
}

static Call beginCall(pam_handle_t* p_handle, const char* p_name, int p_flags, int p_argc, const char** p_argv) {
    Call call = {p_handle, p_argc, p_argv, NULL};
    const char* path = findArgument(&call, "log");
    if (path == NULL) {
        return call;
    }
    call.log = fopen(path, "ae");
    const void* present = NULL;
    if (pam_get_data(p_handle, "zyr_test_end", &present) != PAM_SUCCESS) {
        pam_set_data(p_handle, "zyr_test_end", strdup(path), writeEnd);
    }
    if (call.log == NULL) {
        return call;
    }
    fprintf(call.log, "%s flags=%#x service=%s user=%s tty=%s env=", p_name, (unsigned int)p_flags,
            getItem(p_handle, PAM_SERVICE), getItem(p_handle, PAM_USER), getItem(p_handle, PAM_TTY));
    char** variables = pam_getenvlist(p_handle);
    for (char** variable = variables; variables != NULL && *variable != NULL; variable++) {
        fprintf(call.log, "%s%s", variable == variables ? "" : ",", *variable);
        free(*variable);
    }
    free(variables);
    fputc('\n', call.log);
    return call;
}

static int endCall(Call* p_call, const char* p_name, int p_result) {
    const char* deny = findArgument(p_call, "deny");
    const size_t length = strlen(p_name);
    if (deny != NULL && strncmp(deny, p_name, length) == 0 && deny[length] == ':') {
        p_result = atoi(deny + length + 1);
    }
    if (p_call->log != NULL) {
        fclose(p_call->log);
    }
    return p_result;
}

// One round of the conversation. Writes down the result and the responses.
static int converse(const Call* p_call, int p_count, const struct pam_message* p_messages, int p_withData,
                    char** p_firstResponse) {
    const struct pam_message* messages[8];
    for (int i = 0; i < 8; i++) {
        messages[i] = p_messages + i;
    }
    const void* item = NULL;
    pam_get_item(p_call->handle, PAM_CONV, &item);
    const struct pam_conv* conversation = item;
    struct pam_response untouched;
    struct pam_response* responses = &untouched;
    int result = conversation->conv(p_count, messages, &responses, p_withData ? conversation->appdata_ptr : NULL);
    if (p_call->log != NULL) {
        fprintf(p_call->log, "conversation count=%d result=%d", p_count, result);
        if (responses == &untouched) {
            fprintf(p_call->log, " untouched");
        } else if (responses == NULL) {
            fprintf(p_call->log, " null");
        }
    }
    if (result == PAM_SUCCESS && responses != NULL && responses != &untouched) {
        for (int i = 0; i < p_count; i++) {
            if (p_call->log != NULL) {
                fprintf(p_call->log, " [%s]%d", responses[i].resp != NULL ? responses[i].resp : "null",
                        responses[i].resp_retcode);
            }
            if (i == 0 && p_firstResponse != NULL) {
                *p_firstResponse = responses[i].resp;
            } else {
                free(responses[i].resp);
            }
        }
        free(responses);
    }
    if (p_call->log != NULL) {
        fputc('\n', p_call->log);
    }
    return result;
}

// Each count and mixture of styles that matters; 99 is no style.
static void probeConversation(const Call* p_call) {
    static const struct pam_message s_mixed[8] = {
        {PAM_PROMPT_ECHO_OFF, "a"}, {PAM_PROMPT_ECHO_ON, "b"}, {PAM_TEXT_INFO, "c"}, {PAM_ERROR_MSG, "d"}, {99, "e"}};
    static const struct pam_message s_quiet[8] = {{PAM_TEXT_INFO, "a"}, {PAM_ERROR_MSG, "b"}, {99, "c"}};
    converse(p_call, 5, s_mixed, 1, NULL);
    converse(p_call, 2, s_quiet, 1, NULL);
    converse(p_call, 3, s_quiet, 1, NULL);
    converse(p_call, 1, s_mixed + 1, 1, NULL);
    converse(p_call, 1, s_quiet, 0, NULL);
    converse(p_call, 0, s_quiet, 1, NULL);
    converse(p_call, -1, s_quiet, 1, NULL);
    // The test lets the allocation of this many fail.
    converse(p_call, 7,
             (const struct pam_message[8]){{PAM_TEXT_INFO, ""},
                                           {PAM_TEXT_INFO, ""},
                                           {PAM_TEXT_INFO, ""},
                                           {PAM_TEXT_INFO, ""},
                                           {PAM_TEXT_INFO, ""},
                                           {PAM_TEXT_INFO, ""},
                                           {PAM_TEXT_INFO, ""},
                                           {PAM_TEXT_INFO, ""}},
             1, NULL);
}

int pam_sm_authenticate(pam_handle_t* p_handle, int p_flags, int p_argc, const char** p_argv) {
    static const struct pam_message s_password[8] = {{PAM_PROMPT_ECHO_OFF, "Password: "}};
    static const struct pam_message s_user[8] = {{PAM_PROMPT_ECHO_ON, "login: "}};
    Call call = beginCall(p_handle, "authenticate", p_flags, p_argc, p_argv);
    int result = PAM_SUCCESS;
    if (findArgument(&call, "probe") != NULL) {
        probeConversation(&call);
    }
    if (findArgument(&call, "ask_user") != NULL) {
        converse(&call, 1, s_user, 1, NULL);
    }
    const char* password = findArgument(&call, "password");
    if (password != NULL) {
        char* answer = NULL;
        result = converse(&call, 1, s_password, 1, &answer);
        if (result == PAM_SUCCESS && (answer == NULL || strcmp(answer, password) != 0)) {
            result = PAM_AUTH_ERR;
        }
        free(answer);
    }
    return endCall(&call, "auth", result);
}

int pam_sm_setcred(pam_handle_t* p_handle, int p_flags, int p_argc, const char** p_argv) {
    Call call = beginCall(p_handle, "setcred", p_flags, p_argc, p_argv);
    return endCall(&call, p_flags & PAM_ESTABLISH_CRED ? "cred" : "delete", PAM_SUCCESS);
}

int pam_sm_acct_mgmt(pam_handle_t* p_handle, int p_flags, int p_argc, const char** p_argv) {
    static const struct pam_message s_prompt[8] = {{PAM_PROMPT_ECHO_OFF, "New password: "}};
    static const struct pam_message s_text[8] = {{PAM_TEXT_INFO, "Welcome"}, {PAM_ERROR_MSG, "Expires soon"}};
    Call call = beginCall(p_handle, "acct_mgmt", p_flags, p_argc, p_argv);
    int result = PAM_SUCCESS;
    if (findArgument(&call, "probe") != NULL) {
        probeConversation(&call);
    }
    if (findArgument(&call, "prompt") != NULL) {
        result = converse(&call, 1, s_prompt, 1, NULL);
    }
    if (findArgument(&call, "text") != NULL) {
        result = converse(&call, 2, s_text, 1, NULL);
    }
    for (int i = 0; i < p_argc; i++) {
        if (strncmp(p_argv[i], "env=", 4) == 0) {
            pam_putenv(p_handle, p_argv[i] + 4);
        }
    }
    return endCall(&call, "acct", result);
}

int pam_sm_open_session(pam_handle_t* p_handle, int p_flags, int p_argc, const char** p_argv) {
    Call call = beginCall(p_handle, "open_session", p_flags, p_argc, p_argv);
    if (findArgument(&call, "hang_up") != NULL) {
        kill(getpid(), SIGHUP);
    }
    return endCall(&call, "session", PAM_SUCCESS);
}

int pam_sm_close_session(pam_handle_t* p_handle, int p_flags, int p_argc, const char** p_argv) {
    Call call = beginCall(p_handle, "close_session", p_flags, p_argc, p_argv);
    return endCall(&call, "close", PAM_SUCCESS);
}
