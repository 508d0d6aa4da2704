#include "host/report/zyr_page_text.h"

#include "host/zyr_standard_output.h"

#include <cmath>
#include <cstdio>

namespace zyr::host {

std::string escapeForPage(const std::string& p_text) {
    std::string text;
    for (const char c : maskControls(p_text)) {
        switch (c) {
        case '&':
            text += "&amp;";
            break;
        case '<':
            text += "&lt;";
            break;
        case '>':
            text += "&gt;";
            break;
        case '"':
            text += "&quot;";
            break;
        default:
            text += c;
        }
    }
    return text;
}

std::string fixedText(double p_number, int p_digits) {
    if (std::isnan(p_number)) {
        return "-";
    }
    if (std::isinf(p_number)) {
        return "no difference";
    }
    char text[400];
    snprintf(text, sizeof(text), "%.*f", p_digits, p_number);
    return text;
}

std::string shortText(double p_number) {
    const double size = std::fabs(p_number);
    const double factor = size >= 1e6 ? 1e6 : size >= 1e4 ? 1e3 : 1;
    char text[64];
    snprintf(text, sizeof(text), "%.4g%s", p_number / factor, factor == 1e6 ? "M" : factor == 1e3 ? "k" : "");
    return text;
}

} // namespace zyr::host
