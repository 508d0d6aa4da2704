/// The enumerations of the shape records. Each is stored as one byte, with fixed numbers and fixed texts.
///
/// Nothing in this library draws by them: they are for those who make outlines and meshes of the shapes.
#pragma once

#include "zyr_common/serialization/zyr_enumeration.h"
#include "zyr_common/serialization/zyr_enumeration_maps.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

/// How a spline joins its points.
enum SplineTypeEnum : uint8_t {
    /// straight lines from point to point
    ZYR_SPLINE_TYPE_LINEAR = 0,
    /// a curve of the second degree through the points
    ZYR_SPLINE_TYPE_QUADRATIC = 1,
    /// a curve of the third degree through the points
    ZYR_SPLINE_TYPE_CUBIC = 2,
    /// end points with one control point between two of them
    ZYR_SPLINE_TYPE_BEZIER_QUADRATIC = 3,
    /// end points with two control points between two of them; the default of all splines
    ZYR_SPLINE_TYPE_BEZIER_CUBIC = 4,
    /// the points are the control points of a rational B-spline of the second degree
    ZYR_SPLINE_TYPE_NURBS_QUADRATIC = 5,
    /// the points are the control points of a rational B-spline of the third degree
    ZYR_SPLINE_TYPE_NURBS_CUBIC = 6
};

/// The texts stand in files: they are permanent, like the numbers.
template <> struct EnumerationTable<SplineTypeEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_SPLINE_TYPE_LINEAR, "LINEAR"},
        {ZYR_SPLINE_TYPE_QUADRATIC, "QUADRATIC"},
        {ZYR_SPLINE_TYPE_CUBIC, "CUBIC"},
        {ZYR_SPLINE_TYPE_BEZIER_QUADRATIC, "BEZIER_QUADRATIC"},
        {ZYR_SPLINE_TYPE_BEZIER_CUBIC, "BEZIER_CUBIC"},
        {ZYR_SPLINE_TYPE_NURBS_QUADRATIC, "NURBS_QUADRATIC"},
        {ZYR_SPLINE_TYPE_NURBS_CUBIC, "NURBS_CUBIC"},
    };
};

/// The profile of a filleted edge, seen along the edge.
enum FilletTypeEnum : uint8_t {
    /// the default
    ZYR_FILLET_TYPE_LINEAR = 0,
    /// rounded outward
    ZYR_FILLET_TYPE_CONVEX = 1,
    /// hollowed
    ZYR_FILLET_TYPE_CONCAVE = 2,
    ZYR_FILLET_TYPE_HALFCIRCLE = 3,
    ZYR_FILLET_TYPE_ONESTEP = 4,
    ZYR_FILLET_TYPE_TWOSTEPS = 5,
    ZYR_FILLET_TYPE_ENGRAVED = 6
};

template <> struct EnumerationTable<FilletTypeEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_FILLET_TYPE_LINEAR, "LINEAR"},     {ZYR_FILLET_TYPE_CONVEX, "CONVEX"},
        {ZYR_FILLET_TYPE_CONCAVE, "CONCAVE"},   {ZYR_FILLET_TYPE_HALFCIRCLE, "HALFCIRCLE"},
        {ZYR_FILLET_TYPE_ONESTEP, "ONESTEP"},   {ZYR_FILLET_TYPE_TWOSTEPS, "TWOSTEPS"},
        {ZYR_FILLET_TYPE_ENGRAVED, "ENGRAVED"},
    };
};

/// How values between two samples of a graph are found.
enum InterpolationEnum : uint8_t {
    /// the sample that is closer
    ZYR_INTERPOLATION_NEAREST = 0,
    /// a straight line between the two; the default of Graph2D
    ZYR_INTERPOLATION_LINEAR = 1,
    /// a curve of the second degree through the samples
    ZYR_INTERPOLATION_QUADRATIC = 2,
    /// a curve of the third degree through the samples
    ZYR_INTERPOLATION_CUBIC = 3,
    ZYR_INTERPOLATION_BEZIER_QUADRATIC = 4,
    ZYR_INTERPOLATION_BEZIER_CUBIC = 5,
    ZYR_INTERPOLATION_ROUND = 6
};

template <> struct EnumerationTable<InterpolationEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_INTERPOLATION_NEAREST, "NEAREST"},
        {ZYR_INTERPOLATION_LINEAR, "LINEAR"},
        {ZYR_INTERPOLATION_QUADRATIC, "QUADRATIC"},
        {ZYR_INTERPOLATION_CUBIC, "CUBIC"},
        {ZYR_INTERPOLATION_BEZIER_QUADRATIC, "BEZIER_QUADRATIC"},
        {ZYR_INTERPOLATION_BEZIER_CUBIC, "BEZIER_CUBIC"},
        {ZYR_INTERPOLATION_ROUND, "ROUND"},
    };
};

// The maps between texts and numbers, built when the module is loaded and only read afterwards.
extern const EnumerationMaps<SplineTypeEnum> g_splineTypeMaps;
extern const EnumerationMaps<FilletTypeEnum> g_filletTypeMaps;
extern const EnumerationMaps<InterpolationEnum> g_interpolationMaps;

} // namespace zyr
