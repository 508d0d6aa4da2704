/// The entry point of the core module, which a host finds by its plain name in zyr_core.so.
#pragma once

#include "zyr_common/application/zyr_application_data.h"

extern "C" {

/// Stores the core module's initializer in the application data; ApplicationData::coreInitialize then brings the module
/// up: it fills the table of object creators and registers the classes by name and by GUID. Does nothing without
/// application data. The module must stay loaded until the application data has been destroyed.
ZYR_API void zyr_core_prepare(zyr::ApplicationData* p_applicationData);
}
