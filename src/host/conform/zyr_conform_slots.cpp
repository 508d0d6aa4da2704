#include "host/conform/zyr_conform_slots.h"

#include "host/conform/zyr_conform_child.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/containers/zyr_list.h"

#include <dlfcn.h>

namespace zyr::host {

HostApplicationData& startComponent(const ConformSubject& p_subject) {
    noteConformStep("the start of the module");
    Framework* framework = new Framework(p_subject.m_framework);
    noteConformStep("");
    framework->getApplicationData().startListening();
    return framework->getApplicationData();
}

void checkObjectSlots(IObject& p_object, const std::string& p_name) {
    const auto check = [&](bool p_holds, const char* p_operation) {
        require(p_holds, std::string(p_operation) + " of " + p_name + " gives a wrong answer");
    };
    noteConformStep("the operations of " + p_name);
    const GUID_t guid = p_object.getClassGUID();
    check(guid != GUID_t(), "getClassGUID");
    check(!p_object.getClassName().isEmpty(), "getClassName");
    check(p_object.getClassTemplateTypeName().isEmpty() == (p_object.getClassTemplateTypeSize() == 0),
          "getClassTemplateTypeSize");
    check(p_object.findClassGUID(guid) && p_object.findClassGUID(zyr_getInterfaceGUID<IObject>()), "findClassGUID");
    check(!p_object.findClassGUID(GUID_t()), "findClassGUID");
    check(p_object.findInterfaceObjectByClassGUID(guid) != nullptr, "findInterfaceObjectByClassGUID");
    check(p_object.findInterfaceObjectByClassGUID(GUID_t()) == nullptr, "findInterfaceObjectByClassGUID");
    List<GUID_t> guids;
    HashMap<GUID_t, GUID_t> replacements;
    p_object.collectGUIDsWhereAvailable(1, guids);
    p_object.replaceGUIDsWhereAvailable(1, replacements);
    check(p_object.getVariableReference("no such field") == nullptr, "getVariableReference");
    check(p_object.getVariableReferenceByPath("no.such.field") == nullptr, "getVariableReferenceByPath");
    check(p_object.getRefCount() == 0 && p_object.addRef() == &p_object && p_object.getRefCount() == 1, "addRef");
    p_object.release();
    check(p_object.getRefCount() == 0, "release");
    p_object.setDirty(1);
    check(p_object.isDirty(), "isDirty");
    p_object.setDirty(0);
    check(!p_object.isDirty(), "setDirty");
    check(!p_object.isDeletePending(), "isDeletePending");
    check(p_object.getDeferredFile() == nullptr, "getDeferredFile");
    p_object.setDeferredFile("file.zbf");
    check(p_object.getDeferredFile() != nullptr && *p_object.getDeferredFile() == "file.zbf", "setDeferredFile");
    p_object.setDeferredFileReadOnly(1);
    check(p_object.isDeferredFileReadOnly(), "isDeferredFileReadOnly");
    p_object.setDeferredFileReadOnly(0);
    p_object.setDeferredFile(String());
    check(p_object.getDeferredFile() == nullptr, "setDeferredFile");
    check(p_object.getCompressionInfo(0) == nullptr, "getCompressionInfo");
    check(p_object.getTLIObject() == &p_object, "getTLIObject");
    IObject* layer = nullptr;
    check(p_object.queryInterfaceObject(guid, &layer) && layer != nullptr, "queryInterfaceObject");
    layer->release();
    check(!p_object.queryInterfaceObject(GUID_t(), &layer) && layer == nullptr, "queryInterfaceObject");
    check(p_object.getObjectReserved() != nullptr, "getObjectReserved");
    p_object.clear();
    check(p_object.getClassGUID() == guid && p_object.getRefCount() == 0, "clear");
    noteConformStep("");
}

void checkPrepare(const ConformSubject& p_subject, const char* p_export,
                  bool_t (*ApplicationData::*p_initializer)(ApplicationData*, uint32_t)) {
    noteConformStep("the loader");
    void* handle = dlopen(p_subject.m_path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const char* error = handle == nullptr ? dlerror() : nullptr;
    require(handle != nullptr, error != nullptr ? error : "the loader gives no reason");
    const auto prepare = reinterpret_cast<void (*)(ApplicationData*)>(dlsym(handle, p_export));
    require(prepare != nullptr, std::string("it lacks the export ") + p_export);
    noteConformStep(p_export);
    FrameworkOptions options = p_subject.m_framework;
    HostApplicationData& data = (new CommonLibrary(options))->getApplicationData();
    prepare(nullptr);
    prepare(&data);
    noteConformStep("");
    require(data.*p_initializer != nullptr, std::string(p_export) + " leaves no initializer");
    require(data.m_objectAllocatorsByGUID.isEmpty() && data.m_core->m_entries[0] == nullptr &&
                data.m_picture->m_convertRGBToYUV == nullptr,
            std::string(p_export) + " does more than to leave its initializer");
}

} // namespace zyr::host
