/// Canonical names of types, under which records are registered and stored.
///
/// An interface is named as its class without the leading "I". A record names itself with a static member c_typeName. A
/// template adds the word of its argument in braces: "Path2DCommand{float}", "HashMapOfObjects{int32}".
#pragma once

#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/object/zyr_interface_traits.h"
#include "zyr_common/text/zyr_string.h"

#include <type_traits>

namespace zyr {

/// The word of a template argument; null for a type that no framework template takes.
template <typename T> inline constexpr const char* typeWord = nullptr;
/// The words of the key types, from their list.
#define ZYR_TYPE_WORD(type, word) template <> inline constexpr const char* typeWord<type> = word;
#define ZYR_KEY ZYR_TYPE_WORD
#define ZYR_GUID_KEY ZYR_TYPE_WORD
#include "zyr_common/object/zyr_object_keys.inl"
#undef ZYR_TYPE_WORD

/// The word of T's template argument, null where T is no template.
template <typename T> inline constexpr const char* templateArgumentWord = nullptr;
template <template <typename> class Template, typename Argument>
inline constexpr const char* templateArgumentWord<Template<Argument>> = typeWord<Argument>;

/// Joins the two parts of a type name; `p_argumentWord` may be null, and the name is then what it was. Makes a new text
/// at each call, which stays: for function-local statics.
const String& makeTypeName(const char* p_name, const char* p_argumentWord);

/// The word of the template argument of `Interface`; empty where it is no template.
template <class Interface> const String& zyr_getTemplateTypeName() {
    if constexpr (templateArgumentWord<Interface> == nullptr) {
        return String::getConstEmpty();
    } else {
        static const String& name = makePermanent<String>(templateArgumentWord<Interface>);
        return name;
    }
}

/// The canonical name of T. The pointer only carries the type and may be null.
template <typename T> const String& zyr_getNameAssociatedToType(const T*) {
    if constexpr (std::is_same_v<T, IObject*>) {
        static const String& name = makePermanent<String>("ObjectPtr");
        return name;
    } else if constexpr (requires { InterfaceTraits<T>::c_typeName; }) {
        static const String& name = makeTypeName(InterfaceTraits<T>::c_typeName, templateArgumentWord<T>);
        return name;
    } else {
        static const String& name = makeTypeName(T::c_typeName, templateArgumentWord<T>);
        return name;
    }
}

} // namespace zyr
