/// What the facades, the factories and the reference implementations have to know of an interface.
///
/// Each interface header ends with one line, which describes the interface once:
///
///     ZYR_INTERFACE_TRAITS(DataFormatInfo, IObject, "4f0c...")
///     ZYR_TEMPLATE_INTERFACE_TRAITS(HashMapOfObjects, IObject, "91d3...")      // template <typename K> class I...
///
/// The class GUID is a permanent identifier that is stored in files: it is drawn once at random and never changes.
/// The instances of a template share it, and their type names tell them apart.
#pragma once

#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

/// Description of `Interface`: its base interface (void for IObject), its type name, the text of the invariant that a
/// facade's interface object could be created, its class GUID as text and the way to its reserved object.
template <class Interface> struct InterfaceTraits;

/// Whether the interface is an instance of a template, whose argument is InterfaceTraits<Interface>::Argument.
template <class Interface> inline constexpr bool isTemplateInterface = requires {
    typename InterfaceTraits<Interface>::Argument;
};

/// Class GUID under which the implementation of `Interface` is registered.
template <class Interface> const GUID_t& zyr_getInterfaceGUID() {
    static const GUID_t guid = GUID_t_fromString(InterfaceTraits<Interface>::c_guidText);
    return guid;
}

} // namespace zyr

/// Describes the interface I<Name>, at the end of its header and inside namespace zyr.
#define ZYR_INTERFACE_TRAITS(Name, BaseInterface, guidText)                                                            \
    template <> struct InterfaceTraits<I##Name> {                                                                      \
        using Base = BaseInterface;                                                                                    \
        static constexpr const char* c_typeName = #Name;                                                               \
        static constexpr const char* c_createdText = "interface" #Name " != NULL";                                     \
        static constexpr const char* c_guidText = guidText;                                                            \
        static auto* reserved(const I##Name* p_object) { return p_object->get##Name##Reserved(); }                     \
    };

/// The same for the template I<Name>, whose instances share the GUID.
#define ZYR_TEMPLATE_INTERFACE_TRAITS(Name, BaseInterface, guidText)                                                   \
    template <typename T> struct InterfaceTraits<I##Name<T>> {                                                         \
        using Base = BaseInterface;                                                                                    \
        using Argument = T;                                                                                            \
        static constexpr const char* c_typeName = #Name;                                                               \
        static constexpr const char* c_createdText = "interface" #Name " != NULL";                                     \
        static constexpr const char* c_guidText = guidText;                                                            \
        static auto* reserved(const I##Name<T>* p_object) { return p_object->get##Name##Reserved(); }                  \
    };
