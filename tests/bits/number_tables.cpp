// Noise, escape counts, numbers as text, conversions and colours.
#include "bits/bit_table.h"
#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/colour/zyr_pixel_format.h"
#include "zyr_common/geometry/zyr_noise.h"
#include "zyr_common/text/zyr_number_text.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <cfloat>
#include <limits>

namespace zyr {

void zyr_fillNoise(BitTable& p_table) {
    NumberSource source(31);
    for (uint32_t round = 0; round < 6000; ++round) {
        const double x = source.wildNumber<double>() / 10;
        const int seed = source.wildNumber<int32_t>();
        const int period = round % 2 == 0 ? source.wildNumber<int32_t>() : static_cast<int>(source.below(20)) - 3;
        p_table.add(zyr_noiseFirst(x, seed, period));
        p_table.add(zyr_noiseFirst(static_cast<float>(x), seed, period));
        p_table.add(zyr_noiseSecond(x, seed, period));
        p_table.add(zyr_noiseSecond(static_cast<float>(x), seed, period));
    }
}

void zyr_fillEscapeCounts(BitTable& p_table) {
    NumberSource source(32);
    for (uint32_t round = 0; round < 10000; ++round) {
        const double real = source.unit<double>() * 1.6 - 0.6;
        const double imaginary = source.unit<double>() * 1.2;
        p_table.add(zyr_mandelbrotSolve(real, imaginary, static_cast<int>(source.below(400)) - 5));
    }
}

namespace {

/// Of all magnitudes, with halves and whole numbers among them.
double makeDouble(NumberSource& p_source) {
    static constexpr double c_scales[] = {1e-12, 1e-7,  1e-3, 0.01, 0.125, 0.5,  1,     1,
                                          10,    256.5, 1e5,  1e6,  3e6,   1e12, 1e100, 1e300};
    const double number = p_source.number<double>();
    switch (p_source.below(4)) {
    case 0:
        return p_source.wildNumber<double>();
    case 1:
        return static_cast<double>(p_source.number<int32_t>()) * c_scales[p_source.below(16)];
    default:
        return number * c_scales[p_source.below(16)];
    }
}

/// Digits, points, signs and exponents in any order, most of them nearly a number.
void writeNumberText(NumberSource& p_source, char (&p_text)[64]) {
    static const char c_characters[] = "0123456789012345678900995511..--++eE \tx";
    char* out = p_text;
    if (p_source.below(2) == 0) {
        const uint32_t parts[] = {p_source.below(100000), p_source.below(1000000)};
        out += sprintf(out, "%s%u.%u", p_source.below(2) == 0 ? "-" : " ", parts[0], parts[1]);
        if (p_source.below(2) == 0) {
            out += sprintf(out, "e%d", static_cast<int>(p_source.below(700)) - 350);
        }
    }
    for (uint32_t left = p_source.below(24); left > 0; --left) {
        *out++ = c_characters[p_source.below(sizeof(c_characters) - 1)];
    }
    *out = 0;
}

} // namespace

void zyr_fillNumberTexts(BitTable& p_table) {
    NumberSource source(33);
    for (uint32_t round = 0; round < 8000; ++round) {
        const double value = makeDouble(source);
        char buffer[64];
        zyr_convertDoubleToCharacters(buffer, sizeof(buffer), value, source.below(12));
        p_table.addText(buffer);
        String text;
        zyr_convertDoubleToString(value, text);
        p_table.addText(text.getData());
        p_table.add(zyr_convertStringToDouble(text.getData()));
    }
    for (uint32_t round = 0; round < 200; ++round) {
        String text;
        zyr_getVersionString(source.next(), text);
        p_table.addText(text.getData());
    }
}

void zyr_fillTextNumbers(BitTable& p_table) {
    NumberSource source(34);
    for (uint32_t round = 0; round < 10000; ++round) {
        char text[64];
        writeNumberText(source, text);
        p_table.add(zyr_convertStringToDouble(text));
    }
}

namespace {

/// One value through a reference to a field of each number type.
template <typename From>
void addConversions(BitTable& p_table, bool_t (VariableReference::*p_change)(From), From p_value) {
    auto convert = [&](auto p_field, VariableTypeEnum p_type) {
        VariableReference* reference = new VariableReference(p_type, &p_field);
        p_table.add((reference->*p_change)(p_value));
        p_table.add(p_field);
        reference->release();
    };
    convert(bool_t(7), ZYR_VARIABLE_BOOL);
    convert(int8_t(7), ZYR_VARIABLE_INT8);
    convert(uint8_t(7), ZYR_VARIABLE_UINT8);
    convert(int16_t(7), ZYR_VARIABLE_INT16);
    convert(uint16_t(7), ZYR_VARIABLE_UINT16);
    convert(int32_t(7), ZYR_VARIABLE_INT32);
    convert(uint32_t(7), ZYR_VARIABLE_UINT32);
    convert(int64_t(7), ZYR_VARIABLE_INT64);
    convert(uint64_t(7), ZYR_VARIABLE_UINT64);
    convert(float(7), ZYR_VARIABLE_FLOAT);
    convert(double(7), ZYR_VARIABLE_DOUBLE);
    convert(uint32_t(7), ZYR_VARIABLE_ENUM);
}

/// Bits at random with small and full magnitudes, and the ends.
template <typename T> T makeInteger(NumberSource& p_source) {
    const uint64_t bits = p_source.next();
    return p_source.below(6) == 0 ? p_source.wildNumber<T>() : static_cast<T>(bits >> p_source.below(64));
}

/// Around the limits of the integers, and of all magnitudes.
template <typename T> T makeReal(NumberSource& p_source) {
    static constexpr double c_limits[] = {
        0,      1,      127,   128,          255,          256,          300.7,        32767,
        32768,  65535,  65536, 2147483647.0, 2147483648.0, 4294967295.0, 4294967296.0, 0x1p53,
        0x1p63, 0x1p64, 1e19,  1e30,         FLT_MAX,      DBL_MAX,      FLT_MIN,      DBL_MIN};
    if (p_source.below(3) == 0) {
        return static_cast<T>(makeDouble(p_source));
    }
    const double limit = c_limits[p_source.below(24)];
    const double near = limit + (static_cast<double>(p_source.below(9)) - 4) * 0.5;
    return static_cast<T>(p_source.below(2) == 0 ? near : -near);
}

template <class To, class From>
void addColourConversion(BitTable& p_table, bool_t (VariableReference::*p_change)(const From&), const From& p_colour) {
    To field;
    VariableReference* reference = new VariableReference(zyr_getVariableTypeEnum<To>(), &field);
    p_table.add((reference->*p_change)(p_colour));
    p_table.addRecord(field);
    reference->release();
}

template <class From>
void addColourConversions(BitTable& p_table, bool_t (VariableReference::*p_change)(const From&), const From& p_colour) {
    addColourConversion<ColorRGB<float>>(p_table, p_change, p_colour);
    addColourConversion<ColorRGB<double>>(p_table, p_change, p_colour);
    addColourConversion<ColorRGBA<float>>(p_table, p_change, p_colour);
    addColourConversion<ColorRGBA<double>>(p_table, p_change, p_colour);
}

template <class C, typename T> void addColourArithmetic(BitTable& p_table, const C& p_a, const C& p_b, T p_value) {
    p_table.addRecord(p_a + p_b);
    p_table.addRecord(p_a - p_b);
    p_table.addRecord(p_a * p_b);
    p_table.addRecord(p_a / p_b);
    p_table.addRecord(p_a + p_value);
    p_table.addRecord(p_a - p_value);
    p_table.addRecord(p_a * p_value);
    p_table.addRecord(p_a / p_value);
    C sum(p_a);
    sum += p_b;
    sum *= p_value;
    sum /= p_b;
    sum -= p_value;
    p_table.addRecord(-sum);
}

template <typename T> void fillColourArithmetic(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 200; ++round) {
        const ColorRGBA<T> a{p_source.unit<T>(), p_source.unit<T>(), p_source.unit<T>(), p_source.unit<T>()};
        const ColorRGBA<T> b{p_source.unit<T>(), p_source.unit<T>(), p_source.unit<T>(), p_source.unit<T>()};
        addColourArithmetic(p_table, a, b, p_source.wildNumber<T>());
        addColourArithmetic(p_table, ColorRGB<T>(a.r, a.g, a.b), ColorRGB<T>(b.b, b.g, b.r), p_source.unit<T>());
    }
}

} // namespace

