#include "core_module/zyr_core_table.h"

#include "core_module/documents/zyr_lexer_implementation.h"
#include "core_module/object_containers/zyr_list_of_objects_implementation.h"
#include "core_module/plugins/zyr_plugin_module.h"
#include "core_module/plugins/zyr_plugin_modules_handler.h"
#include "zyr_common/implementation/zyr_format_info_levels.h"

#include <utility>

namespace zyr {

using Object = Implementation<ObjectImplementation<IObject>>;

namespace {

template <class... Classes> struct ClassList {};

/// The classes of this module in the order of the table.
using CoreClasses = ClassList<Object, DataFormatInfo, NativeFormatInfo, CompressionInfo, Lz4CompressionInfo,
                              ZipCompressionInfo, ListOfObjects, Lexer, PluginModule, PluginModulesHandler>;

template <class Class> typename Class::Interface* createObject() {
    return new Class;
}

template <size_t Entry> IObject* reportMissingClass() {
    if constexpr (Entry < static_cast<size_t>(NUM_OF_CORE_ENTRY_NAMES)) {
        ZYR_LOG_WARN("Unable to create object: the core module has no implementation of %s", coreEntryNames[Entry]);
    } else {
        ZYR_LOG_WARN("Unable to create object: the core module does not use entry %zu", Entry);
    }
    return nullptr;
}

template <size_t... Entries> void fillMissing(CoreModuleTable& p_table, std::index_sequence<Entries...>) {
    ((p_table.m_entries[Entries] = reinterpret_cast<moduleEntry_FUNC>(&reportMissingClass<Entries>)), ...);
}

template <class... Classes> void fillPresent(CoreModuleTable& p_table, ClassList<Classes...>) {
    ((p_table.m_entries[coreTableEntry<typename Classes::Interface>] =
          reinterpret_cast<moduleEntry_FUNC>(&createObject<Classes>)),
     ...);
}

template <class... Classes> void registerAll(ClassList<Classes...>) {
    (zyr_addObjectAllocator<Classes>(), ...);
}

} // namespace

void fillCoreTable(CoreModuleTable& p_table) {
    p_table.m_lock.writeLock();
    fillMissing(p_table, std::make_index_sequence<CoreModuleTable::NUM_OF_ENTRIES>());
    fillPresent(p_table, CoreClasses());
    p_table.m_lock.unlock();
}

void registerCoreClasses() {
    registerAll(CoreClasses());
}

} // namespace zyr
