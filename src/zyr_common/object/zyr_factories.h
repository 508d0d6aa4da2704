/// Creation of objects across module boundaries, by class name, by class GUID or through the core module's table, and
/// of plain records by type name.
///
/// A module registers an allocator for each of its classes; from then on everybody in the process can create them:
///
///     zyr_addObjectAllocator<MyImage>();
///     ...
///     IObject* image = zyr_createObjectFromName("MyImage");
///     ...
///     zyr_releaseObject(image);
///
/// Objects come with count 0 and belong to the caller. Registration takes the write side of the registry's lock and
/// look-ups the read side. Allocators run under the read lock: an allocator may create other objects but must not
/// register anything.
#pragma once

#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_core_entries.h"
#include "zyr_common/object/zyr_interface_traits.h"
#include "zyr_common/object/zyr_type_names.h"

namespace zyr {

/// Thin forms of the operations of the same names. The references live as long as the class's module.
ZYR_API const String& zyr_getClassName(const IObject* p_object);
/// Of the most derived class; the object must not be null.
ZYR_API const GUID_t& zyr_getClassGUID(const IObject* p_object);
/// The text of its template argument, empty for other classes.
ZYR_API const String& zyr_getClassTemplateTypeName(const IObject* p_object);
/// Gives back one reference; the last one destroys the object.
ZYR_API void zyr_releaseObject(IObject* p_object);

/// Creates an object of the registered class of that name; null, without a line, if there is none.
ZYR_API IObject* zyr_createObjectFromName(const String& p_name);
/// The same by class GUID and text of the template argument, which is empty for a plain class.
ZYR_API IObject* zyr_createObjectFromGUIDAndTypeName(const GUID_t& p_guid, const String& p_typeName);
/// Creates one instance of each registered class that derives from the class with that GUID, leaving out a class whose
/// own GUID it is. The caller owns the list, and the list holds the only reference on each object. Every registered
/// allocator runs.
ZYR_API IListOfObjects* zyr_createObjectsFromParentGUID(const GUID_t& p_parent);
/// The same by the parent's class name; null if no class of that name is registered. The object that is made to look up
/// the parent's GUID is not released, which is relied upon.
ZYR_API IListOfObjects* zyr_createObjectsFromParentName(const String& p_name);
/// Creates a record of the registered type of that name; null, without a line, if there is none. The caller knows the
/// type and deletes it.
ZYR_API void* zyr_createUnknownVariableFromName(const String& p_name);

/// A new object of the core module's implementation of `Interface`. The core module must be up: an empty entry of its
/// table is not tested for.
template <class Interface> Interface* zyr_createObject() {
    static_assert(coreTableEntry<Interface> >= 0, "the interface has no entry in the core module's table");
    ApplicationData* appData = zyr_getApplicationData();
    if (appData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot create object from name %s. Return NULL",
                     getCoreEntryWord(coreTableEntry<Interface>).getData());
        return nullptr;
    }
    ZYR_ASSERT(appData->m_core != NULL);
    moduleEntry_FUNC entry = nullptr;
    {
        const ScopedReadLock lock(appData->m_core->m_lock);
        entry = appData->m_core->m_entries[coreTableEntry<Interface>];
    }
    return static_cast<Interface*>(reinterpret_cast<objectAllocator_FUNC>(entry)());
}

/// What stands behind a facade of `Interface`: from the core module's table where it has an entry, else by class GUID
/// and template type name.
template <class Interface> Interface* zyr_createInterfaceObject() {
    if constexpr (coreTableEntry<Interface> >= 0) {
        return zyr_createObject<Interface>();
    } else {
        return static_cast<Interface*>(zyr_createObjectFromGUIDAndTypeName(zyr_getInterfaceGUID<Interface>(),
                                                                           zyr_getTemplateTypeName<Interface>()));
    }
}

/// Registers an allocator of the object's class under its name, GUID and template type name. A class that is registered
/// already keeps its first allocator.
void addObjectAllocator(ApplicationData& p_applicationData, const IObject* p_object, objectAllocator_FUNC p_allocator);

/// The allocator that zyr_addObjectAllocator registers.
template <class T> IObject* zyr_objectAllocator() {
    return new T;
}

/// Registers T, which must be creatable now: one instance is made to ask it for its name and GUID. See
/// addObjectAllocator.
template <class T> void zyr_addObjectAllocator() {
    T* object = new T;
    ApplicationData* appData = zyr_getApplicationData();
    if (appData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot create object from name %s", zyr_getClassName(object).getData());
        zyr_releaseObject(object);
        return;
    }
    addObjectAllocator(*appData, object, &zyr_objectAllocator<T>);
    zyr_releaseObject(object);
}

/// The allocator that zyr_addUnknownVariableAllocator registers.
template <class T> void* zyr_unknownVariableAllocator() {
    return new T;
}

/// Registers the record T under its type name. No instance is made.
template <class T> void zyr_addUnknownVariableAllocator() {
    const String& typeName = zyr_getNameAssociatedToType(static_cast<const T*>(nullptr));
    ApplicationData* appData = zyr_getApplicationData();
    if (appData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot allocate variable from name %s", typeName.getData());
        return;
    }
    const ScopedWriteLock lock(appData->m_unknownVariableLock);
    appData->m_unknownVariableAllocators.pushBack(typeName, &zyr_unknownVariableAllocator<T>, nullptr);
}

} // namespace zyr
