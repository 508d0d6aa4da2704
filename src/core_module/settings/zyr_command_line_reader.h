/// The command line of a settings handler.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/settings/zyr_setting_value.h"

namespace zyr {

/// What one occurrence of an option says.
struct CommandLineOption {
    const SettingValue* m_setting = nullptr; ///< null for an option that nobody knows
    size_t m_argument = 0;                   ///< its place among the arguments
    String m_name;                           ///< as it stands there, with its hyphens
    String m_value;
    bool m_hasValue = false; ///< a Boolean without one is turned on, or off by its disabling form
    bool m_disables = false;
};

/// Steps through the options of a command line, see ISettingsHandler for their forms.
class CommandLineReader {
public:
    /// Both arrays must outlive this.
    CommandLineReader(const Array<SettingValue*>& p_settings, const Array<String>& p_arguments, size_t p_first)
        : m_settings(p_settings), m_arguments(p_arguments), m_next(p_first), m_letter(0) {}

    /// The next option. False at the end of them.
    bool read(CommandLineOption& p_option);

private:
    /// Whether the argument, which begins with a hyphen, or its first letter is one of the settings' options.
    bool isShortOption(const String& p_argument) const;
    bool readLong(const String& p_argument, CommandLineOption& p_option);
    bool readShort(const String& p_argument, CommandLineOption& p_option);
    void takeValue(CommandLineOption& p_option);
    void findLong(const String& p_name, CommandLineOption& p_option) const;
    void findShort(const String& p_name, CommandLineOption& p_option) const;

    const Array<SettingValue*>& m_settings;
    const Array<String>& m_arguments;
    size_t m_next;
    /// The place in a bundle of short options; 0 outside of one.
    size_t m_letter;
};

} // namespace zyr
