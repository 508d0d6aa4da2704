/// The anchors of the layout: what the number of a position or of a size counts from.
///
/// Each enumeration is stored as one byte, with fixed numbers and fixed texts. A number means the same on all axes, so
/// the solvers work on numbers alone. `V` separators are vertical lines (they have an x), `H` and `D` those of the
/// other axes; only the first and the last of the sixteen are named here, the others lie between.
///
/// In the formulas below v is the record's own number, and `parent`, `prev` and `next` are the surrounding rectangles
/// as the caller hands them in. A percentage is multiplied before it is divided. Enumerators of the z axis without a
/// formula have no solver.
///
/// Which anchors a solver knows is told with the solver: ExtRect::solveRect knows all of x, y, width and height, points
/// only the first six, boxes only a few, and nothing solves a depth by its siblings.
#pragma once

#include "zyr_common/serialization/zyr_enumeration.h"
#include "zyr_common/serialization/zyr_enumeration_maps.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

/// The sixteen table rows of the separators of one axis.
#define ZYR_SEPARATOR_ROWS(axis)                                                                                       \
    {128, axis "_SEPARATOR_1"}, {129, axis "_SEPARATOR_2"}, {130, axis "_SEPARATOR_3"}, {131, axis "_SEPARATOR_4"},    \
        {132, axis "_SEPARATOR_5"}, {133, axis "_SEPARATOR_6"}, {134, axis "_SEPARATOR_7"},                            \
        {135, axis "_SEPARATOR_8"}, {136, axis "_SEPARATOR_9"}, {137, axis "_SEPARATOR_10"},                           \
        {138, axis "_SEPARATOR_11"}, {139, axis "_SEPARATOR_12"}, {140, axis "_SEPARATOR_13"},                         \
        {141, axis "_SEPARATOR_14"}, {142, axis "_SEPARATOR_15"}, {                                                    \
        143, axis "_SEPARATOR_16"                                                                                      \
    }

/// Where an x counts from.
enum PositionXAnchorEnum : uint8_t {
    /// v: from the parent's left edge, as everything that isn't `ABSOLUTE` or relative to a sibling
    ZYR_POSITION_X_LEFT = 0,
    /// parent.width + v, so a negative v lies inside
    ZYR_POSITION_X_RIGHT = 1,
    /// parent.width / 2 + v
    ZYR_POSITION_X_CENTER = 2,
    /// parent.width * v / 100
    ZYR_POSITION_X_PARENT_WIDTH_PERCENT = 3,
    /// parent.x + v: in the coordinates that the parent itself stands in
    ZYR_POSITION_X_ABSOLUTE = 4,
    /// prev.x + v; for points: the previous point's x + v
    ZYR_POSITION_X_PREV_LEFT = 5,
    /// prev.x + prev.width + v
    ZYR_POSITION_X_PREV_RIGHT = 6,
    /// prev.x + prev.width / 2 + v
    ZYR_POSITION_X_PREV_CENTER = 7,
    /// prev.x + prev.width * v / 100
    ZYR_POSITION_X_PREV_LEFT_PLUS_WIDTH_PERCENT = 8,
    /// next.x + v
    ZYR_POSITION_X_NEXT_LEFT = 9,
    /// next.x + next.width + v
    ZYR_POSITION_X_NEXT_RIGHT = 10,
    /// next.x + next.width / 2 + v
    ZYR_POSITION_X_NEXT_CENTER = 11,
    /// next.x + next.width * v / 100
    ZYR_POSITION_X_NEXT_LEFT_PLUS_WIDTH_PERCENT = 12,
    /// parent.width - width + v, with the width before border and limits: aligned to the right edge
    ZYR_POSITION_X_RIGHT_MINUS_WIDTH = 13,
    /// parent.width * v / 100 - width, with the final width: the right edge stands at the percentage
    ZYR_POSITION_X_PARENT_WIDTH_PERCENT_MINUS_WIDTH = 14,
    /// (parent.width - width + 1) * v / 100, with the final width: a percentage of the free room
    ZYR_POSITION_X_PARENT_WIDTH_PERCENT_WITHOUT_WIDTH = 15,
    /// separator + v; the number less 128 is the index of the separator, and a missing one counts as 0
    ZYR_POSITION_X_V_SEPARATOR_1 = 128,
    ZYR_POSITION_X_V_SEPARATOR_16 = 143
};

