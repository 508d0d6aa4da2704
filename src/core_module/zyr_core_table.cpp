#include "core_module/zyr_core_table.h"

#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/object/zyr_object.h"

#include <utility>

namespace zyr {

#define ZYR_CORE_CLASS(Name) IObject* make##Name();
#define ZYR_CORE_FAMILY(Name) template <typename K> IObject* make##Name();
#define ZYR_NAMED_CORE_CLASS(Name) ZYR_CORE_CLASS(Name)
#include "core_module/zyr_core_classes.inl"

namespace {

struct CoreClass {
    const char* m_typeName;
    objectAllocator_FUNC m_make;
    bool m_hasEntry;
};

constexpr CoreClass CORE_CLASSES[] = {
#define ZYR_CORE_CLASS(Name) {#Name, &make##Name, true},
#define ZYR_CORE_CLASS_FOR(Name, key, word) {#Name "{" word "}", &make##Name<key>, true},
#define ZYR_NAMED_CORE_CLASS(Name) {#Name, &make##Name, false},
#include "core_module/zyr_core_classes.inl"
};

template <size_t Entry> IObject* reportMissingClass() {
    ZYR_LOG_WARN("Unable to create object: the core module does not use entry %zu", Entry);
    return nullptr;
}

template <size_t... Entries> void fillMissing(CoreModuleTable& p_table, std::index_sequence<Entries...>) {
    ((p_table.m_entries[Entries] = reinterpret_cast<moduleEntry_FUNC>(&reportMissingClass<Entries>)), ...);
}

} // namespace

void fillCoreTable(CoreModuleTable& p_table) {
    const ScopedWriteLock lock(p_table.m_lock);
    fillMissing(p_table, std::make_index_sequence<CoreModuleTable::NUM_OF_ENTRIES>());
    for (const CoreClass& coreClass : CORE_CLASSES) {
        if (!coreClass.m_hasEntry) {
            continue;
        }
        const int32_t entry = findCoreEntry(coreClass.m_typeName, nullptr);
        ZYR_ASSERT(entry >= 0);
        p_table.m_entries[entry] = reinterpret_cast<moduleEntry_FUNC>(coreClass.m_make);
    }
}

void registerCoreClasses(ApplicationData& p_applicationData) {
    for (const CoreClass& coreClass : CORE_CLASSES) {
        const Ref<IObject> object = Ref<IObject>::adopt(coreClass.m_make());
        addObjectAllocator(p_applicationData, object.get(), coreClass.m_make);
    }
}

} // namespace zyr
