/// The secret that opens a live screen.
#pragma once

#include <string>

namespace zyr::host {

/// 128 random bits from the system, as 32 hexadecimal digits. Throws RunError when the system has none.
std::string createAccessToken();

/// Reads a token from the first line of a file. Throws RunError when the file cannot be read, others than its owner can
/// read it, or the token is shorter than 16 characters.
std::string readAccessToken(const std::string& p_path);

/// Compares in a time that depends on the length of the given text only.
bool isSameSecret(const std::string& p_expected, const std::string& p_given);

} // namespace zyr::host
