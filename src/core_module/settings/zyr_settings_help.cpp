#include "core_module/settings/zyr_settings_help.h"

#include "core_module/settings/zyr_setting_text.h"

namespace zyr {

namespace {

constexpr size_t DEFAULT_WIDTH = 80;
constexpr size_t MARGIN = 2;
/// Options that are longer have their description below.
constexpr size_t MAX_OPTION_WIDTH = 26;
/// Of a description, however narrow the line is.
constexpr size_t MIN_TEXT_WIDTH = 20;

const char* getValueWord(const SettingValue& p_setting) {
    switch (p_setting.getType()) {
    case ZYR_VARIABLE_BOOL:
        return "";
    case ZYR_VARIABLE_STRING:
        return "TEXT";
    case ZYR_VARIABLE_ENUM:
        return "WORD";
    default:
        return "NUMBER";
    }
}

/// "-q, --quality NUMBER"; empty without an option.
String makeOption(const String& p_short, const String& p_long, const char* p_value) {
    String text;
    if (!p_short.isEmpty()) {
        text += "-";
        text += p_short;
    }
    if (!p_long.isEmpty()) {
        text += p_short.isEmpty() ? "    --" : ", --";
        text += p_long;
    }
    if (!text.isEmpty() && *p_value != 0) {
        text += " ";
        text += p_value;
    }
    return text;
}

void addBlanks(String& p_out, size_t p_count) {
    for (size_t i = 0; i < p_count; ++i) {
        p_out.pushBackAsciiCharacter(' ');
    }
}

/// Words of a description, broken where the line ends.
void addWords(String& p_out, const String& p_text, size_t p_column, size_t p_width) {
    size_t column = 0;
    for (const char* word = p_text.getData(); *word != 0;) {
        const size_t length = strcspn(word, " \n");
        if (length != 0) {
            const String text(word, length);
            const size_t width = text.getLengthInCharacters(false);
            if (column != 0 && column + 1 + width > p_width) {
                p_out.pushBackAsciiCharacter('\n');
                addBlanks(p_out, p_column);
                column = 0;
            } else if (column != 0) {
                p_out.pushBackAsciiCharacter(' ');
                ++column;
            }
            p_out += text;
            column += width;
        }
        word += length + (word[length] != 0 ? 1 : 0);
    }
}

void addLine(String& p_out, const String& p_option, const String& p_text, size_t p_optionWidth, size_t p_width) {
    if (p_option.isEmpty()) {
        return;
    }
    const size_t column = MARGIN + p_optionWidth + MARGIN;
    const size_t width = p_option.getLengthInCharacters(false);
    addBlanks(p_out, MARGIN);
    p_out += p_option;
    if (!p_text.isEmpty()) {
        if (width > p_optionWidth) {
            p_out.pushBackAsciiCharacter('\n');
            addBlanks(p_out, column);
        } else {
            addBlanks(p_out, column - MARGIN - width);
        }
        addWords(p_out, p_text, column, p_width > column + MIN_TEXT_WIDTH ? p_width - column : MIN_TEXT_WIDTH);
    }
    p_out.pushBackAsciiCharacter('\n');
}

} // namespace

String makeSettingsHelp(const Array<SettingValue*>& p_settings, uint32_t p_width) {
    size_t optionWidth = 0;
    for (const SettingValue* setting : p_settings) {
        for (const String& option : {makeOption(setting->getCmdShort(), setting->getCmdName(), getValueWord(*setting)),
                                     makeOption(setting->getCmdShortDisable(), setting->getCmdNameDisable(), "")}) {
            const size_t width = option.getLengthInCharacters(false);
            optionWidth = width > optionWidth && width <= MAX_OPTION_WIDTH ? width : optionWidth;
        }
    }
    String help;
    const size_t width = p_width != 0 ? p_width : DEFAULT_WIDTH;
    for (const SettingValue* setting : p_settings) {
        String text = setting->getCmdDesc();
        const String values = describeSettingValues(*setting);
        if (!values.isEmpty()) {
            text += text.isEmpty() ? "(default: " : " (default: ";
            text += values;
            text += ")";
        }
        addLine(help, makeOption(setting->getCmdShort(), setting->getCmdName(), getValueWord(*setting)), text,
                optionWidth, width);
        addLine(help, makeOption(setting->getCmdShortDisable(), setting->getCmdNameDisable(), ""),
                setting->getCmdDescDisable(), optionWidth, width);
    }
    return help;
}

} // namespace zyr