template <> struct EnumerationTable<PositionXAnchorEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_POSITION_X_LEFT, "LEFT"},
        {ZYR_POSITION_X_RIGHT, "RIGHT"},
        {ZYR_POSITION_X_CENTER, "CENTER"},
        {ZYR_POSITION_X_PARENT_WIDTH_PERCENT, "PARENT_WIDTH_PERCENT"},
        {ZYR_POSITION_X_ABSOLUTE, "ABSOLUTE"},
        {ZYR_POSITION_X_PREV_LEFT, "PREV_LEFT"},
        {ZYR_POSITION_X_PREV_RIGHT, "PREV_RIGHT"},
        {ZYR_POSITION_X_PREV_CENTER, "PREV_CENTER"},
        {ZYR_POSITION_X_PREV_LEFT_PLUS_WIDTH_PERCENT, "PREV_LEFT_PLUS_WIDTH_PERCENT"},
        {ZYR_POSITION_X_NEXT_LEFT, "NEXT_LEFT"},
        {ZYR_POSITION_X_NEXT_RIGHT, "NEXT_RIGHT"},
        {ZYR_POSITION_X_NEXT_CENTER, "NEXT_CENTER"},
        {ZYR_POSITION_X_NEXT_LEFT_PLUS_WIDTH_PERCENT, "NEXT_LEFT_PLUS_WIDTH_PERCENT"},
        {ZYR_POSITION_X_RIGHT_MINUS_WIDTH, "RIGHT_MINUS_WIDTH"},
        {ZYR_POSITION_X_PARENT_WIDTH_PERCENT_MINUS_WIDTH, "PARENT_WIDTH_PERCENT_MINUS_WIDTH"},
        {ZYR_POSITION_X_PARENT_WIDTH_PERCENT_WITHOUT_WIDTH, "PARENT_WIDTH_PERCENT_WITHOUT_WIDTH"},
        ZYR_SEPARATOR_ROWS("V"),
    };
};

/// Where a y counts from. y grows downward. The formulas are those of PositionXAnchorEnum with y and height.
enum PositionYAnchorEnum : uint8_t {
    /// v: from the parent's top edge, as everything that isn't `ABSOLUTE` or relative to a sibling
    ZYR_POSITION_Y_TOP = 0,
    /// parent.height + v, so a negative v lies inside
    ZYR_POSITION_Y_BOTTOM = 1,
    /// parent.height / 2 + v
    ZYR_POSITION_Y_CENTER = 2,
    /// parent.height * v / 100
    ZYR_POSITION_Y_PARENT_HEIGHT_PERCENT = 3,
    /// parent.y + v: in the coordinates that the parent itself stands in
    ZYR_POSITION_Y_ABSOLUTE = 4,
    /// prev.y + v; for points: the previous point's y + v
    ZYR_POSITION_Y_PREV_TOP = 5,
    /// prev.y + prev.height + v
    ZYR_POSITION_Y_PREV_BOTTOM = 6,
    /// prev.y + prev.height / 2 + v
    ZYR_POSITION_Y_PREV_CENTER = 7,
    /// prev.y + prev.height * v / 100
    ZYR_POSITION_Y_PREV_TOP_PLUS_HEIGHT_PERCENT = 8,
    /// next.y + v
    ZYR_POSITION_Y_NEXT_TOP = 9,
    /// next.y + next.height + v
    ZYR_POSITION_Y_NEXT_BOTTOM = 10,
    /// next.y + next.height / 2 + v
    ZYR_POSITION_Y_NEXT_CENTER = 11,
    /// next.y + next.height * v / 100
    ZYR_POSITION_Y_NEXT_TOP_PLUS_HEIGHT_PERCENT = 12,
    /// parent.height - height + v, with the height before border and limits: aligned to the bottom edge
    ZYR_POSITION_Y_BOTTOM_MINUS_HEIGHT = 13,
    /// parent.height * v / 100 - height, with the final height: the bottom edge stands at the percentage
    ZYR_POSITION_Y_PARENT_HEIGHT_PERCENT_MINUS_HEIGHT = 14,
    /// (parent.height - height + 1) * v / 100, with the final height: a percentage of the free room
    ZYR_POSITION_Y_PARENT_HEIGHT_PERCENT_WITHOUT_HEIGHT = 15,
    /// separator + v; the number less 128 is the index of the separator, and a missing one counts as 0
    ZYR_POSITION_Y_H_SEPARATOR_1 = 128,
    ZYR_POSITION_Y_H_SEPARATOR_16 = 143
};

