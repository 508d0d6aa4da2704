/// Whole texts in and out of files.
#pragma once

#include "host/zyr_standard_output.h"

#include <string>

namespace zyr::host {

/// Reads a file, or the standard input for "-". False after a message on the standard error.
bool readText(const std::string& p_path, std::string& p_text);

/// Writes a file, replacing what it held. False after a message on the standard error.
bool writeText(const std::string& p_path, const std::string& p_text);

} // namespace zyr::host
