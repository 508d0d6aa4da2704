/// The anchors of the layout: what the number of a position or of a size counts from.
///
/// Each enumeration is stored as one byte, with fixed numbers and fixed texts. A number means the same on all axes, so
/// the solvers work on numbers alone. `V` separators are vertical lines (they have an x), `H` and `D` those of the
/// other axes; only the first and the last of the sixteen are named here, the others lie between.
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
    ZYR_POSITION_X_LEFT = 0,
    ZYR_POSITION_X_RIGHT = 1,
    ZYR_POSITION_X_CENTER = 2,
    ZYR_POSITION_X_PARENT_WIDTH_PERCENT = 3,
    ZYR_POSITION_X_ABSOLUTE = 4,
    ZYR_POSITION_X_PREV_LEFT = 5,
    ZYR_POSITION_X_PREV_RIGHT = 6,
    ZYR_POSITION_X_PREV_CENTER = 7,
    ZYR_POSITION_X_PREV_LEFT_PLUS_WIDTH_PERCENT = 8,
    ZYR_POSITION_X_NEXT_LEFT = 9,
    ZYR_POSITION_X_NEXT_RIGHT = 10,
    ZYR_POSITION_X_NEXT_CENTER = 11,
    ZYR_POSITION_X_NEXT_LEFT_PLUS_WIDTH_PERCENT = 12,
    ZYR_POSITION_X_RIGHT_MINUS_WIDTH = 13,
    ZYR_POSITION_X_PARENT_WIDTH_PERCENT_MINUS_WIDTH = 14,
    ZYR_POSITION_X_PARENT_WIDTH_PERCENT_WITHOUT_WIDTH = 15,
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