template <> struct EnumerationTable<PositionYAnchorEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_POSITION_Y_TOP, "TOP"},
        {ZYR_POSITION_Y_BOTTOM, "BOTTOM"},
        {ZYR_POSITION_Y_CENTER, "CENTER"},
        {ZYR_POSITION_Y_PARENT_HEIGHT_PERCENT, "PARENT_HEIGHT_PERCENT"},
        {ZYR_POSITION_Y_ABSOLUTE, "ABSOLUTE"},
        {ZYR_POSITION_Y_PREV_TOP, "PREV_TOP"},
        {ZYR_POSITION_Y_PREV_BOTTOM, "PREV_BOTTOM"},
        {ZYR_POSITION_Y_PREV_CENTER, "PREV_CENTER"},
        {ZYR_POSITION_Y_PREV_TOP_PLUS_HEIGHT_PERCENT, "PREV_TOP_PLUS_HEIGHT_PERCENT"},
        {ZYR_POSITION_Y_NEXT_TOP, "NEXT_TOP"},
        {ZYR_POSITION_Y_NEXT_BOTTOM, "NEXT_BOTTOM"},
        {ZYR_POSITION_Y_NEXT_CENTER, "NEXT_CENTER"},
        {ZYR_POSITION_Y_NEXT_TOP_PLUS_HEIGHT_PERCENT, "NEXT_TOP_PLUS_HEIGHT_PERCENT"},
        {ZYR_POSITION_Y_BOTTOM_MINUS_HEIGHT, "BOTTOM_MINUS_HEIGHT"},
        {ZYR_POSITION_Y_PARENT_HEIGHT_PERCENT_MINUS_HEIGHT, "PARENT_HEIGHT_PERCENT_MINUS_HEIGHT"},
        {ZYR_POSITION_Y_PARENT_HEIGHT_PERCENT_WITHOUT_HEIGHT, "PARENT_HEIGHT_PERCENT_WITHOUT_HEIGHT"},
        ZYR_SEPARATOR_ROWS("H"),
    };
};

/// Where a z counts from. z grows away from the viewer: `NEAR` is the parent's front face. The formulas are those of
/// PositionXAnchorEnum with z and depth, as far as a solver knows them.
enum PositionZAnchorEnum : uint8_t {
    /// v: from the parent's near edge, as everything that isn't `ABSOLUTE` or relative to a sibling
    ZYR_POSITION_Z_NEAR = 0,
    /// parent.depth + v, so a negative v lies inside
    ZYR_POSITION_Z_FAR = 1,
    /// parent.depth / 2 + v
    ZYR_POSITION_Z_CENTER = 2,
    /// parent.depth * v / 100
    ZYR_POSITION_Z_PARENT_DEPTH_PERCENT = 3,
    /// parent.z + v: in the coordinates that the parent itself stands in
    ZYR_POSITION_Z_ABSOLUTE = 4,
    /// prev.z + v; for points: the previous point's z + v
    ZYR_POSITION_Z_PREV_NEAR = 5,
    /// No solver knows the anchors from here on. They are stored and shown like the others, for hosts with solvers of
    /// their own.
    ZYR_POSITION_Z_PREV_FAR = 6,
    ZYR_POSITION_Z_PREV_CENTER = 7,
    ZYR_POSITION_Z_PREV_NEAR_PLUS_DEPTH_PERCENT = 8,
    ZYR_POSITION_Z_NEXT_NEAR = 9,
    ZYR_POSITION_Z_NEXT_FAR = 10,
    ZYR_POSITION_Z_NEXT_CENTER = 11,
    ZYR_POSITION_Z_NEXT_NEAR_PLUS_DEPTH_PERCENT = 12,
    ZYR_POSITION_Z_FAR_MINUS_DEPTH = 13,
    ZYR_POSITION_Z_PARENT_DEPTH_PERCENT_MINUS_DEPTH = 14,
    ZYR_POSITION_Z_PARENT_DEPTH_PERCENT_WITHOUT_DEPTH = 15,
    ZYR_POSITION_Z_D_SEPARATOR_1 = 128,
    ZYR_POSITION_Z_D_SEPARATOR_16 = 143
};

