/// Texts and numbers as they stand in pages.
#pragma once

#include <string>

namespace zyr::host {

/// Text of others as contents or attribute of a page: nothing of it is taken for a tag, and control characters and what
/// is no UTF-8 are replaced.
std::string escapeForPage(const std::string& p_text);

/// So many digits behind the point; "-" for NaN.
std::string fixedText(double p_number, int p_digits);

/// Four digits at most, with k and M for thousands and millions, as axes have them.
std::string shortText(double p_number);

} // namespace zyr::host
