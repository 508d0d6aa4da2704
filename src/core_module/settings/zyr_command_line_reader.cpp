#include "core_module/settings/zyr_command_line_reader.h"

namespace zyr {

namespace {

bool isNumberLike(char p_byte) {
    return (p_byte >= '0' && p_byte <= '9') || p_byte == '.';
}

} // namespace

bool CommandLineReader::read(CommandLineOption& p_option) {
    for (; m_next < m_arguments.getSize(); ++m_next) {
        const String& argument = m_arguments[m_next];
        const char* text = argument.getData();
        p_option = CommandLineOption();
        p_option.m_argument = m_next;
        if (m_letter != 0) {
            return readShort(argument, p_option);
        }
        if (strcmp(text, "--") == 0) {
            m_next = m_arguments.getSize();
            return false;
        }
        // A hyphen alone stands for the standard input, and one in front of a digit is a sign, unless it is an option.
        if (text[0] == '-' && text[1] == '-') {
            return readLong(argument, p_option);
        }
        if (text[0] == '-' && text[1] != 0 && (!isNumberLike(text[1]) || isShortOption(argument))) {
            m_letter = 1;
            return readShort(argument, p_option);
        }
    }
    return false;
}

bool CommandLineReader::isShortOption(const String& p_argument) const {
    CommandLineOption option;
    findShort(String(p_argument.getData() + 1), option);
    if (option.m_setting == nullptr) {
        findShort(String(p_argument.getData() + 1, 1), option);
    }
    return option.m_setting != nullptr;
}

bool CommandLineReader::readLong(const String& p_argument, CommandLineOption& p_option) {
    ++m_next;
    const char* name = p_argument.getData() + 2;
    const char* sign = strchr(name, '=');
    const size_t length = sign != nullptr ? static_cast<size_t>(sign - name) : strlen(name);
    const String key = length != 0 ? String(name, length) : String();
    p_option.m_name = "--";
    p_option.m_name += key;
    findLong(key, p_option);
    if (sign != nullptr) {
        p_option.m_value = sign + 1;
        p_option.m_hasValue = true;
    } else {
        takeValue(p_option);
    }
    return true;
}

/// One letter of a bundle. An option with a value takes the rest of the argument, or the next one.
bool CommandLineReader::readShort(const String& p_argument, CommandLineOption& p_option) {
    const size_t length = p_argument.getLengthInBytes();
    size_t size = 0;
    const char* letter = p_argument.getCharacter(m_letter, size);
    size = size == 0 ? 1 : size < length - m_letter ? size : length - m_letter; // The character may be cut off.
    const String name(letter, size);
    p_option.m_name = "-";
    p_option.m_name += name;
    // A short option may have more than one letter; it then stands alone.
    if (m_letter == 1) {
        const String whole(p_argument.getData() + 1);
        findShort(whole, p_option);
        if (p_option.m_setting != nullptr) {
            p_option.m_name = p_argument;
            m_letter = 0;
            ++m_next;
            takeValue(p_option);
            return true;
        }
    }
    findShort(name, p_option);
    m_letter += size;
    const bool isBoolean = p_option.m_setting != nullptr && p_option.m_setting->getType() == ZYR_VARIABLE_BOOL;
    if (m_letter < length && isBoolean) {
        return true; // The next letter is an option too.
    }
    const char* rest = p_argument.getData() + m_letter;
    m_letter = 0;
    ++m_next;
    if (*rest == 0) {
        takeValue(p_option);
    } else if (p_option.m_setting != nullptr) {
        p_option.m_value = *rest == '=' ? rest + 1 : rest;
        p_option.m_hasValue = true;
    }
    return true;
}

/// A Boolean takes none from the next argument.
void CommandLineReader::takeValue(CommandLineOption& p_option) {
    const bool wantsValue = p_option.m_setting != nullptr && p_option.m_setting->getType() != ZYR_VARIABLE_BOOL;
    if (wantsValue && m_next < m_arguments.getSize()) {
        p_option.m_value = m_arguments[m_next];
        p_option.m_hasValue = true;
        ++m_next;
    }
}

void CommandLineReader::findLong(const String& p_name, CommandLineOption& p_option) const {
    for (const SettingValue* setting : m_settings) {
        const bool disables = setting->getCmdNameDisable() == p_name;
        if (!p_name.isEmpty() && (disables || setting->getCmdName() == p_name)) {
            p_option.m_setting = setting;
            p_option.m_disables = disables;
            return;
        }
    }
}

void CommandLineReader::findShort(const String& p_name, CommandLineOption& p_option) const {
    for (const SettingValue* setting : m_settings) {
        const bool disables = setting->getCmdShortDisable() == p_name;
        if (!p_name.isEmpty() && (disables || setting->getCmdShort() == p_name)) {
            p_option.m_setting = setting;
            p_option.m_disables = disables;
            return;
        }
    }
}

} // namespace zyr