template <> struct EnumerationTable<PositionZAnchorEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_POSITION_Z_NEAR, "NEAR"},
        {ZYR_POSITION_Z_FAR, "FAR"},
        {ZYR_POSITION_Z_CENTER, "CENTER"},
        {ZYR_POSITION_Z_PARENT_DEPTH_PERCENT, "PARENT_DEPTH_PERCENT"},
        {ZYR_POSITION_Z_ABSOLUTE, "ABSOLUTE"},
        {ZYR_POSITION_Z_PREV_NEAR, "PREV_NEAR"},
        {ZYR_POSITION_Z_PREV_FAR, "PREV_FAR"},
        {ZYR_POSITION_Z_PREV_CENTER, "PREV_CENTER"},
        {ZYR_POSITION_Z_PREV_NEAR_PLUS_DEPTH_PERCENT, "PREV_NEAR_PLUS_DEPTH_PERCENT"},
        {ZYR_POSITION_Z_NEXT_NEAR, "NEXT_NEAR"},
        {ZYR_POSITION_Z_NEXT_FAR, "NEXT_FAR"},
        {ZYR_POSITION_Z_NEXT_CENTER, "NEXT_CENTER"},
        {ZYR_POSITION_Z_NEXT_NEAR_PLUS_DEPTH_PERCENT, "NEXT_NEAR_PLUS_DEPTH_PERCENT"},
        {ZYR_POSITION_Z_FAR_MINUS_DEPTH, "FAR_MINUS_DEPTH"},
        {ZYR_POSITION_Z_PARENT_DEPTH_PERCENT_MINUS_DEPTH, "PARENT_DEPTH_PERCENT_MINUS_DEPTH"},
        {ZYR_POSITION_Z_PARENT_DEPTH_PERCENT_WITHOUT_DEPTH, "PARENT_DEPTH_PERCENT_WITHOUT_DEPTH"},
        ZYR_SEPARATOR_ROWS("D"),
    };
};

/// What a width is, or where its right edge stands.
///
/// Anchors marked "edge" give the coordinate of the right edge: the solver takes the solved x off afterwards, so such a
/// rectangle keeps its edge when its position moves, and its width becomes negative when x lies beyond the edge.
///
/// `fit(a, b)` is the largest width at the ratio a : b inside the parent: a * parent.height / b where the height is
/// what limits (parent.width * b > a * parent.height), otherwise a * parent.width / a.
enum SizeWidthAnchorEnum : uint8_t {
    /// v
    ZYR_SIZE_WIDTH_WIDTH = 0,
    /// parent.width + v
    ZYR_SIZE_WIDTH_PARENT_WIDTH = 1,
    /// parent.width * v / 100
    ZYR_SIZE_WIDTH_PARENT_WIDTH_PERCENT = 2,
    /// fit of the record's own width and height
    ZYR_SIZE_WIDTH_RATIO = 3,
    /// fit of the content's width and height
    ZYR_SIZE_WIDTH_RATIO_ASPECT = 4,
    /// the content's width where the content fits into the parent on both axes, else its fit: shrinks, never enlarges
    ZYR_SIZE_WIDTH_RATIO_ASPECT_UPPER_LIMIT = 5,
    /// the content's fit where the content is smaller than the parent on both axes, else its own width: enlarges, never
    /// shrinks
    ZYR_SIZE_WIDTH_RATIO_ASPECT_LOWER_LIMIT = 6,
    /// edge: v
    ZYR_SIZE_WIDTH_LEFT = 7,
    /// edge: parent.width + v
    ZYR_SIZE_WIDTH_RIGHT = 8,
    /// edge: parent.width / 2 + v
    ZYR_SIZE_WIDTH_CENTER = 9,
    /// edge: prev.x + v
    ZYR_SIZE_WIDTH_PREV_LEFT = 10,
    /// edge: prev.x + prev.width + v
    ZYR_SIZE_WIDTH_PREV_RIGHT = 11,
    /// edge: prev.x + prev.width / 2 + v
    ZYR_SIZE_WIDTH_PREV_CENTER = 12,
    /// prev.width + v
    ZYR_SIZE_WIDTH_PREV_WIDTH = 13,
    /// prev.width * v / 100
    ZYR_SIZE_WIDTH_PREV_WIDTH_PERCENT = 14,
    /// edge: next.x + v
    ZYR_SIZE_WIDTH_NEXT_LEFT = 15,
    /// edge: next.x + next.width + v
    ZYR_SIZE_WIDTH_NEXT_RIGHT = 16,
    /// edge: next.x + next.width / 2 + v
    ZYR_SIZE_WIDTH_NEXT_CENTER = 17,
    /// next.width + v
    ZYR_SIZE_WIDTH_NEXT_WIDTH = 18,
    /// next.width * v / 100
    ZYR_SIZE_WIDTH_NEXT_WIDTH_PERCENT = 19,
    /// v; a rectangle that leaves the parent on the right moves to x = 0, one own height down if its own y is above 0,
    /// up otherwise
    ZYR_SIZE_WIDTH_WIDTH_NEWLINE = 20,
    /// content.width + v
    ZYR_SIZE_WIDTH_CONTENT_WIDTH = 21,
    /// content.width / contentScale + v
    ZYR_SIZE_WIDTH_CONTENT_WIDTH_NO_DS = 22,
    /// edge: separator + v; the number less 128 is the index of the separator, and a missing one counts as 0
    ZYR_SIZE_WIDTH_V_SEPARATOR_1 = 128,
    /// the last of the sixteen
    ZYR_SIZE_WIDTH_V_SEPARATOR_16 = 143
};

