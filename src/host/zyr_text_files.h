/// Whole texts in and out of files.
#pragma once

#include "host/zyr_standard_output.h"

#include <cstdint>
#include <string>

namespace zyr::host {

/// What is read whole has at most so many bytes: a device, a pipe without end or a file with holes is refused in time.
constexpr int64_t LARGEST_TEXT = int64_t(256) << 20;

/// Reads a file, or the standard input for "-". False after a message on the standard error.
bool readText(const std::string& p_path, std::string& p_text);

/// Writes a file, or the standard output for "-". A plain file is replaced when the new one is whole, with its
/// permissions kept, and is as before otherwise. Throws RunError that names the path.
void writeWholeText(const std::string& p_path, const std::string& p_text);

/// The same. False after a message on the standard error.
bool writeText(const std::string& p_path, const std::string& p_text);

} // namespace zyr::host
