/// What the core module offers: its classes.
#pragma once

#include "zyr_common/application/zyr_module_tables.h"

namespace zyr {

/// Fills every entry under the table's lock. An entry that stands for no interface logs its number and gives null.
void fillCoreTable(CoreModuleTable& p_table);

/// Registers the classes by name, GUID and template type name, in the order of the table. One object of each is made to
/// ask it for them.
void registerCoreClasses(ApplicationData& p_applicationData);

} // namespace zyr
