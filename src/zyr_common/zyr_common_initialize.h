/// The start and the end of the common library. ApplicationData::commonInitialize calls commonInitialize, which
/// application/zyr_application_data.h declares.
#pragma once

#include "zyr_common/application/zyr_application_data.h"

namespace zyr {

/// Stands first among the deinitialize functions of the application data. It has no work of its own.
void commonDeinitialize();

} // namespace zyr