void zyr_fillConversions(BitTable& p_table) {
    NumberSource source(35);
    for (uint32_t round = 0; round < 500; ++round) {
        addConversions(p_table, &VariableReference::changeValueBool, static_cast<bool_t>(round % 3));
        addConversions(p_table, &VariableReference::changeValueInt8, makeInteger<int8_t>(source));
        addConversions(p_table, &VariableReference::changeValueUInt8, makeInteger<uint8_t>(source));
        addConversions(p_table, &VariableReference::changeValueInt16, makeInteger<int16_t>(source));
        addConversions(p_table, &VariableReference::changeValueUInt16, makeInteger<uint16_t>(source));
        addConversions(p_table, &VariableReference::changeValueInt32, makeInteger<int32_t>(source));
        addConversions(p_table, &VariableReference::changeValueUInt32, makeInteger<uint32_t>(source));
        addConversions(p_table, &VariableReference::changeValueInt64, makeInteger<int64_t>(source));
        addConversions(p_table, &VariableReference::changeValueUInt64, makeInteger<uint64_t>(source));
        addConversions(p_table, &VariableReference::changeValueFloat, makeReal<float>(source));
        addConversions(p_table, &VariableReference::changeValueDouble, makeReal<double>(source));
        const ColorRGBA<double> colour{makeReal<double>(source), source.unit<double>(), source.unit<double>(),
                                       source.unit<double>()};
        const ColorRGBA<float> narrow{makeReal<float>(source), source.unit<float>(), source.unit<float>(),
                                      source.unit<float>()};
        addColourConversions(p_table, &VariableReference::changeValueColorRGBADouble, colour);
        addColourConversions(p_table, &VariableReference::changeValueColorRGBAFloat, narrow);
        addColourConversions(p_table, &VariableReference::changeValueColorRGBDouble,
                             ColorRGB<double>(colour.r, colour.g, colour.b));
        addColourConversions(p_table, &VariableReference::changeValueColorRGBFloat,
                             ColorRGB<float>(narrow.r, narrow.g, narrow.b));
    }
}

