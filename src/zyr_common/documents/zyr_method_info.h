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

    static constexpr const char* c_typeName = "MethodInfo";

    MethodInfo() { init_This(); }
    MethodInfo(const String& p_name, void* p_pointer, const String& p_description)
        : m_name(p_name), m_pointer(p_pointer), m_description(p_description) {}

    const String& getClassName() const { return zyr_getNameAssociatedToType(this); }

    void clear() {
        release_This();
        init_This();
    }
    void init_This() {
        m_name.clear();
        m_pointer = nullptr;
        m_description.clear();
    }
    void release_This() {}
    void copy_This(const MethodInfo& p_src) { *this = p_src; }
};

#pragma pack(pop)

static_assert(sizeof(MethodInfo) == 232 && alignof(MethodInfo) == 1);

} // namespace zyr
