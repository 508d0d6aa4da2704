/// A rectangle whose four numbers are anchored, and the solver that turns it into a plain one.
///
///     ExtRect<float> button(Rect<float>(-10, 10, 80, 24), ZYR_POSITION_X_RIGHT_MINUS_WIDTH, ZYR_POSITION_Y_TOP,
///                           ZYR_SIZE_WIDTH_WIDTH, ZYR_SIZE_HEIGHT_HEIGHT, 0, 65536, 0, 65536, ExtVector2<float>());
///     Rect<float> place;
///     button.solveRect(place, window, previous, next, content, 1.0, nullptr, nullptr, 0);
#pragma once

#include "zyr_common/geometry/zyr_ext_vector.h"

namespace zyr {

#pragma pack(push, 1)

/// A rectangle and what each of its numbers counts from. Packed, without a virtual table, for int32_t, int64_t, float
/// and double. Any number of threads may solve one rectangle.
template <typename T> class ExtRect : public Record<ExtRect<T>, Rect<T>> {
public:
    /// What each of the four numbers counts from; all 0 at first, so that a new rectangle is its plain numbers.
    PositionXAnchorEnum xAnchor;
    PositionYAnchorEnum yAnchor;
    SizeWidthAnchorEnum widthAnchor;
    SizeHeightAnchorEnum heightAnchor;
    /// Limits of the solved size, 0 to 65536 at first; the minimum wins where the two contradict.
    T minWidth;
    T maxWidth;
    /// The same for the height.
    T minHeight;
    T maxHeight;
    ExtVector2<T> origin; ///< kept for the caller; takes no part in solving

    /// An empty rectangle at the parent's left top corner.
    ExtRect() { this->init_This(); }
    ExtRect(const Rect<T>& p_rect, PositionXAnchorEnum p_xAnchor, PositionYAnchorEnum p_yAnchor,
            SizeWidthAnchorEnum p_widthAnchor, SizeHeightAnchorEnum p_heightAnchor, T p_minWidth, T p_maxWidth,
            T p_minHeight, T p_maxHeight, const ExtVector2<T>& p_origin)
        : Record<ExtRect<T>, Rect<T>>(p_rect),
          xAnchor(p_xAnchor),
          yAnchor(p_yAnchor),
          widthAnchor(p_widthAnchor),
          heightAnchor(p_heightAnchor),
          minWidth(p_minWidth),
          maxWidth(p_maxWidth),
          minHeight(p_minHeight),
          maxHeight(p_maxHeight),
          origin(p_origin) {}

    /// Solves this rectangle against its surroundings: first the sizes, then the positions; sizes given as a far edge
    /// lose their position; then border, limits, positions that need the final size, and the wrap to a new line.
    ///
    /// p_content is the size of what is shown inside; p_contentScale divides it for one anchor only. Separators are
    /// lines whose coordinates an anchor may name: p_hSeparators have a y, p_vSeparators an x; null and missing ones
    /// count as 0. p_border above 0 keeps the rectangle inside the parent by that much and apart from others by half of
    /// it.
    ///
    /// Gives 0 and logs for an anchor that doesn't exist on its axis; p_out then holds what had been computed.
    /// Allocates nothing.
    bool_t solveRect(Rect<T>& p_out, const Rect<T>& p_parent, const Rect<T>& p_previous, const Rect<T>& p_next,
                     const RectSize<T>& p_content, double p_contentScale, const Array<T>* p_hSeparators,
                     const Array<T>* p_vSeparators, T p_border) const;

    static constexpr const char* c_typeName = "ExtRect";
    static constexpr auto fields() {
        return zyr_fields(
            zyr_field("xAnchor", &ExtRect::xAnchor), zyr_field("yAnchor", &ExtRect::yAnchor),
            zyr_field("widthAnchor", &ExtRect::widthAnchor), zyr_field("heightAnchor", &ExtRect::heightAnchor),
            zyr_field("minWidth", &ExtRect::minWidth), zyr_field("maxWidth", &ExtRect::maxWidth).withDefault(65536),
            zyr_field("minHeight", &ExtRect::minHeight), zyr_field("maxHeight", &ExtRect::maxHeight).withDefault(65536),
            zyr_field("origin", &ExtRect::origin));
    }
};

#pragma pack(pop)

} // namespace zyr
