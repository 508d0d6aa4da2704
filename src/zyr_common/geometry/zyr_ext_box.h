/// A box whose six numbers are anchored, and its solver.
///
/// The reduced form of ExtRect for three axes: there are no siblings, no content, no separators and no border, so of
/// the anchors only those that need none of these exist here.
///
///     ExtBox<float> lid(Box<float>(0, 0, 0, 0, 10, 100), ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_TOP, ZYR_POSITION_Z_NEAR,
///                       ZYR_SIZE_WIDTH_RIGHT, ZYR_SIZE_HEIGHT_HEIGHT, ZYR_SIZE_DEPTH_PARENT_DEPTH_PERCENT,
///                       0, 65535, 0, 65535, 0, 65535, ExtVector3<float>());
///     Box<float> place;
///     lid.solveBox(place, Box<float>(0, 0, 0, 400, 300, 200)); // (0, 0, 0, 400, 10, 200)
#pragma once

#include "zyr_common/geometry/zyr_ext_vector.h"

namespace zyr {

#pragma pack(push, 1)

/// A box and what each of its numbers counts from. Packed, without a virtual table, for float and double. A new one has
/// size 0 at the parent's near corner. Any number of threads may solve one box.
template <typename T> class ExtBox : public Record<ExtBox<T>, Box<T>> {
public:
    /// What each of the six numbers counts from; all 0 at first.
    PositionXAnchorEnum xAnchor;
    PositionYAnchorEnum yAnchor;
    PositionZAnchorEnum zAnchor;
    SizeWidthAnchorEnum widthAnchor;
    SizeHeightAnchorEnum heightAnchor;
    SizeDepthAnchorEnum depthAnchor;
    /// Limits of the solved sizes. They are applied last, the minimum over the maximum where the two contradict.
    T minWidth;
    T maxWidth; ///< 65535 by default, one less than in ExtRect, which is relied upon
    /// The same for the height.
    T minHeight;
    T maxHeight;
    /// The same for the depth.
    T minDepth;
    T maxDepth;
    ExtVector3<T> origin; ///< kept for the caller; takes no part in solving

    /// Size 0 at the parent's near corner; the sizes are limited to 65535.
    ExtBox() { this->init_This(); }
    ExtBox(const Box<T>& p_box, PositionXAnchorEnum p_xAnchor, PositionYAnchorEnum p_yAnchor,
           PositionZAnchorEnum p_zAnchor, SizeWidthAnchorEnum p_widthAnchor, SizeHeightAnchorEnum p_heightAnchor,
           SizeDepthAnchorEnum p_depthAnchor, T p_minWidth, T p_maxWidth, T p_minHeight, T p_maxHeight, T p_minDepth,
           T p_maxDepth, const ExtVector3<T>& p_origin)
        : Record<ExtBox<T>, Box<T>>(p_box),
          xAnchor(p_xAnchor),
          yAnchor(p_yAnchor),
          zAnchor(p_zAnchor),
          widthAnchor(p_widthAnchor),
          heightAnchor(p_heightAnchor),
          depthAnchor(p_depthAnchor),
          minWidth(p_minWidth),
          maxWidth(p_maxWidth),
          minHeight(p_minHeight),
          maxHeight(p_maxHeight),
          minDepth(p_minDepth),
          maxDepth(p_maxDepth),
          origin(p_origin) {}

    /// Solves this box inside p_parent: sizes (anchors 0 to 4 and 8), positions (anchors 0 to 4), far edges, limits.
    /// Sizes with the anchors 3 and 4 are this box's own proportions, fitted into the parent. Any other anchor gives 0
    /// without a message; p_out then holds what had been computed. Allocates nothing.
    bool_t solveBox(Box<T>& p_out, const Box<T>& p_parent) const;

    static constexpr const char* c_typeName = "ExtBox";
    static constexpr auto fields() {
        return zyr_fields(
            zyr_field("xAnchor", &ExtBox::xAnchor), zyr_field("yAnchor", &ExtBox::yAnchor),
            zyr_field("zAnchor", &ExtBox::zAnchor), zyr_field("widthAnchor", &ExtBox::widthAnchor),
            zyr_field("heightAnchor", &ExtBox::heightAnchor), zyr_field("depthAnchor", &ExtBox::depthAnchor),
            zyr_field("minWidth", &ExtBox::minWidth), zyr_field("maxWidth", &ExtBox::maxWidth).withDefault(65535),
            zyr_field("minHeight", &ExtBox::minHeight), zyr_field("maxHeight", &ExtBox::maxHeight).withDefault(65535),
            zyr_field("minDepth", &ExtBox::minDepth), zyr_field("maxDepth", &ExtBox::maxDepth).withDefault(65535),
            zyr_field("origin", &ExtBox::origin));
    }
};

#pragma pack(pop)

} // namespace zyr
