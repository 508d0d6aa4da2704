#include "zyr_common/geometry/zyr_anchors.h"

#include "zyr_common/geometry/zyr_shape_enums.h"

namespace zyr {

const EnumerationMaps<PositionXAnchorEnum> g_positionXAnchorMaps;
const EnumerationMaps<PositionYAnchorEnum> g_positionYAnchorMaps;
const EnumerationMaps<PositionZAnchorEnum> g_positionZAnchorMaps;
const EnumerationMaps<SizeWidthAnchorEnum> g_sizeWidthAnchorMaps;
const EnumerationMaps<SizeHeightAnchorEnum> g_sizeHeightAnchorMaps;
const EnumerationMaps<SizeDepthAnchorEnum> g_sizeDepthAnchorMaps;
const EnumerationMaps<SplineTypeEnum> g_splineTypeMaps;
const EnumerationMaps<FilletTypeEnum> g_filletTypeMaps;
const EnumerationMaps<InterpolationEnum> g_interpolationMaps;

const char* zyr_getPositionXAnchorString(PositionXAnchorEnum p_value) {
    return zyr_getEnumerationText(p_value, "Unknown");
}

const char* zyr_getPositionYAnchorString(PositionYAnchorEnum p_value) {
    return zyr_getEnumerationText(p_value, "Unknown");
}

const char* zyr_getPositionZAnchorString(PositionZAnchorEnum p_value) {
    return zyr_getEnumerationText(p_value, "Unknown");
}

const char* zyr_getSizeWidthAnchorString(SizeWidthAnchorEnum p_value) {
    return zyr_getEnumerationText(p_value, "Unknown");
}

const char* zyr_getSizeHeightAnchorString(SizeHeightAnchorEnum p_value) {
    return zyr_getEnumerationText(p_value, "Unknown");
}

const char* zyr_getSizeDepthAnchorString(SizeDepthAnchorEnum p_value) {
    return zyr_getEnumerationText(p_value, "Unknown");
}

const char* zyr_getHorizontalPlacementString(HorizontalPlacementEnum p_value) {
    return zyr_getEnumerationText(p_value, "Unknown");
}

const char* zyr_getVerticalPlacementString(VerticalPlacementEnum p_value) {
    return zyr_getEnumerationText(p_value, "Unknown");
}

const char* zyr_getAxisString(AxisEnum p_value) {
    return zyr_getEnumerationText(p_value, "Unknown");
}

void zyr_getPositionXAnchorStrings(List<String>& p_texts) {
    zyr_listEnumerationTexts<PositionXAnchorEnum>(p_texts);
}

void zyr_getPositionYAnchorStrings(List<String>& p_texts) {
    zyr_listEnumerationTexts<PositionYAnchorEnum>(p_texts);
}

void zyr_getPositionZAnchorStrings(List<String>& p_texts) {
    zyr_listEnumerationTexts<PositionZAnchorEnum>(p_texts);
}

void zyr_getSizeWidthAnchorStrings(List<String>& p_texts) {
    zyr_listEnumerationTexts<SizeWidthAnchorEnum>(p_texts);
}

void zyr_getSizeHeightAnchorStrings(List<String>& p_texts) {
    zyr_listEnumerationTexts<SizeHeightAnchorEnum>(p_texts);
}

void zyr_getSizeDepthAnchorStrings(List<String>& p_texts) {
    zyr_listEnumerationTexts<SizeDepthAnchorEnum>(p_texts);
}

void zyr_getHorizontalPlacementStrings(List<String>& p_texts) {
    zyr_listEnumerationTexts<HorizontalPlacementEnum>(p_texts);
}

void zyr_getVerticalPlacementStrings(List<String>& p_texts) {
    zyr_listEnumerationTexts<VerticalPlacementEnum>(p_texts);
}

void zyr_getAxisStrings(List<String>& p_texts) {
    zyr_listEnumerationTexts<AxisEnum>(p_texts);
}

} // namespace zyr
