#include "zyr_common/text/zyr_number_text.h"

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_numeric.h"
#include "zyr_common/text/zyr_c_locale.h"

#include <cmath>
#include <cstdio>
#include <utility>

namespace zyr {

namespace {

constexpr uint32_t LARGEST_PRECISION = 9;
constexpr size_t NUMBER_BUFFER_SIZE = 64;

bool isDigit(char p_character) {
    return p_character >= '0' && p_character <= '9';
}

/// Reads the exponent behind "e"; 0 when there are no digits.
int readExponent(const char* p_text) {
    constexpr int LARGEST_EXPONENT = 308;
    const bool negative = *p_text == '-';
    if (*p_text == '-' || *p_text == '+') {
        p_text++;
    }
    int exponent = 0;
    for (; isDigit(*p_text); p_text++) {
        if (exponent < LARGEST_EXPONENT) {
            exponent = exponent * 10 + (*p_text - '0');
        }
    }
    exponent = exponent < LARGEST_EXPONENT ? exponent : LARGEST_EXPONENT;
    return negative ? -exponent : exponent;
}

/// The steps are fixed, so that every platform gives the same bits.
double getScale(int p_exponent) {
    double scale = 1;
    for (; p_exponent >= 50; p_exponent -= 50) {
        scale *= 1e50;
    }
    for (; p_exponent >= 8; p_exponent -= 8) {
        scale *= 1e8;
    }
    for (; p_exponent > 0; p_exponent--) {
        scale *= 10;
    }
    return scale;
}

/// Appends the digits, the least significant first, and gives the place behind them.
char* writeDigits(char* p_out, int32_t p_number) {
    do {
        *p_out++ = static_cast<char>('0' + p_number % 10);
        p_number /= 10;
    } while (p_number != 0);
    return p_out;
}

} // namespace

double zyr_convertStringToDouble(const char* p_text) {
    while (*p_text == ' ' || *p_text == '\t') {
        p_text++;
    }
    const bool negative = *p_text == '-';
    if (*p_text == '-' || *p_text == '+') {
        p_text++;
    }
    double value = 0;
    for (; isDigit(*p_text); p_text++) {
        value = value * 10 + (*p_text - '0');
    }
    if (*p_text == '.') {
        double power = 10;
        for (p_text++; isDigit(*p_text); p_text++) {
            value += (*p_text - '0') / power;
            power *= 10;
        }
    }
    if (*p_text == 'e' || *p_text == 'E') {
        const int exponent = readExponent(p_text + 1);
        if (exponent < 0) {
            value /= getScale(-exponent);
        } else if (exponent > 0) {
            value *= getScale(exponent);
        }
    }
    return negative ? -value : value;
}

void zyr_convertDoubleToCharacters(char* p_buffer, size_t, double p_value, uint32_t p_precision) {
    static constexpr int32_t powers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
    if (p_value == 0) {
        strcpy(p_buffer, "0");
        return;
    }
    if (std::isnan(p_value)) {
        strcpy(p_buffer, "nan");
        return;
    }
    const uint32_t precision = p_precision < LARGEST_PRECISION ? p_precision : LARGEST_PRECISION;
    const double magnitude = p_value < 0 ? -p_value : p_value;
    if (magnitude > 2147483647.0) {
        const ScopedCLocale locale;
        sprintf(p_buffer, "%e", p_value);
        return;
    }

    int32_t whole = zyr_saturate<int32_t>(magnitude);
    const double product = (magnitude - whole) * powers[precision];
    int32_t fraction = zyr_saturate<int32_t>(product);
    const double remainder = product - fraction;
    if (remainder > 0.5) {
        fraction++;
        if (fraction >= powers[precision]) {
            fraction = 0;
            whole++;
        }
    } else if (remainder == 0.5 && (fraction == 0 || (fraction & 1) != 0)) {
        // A carry to the whole part belongs to the other branch only.
        fraction++;
    }

    char* out = p_buffer;
    if (precision == 0) {
        const double rest = magnitude - whole;
        if (rest > 0.5 || (rest == 0.5 && (whole & 1) != 0)) {
            whole++;
        }
    } else if (magnitude != std::trunc(magnitude)) {
        out = writeDigits(out, fraction);
        *out++ = '.';
    }
    out = writeDigits(out, whole);
    if (p_value < 0) {
        *out++ = '-';
    }
    *out-- = 0;
    for (char* first = p_buffer; first < out; first++, out--) {
        std::swap(*first, *out);
    }
}

void zyr_convertDoubleToString(double p_value, String& p_text) {
    zyr_convertDoubleToStringPrec(p_value, p_text, 10);
}

void zyr_convertDoubleToStringPrec(double p_value, String& p_text, uint32_t p_precision) {
    char buffer[NUMBER_BUFFER_SIZE];
    zyr_convertDoubleToCharacters(buffer, sizeof(buffer), p_value, p_precision);
    p_text.assignUTF8String(buffer);
}

void zyr_getVersionString(uint64_t p_version, String& p_text) {
    // Major in bits 40 to 63, minor in bits 16 to 39, patch in bits 0 to 15.
    p_text += String::newFormatted("%u.%u.%u", static_cast<unsigned int>(p_version >> 40),
                                   static_cast<unsigned int>((p_version >> 16) & 0xFFFFFF),
                                   static_cast<unsigned int>(p_version & 0xFFFF));
}

void zyr_getArrayOfStrings(int p_count, char** p_arguments, Array<String>& p_strings) {
    for (int i = 0; i < p_count; i++) {
        p_strings.pushBack(String(p_arguments[i]));
    }
}

void zyr_getArrayOfStrings(int p_count, wchar_t** p_arguments, Array<String>& p_strings) {
    for (int i = 0; i < p_count; i++) {
        p_strings.pushBack(String(p_arguments[i]));
    }
}

} // namespace zyr
