/// What a configuration text is parsed into: sections with named values. Unlike the elements of JSON and XML these own
/// their texts. Not thread safe.
///
///     [window]         ; a section
///     width = 640      ; a numeric pair
///     title = "Main"   ; a text
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

#pragma pack(push, 1)

/// A name and its value. The order of the virtual operations and of the fields is a contract between separately built
/// modules; the same holds for ConfigSection.
class ConfigPair : public RefCountedData {
public:
    /// Without a name; the value is an empty text.
    ConfigPair() { init_This(); }
    ConfigPair(const String& p_name, const String& p_value, bool_t p_numeric)
        : m_name(p_name), m_value(p_value), m_numeric(p_numeric) {}
    ConfigPair(const ConfigPair& p_src) : RefCountedData(p_src) { copy_This(p_src); }
    /// Takes over all three; the count stays.
    ConfigPair& operator=(const ConfigPair& p_src);

    /// A copy with a count of its own, which the caller owns.
    ConfigPair* clone() const override { return new ConfigPair(*this); }

    /// A section may have several pairs of one name.
    virtual const String& getName() const { return m_name; }
    virtual void setName(const String& p_name) { m_name = p_name; }
    /// Without the quotes and with the escapes decoded; the text of a number as it was written.
    virtual const String& getValue() const { return m_value; }
    virtual void setValue(const String& p_value) { m_value = p_value; }
    /// Set when the value was written as a number.
    virtual bool_t isNumeric() const { return m_numeric; }
    virtual void setNumeric(bool_t p_numeric) { m_numeric = p_numeric; }

    void clear() {
        release_This();
        init_This();
    }
    void init_This();
    void release_This() {}
    void copy_This(const ConfigPair& p_src);

protected:
    String m_name;
    String m_value;
    uint8_t m_numeric;
};

/// A named list of pairs, in their order. It holds one reference for each place in the list.
class ConfigSection : public RefCountedData {
public:
    /// Without a name and pairs.
    ConfigSection() { init_This(); }
    /// Shares the pairs, by further references.
    ConfigSection(const ConfigSection& p_src) : RefCountedData(p_src) { copy_This(p_src); }
    ConfigSection& operator=(const ConfigSection& p_src);
    ~ConfigSection() override { release_This(); }

    /// A section of its own, which the caller owns, with the same pairs.
    ConfigSection* clone() const override { return new ConfigSection(*this); }

    /// Empty for what stands in front of the first section.
    virtual const String& getName() const { return m_name; }
    virtual void setName(const String& p_name) { m_name = p_name; }
    /// In the order of the text; they stay the section's.
    virtual const List<ConfigPair*>& getPairs() const { return m_pairs; }
    /// Adds a pair and takes a reference; null is ignored. A pair that is added twice stands there twice.
    virtual void pushBackPair(ConfigPair* p_pair);
    /// Gives back the references on all pairs.
    virtual void clearPairs();

    void clear() {
        release_This();
        init_This();
    }
    void init_This() { m_name.clear(); }
    void release_This() { ConfigSection::clearPairs(); }
    void copy_This(const ConfigSection& p_src);

protected:
    String m_name;
    List<ConfigPair*> m_pairs;
};

#pragma pack(pop)

static_assert(sizeof(ConfigPair) == 249 && alignof(ConfigPair) == 1);
static_assert(sizeof(ConfigSection) == 184 && alignof(ConfigSection) == 1);

} // namespace zyr