template <> struct EnumerationTable<SizeWidthAnchorEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_SIZE_WIDTH_WIDTH, "WIDTH"},
        {ZYR_SIZE_WIDTH_PARENT_WIDTH, "PARENT_WIDTH"},
        {ZYR_SIZE_WIDTH_PARENT_WIDTH_PERCENT, "PARENT_WIDTH_PERCENT"},
        {ZYR_SIZE_WIDTH_RATIO, "RATIO"},
        {ZYR_SIZE_WIDTH_RATIO_ASPECT, "RATIO_ASPECT"},
        {ZYR_SIZE_WIDTH_RATIO_ASPECT_UPPER_LIMIT, "RATIO_ASPECT_UPPER_LIMIT"},
        {ZYR_SIZE_WIDTH_RATIO_ASPECT_LOWER_LIMIT, "RATIO_ASPECT_LOWER_LIMIT"},
        {ZYR_SIZE_WIDTH_LEFT, "LEFT"},
        {ZYR_SIZE_WIDTH_RIGHT, "RIGHT"},
        {ZYR_SIZE_WIDTH_CENTER, "CENTER"},
        {ZYR_SIZE_WIDTH_PREV_LEFT, "PREV_LEFT"},
        {ZYR_SIZE_WIDTH_PREV_RIGHT, "PREV_RIGHT"},
        {ZYR_SIZE_WIDTH_PREV_CENTER, "PREV_CENTER"},
        {ZYR_SIZE_WIDTH_PREV_WIDTH, "PREV_WIDTH"},
        {ZYR_SIZE_WIDTH_PREV_WIDTH_PERCENT, "PREV_WIDTH_PERCENT"},
        {ZYR_SIZE_WIDTH_NEXT_LEFT, "NEXT_LEFT"},
        {ZYR_SIZE_WIDTH_NEXT_RIGHT, "NEXT_RIGHT"},
        {ZYR_SIZE_WIDTH_NEXT_CENTER, "NEXT_CENTER"},
        {ZYR_SIZE_WIDTH_NEXT_WIDTH, "NEXT_WIDTH"},
        {ZYR_SIZE_WIDTH_NEXT_WIDTH_PERCENT, "NEXT_WIDTH_PERCENT"},
        {ZYR_SIZE_WIDTH_WIDTH_NEWLINE, "WIDTH_NEWLINE"},
        {ZYR_SIZE_WIDTH_CONTENT_WIDTH, "CONTENT_WIDTH"},
        {ZYR_SIZE_WIDTH_CONTENT_WIDTH_NO_DS, "CONTENT_WIDTH_NO_DS"},
        ZYR_SEPARATOR_ROWS("V"),
    };
};

/// What a height is, or where its bottom edge stands. The formulas are those of SizeWidthAnchorEnum with y and height,
/// and fit(a, b) is parent.width * b / a where the width is what limits. `HEIGHT_NEWLINE` has no wrap of its own: it is
/// v.
enum SizeHeightAnchorEnum : uint8_t {
    /// v
    ZYR_SIZE_HEIGHT_HEIGHT = 0,
    /// parent.height + v
    ZYR_SIZE_HEIGHT_PARENT_HEIGHT = 1,
    /// parent.height * v / 100
    ZYR_SIZE_HEIGHT_PARENT_HEIGHT_PERCENT = 2,
    /// fit of the record's own width and height
    ZYR_SIZE_HEIGHT_RATIO = 3,
    /// fit of the content's width and height
    ZYR_SIZE_HEIGHT_RATIO_ASPECT = 4,
    /// the content's height where the content fits into the parent on both axes, else its fit: shrinks, never
    /// enlarges
    ZYR_SIZE_HEIGHT_RATIO_ASPECT_UPPER_LIMIT = 5,
    /// the content's fit where the content is smaller than the parent on both axes, else its own height: enlarges,
    /// never shrinks
    ZYR_SIZE_HEIGHT_RATIO_ASPECT_LOWER_LIMIT = 6,
    /// edge: v
    ZYR_SIZE_HEIGHT_TOP = 7,
    /// edge: parent.height + v
    ZYR_SIZE_HEIGHT_BOTTOM = 8,
    /// edge: parent.height / 2 + v
    ZYR_SIZE_HEIGHT_CENTER = 9,
    /// edge: prev.y + v
    ZYR_SIZE_HEIGHT_PREV_TOP = 10,
    /// edge: prev.y + prev.height + v
    ZYR_SIZE_HEIGHT_PREV_BOTTOM = 11,
    /// edge: prev.y + prev.height / 2 + v
    ZYR_SIZE_HEIGHT_PREV_CENTER = 12,
    /// prev.height + v
    ZYR_SIZE_HEIGHT_PREV_HEIGHT = 13,
    /// prev.height * v / 100
    ZYR_SIZE_HEIGHT_PREV_HEIGHT_PERCENT = 14,
    /// edge: next.y + v
    ZYR_SIZE_HEIGHT_NEXT_TOP = 15,
    /// edge: next.y + next.height + v
    ZYR_SIZE_HEIGHT_NEXT_BOTTOM = 16,
    /// edge: next.y + next.height / 2 + v
    ZYR_SIZE_HEIGHT_NEXT_CENTER = 17,
    /// next.height + v
    ZYR_SIZE_HEIGHT_NEXT_HEIGHT = 18,
    /// next.height * v / 100
    ZYR_SIZE_HEIGHT_NEXT_HEIGHT_PERCENT = 19,
    /// v
    ZYR_SIZE_HEIGHT_HEIGHT_NEWLINE = 20,
    /// content.height + v
    ZYR_SIZE_HEIGHT_CONTENT_HEIGHT = 21,
    /// content.height / contentScale + v
    ZYR_SIZE_HEIGHT_CONTENT_HEIGHT_NO_DS = 22,
    /// edge: separator + v; the number less 128 is the index of the separator, and a missing one counts as 0
    ZYR_SIZE_HEIGHT_H_SEPARATOR_1 = 128,
    /// the last of the sixteen
    ZYR_SIZE_HEIGHT_H_SEPARATOR_16 = 143
};

