/// The options of a program: a collection of settings, and the transfer of values from their sources into the program's
/// variables.
///
///     ISettingsHandler* handler = zyr_createObject<ISettingsHandler>();
///     int quality;
///     handler->insertInt32(&quality, 50, 0, 100, "", "", "ZYR_HOST_QUALITY", "quality", "stream", "q", "quality",
///                          "0 (small) to 100 (good)");
///     const bool_t done = handler->transfer(1, commandLine, 0, "/etc/zyr-host.conf");
///     handler->release();
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_object.h"
#include "zyr_common/settings/zyr_setting_value.h"

namespace zyr {

/// Inserting a setting sets its variable to the default, held inside the range. The variable belongs to the program and
/// must outlive the handler; without one nothing is inserted, which leaves a line in the log. An empty name means that
/// the source doesn't know the setting. Options are named without their hyphens.
///
/// Sources, the stronger first: command line, environment, configuration file, registry. A variable that no source
/// gives keeps its value. Numbers are decimal, or hexadecimal behind 0x; a Boolean is one of 1, true, yes, on and 0,
/// false, no, off, in any case; a number outside of its range, a word that the enumeration doesn't have and what is no
/// number at all leave a line in the log and the variable as it was, and make the transfer false.
///
/// The command line: "--name value", "--name=value", "-s value", "-svalue"; Booleans "--name", "--name=off", "-s",
/// bundled as in "-abc", and their disabling forms; a later option is the stronger one. "--" ends the options, and so
/// what doesn't begin with a hyphen is no option and is left to the program. An unknown option is a fault.
class ISettingsHandler : public IObject {
public:
    // The names are those of SettingValue, in the order of its fields.
    virtual void insertBool(bool_t* p_variable, bool_t p_default, const String& p_regName, const String& p_regPath,
                            const String& p_envName, const String& p_confName, const String& p_confSection,
                            const String& p_cmdShort, const String& p_cmdShortDisable, const String& p_cmdName,
                            const String& p_cmdNameDisable, const String& p_cmdDesc,
                            const String& p_cmdDescDisable) = 0;
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    virtual void insert##suffix(type* p_variable, type p_default, type p_minimum, type p_maximum,                      \
                                const String& p_regName, const String& p_regPath, const String& p_envName,             \
                                const String& p_confName, const String& p_confSection, const String& p_cmdShort,       \
                                const String& p_cmdName, const String& p_cmdDesc) = 0;
#include "zyr_common/documents/zyr_raw_numbers.inl"
    /// A text; the variable belongs to the program, as with all of these.
    virtual void insertString(String* p_variable, const String& p_default, const String& p_regName,
                              const String& p_regPath, const String& p_envName, const String& p_confName,
                              const String& p_confSection, const String& p_cmdShort, const String& p_cmdName,
                              const String& p_cmdDesc) = 0;
    /// A number that is given as a word.
    virtual void insertEnum(int* p_variable, const String& p_default, const String& p_regName, const String& p_regPath,
                            const String& p_envName, const String& p_confName, const String& p_confSection,
                            const String& p_cmdShort, const String& p_cmdName, const String& p_cmdDesc,
                            settingEnum_FUNC p_callback) = 0;

