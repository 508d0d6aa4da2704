/// What every object of a component module has to answer.
#pragma once

#include "host/conform/zyr_conform_case.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr::host {

/// Loads the module that the subject names, in place of the reference module, and starts it. The framework is never
/// deleted. Throws ModuleError.
HostApplicationData& startComponent(const ConformSubject& p_subject);

/// Goes through the operations of IObject on a new object, and fails for an answer that no such object gives.
void checkObjectSlots(IObject& p_object, const std::string& p_name);

/// Whether an object is an `Interface` and its last operation, the way to the reserved object, answers.
template <class Interface> bool isInterface(const IObject& p_object) {
    return p_object.findClassGUID(zyr_getInterfaceGUID<Interface>()) &&
           p_object.findInterfaceObjectByClassGUID(zyr_getInterfaceGUID<Interface>()) != nullptr &&
           InterfaceTraits<Interface>::reserved(static_cast<const Interface*>(&p_object)) != nullptr;
}

/// Loads a module's file and runs its prepare function on application data that nothing else has touched; the module
/// must not change a state. `p_initializer` is where its initializer belongs.
void checkPrepare(const ConformSubject& p_subject, const char* p_export,
                  bool_t (*ApplicationData::*p_initializer)(ApplicationData*, uint32_t));

} // namespace zyr::host
