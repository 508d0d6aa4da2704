/// Whole objects in a stream, held by pointers of any class:
///
///     IListOfObjects* list = nullptr;
///     bool_t found = 0;
///     const bool_t done = deserializer->readSingleObject(key, found, &list, String::getConstEmpty());
///
/// The library has the functions for IObject, and those for any other class stand on them. What is read and is not of
/// that class counts as one of an unknown class: it is released, the pointer is null and nothing was found.
#pragma once

#include "zyr_common/object/zyr_object.h"
#include "zyr_common/serialization/zyr_serializer.h"

namespace zyr {

template <> bool_t ISerializer::writeHeaderSingleObject(const String&, IObject*, bool_t&);
template <> bool_t ISerializer::writeSingleObject(const String&, IObject*);
template <> bool_t IDeserializer::readSingleObject(const String&, bool_t&, IObject**, const String&);

/// The object as one of class T, an interface or a class of this module; null if it is none.
template <class T> T* zyr_asClass(IObject* p_object) {
    if constexpr (requires { InterfaceTraits<T>::c_guidText; }) {
        // The instances of a template share their GUID.
        const bool isClass = p_object->findClassGUID(zyr_getInterfaceGUID<T>()) &&
                             p_object->getClassTemplateTypeName() == zyr_getTemplateTypeName<T>();
        return isClass ? static_cast<T*>(p_object) : nullptr;
    } else {
        return dynamic_cast<T*>(p_object);
    }
}

template <class T> bool_t ISerializer::writeHeaderSingleObject(const String& p_name, T* p_object, bool_t& p_result) {
    return writeHeaderSingleObject<IObject>(p_name, p_object, p_result);
}

template <class T> bool_t ISerializer::writeSingleObject(const String& p_name, T* p_object) {
    return writeSingleObject<IObject>(p_name, p_object);
}

template <class T>
bool_t IDeserializer::readSingleObject(const String& p_name, bool_t& p_found, T** p_object,
                                       const String& p_defaultTypeName) {
    IObject* object = nullptr;
    const bool_t done = readSingleObject<IObject>(p_name, p_found, &object, p_defaultTypeName);
    *p_object = object != nullptr ? zyr_asClass<T>(object) : nullptr;
    if (object != nullptr && *p_object == nullptr) {
        object->release();
        p_found = 0;
    }
    return done;
}

} // namespace zyr