    /// Sets the variables from the sources: the environment with the first flag set; the command line, whose arguments
    /// are joined by zyr_joinArguments(), without the program's name; the registry with the second flag set; the
    /// configuration file, which need not exist. An empty text means no such source. Gives false when anything was
    /// wrong; what was right is transferred all the same. There is no registry here: asking for it leaves a line in
    /// the log for each setting that has a name there, and gives false.
    virtual bool_t transfer(bool_t p_environment, const String& p_commandLine, bool_t p_registry,
                            const String& p_configurationFile) const = 0;
    /// Prints the options to the standard output, a line each, with the descriptions in a column of their own; longer
    /// ones go on below. p_width is the width of a line in columns, 0 for 80.
    virtual void printCommandLineArguments(uint32_t p_width) const = 0;
    /// Looks for a long or short option among arguments, from the index on and up to "--". Gives true and the index of
    /// the argument that has it ("--name", "--name=value", "-s", "-svalue", or "-abs" where a and b are Booleans).
    /// Gives false and leaves the index without such an argument.
    virtual bool_t selectCommandLineArgument(const String& p_option, size_t& p_index,
                                             const Array<String>& p_arguments) const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getSettingsHandlerReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(SettingsHandler, IObject, "ecd42998-fce1-42d6-91a9-9abd4898bc36")

/// Forwards each operation to the SettingsHandler of its module; what extends that class derives from this.
template <class Interface> class SettingsHandlerFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    void insertBool(bool_t* p_variable, bool_t p_default, const String& p_regName, const String& p_regPath,
                    const String& p_envName, const String& p_confName, const String& p_confSection,
                    const String& p_cmdShort, const String& p_cmdShortDisable, const String& p_cmdName,
                    const String& p_cmdNameDisable, const String& p_cmdDesc, const String& p_cmdDescDisable) override {
        m_interfaceObject->insertBool(p_variable, p_default, p_regName, p_regPath, p_envName, p_confName, p_confSection,
                                      p_cmdShort, p_cmdShortDisable, p_cmdName, p_cmdNameDisable, p_cmdDesc,
                                      p_cmdDescDisable);
    }
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    void insert##suffix(type* p_variable, type p_default, type p_minimum, type p_maximum, const String& p_regName,     \
                        const String& p_regPath, const String& p_envName, const String& p_confName,                    \
                        const String& p_confSection, const String& p_cmdShort, const String& p_cmdName,                \
                        const String& p_cmdDesc) override {                                                            \
        m_interfaceObject->insert##suffix(p_variable, p_default, p_minimum, p_maximum, p_regName, p_regPath,           \
                                          p_envName, p_confName, p_confSection, p_cmdShort, p_cmdName, p_cmdDesc);     \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    void insertString(String* p_variable, const String& p_default, const String& p_regName, const String& p_regPath,
                      const String& p_envName, const String& p_confName, const String& p_confSection,
                      const String& p_cmdShort, const String& p_cmdName, const String& p_cmdDesc) override {
        m_interfaceObject->insertString(p_variable, p_default, p_regName, p_regPath, p_envName, p_confName,
                                        p_confSection, p_cmdShort, p_cmdName, p_cmdDesc);
    }
    void insertEnum(int* p_variable, const String& p_default, const String& p_regName, const String& p_regPath,
                    const String& p_envName, const String& p_confName, const String& p_confSection,
                    const String& p_cmdShort, const String& p_cmdName, const String& p_cmdDesc,
                    settingEnum_FUNC p_callback) override {
        m_interfaceObject->insertEnum(p_variable, p_default, p_regName, p_regPath, p_envName, p_confName, p_confSection,
                                      p_cmdShort, p_cmdName, p_cmdDesc, p_callback);
    }
    bool_t transfer(bool_t p_environment, const String& p_commandLine, bool_t p_registry,
                    const String& p_configurationFile) const override {
        return m_interfaceObject->transfer(p_environment, p_commandLine, p_registry, p_configurationFile);
    }
    void printCommandLineArguments(uint32_t p_width) const override {
        m_interfaceObject->printCommandLineArguments(p_width);
    }
    bool_t selectCommandLineArgument(const String& p_option, size_t& p_index,
                                     const Array<String>& p_arguments) const override {
        return m_interfaceObject->selectCommandLineArgument(p_option, p_index, p_arguments);
    }
    ILevelReserved* getSettingsHandlerReserved() const override {
        return m_interfaceObject->getSettingsHandlerReserved();
    }
};

using WSettingsHandler = SettingsHandlerFacade<ISettingsHandler>;

} // namespace zyr