/// Where a y counts from.
enum PositionYAnchorEnum : uint8_t {
    ZYR_POSITION_Y_TOP = 0,
    ZYR_POSITION_Y_BOTTOM = 1,
    ZYR_POSITION_Y_CENTER = 2,
    ZYR_POSITION_Y_PARENT_HEIGHT_PERCENT = 3,
    ZYR_POSITION_Y_ABSOLUTE = 4,
    ZYR_POSITION_Y_PREV_TOP = 5,
    ZYR_POSITION_Y_PREV_BOTTOM = 6,
    ZYR_POSITION_Y_PREV_CENTER = 7,
    ZYR_POSITION_Y_PREV_TOP_PLUS_HEIGHT_PERCENT = 8,
    ZYR_POSITION_Y_NEXT_TOP = 9,
    ZYR_POSITION_Y_NEXT_BOTTOM = 10,
    ZYR_POSITION_Y_NEXT_CENTER = 11,
    ZYR_POSITION_Y_NEXT_TOP_PLUS_HEIGHT_PERCENT = 12,
    ZYR_POSITION_Y_BOTTOM_MINUS_HEIGHT = 13,
    ZYR_POSITION_Y_PARENT_HEIGHT_PERCENT_MINUS_HEIGHT = 14,
    ZYR_POSITION_Y_PARENT_HEIGHT_PERCENT_WITHOUT_HEIGHT = 15,
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

/// Where a z counts from.
enum PositionZAnchorEnum : uint8_t {
    ZYR_POSITION_Z_NEAR = 0,
    ZYR_POSITION_Z_FAR = 1,
    ZYR_POSITION_Z_CENTER = 2,
    ZYR_POSITION_Z_PARENT_DEPTH_PERCENT = 3,
    ZYR_POSITION_Z_ABSOLUTE = 4,
    ZYR_POSITION_Z_PREV_NEAR = 5,
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
enum SizeWidthAnchorEnum : uint8_t {
    ZYR_SIZE_WIDTH_WIDTH = 0,
    ZYR_SIZE_WIDTH_PARENT_WIDTH = 1,
    ZYR_SIZE_WIDTH_PARENT_WIDTH_PERCENT = 2,
    ZYR_SIZE_WIDTH_RATIO = 3,
    ZYR_SIZE_WIDTH_RATIO_ASPECT = 4,
    ZYR_SIZE_WIDTH_RATIO_ASPECT_UPPER_LIMIT = 5,
    ZYR_SIZE_WIDTH_RATIO_ASPECT_LOWER_LIMIT = 6,
    ZYR_SIZE_WIDTH_LEFT = 7,
    ZYR_SIZE_WIDTH_RIGHT = 8,
    ZYR_SIZE_WIDTH_CENTER = 9,
    ZYR_SIZE_WIDTH_PREV_LEFT = 10,
    ZYR_SIZE_WIDTH_PREV_RIGHT = 11,
    ZYR_SIZE_WIDTH_PREV_CENTER = 12,
    ZYR_SIZE_WIDTH_PREV_WIDTH = 13,
    ZYR_SIZE_WIDTH_PREV_WIDTH_PERCENT = 14,
    ZYR_SIZE_WIDTH_NEXT_LEFT = 15,
    ZYR_SIZE_WIDTH_NEXT_RIGHT = 16,
    ZYR_SIZE_WIDTH_NEXT_CENTER = 17,
    ZYR_SIZE_WIDTH_NEXT_WIDTH = 18,
    ZYR_SIZE_WIDTH_NEXT_WIDTH_PERCENT = 19,
    ZYR_SIZE_WIDTH_WIDTH_NEWLINE = 20,
    ZYR_SIZE_WIDTH_CONTENT_WIDTH = 21,
    ZYR_SIZE_WIDTH_CONTENT_WIDTH_NO_DS = 22,
    ZYR_SIZE_WIDTH_V_SEPARATOR_1 = 128,
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

/// What a height is, or where its bottom edge stands.
enum SizeHeightAnchorEnum : uint8_t {
    ZYR_SIZE_HEIGHT_HEIGHT = 0,
    ZYR_SIZE_HEIGHT_PARENT_HEIGHT = 1,
    ZYR_SIZE_HEIGHT_PARENT_HEIGHT_PERCENT = 2,
    ZYR_SIZE_HEIGHT_RATIO = 3,
    ZYR_SIZE_HEIGHT_RATIO_ASPECT = 4,
    ZYR_SIZE_HEIGHT_RATIO_ASPECT_UPPER_LIMIT = 5,
    ZYR_SIZE_HEIGHT_RATIO_ASPECT_LOWER_LIMIT = 6,
    ZYR_SIZE_HEIGHT_TOP = 7,
    ZYR_SIZE_HEIGHT_BOTTOM = 8,
    ZYR_SIZE_HEIGHT_CENTER = 9,
    ZYR_SIZE_HEIGHT_PREV_TOP = 10,
    ZYR_SIZE_HEIGHT_PREV_BOTTOM = 11,
    ZYR_SIZE_HEIGHT_PREV_CENTER = 12,
    ZYR_SIZE_HEIGHT_PREV_HEIGHT = 13,
    ZYR_SIZE_HEIGHT_PREV_HEIGHT_PERCENT = 14,
    ZYR_SIZE_HEIGHT_NEXT_TOP = 15,
    ZYR_SIZE_HEIGHT_NEXT_BOTTOM = 16,
    ZYR_SIZE_HEIGHT_NEXT_CENTER = 17,
    ZYR_SIZE_HEIGHT_NEXT_HEIGHT = 18,
    ZYR_SIZE_HEIGHT_NEXT_HEIGHT_PERCENT = 19,
    ZYR_SIZE_HEIGHT_HEIGHT_NEWLINE = 20,
    ZYR_SIZE_HEIGHT_CONTENT_HEIGHT = 21,
    ZYR_SIZE_HEIGHT_CONTENT_HEIGHT_NO_DS = 22,
    ZYR_SIZE_HEIGHT_H_SEPARATOR_1 = 128,
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

/// What a depth is, or where its far edge stands.
enum SizeDepthAnchorEnum : uint8_t {
    ZYR_SIZE_DEPTH_DEPTH = 0,
    ZYR_SIZE_DEPTH_PARENT_DEPTH = 1,
    ZYR_SIZE_DEPTH_PARENT_DEPTH_PERCENT = 2,
    ZYR_SIZE_DEPTH_RATIO = 3,
    ZYR_SIZE_DEPTH_RATIO_ASPECT = 4,
    ZYR_SIZE_DEPTH_RATIO_ASPECT_UPPER_LIMIT = 5,
    ZYR_SIZE_DEPTH_RATIO_ASPECT_LOWER_LIMIT = 6,
    ZYR_SIZE_DEPTH_NEAR = 7,
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
    ZYR_HORIZONTAL_PLACEMENT_LEFT = 0,
    ZYR_HORIZONTAL_PLACEMENT_RIGHT = 1,
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
    ZYR_VERTICAL_PLACEMENT_TOP = 0,
    ZYR_VERTICAL_PLACEMENT_BOTTOM = 1,
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
