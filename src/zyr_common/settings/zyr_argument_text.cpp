#include "zyr_common/settings/zyr_argument_text.h"

namespace zyr {

void zyr_joinArguments(const Array<String>& p_arguments, String& p_text) {
    p_text.clear();
    for (const String& argument : p_arguments) {
        if (&argument != p_arguments.begin()) {
            p_text.pushBackAsciiCharacter(' ');
        }
        if (!argument.isEmpty() && strpbrk(argument.getData(), " \t\r\n\"'\\") == nullptr) {
            p_text += argument;
            continue;
        }
        p_text.pushBackAsciiCharacter('"');
        for (const char* byte = argument.getData(); *byte != 0; ++byte) {
            if (*byte == '"' || *byte == '\\') {
                p_text.pushBackAsciiCharacter('\\');
            }
            p_text.pushBackAsciiCharacter(*byte);
        }
        p_text.pushBackAsciiCharacter('"');
    }
}

bool_t zyr_splitArguments(const String& p_text, Array<String>& p_arguments) {
    p_arguments.clear();
    String argument;
    bool isOpen = false;
    char quote = 0;
    for (const char* byte = p_text.getData(); *byte != 0; ++byte) {
        if (*byte == '\\' && quote != '\'' && byte[1] != 0) {
            argument.pushBackAsciiCharacter(*++byte);
            isOpen = true;
        } else if (quote != 0 && *byte == quote) {
            quote = 0;
        } else if (quote == 0 && (*byte == '"' || *byte == '\'')) {
            quote = *byte;
            isOpen = true;
        } else if (quote == 0 && strchr(" \t\r\n", *byte) != nullptr) {
            if (isOpen) {
                p_arguments.pushBack(argument);
            }
            argument.clear();
            isOpen = false;
        } else {
            argument.pushBackAsciiCharacter(*byte);
            isOpen = true;
        }
    }
    if (quote != 0) {
        p_arguments.clear();
        return 0;
    }
    if (isOpen) {
        p_arguments.pushBack(argument);
    }
    return 1;
}

} // namespace zyr
