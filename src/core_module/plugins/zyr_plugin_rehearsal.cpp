#include "core_module/plugins/zyr_plugin_rehearsal.h"

#include "picture/zyr_frame_decoder.h"
#include "picture/zyr_frame_encoder.h"
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/platform/zyr_version.h"

#include <cstdio>

namespace zyr {

namespace {

template <class Record> void releaseAll(List<Record*>& p_records) {
    for (Record* record : p_records) {
        if (record != nullptr) {
            record->release();
        }
    }
}

void rehearseClass(IObject* (*p_allocator)(), const char* p_name, RehearsalStep& p_step) {
    p_step.set("the constructor", p_name);
    IObject* object = p_allocator();
    if (object == nullptr) {
        return;
    }
    if (object->findClassGUID(zyr_getInterfaceGUID<IFrameEncoder>())) {
        p_step.set("getCodecProposals", p_name);
        List<FrameCodecProposal*> proposals;
        static_cast<IFrameEncoder*>(object)->getCodecProposals(proposals);
        releaseAll(proposals);
    } else if (object->findClassGUID(zyr_getInterfaceGUID<IFrameDecoder>())) {
        p_step.set("getCodecRequests", p_name);
        List<FrameCodecRequest*> requests;
        static_cast<IFrameDecoder*>(object)->getCodecRequests(requests);
        releaseAll(requests);
    }
    p_step.set("release", p_name);
    object->release();
}

} // namespace

void RehearsalStep::set(const char* p_call, const char* p_class) {
    snprintf(m_text, sizeof(m_text), "%s%s%s", p_call, p_class != nullptr ? " of " : "",
             p_class != nullptr ? p_class : "");
}

void rehearsePlugin(const PluginExports& p_exports, ApplicationData& p_applicationData, RehearsalStep& p_step) {
    const uint64_t version = p_exports.m_getVersion();
    const uint64_t framework = p_applicationData.m_frameworkVersion;
    // A module of another version is refused without being started, and one that builds on other plug-ins can't start
    // alone.
    if (zyr_getMajorVersion64(version) != zyr_getMajorVersion64(framework) ||
        zyr_getMinorVersion64(version) != zyr_getMinorVersion64(framework) ||
        *p_exports.m_getDependenciesPluginModules() != 0) {
        return;
    }
    const size_t numOfPresent = p_applicationData.m_objectAllocatorsByName.getSize();
    p_step.set("initialize");
    if (!p_exports.m_initialize(&p_applicationData)) {
        return;
    }
    size_t index = 0;
    auto end = p_applicationData.m_objectAllocatorsByName.end();
    // What stands behind the present entries is the module's.
    for (auto it = p_applicationData.m_objectAllocatorsByName.begin(); it != end; ++it, ++index) {
        if (index >= numOfPresent) {
            rehearseClass(it->m_second, it->m_first.getData(), p_step);
        }
    }
}

} // namespace zyr
