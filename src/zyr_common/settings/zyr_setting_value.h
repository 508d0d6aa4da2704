/// One program option: where its value lives, its default and range, and the name under which each source knows it.
///
///     SettingValue setting;
///     setting.setReferenceInt32(&quality, 50, 0, 100);
///     setting.setEnvName("ZYR_HOST_QUALITY");
///
/// Not thread safe.
#pragma once

#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/variable/zyr_variable_reference.h"

namespace zyr {

/// Converts between the word of an enumeration and its number, as the flag says. False for what is not among them.
typedef bool_t (*settingEnum_FUNC)(String& p_word, int& p_number, bool_t p_toNumber);

#pragma pack(push, 1)

/// The variable belongs to the program and must outlive the setting. A getter gives its address with the stored default
/// and range; it doesn't look at the type. Without a variable it gives null, and the outputs stay as they are.
///
/// The order of the virtual operations and of the fields is a contract between separately built modules.
///
///     int level = 0;
///     setting.setReferenceEnum(&level, "WARN", &convertLevelWord);
///     setting.setConfSection("log");
///     setting.setConfName("level");   // [log] level = "ERROR"
///     setting.setCmdName("log-level"); // --log-level ERROR
class SettingValue : public RefCountedData {
public:
    /// Stands for no variable and has no names.
    SettingValue() { init_This(); }
    /// Stands for the same variable, with the same default, range and names.
    SettingValue(const SettingValue& p_src) : RefCountedData(p_src) {
        init_This();
        copy_This(p_src);
    }
    /// The same; the count stays.
    SettingValue& operator=(const SettingValue& p_src);
    ~SettingValue() override { release_This(); }

    /// A copy with a count of its own, which the caller owns; it stands for the same variable.
    SettingValue* clone() const override { return new SettingValue(*this); }

    /// Forgets the variable, its range and all names.
    virtual void clear() {
        release_This();
        init_This();
    }
    /// The type of the variable, ZYR_VARIABLE_NONE without one.
    virtual VariableTypeEnum getType() const;

    /// For each type the pair of getter and setter. A setter takes the address, the default and, for numbers, the
    /// smallest and largest value that sources may give, both included; it doesn't touch the variable.
    virtual void* getReferenceBool(bool_t& p_default) const;
    virtual void setReferenceBool(bool_t* p_variable, bool_t p_default);
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    virtual void* getReference##suffix(type& p_default, type& p_minimum, type& p_maximum) const;                       \
    virtual void setReference##suffix(type* p_variable, type p_default, type p_minimum, type p_maximum);
#include "zyr_common/documents/zyr_raw_numbers.inl"
    /// Any text is allowed.
    virtual void* getReferenceString(String& p_default) const;
    virtual void setReferenceString(String* p_variable, const String& p_default);
    /// A number that is given as a word; the callback knows the words. The default is a word too.
    virtual void* getReferenceEnum(String& p_default, settingEnum_FUNC& p_callback) const;
    virtual void setReferenceEnum(int* p_variable, const String& p_default, settingEnum_FUNC p_callback);

    // Where the value is looked for. An empty name means that this source doesn't know the setting. The texts are
    // copied, and a getter's text is valid until it is set anew.

    /// The value's name in the registry, and the path of the key that it stands under.
    virtual const String& getRegName() const {
        return m_regName;
    }
    /// Empty at first, like all names below.
    virtual void setRegName(const String& p_name) {
        m_regName = p_name;
    }
    virtual const String& getRegPath() const {
        return m_regPath;
    }
    virtual void setRegPath(const String& p_path) {
        m_regPath = p_path;
    }
    /// The environment variable.
    virtual const String& getEnvName() const {
        return m_envName;
    }
    virtual void setEnvName(const String& p_name) {
        m_envName = p_name;
    }
    /// The name in a settings file, and the section that it stands in.
    virtual const String& getConfName() const {
        return m_confName;
    }
    virtual void setConfName(const String& p_name) {
        m_confName = p_name;
    }
    virtual const String& getConfSection() const {
        return m_confSection;
    }
    virtual void setConfSection(const String& p_section) {
        m_confSection = p_section;
    }
    /// The option of one letter on the command line; the "disable" forms switch a truth value off.
    virtual const String& getCmdShort() const {
        return m_cmdShort;
    }
    virtual void setCmdShort(const String& p_option) {
        m_cmdShort = p_option;
    }
    virtual const String& getCmdShortDisable() const {
        return m_cmdShortDisable;
    }
    virtual void setCmdShortDisable(const String& p_option) {
        m_cmdShortDisable = p_option;
    }
    /// The long option, without its dashes.
    virtual const String& getCmdName() const {
        return m_cmdName;
    }
    virtual void setCmdName(const String& p_option) {
        m_cmdName = p_option;
    }
    virtual const String& getCmdNameDisable() const {
        return m_cmdNameDisable;
    }
    virtual void setCmdNameDisable(const String& p_option) {
        m_cmdNameDisable = p_option;
    }
    /// The lines of the help text.
    virtual const String& getCmdDesc() const {
        return m_cmdDesc;
    }
    virtual void setCmdDesc(const String& p_text) {
        m_cmdDesc = p_text;
    }
    virtual const String& getCmdDescDisable() const {
        return m_cmdDescDisable;
    }
    virtual void setCmdDescDisable(const String& p_text) {
        m_cmdDescDisable = p_text;
    }

    /// The state of a new setting. Frees nothing.
    void init_This();
    /// Frees what the setting holds of its variable; the variable itself stays.
    void release_This();
    /// Takes everything over, with a reference of its own; what is held of a former variable is freed.
    void copy_This(const SettingValue& p_src);

protected:
    /// Replaces the variable; null stands for none.
    void setReference(VariableTypeEnum p_type, void* p_variable);
    /// What all getters of numbers do; see the class.
    template <typename T> void* getRange(T& p_default, T& p_minimum, T& p_maximum) const;
    /// What all setters of numbers do.
    template <typename T> void setRange(T* p_variable, T p_default, T p_minimum, T p_maximum);

    /// owned; null without a variable
    VariableReference* m_reference;
    // In the type of the variable, from the first byte on.
    unsigned char m_default[8];
    unsigned char m_minimum[8];
    unsigned char m_maximum[8];
    /// the default of texts and enumerations
    String m_defaultString;
    String m_regName;
    String m_regPath;
    String m_envName;
    String m_confName;
    String m_confSection;
    String m_cmdShort;
    String m_cmdShortDisable;
    String m_cmdName;
    String m_cmdNameDisable;
    String m_cmdDesc;
    String m_cmdDescDisable;
    /// knows the words of an enumeration; null for all other types
    settingEnum_FUNC m_enumCallback;
};

#pragma pack(pop)

static_assert(sizeof(SettingValue) == 1408 && alignof(SettingValue) == 1);

} // namespace zyr