// The picture module's conversions between RGB and YUV are not here: their library has code of its own for each
// processor.
void zyr_fillColours(BitTable& p_table) {
    NumberSource source(36);
    fillColourArithmetic<float>(p_table, source);
    fillColourArithmetic<double>(p_table, source);
    for (uint32_t round = 0; round < 500; ++round) {
        const ColorRGBA<float> colour{source.unit<float>(), source.unit<float>(), source.unit<float>(),
                                      source.wildNumber<float>()};
        for (uint32_t order = 8; order < 14; ++order) {
            p_table.add(zyr_convertColorRGBAToUInt32(static_cast<ColorOrderEnum>(order), colour));
            const uint32_t value = static_cast<uint32_t>(source.next());
            p_table.addRecord(zyr_convertUInt32ToColorRGBA(static_cast<ColorOrderEnum>(order), value));
        }
    }
    for (uint32_t format = 0; format < 1000; ++format) {
        const ColorRGBA<float> colour{source.unit<float>(), source.unit<float>(), source.unit<float>(),
                                      source.unit<float>()};
        unsigned char pixels[2][64] = {};
        zyr_clearImageDataWithColorRGBA(3, 2, 64, static_cast<PixelFormatEnum>(format), pixels, colour);
        for (const auto& row : pixels) {
            for (unsigned char byte : row) {
                p_table.add(byte);
            }
        }
    }
}

} // namespace zyr
