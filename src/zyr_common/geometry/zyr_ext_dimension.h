/// One size with an anchor that tells what it is part of, or which edge it gives.
///
/// Packed values without a virtual table, for float and double. A default one fills the parent: 0 to its far edge.
/// These are what settings and descriptors hold; they have no solver of their own. ExtRect and ExtBox solve sizes.
#pragma once

#include "zyr_common/geometry/zyr_anchors.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

#pragma pack(push, 1)

/// A width, or the right edge that gives it.
///
///     ExtDimensionWidth<float> half(50, ZYR_SIZE_WIDTH_PARENT_WIDTH_PERCENT);
template <typename T> class ExtDimensionWidth : public Record<ExtDimensionWidth<T>> {
public:
    /// in pixels, percent or as an offset, as the anchor tells
    T width;
    /// `RIGHT` at first
    SizeWidthAnchorEnum widthAnchor;

    /// The parent's whole width: 0 from its right edge.
    ExtDimensionWidth() { this->init_This(); }
    ExtDimensionWidth(T p_width, SizeWidthAnchorEnum p_widthAnchor) : width(p_width), widthAnchor(p_widthAnchor) {}

    static constexpr const char* c_typeName = "ExtDimensionWidth";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &ExtDimensionWidth::width),
                          zyr_field("widthAnchor", &ExtDimensionWidth::widthAnchor).withDefault(ZYR_SIZE_WIDTH_RIGHT));
    }
};

/// A height, or the lower edge that gives it.
template <typename T> class ExtDimensionHeight : public Record<ExtDimensionHeight<T>> {
public:
    /// in pixels, percent or as an offset, as the anchor tells
    T height;
    /// `BOTTOM` at first
    SizeHeightAnchorEnum heightAnchor;

    /// The parent's whole height: 0 from its lower edge.
    ExtDimensionHeight() { this->init_This(); }
    ExtDimensionHeight(T p_height, SizeHeightAnchorEnum p_heightAnchor)
        : height(p_height), heightAnchor(p_heightAnchor) {}

    static constexpr const char* c_typeName = "ExtDimensionHeight";
    static constexpr auto fields() {
        return zyr_fields(
            zyr_field("height", &ExtDimensionHeight::height),
            zyr_field("heightAnchor", &ExtDimensionHeight::heightAnchor).withDefault(ZYR_SIZE_HEIGHT_BOTTOM));
    }
};

/// A depth, or the far edge that gives it.
template <typename T> class ExtDimensionDepth : public Record<ExtDimensionDepth<T>> {
public:
    /// in pixels, percent or as an offset, as the anchor tells
    T depth;
    /// `FAR` at first
    SizeDepthAnchorEnum depthAnchor;

    /// The parent's whole depth: 0 from its far edge.
    ExtDimensionDepth() { this->init_This(); }
    ExtDimensionDepth(T p_depth, SizeDepthAnchorEnum p_depthAnchor) : depth(p_depth), depthAnchor(p_depthAnchor) {}

    static constexpr const char* c_typeName = "ExtDimensionDepth";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("depth", &ExtDimensionDepth::depth),
                          zyr_field("depthAnchor", &ExtDimensionDepth::depthAnchor).withDefault(ZYR_SIZE_DEPTH_FAR));
    }
};

#pragma pack(pop)

} // namespace zyr
