/// The class of the settings handler.
#pragma once

#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/settings/zyr_settings_handler.h"

namespace zyr {

/// A copy has no settings, since they can't be asked for. A handler has no fields in a stream.
class SettingsHandlerLevel : public UnstoredLevel<ObjectLevel<ISettingsHandler>, ISettingsHandler> {
public:
    ~SettingsHandlerLevel() override { release_This(); }

    void insertBool(bool_t* p_variable, bool_t p_default, const String& p_regName, const String& p_regPath,
                    const String& p_envName, const String& p_confName, const String& p_confSection,
                    const String& p_cmdShort, const String& p_cmdShortDisable, const String& p_cmdName,
                    const String& p_cmdNameDisable, const String& p_cmdDesc, const String& p_cmdDescDisable) override;
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    void insert##suffix(type* p_variable, type p_default, type p_minimum, type p_maximum, const String& p_regName,     \
                        const String& p_regPath, const String& p_envName, const String& p_confName,                    \
                        const String& p_confSection, const String& p_cmdShort, const String& p_cmdName,                \
                        const String& p_cmdDesc) override;
#include "zyr_common/documents/zyr_raw_numbers.inl"
    void insertString(String* p_variable, const String& p_default, const String& p_regName, const String& p_regPath,
                      const String& p_envName, const String& p_confName, const String& p_confSection,
                      const String& p_cmdShort, const String& p_cmdName, const String& p_cmdDesc) override;
    void insertEnum(int* p_variable, const String& p_default, const String& p_regName, const String& p_regPath,
                    const String& p_envName, const String& p_confName, const String& p_confSection,
                    const String& p_cmdShort, const String& p_cmdName, const String& p_cmdDesc,
                    settingEnum_FUNC p_callback) override;

    bool_t transfer(bool_t p_environment, const String& p_commandLine, bool_t p_registry,
                    const String& p_configurationFile) const override;
    void printCommandLineArguments(uint32_t p_width) const override;
    bool_t selectCommandLineArgument(const String& p_option, size_t& p_index,
                                     const Array<String>& p_arguments) const override;
    ILevelReserved* getSettingsHandlerReserved() const override {
        return &m_settingsHandlerReserved;
    }

    void init_This() {}
    void release_This();
    void copy_This(const ISettingsHandler*) {}

private:
    /// Takes the setting over.
    void add(SettingValue* p_setting, const String& p_regName, const String& p_regPath, const String& p_envName,
             const String& p_confName, const String& p_confSection, const String& p_cmdShort, const String& p_cmdName,
             const String& p_cmdDesc);
    bool transferRegistry() const;
    bool transferConfiguration(const String& p_path) const;
    bool transferEnvironment() const;
    bool transferCommandLine(const String& p_commandLine) const;

    Array<SettingValue*> m_settings;
    mutable LevelReserved<SettingsHandlerLevel> m_settingsHandlerReserved{this};
};

using SettingsHandler = Implementation<SettingsHandlerLevel>;

} // namespace zyr
