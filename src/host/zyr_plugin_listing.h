/// The plug-ins that were loaded.
#pragma once

#include "host/zyr_framework.h"

#include <nlohmann/json.hpp>

namespace zyr::host {

/// One object for each plug-in, with what it says about itself and its file.
nlohmann::json listPlugins(Framework& p_framework);

} // namespace zyr::host
