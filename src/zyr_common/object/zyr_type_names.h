/// Canonical names of types, under which records are registered and stored.
///
/// An interface is named as its class without the leading "I". A record names itself with a static member c_typeName. A
/// template adds the word of its argument in braces: "Path2DCommand{float}", "HashMapOfObjects{int32}".
#pragma once

#include "zyr_common/object/zyr_interface_traits.h"
#include "zyr_common/text/zyr_string.h"

#include <type_traits>

namespace zyr {

/// The word of a template argument; null for a type that no framework template takes.
template <typename T> inline constexpr const char* typeWord = nullptr;
template <> inline constexpr const char* typeWord<int32_t> = "int32";
template <> inline constexpr const char* typeWord<int64_t> = "int64";
template <> inline constexpr const char* typeWord<uint32_t> = "uint32";
template <> inline constexpr const char* typeWord<uint64_t> = "uint64";
template <> inline constexpr const char* typeWord<float> = "float";
template <> inline constexpr const char* typeWord<double> = "double";
template <> inline constexpr const char* typeWord<String> = "String";
template <> inline constexpr const char* typeWord<WrappedString> = "WrappedString";
template <> inline constexpr const char* typeWord<GUID_t> = "guid";
template <> inline constexpr const char* typeWord<unsigned char*> = "uint8 *";
template <> inline constexpr const char* typeWord<String*> = "String *";
template <> inline constexpr const char* typeWord<IObject*> = "Object *";

/// The word of T's template argument, null where T is no template.
template <typename T> inline constexpr const char* templateArgumentWord = nullptr;
template <template <typename> class Template, typename Argument>
inline constexpr const char* templateArgumentWord<Template<Argument>> = typeWord<Argument>;

/// Joins the two parts of a type name; `p_argumentWord` may be null.
String joinTypeName(const char* p_name, const char* p_argumentWord);

/// The canonical name of T. The pointer only carries the type and may be null.
template <typename T> const String& zyr_getNameAssociatedToType(const T*) {
    if constexpr (std::is_same_v<T, IObject*>) {
        static const String name("ObjectPtr");
        return name;
    } else if constexpr (requires { InterfaceTraits<T>::c_typeName; }) {
        static const String name = joinTypeName(InterfaceTraits<T>::c_typeName, templateArgumentWord<T>);
        return name;
    } else {
        static const String name = joinTypeName(T::c_typeName, templateArgumentWord<T>);
        return name;
    }
}

} // namespace zyr
