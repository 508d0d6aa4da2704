/// A named method of a class, for those who list them.
#pragma once

#include "zyr_common/object/zyr_type_names.h"

namespace zyr {

#pragma pack(push, 1)

/// A plain record. It does not own what it points to.
class MethodInfo {
public:
    /// as callers name it
    String m_name;
    /// A function of the owner's kind: who calls it knows the signature.
    void* m_pointer;
    /// For people.
    String m_description;

    /// The name of the class in registries.
    static constexpr const char* c_typeName = "MethodInfo";

    /// Names no method.
    MethodInfo() { init_This(); }
    /// Copies the texts; the function must outlive the record.
    MethodInfo(const String& p_name, void* p_pointer, const String& p_description)
        : m_name(p_name), m_pointer(p_pointer), m_description(p_description) {}

    /// "MethodInfo"; lives as long as the process.
    const String& getClassName() const { return zyr_getNameAssociatedToType(this); }

    /// Back to the state of a new record.
    void clear() {
        release_This();
        init_This();
    }
    void init_This() {
        m_name.clear();
        m_pointer = nullptr;
        m_description.clear();
    }
    /// Nothing is owned.
    void release_This() {}
    /// Takes over all three.
    void copy_This(const MethodInfo& p_src) { *this = p_src; }
};

#pragma pack(pop)

static_assert(sizeof(MethodInfo) == 232 && alignof(MethodInfo) == 1);

} // namespace zyr