template <> struct EnumerationTable<SizeHeightAnchorEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_SIZE_HEIGHT_HEIGHT, "HEIGHT"},
        {ZYR_SIZE_HEIGHT_PARENT_HEIGHT, "PARENT_HEIGHT"},
        {ZYR_SIZE_HEIGHT_PARENT_HEIGHT_PERCENT, "PARENT_HEIGHT_PERCENT"},
        {ZYR_SIZE_HEIGHT_RATIO, "RATIO"},
        {ZYR_SIZE_HEIGHT_RATIO_ASPECT, "RATIO_ASPECT"},
        {ZYR_SIZE_HEIGHT_RATIO_ASPECT_UPPER_LIMIT, "RATIO_ASPECT_UPPER_LIMIT"},
        {ZYR_SIZE_HEIGHT_RATIO_ASPECT_LOWER_LIMIT, "RATIO_ASPECT_LOWER_LIMIT"},
        {ZYR_SIZE_HEIGHT_TOP, "TOP"},
        {ZYR_SIZE_HEIGHT_BOTTOM, "BOTTOM"},
        {ZYR_SIZE_HEIGHT_CENTER, "CENTER"},
        {ZYR_SIZE_HEIGHT_PREV_TOP, "PREV_TOP"},
        {ZYR_SIZE_HEIGHT_PREV_BOTTOM, "PREV_BOTTOM"},
        {ZYR_SIZE_HEIGHT_PREV_CENTER, "PREV_CENTER"},
        {ZYR_SIZE_HEIGHT_PREV_HEIGHT, "PREV_HEIGHT"},
        {ZYR_SIZE_HEIGHT_PREV_HEIGHT_PERCENT, "PREV_HEIGHT_PERCENT"},
        {ZYR_SIZE_HEIGHT_NEXT_TOP, "NEXT_TOP"},
        {ZYR_SIZE_HEIGHT_NEXT_BOTTOM, "NEXT_BOTTOM"},
        {ZYR_SIZE_HEIGHT_NEXT_CENTER, "NEXT_CENTER"},
        {ZYR_SIZE_HEIGHT_NEXT_HEIGHT, "NEXT_HEIGHT"},
        {ZYR_SIZE_HEIGHT_NEXT_HEIGHT_PERCENT, "NEXT_HEIGHT_PERCENT"},
        {ZYR_SIZE_HEIGHT_HEIGHT_NEWLINE, "HEIGHT_NEWLINE"},
        {ZYR_SIZE_HEIGHT_CONTENT_HEIGHT, "CONTENT_HEIGHT"},
        {ZYR_SIZE_HEIGHT_CONTENT_HEIGHT_NO_DS, "CONTENT_HEIGHT_NO_DS"},
        ZYR_SEPARATOR_ROWS("H"),
    };
};

