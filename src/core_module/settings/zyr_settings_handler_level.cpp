#include "core_module/settings/zyr_settings_handler_level.h"

#include "core_module/settings/zyr_command_line_reader.h"
#include "core_module/settings/zyr_setting_text.h"
#include "core_module/settings/zyr_settings_help.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/documents/zyr_config_parser.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/platform/zyr_environment.h"
#include "zyr_common/platform/zyr_stubs.h"
#include "zyr_common/settings/zyr_argument_text.h"

#include <cerrno>
#include <cstdio>

namespace zyr {

namespace {

enum class FileState { GOOD, ABSENT, FAULTY };

FileState readFile(const String& p_path, Array<unsigned char>& p_bytes) {
    FILE* file = fopen(p_path.getData(), "rb");
    if (file == nullptr) {
        return errno == ENOENT || errno == ENOTDIR ? FileState::ABSENT : FileState::FAULTY;
    }
    unsigned char block[4096];
    size_t size = 0;
    while ((size = fread(block, 1, sizeof(block), file)) != 0) {
        p_bytes.pushBackRange(block, size);
    }
    const bool isGood = ferror(file) == 0;
    fclose(file);
    return isGood ? FileState::GOOD : FileState::FAULTY;
}

/// The last value of the name in the section, which is the one that counts; null without one.
const String* findValue(const List<ConfigSection*>& p_sections, const String& p_section, const String& p_name) {
    const String* value = nullptr;
    for (const ConfigSection* section : p_sections) {
        if (section->getName() != p_section) {
            continue;
        }
        for (const ConfigPair* pair : section->getPairs()) {
            value = pair->getName() == p_name ? &pair->getValue() : value;
        }
    }
    return value;
}

} // namespace

void SettingsHandlerLevel::add(SettingValue* p_setting, const String& p_regName, const String& p_regPath,
                               const String& p_envName, const String& p_confName, const String& p_confSection,
                               const String& p_cmdShort, const String& p_cmdName, const String& p_cmdDesc) {
    bool_t initial = 0;
    if (p_setting->getReferenceBool(initial) == nullptr) { // It gives the variable of any type.
        ZYR_LOG_WARN("Unable to add setting %s: it has no variable", p_cmdName.getData());
        p_setting->release();
        return;
    }
    p_setting->setRegName(p_regName);
    p_setting->setRegPath(p_regPath);
    p_setting->setEnvName(p_envName);
    p_setting->setConfName(p_confName);
    p_setting->setConfSection(p_confSection);
    p_setting->setCmdShort(p_cmdShort);
    p_setting->setCmdName(p_cmdName);
    p_setting->setCmdDesc(p_cmdDesc);
    applySettingDefault(*p_setting);
    m_settings.pushBack(p_setting);
}

void SettingsHandlerLevel::insertBool(bool_t* p_variable, bool_t p_default, const String& p_regName,
                                      const String& p_regPath, const String& p_envName, const String& p_confName,
                                      const String& p_confSection, const String& p_cmdShort,
                                      const String& p_cmdShortDisable, const String& p_cmdName,
                                      const String& p_cmdNameDisable, const String& p_cmdDesc,
                                      const String& p_cmdDescDisable) {
    SettingValue* setting = new SettingValue;
    setting->setReferenceBool(p_variable, p_default);
    setting->setCmdShortDisable(p_cmdShortDisable);
    setting->setCmdNameDisable(p_cmdNameDisable);
    setting->setCmdDescDisable(p_cmdDescDisable);
    add(setting, p_regName, p_regPath, p_envName, p_confName, p_confSection, p_cmdShort, p_cmdName, p_cmdDesc);
}

#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    void SettingsHandlerLevel::insert##suffix(                                                                         \
        type* p_variable, type p_default, type p_minimum, type p_maximum, const String& p_regName,                     \
        const String& p_regPath, const String& p_envName, const String& p_confName, const String& p_confSection,       \
        const String& p_cmdShort, const String& p_cmdName, const String& p_cmdDesc) {                                  \
        SettingValue* setting = new SettingValue;                                                                      \
        setting->setReference##suffix(p_variable, p_default, p_minimum, p_maximum);                                    \
        add(setting, p_regName, p_regPath, p_envName, p_confName, p_confSection, p_cmdShort, p_cmdName, p_cmdDesc);    \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"

void SettingsHandlerLevel::insertString(String* p_variable, const String& p_default, const String& p_regName,
                                        const String& p_regPath, const String& p_envName, const String& p_confName,
                                        const String& p_confSection, const String& p_cmdShort, const String& p_cmdName,
                                        const String& p_cmdDesc) {
    SettingValue* setting = new SettingValue;
    setting->setReferenceString(p_variable, p_default);
    add(setting, p_regName, p_regPath, p_envName, p_confName, p_confSection, p_cmdShort, p_cmdName, p_cmdDesc);
}

void SettingsHandlerLevel::insertEnum(int* p_variable, const String& p_default, const String& p_regName,
                                      const String& p_regPath, const String& p_envName, const String& p_confName,
                                      const String& p_confSection, const String& p_cmdShort, const String& p_cmdName,
                                      const String& p_cmdDesc, settingEnum_FUNC p_callback) {
    SettingValue* setting = new SettingValue;
    setting->setReferenceEnum(p_variable, p_default, p_callback);
    add(setting, p_regName, p_regPath, p_envName, p_confName, p_confSection, p_cmdShort, p_cmdName, p_cmdDesc);
}

void SettingsHandlerLevel::release_This() {
    for (SettingValue* setting : m_settings) {
        setting->release();
    }
    m_settings.clear();
}

/// The weaker sources first, so that the stronger ones have the last word.
bool_t SettingsHandlerLevel::transfer(bool_t p_environment, const String& p_commandLine, bool_t p_registry,
                                      const String& p_configurationFile) const {
    bool done = !p_registry || transferRegistry();
    done = (p_configurationFile.isEmpty() || transferConfiguration(p_configurationFile)) && done;
    done = (!p_environment || transferEnvironment()) && done;
    return (p_commandLine.isEmpty() || transferCommandLine(p_commandLine)) && done;
}

bool SettingsHandlerLevel::transferRegistry() const {
    for (const SettingValue* setting : m_settings) {
        String text;
        if (!setting->getRegName().isEmpty()) {
            zyr_getRegistryKeyValueString(ZYR_REGISTRY_KEY_LEVEL_USER, setting->getRegPath(), setting->getRegName(),
                                          text);
        }
    }
    return false;
}

bool SettingsHandlerLevel::transferConfiguration(const String& p_path) const {
    const Ref<Array<unsigned char>> bytes = Ref<Array<unsigned char>>::adopt(new Array<unsigned char>);
    const FileState state = readFile(p_path, *bytes);
    if (state != FileState::GOOD) {
        if (state == FileState::FAULTY) {
            ZYR_LOG_WARN("Unable to read configuration file: %s", p_path.getData());
        }
        return state == FileState::ABSENT;
    }
    const Ref<IConfigParser> parser = Ref<IConfigParser>::adopt(zyr_createObject<IConfigParser>());
    parser->setInputData(bytes.get());
    if (!parser->parse()) {
        ZYR_LOG_WARN("Unable to use configuration file: %s", p_path.getData());
        return false;
    }
    bool done = true;
    for (const SettingValue* setting : m_settings) {
        const String& name = setting->getConfName();
        const String* text =
            name.isEmpty() ? nullptr : findValue(parser->getSections(), setting->getConfSection(), name);
        const char* reason = text != nullptr ? applySettingText(*setting, *text) : nullptr;
        if (reason != nullptr) {
            ZYR_LOG_WARN("Unable to set %s to %s from file %s: %s", name.getData(), text->getData(), p_path.getData(),
                         reason);
            done = false;
        }
    }
    return done;
}

bool SettingsHandlerLevel::transferEnvironment() const {
    bool done = true;
    for (const SettingValue* setting : m_settings) {
        const String& name = setting->getEnvName();
        String text;
        if (name.isEmpty() || !zyr_getEnvironmentVariableString(name, text)) {
            continue;
        }
        if (const char* reason = applySettingText(*setting, text)) {
            ZYR_LOG_WARN("Unable to take %s from the environment as %s: %s", text.getData(), name.getData(), reason);
            done = false;
        }
    }
    return done;
}

bool SettingsHandlerLevel::transferCommandLine(const String& p_commandLine) const {
    Array<String> arguments;
    if (!zyr_splitArguments(p_commandLine, arguments)) {
        ZYR_LOG_WARN("Unable to read the command line: a quote is not closed");
        return false;
    }
    bool done = true;
    CommandLineReader reader(m_settings, arguments, 0);
    for (CommandLineOption option; reader.read(option);) {
        const char* reason = nullptr;
        if (option.m_setting == nullptr) {
            reason = "it is unknown";
        } else if (option.m_hasValue && option.m_disables) {
            reason = "it takes no value";
        } else if (!option.m_hasValue && option.m_setting->getType() != ZYR_VARIABLE_BOOL) {
            reason = "it has no value";
        } else {
            const String text = option.m_hasValue ? option.m_value : String(option.m_disables ? "off" : "on");
            reason = applySettingText(*option.m_setting, text);
        }
        if (reason != nullptr) {
            ZYR_LOG_WARN("Unable to use option %s %s: %s", option.m_name.getData(), option.m_value.getData(), reason);
            done = false;
        }
    }
    return done;
}

void SettingsHandlerLevel::printCommandLineArguments(uint32_t p_width) const {
    const String text = makeSettingsHelp(m_settings, p_width);
    fwrite(text.getData(), 1, text.getLengthInBytes(), stdout);
    fflush(stdout);
}

bool_t SettingsHandlerLevel::selectCommandLineArgument(const String& p_option, size_t& p_index,
                                                       const Array<String>& p_arguments) const {
    String longName("--");
    longName += p_option;
    String shortName("-");
    shortName += p_option;
    CommandLineReader reader(m_settings, p_arguments, p_index);
    for (CommandLineOption option; reader.read(option);) {
        if (option.m_name == longName || option.m_name == shortName) {
            p_index = option.m_argument;
            return 1;
        }
    }
    return 0;
}

ZYR_DEFINE_CORE_CLASS(SettingsHandler)

} // namespace zyr
