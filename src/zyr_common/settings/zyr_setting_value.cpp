#include "zyr_common/settings/zyr_setting_value.h"

namespace zyr {

SettingValue& SettingValue::operator=(const SettingValue& p_src) {
    if (this != &p_src) {
        clear();
        copy_This(p_src);
    }
    return *this;
}

VariableTypeEnum SettingValue::getType() const {
    return m_reference != nullptr ? m_reference->getType() : ZYR_VARIABLE_NONE;
}

void SettingValue::setReference(VariableTypeEnum p_type, void* p_variable) {
    if (m_reference != nullptr) {
        m_reference->release();
    }
    m_reference = new VariableReference(p_type, p_variable);
}

template <typename T> void* SettingValue::getRange(T& p_default, T& p_minimum, T& p_maximum) const {
    if (m_reference == nullptr) {
        return nullptr;
    }
    memcpy(&p_default, m_default, sizeof(T));
    memcpy(&p_minimum, m_minimum, sizeof(T));
    memcpy(&p_maximum, m_maximum, sizeof(T));
    return m_reference->getPointer();
}

template <typename T> void SettingValue::setRange(T* p_variable, T p_default, T p_minimum, T p_maximum) {
    setReference(zyr_getVariableTypeEnum(p_variable), p_variable);
    memcpy(m_default, &p_default, sizeof(T));
    memcpy(m_minimum, &p_minimum, sizeof(T));
    memcpy(m_maximum, &p_maximum, sizeof(T));
}

void* SettingValue::getReferenceBool(bool_t& p_default) const {
    if (m_reference == nullptr) {
        return nullptr;
    }
    p_default = m_default[0];
    return m_reference->getPointer();
}

void SettingValue::setReferenceBool(bool_t* p_variable, bool_t p_default) {
    setReference(ZYR_VARIABLE_BOOL, p_variable);
    m_default[0] = p_default;
}

#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    void* SettingValue::getReference##suffix(type& p_default, type& p_minimum, type& p_maximum) const {                \
        return getRange(p_default, p_minimum, p_maximum);                                                              \
    }                                                                                                                  \
    void SettingValue::setReference##suffix(type* p_variable, type p_default, type p_minimum, type p_maximum) {        \
        setRange(p_variable, p_default, p_minimum, p_maximum);                                                         \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"

void* SettingValue::getReferenceString(String& p_default) const {
    if (m_reference == nullptr) {
        return nullptr;
    }
    p_default = m_defaultString;
    return m_reference->getPointer();
}

void SettingValue::setReferenceString(String* p_variable, const String& p_default) {
    setReference(ZYR_VARIABLE_STRING, p_variable);
    m_defaultString = p_default;
}

void* SettingValue::getReferenceEnum(String& p_default, settingEnum_FUNC& p_callback) const {
    if (m_reference == nullptr) {
        return nullptr;
    }
    p_default = m_defaultString;
    p_callback = m_enumCallback;
    return m_reference->getPointer();
}

void SettingValue::setReferenceEnum(int* p_variable, const String& p_default, settingEnum_FUNC p_callback) {
    setReference(ZYR_VARIABLE_ENUM, p_variable);
    m_defaultString = p_default;
    m_enumCallback = p_callback;
}

void SettingValue::init_This() {
    m_reference = nullptr;
    memset(m_default, 0, sizeof(m_default));
    memset(m_minimum, 0, sizeof(m_minimum));
    memset(m_maximum, 0, sizeof(m_maximum));
    for (String* text : {&m_defaultString, &m_regName, &m_regPath, &m_envName, &m_confName, &m_confSection, &m_cmdShort,
                         &m_cmdShortDisable, &m_cmdName, &m_cmdNameDisable, &m_cmdDesc, &m_cmdDescDisable}) {
        text->clear();
    }
    m_enumCallback = nullptr;
}

void SettingValue::release_This() {
    if (m_reference != nullptr) {
        m_reference->release();
        m_reference = nullptr;
    }
}

void SettingValue::copy_This(const SettingValue& p_src) {
    if (p_src.m_reference != nullptr) {
        setReference(p_src.m_reference->getType(), p_src.m_reference->getPointer());
    } else {
        release_This();
    }
    memcpy(m_default, p_src.m_default, sizeof(m_default));
    memcpy(m_minimum, p_src.m_minimum, sizeof(m_minimum));
    memcpy(m_maximum, p_src.m_maximum, sizeof(m_maximum));
    m_defaultString = p_src.m_defaultString;
    m_regName = p_src.m_regName;
    m_regPath = p_src.m_regPath;
    m_envName = p_src.m_envName;
    m_confName = p_src.m_confName;
    m_confSection = p_src.m_confSection;
    m_cmdShort = p_src.m_cmdShort;
    m_cmdShortDisable = p_src.m_cmdShortDisable;
    m_cmdName = p_src.m_cmdName;
    m_cmdNameDisable = p_src.m_cmdNameDisable;
    m_cmdDesc = p_src.m_cmdDesc;
    m_cmdDescDisable = p_src.m_cmdDescDisable;
    m_enumCallback = p_src.m_enumCallback;
}

} // namespace zyr