/// What a depth is, or where its far edge stands. Of these, ExtBox::solveBox knows 0 to 4 and 8; the depth of the
/// content without scale doesn't exist.
enum SizeDepthAnchorEnum : uint8_t {
    /// v
    ZYR_SIZE_DEPTH_DEPTH = 0,
    /// parent.depth + v
    ZYR_SIZE_DEPTH_PARENT_DEPTH = 1,
    /// parent.depth * v / 100
    ZYR_SIZE_DEPTH_PARENT_DEPTH_PERCENT = 2,
    /// fit of the record's own three sizes into the parent
    ZYR_SIZE_DEPTH_RATIO = 3,
    /// the same: a box has no content
    ZYR_SIZE_DEPTH_RATIO_ASPECT = 4,
    /// Stored and shown like the others; the solver of boxes leaves a record with this or a later anchor but 8
    /// unsolved.
    ZYR_SIZE_DEPTH_RATIO_ASPECT_UPPER_LIMIT = 5,
    ZYR_SIZE_DEPTH_RATIO_ASPECT_LOWER_LIMIT = 6,
    /// edge: v, as far as a solver knows it
    ZYR_SIZE_DEPTH_NEAR = 7,
    /// edge: parent.depth + v
    ZYR_SIZE_DEPTH_FAR = 8,
    ZYR_SIZE_DEPTH_CENTER = 9,
    ZYR_SIZE_DEPTH_PREV_NEA = 10,
    ZYR_SIZE_DEPTH_PREV_FAR = 11,
    ZYR_SIZE_DEPTH_PREV_CENTER = 12,
    ZYR_SIZE_DEPTH_PREV_DEPTH = 13,
    ZYR_SIZE_DEPTH_PREV_DEPTH_PERCENT = 14,
    ZYR_SIZE_DEPTH_NEXT_NEAR = 15,
    ZYR_SIZE_DEPTH_NEXT_FAR = 16,
    ZYR_SIZE_DEPTH_NEXT_CENTER = 17,
    ZYR_SIZE_DEPTH_NEXT_DEPTH = 18,
    ZYR_SIZE_DEPTH_NEXT_DEPTH_PERCENT = 19,
    ZYR_SIZE_DEPTH_DEPTH_NEWLINE = 20,
    ZYR_SIZE_DEPTH_CONTENT_DEPTH = 21,
    ZYR_SIZE_DEPTH_D_SEPARATOR_1 = 128,
    ZYR_SIZE_DEPTH_D_SEPARATOR_16 = 143
};

/// The missing last letter of one text is relied upon: files hold it.
template <> struct EnumerationTable<SizeDepthAnchorEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_SIZE_DEPTH_DEPTH, "DEPTH"},
        {ZYR_SIZE_DEPTH_PARENT_DEPTH, "PARENT_DEPTH"},
        {ZYR_SIZE_DEPTH_PARENT_DEPTH_PERCENT, "PARENT_DEPTH_PERCENT"},
        {ZYR_SIZE_DEPTH_RATIO, "RATIO"},
        {ZYR_SIZE_DEPTH_RATIO_ASPECT, "RATIO_ASPECT"},
        {ZYR_SIZE_DEPTH_RATIO_ASPECT_UPPER_LIMIT, "RATIO_ASPECT_UPPER_LIMIT"},
        {ZYR_SIZE_DEPTH_RATIO_ASPECT_LOWER_LIMIT, "RATIO_ASPECT_LOWER_LIMIT"},
        {ZYR_SIZE_DEPTH_NEAR, "NEAR"},
        {ZYR_SIZE_DEPTH_FAR, "FAR"},
        {ZYR_SIZE_DEPTH_CENTER, "CENTER"},
        {ZYR_SIZE_DEPTH_PREV_NEA, "PREV_NEA"},
        {ZYR_SIZE_DEPTH_PREV_FAR, "PREV_FAR"},
        {ZYR_SIZE_DEPTH_PREV_CENTER, "PREV_CENTER"},
        {ZYR_SIZE_DEPTH_PREV_DEPTH, "PREV_DEPTH"},
        {ZYR_SIZE_DEPTH_PREV_DEPTH_PERCENT, "PREV_DEPTH_PERCENT"},
        {ZYR_SIZE_DEPTH_NEXT_NEAR, "NEXT_NEAR"},
        {ZYR_SIZE_DEPTH_NEXT_FAR, "NEXT_FAR"},
        {ZYR_SIZE_DEPTH_NEXT_CENTER, "NEXT_CENTER"},
        {ZYR_SIZE_DEPTH_NEXT_DEPTH, "NEXT_DEPTH"},
        {ZYR_SIZE_DEPTH_NEXT_DEPTH_PERCENT, "NEXT_DEPTH_PERCENT"},
        {ZYR_SIZE_DEPTH_DEPTH_NEWLINE, "DEPTH_NEWLINE"},
        {ZYR_SIZE_DEPTH_CONTENT_DEPTH, "CONTENT_DEPTH"},
        ZYR_SEPARATOR_ROWS("D"),
    };
};

