/// What the core module offers: its classes.
#pragma once

#include "zyr_common/application/zyr_module_tables.h"

namespace zyr {

/// Fills every entry under the table's lock. An entry whose interface this module doesn't implement logs the
/// interface's name and gives null.
void fillCoreTable(CoreModuleTable& p_table);

/// Registers the classes by name and GUID, in the order of the table.
void registerCoreClasses();

} // namespace zyr
