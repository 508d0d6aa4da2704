/// Colour values: red, green and blue, with alpha, and the stop of a gradient.
///
/// Channels go from 0 to 1 in the `float` and `double` forms, and nothing holds them there: sums may leave the range,
/// and who makes pixels of them cuts. Arithmetic works channel by channel, alpha included, and is not premultiplied.
/// Division by 0 gives what the floating types give. These are plain values without a virtual table; they are stored
/// under the keys "r", "g", "b" and "a", a stop under "color" and "offset", and the keys are the words of paths as
/// well.
///
///     ColorRGBA<float> middle = (ColorRGBA<float>(1, 0, 0, 1) + ColorRGBA<float>(0, 0, 1, 1)) * 0.5f;
#pragma once

#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

#pragma pack(push, 1)

/// A colour without alpha. A new one is black.
template <typename T> class ColorRGB : public Record<ColorRGB<T>> {
public:
    /// from 0 to 1
    T r = 0;
    T g = 0;
    T b = 0;

    /// Black.
    ColorRGB() = default;
    ColorRGB(T p_r, T p_g, T p_b) : r(p_r), g(p_g), b(p_b) {}

    /// With another colour, channel by channel.
    ColorRGB operator+(const ColorRGB& p_color) const { return {r + p_color.r, g + p_color.g, b + p_color.b}; }
    ColorRGB operator-(const ColorRGB& p_color) const { return {r - p_color.r, g - p_color.g, b - p_color.b}; }
    ColorRGB operator*(const ColorRGB& p_color) const { return {r * p_color.r, g * p_color.g, b * p_color.b}; }
    ColorRGB operator/(const ColorRGB& p_color) const { return {r / p_color.r, g / p_color.g, b / p_color.b}; }
    /// With one number for all channels.
    ColorRGB operator+(T p_scalar) const { return {r + p_scalar, g + p_scalar, b + p_scalar}; }
    ColorRGB operator-(T p_scalar) const { return {r - p_scalar, g - p_scalar, b - p_scalar}; }
    ColorRGB operator*(T p_scalar) const { return {r * p_scalar, g * p_scalar, b * p_scalar}; }
    ColorRGB operator/(T p_scalar) const { return {r / p_scalar, g / p_scalar, b / p_scalar}; }
    /// The assigning forms give what the others give.
    ColorRGB& operator+=(const ColorRGB& p_color) { return *this = *this + p_color; }
    ColorRGB& operator-=(const ColorRGB& p_color) { return *this = *this - p_color; }
    ColorRGB& operator*=(const ColorRGB& p_color) { return *this = *this * p_color; }
    ColorRGB& operator/=(const ColorRGB& p_color) { return *this = *this / p_color; }
    ColorRGB& operator+=(T p_scalar) { return *this = *this + p_scalar; }
    ColorRGB& operator-=(T p_scalar) { return *this = *this - p_scalar; }
    ColorRGB& operator*=(T p_scalar) { return *this = *this * p_scalar; }
    ColorRGB& operator/=(T p_scalar) { return *this = *this / p_scalar; }
    ColorRGB operator+() const { return *this; }
    /// Channels below 0: only good as a step of a sum.
    ColorRGB operator-() const { return {-r, -g, -b}; }

    static constexpr const char* c_typeName = "ColorRGB";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("r", &ColorRGB::r), zyr_field("g", &ColorRGB::g), zyr_field("b", &ColorRGB::b));
    }
};

/// A colour with alpha: 0 is transparent, 1 opaque. A new one is transparent black.
///
///     ColorRGBA<float> over = top * top.a + bottom * (1 - top.a); // of opaque bottoms
template <typename T> class ColorRGBA : public Record<ColorRGBA<T>> {
public:
    /// from 0 to 1; not multiplied by alpha
    T r = 0;
    T g = 0;
    T b = 0;
    T a = 0;

    /// Transparent black.
    ColorRGBA() = default;
    ColorRGBA(T p_r, T p_g, T p_b, T p_a) : r(p_r), g(p_g), b(p_b), a(p_a) {}

    /// With another colour, channel by channel.
    ColorRGBA operator+(const ColorRGBA& p_color) const {
        return {r + p_color.r, g + p_color.g, b + p_color.b, a + p_color.a};
    }
    ColorRGBA operator-(const ColorRGBA& p_color) const {
        return {r - p_color.r, g - p_color.g, b - p_color.b, a - p_color.a};
    }
    ColorRGBA operator*(const ColorRGBA& p_color) const {
        return {r * p_color.r, g * p_color.g, b * p_color.b, a * p_color.a};
    }
    ColorRGBA operator/(const ColorRGBA& p_color) const {
        return {r / p_color.r, g / p_color.g, b / p_color.b, a / p_color.a};
    }
    /// With one number for all channels, alpha too.
    ColorRGBA operator+(T p_scalar) const { return {r + p_scalar, g + p_scalar, b + p_scalar, a + p_scalar}; }
    ColorRGBA operator-(T p_scalar) const { return {r - p_scalar, g - p_scalar, b - p_scalar, a - p_scalar}; }
    ColorRGBA operator*(T p_scalar) const { return {r * p_scalar, g * p_scalar, b * p_scalar, a * p_scalar}; }
    ColorRGBA operator/(T p_scalar) const { return {r / p_scalar, g / p_scalar, b / p_scalar, a / p_scalar}; }
    /// The assigning forms give what the others give.
    ColorRGBA& operator+=(const ColorRGBA& p_color) { return *this = *this + p_color; }
    ColorRGBA& operator-=(const ColorRGBA& p_color) { return *this = *this - p_color; }
    ColorRGBA& operator*=(const ColorRGBA& p_color) { return *this = *this * p_color; }
    ColorRGBA& operator/=(const ColorRGBA& p_color) { return *this = *this / p_color; }
    ColorRGBA& operator+=(T p_scalar) { return *this = *this + p_scalar; }
    ColorRGBA& operator-=(T p_scalar) { return *this = *this - p_scalar; }
    ColorRGBA& operator*=(T p_scalar) { return *this = *this * p_scalar; }
    ColorRGBA& operator/=(T p_scalar) { return *this = *this / p_scalar; }
    ColorRGBA operator+() const { return *this; }
    /// All four numbers below 0: only good as a step of a sum.
    ColorRGBA operator-() const { return {-r, -g, -b, -a}; }

    static constexpr const char* c_typeName = "ColorRGBA";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("r", &ColorRGBA::r), zyr_field("g", &ColorRGBA::g), zyr_field("b", &ColorRGBA::b),
                          zyr_field("a", &ColorRGBA::a));
    }
};

/// One stop of a gradient: the colour at a place between 0 and 1.
template <typename T> class ColorRGBAStop : public Record<ColorRGBAStop<T>> {
public:
    /// the colour at that place
    ColorRGBA<T> color;
    /// from 0 at the start of the gradient to 1 at its end
    T offset = 0;

    ColorRGBAStop() = default;
    ColorRGBAStop(const ColorRGBA<T>& p_color, T p_offset) : color(p_color), offset(p_offset) {}

    static constexpr const char* c_typeName = "ColorRGBAStop";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("color", &ColorRGBAStop::color), zyr_field("offset", &ColorRGBAStop::offset));
    }
};

#pragma pack(pop)

static_assert(sizeof(ColorRGB<float>) == 12 && sizeof(ColorRGB<double>) == 24);
static_assert(sizeof(ColorRGBA<float>) == 16 && sizeof(ColorRGBA<double>) == 32);
static_assert(sizeof(ColorRGBAStop<float>) == 20 && sizeof(ColorRGBAStop<double>) == 40);

} // namespace zyr