#undef ZYR_SEPARATOR_ROWS

/// Placement inside a free width.
enum HorizontalPlacementEnum : uint8_t {
    /// the free width stays on the right
    ZYR_HORIZONTAL_PLACEMENT_LEFT = 0,
    /// the free width stays on the left
    ZYR_HORIZONTAL_PLACEMENT_RIGHT = 1,
    /// half of the free width on each side
    ZYR_HORIZONTAL_PLACEMENT_CENTER = 2
};

template <> struct EnumerationTable<HorizontalPlacementEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_HORIZONTAL_PLACEMENT_LEFT, "LEFT"},
        {ZYR_HORIZONTAL_PLACEMENT_RIGHT, "RIGHT"},
        {ZYR_HORIZONTAL_PLACEMENT_CENTER, "CENTER"},
    };
};

/// Placement inside a free height.
enum VerticalPlacementEnum : uint8_t {
    /// the free height stays below
    ZYR_VERTICAL_PLACEMENT_TOP = 0,
    /// the free height stays above
    ZYR_VERTICAL_PLACEMENT_BOTTOM = 1,
    /// half of the free height above and below
    ZYR_VERTICAL_PLACEMENT_CENTER = 2
};

template <> struct EnumerationTable<VerticalPlacementEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_VERTICAL_PLACEMENT_TOP, "TOP"},
        {ZYR_VERTICAL_PLACEMENT_BOTTOM, "BOTTOM"},
        {ZYR_VERTICAL_PLACEMENT_CENTER, "CENTER"},
    };
};

/// An axis of space.
/// Of records that stand along one of the three; the words are the letters.
enum AxisEnum : uint8_t { ZYR_AXIS_X = 0, ZYR_AXIS_Y = 1, ZYR_AXIS_Z = 2 };

template <> struct EnumerationTable<AxisEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {ZYR_AXIS_X, "X"},
        {ZYR_AXIS_Y, "Y"},
        {ZYR_AXIS_Z, "Z"},
    };
};

// The constant text of a value, "Unknown" for any number outside the table.
ZYR_API const char* zyr_getPositionXAnchorString(PositionXAnchorEnum p_value);
ZYR_API const char* zyr_getPositionYAnchorString(PositionYAnchorEnum p_value);
ZYR_API const char* zyr_getPositionZAnchorString(PositionZAnchorEnum p_value);
ZYR_API const char* zyr_getSizeWidthAnchorString(SizeWidthAnchorEnum p_value);
ZYR_API const char* zyr_getSizeHeightAnchorString(SizeHeightAnchorEnum p_value);
ZYR_API const char* zyr_getSizeDepthAnchorString(SizeDepthAnchorEnum p_value);
ZYR_API const char* zyr_getHorizontalPlacementString(HorizontalPlacementEnum p_value);
ZYR_API const char* zyr_getVerticalPlacementString(VerticalPlacementEnum p_value);
ZYR_API const char* zyr_getAxisString(AxisEnum p_value);

// Append the texts of all values in the order of their numbers, the separators last. The list is not cleared first.
ZYR_API void zyr_getPositionXAnchorStrings(List<String>& p_texts);
ZYR_API void zyr_getPositionYAnchorStrings(List<String>& p_texts);
ZYR_API void zyr_getPositionZAnchorStrings(List<String>& p_texts);
ZYR_API void zyr_getSizeWidthAnchorStrings(List<String>& p_texts);
ZYR_API void zyr_getSizeHeightAnchorStrings(List<String>& p_texts);
ZYR_API void zyr_getSizeDepthAnchorStrings(List<String>& p_texts);
ZYR_API void zyr_getHorizontalPlacementStrings(List<String>& p_texts);
ZYR_API void zyr_getVerticalPlacementStrings(List<String>& p_texts);
ZYR_API void zyr_getAxisStrings(List<String>& p_texts);

// The maps between texts and numbers, built when the module is loaded and only read afterwards.
extern const EnumerationMaps<PositionXAnchorEnum> g_positionXAnchorMaps;
extern const EnumerationMaps<PositionYAnchorEnum> g_positionYAnchorMaps;
extern const EnumerationMaps<PositionZAnchorEnum> g_positionZAnchorMaps;
extern const EnumerationMaps<SizeWidthAnchorEnum> g_sizeWidthAnchorMaps;
extern const EnumerationMaps<SizeHeightAnchorEnum> g_sizeHeightAnchorMaps;
extern const EnumerationMaps<SizeDepthAnchorEnum> g_sizeDepthAnchorMaps;

} // namespace zyr
