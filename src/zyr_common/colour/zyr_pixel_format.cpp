#include "zyr_common/colour/zyr_pixel_format.h"

#include "zyr_common/memory/zyr_report.h"

namespace zyr {

namespace {

/// One width of the families whose channels are equally wide.
struct ChannelWidth {
    uint8_t m_bits;
    uint8_t m_componentType;
    uint8_t m_byteOrder;
};

constexpr ChannelWidth SINGLE_WIDTHS[] = {
    {1, ZYR_PIXEL_COMPONENT_BIT, 0},      {2, ZYR_PIXEL_COMPONENT_INTEGER, 0},  {4, ZYR_PIXEL_COMPONENT_INTEGER, 0},
    {8, ZYR_PIXEL_COMPONENT_INTEGER, 0},  {16, ZYR_PIXEL_COMPONENT_INTEGER, 1}, {16, ZYR_PIXEL_COMPONENT_INTEGER, 2},
    {16, ZYR_PIXEL_COMPONENT_FLOAT16, 1}, {16, ZYR_PIXEL_COMPONENT_FLOAT16, 2}, {24, ZYR_PIXEL_COMPONENT_INTEGER, 0},
    {32, ZYR_PIXEL_COMPONENT_INTEGER, 1}, {32, ZYR_PIXEL_COMPONENT_INTEGER, 2}, {32, ZYR_PIXEL_COMPONENT_FLOAT32, 1},
    {32, ZYR_PIXEL_COMPONENT_FLOAT32, 2}, {64, ZYR_PIXEL_COMPONENT_FLOAT64, 1}, {64, ZYR_PIXEL_COMPONENT_FLOAT64, 2}};

constexpr ChannelWidth DOUBLE_WIDTHS[] = {{1, ZYR_PIXEL_COMPONENT_BIT, 0},      {2, ZYR_PIXEL_COMPONENT_INTEGER, 0},
                                          {4, ZYR_PIXEL_COMPONENT_INTEGER, 0},  {8, ZYR_PIXEL_COMPONENT_INTEGER, 0},
                                          {16, ZYR_PIXEL_COMPONENT_INTEGER, 1}, {16, ZYR_PIXEL_COMPONENT_INTEGER, 2}};

constexpr ChannelWidth WIDE_DOUBLE_WIDTHS[] = {
    {1, ZYR_PIXEL_COMPONENT_BIT, 0},      {2, ZYR_PIXEL_COMPONENT_INTEGER, 0},  {4, ZYR_PIXEL_COMPONENT_INTEGER, 0},
    {8, ZYR_PIXEL_COMPONENT_INTEGER, 0},  {16, ZYR_PIXEL_COMPONENT_INTEGER, 1}, {16, ZYR_PIXEL_COMPONENT_INTEGER, 2},
    {16, ZYR_PIXEL_COMPONENT_FLOAT16, 1}, {16, ZYR_PIXEL_COMPONENT_FLOAT16, 2}, {24, ZYR_PIXEL_COMPONENT_INTEGER, 1},
    {24, ZYR_PIXEL_COMPONENT_INTEGER, 2}, {32, ZYR_PIXEL_COMPONENT_INTEGER, 1}, {32, ZYR_PIXEL_COMPONENT_INTEGER, 2},
    {32, ZYR_PIXEL_COMPONENT_FLOAT32, 1}, {32, ZYR_PIXEL_COMPONENT_FLOAT32, 2}, {64, ZYR_PIXEL_COMPONENT_FLOAT64, 1},
    {64, ZYR_PIXEL_COMPONENT_FLOAT64, 2}};

constexpr uint8_t INDEX_BITS[] = {1, 2, 4, 8, 16, 16};

/// Planes and subsampling of the YUV formats from I420 on.
struct YuvLayout {
    uint8_t m_numOfPlanes;
    uint8_t m_horizontal;
    uint8_t m_vertical;
    uint8_t m_channelOrder;
};

constexpr YuvLayout YUV_LAYOUTS[] = {{3, 2, 2, ZYR_PIXEL_ORDER_RGB}, {3, 2, 2, ZYR_PIXEL_ORDER_YVU},
                                     {2, 1, 2, ZYR_PIXEL_ORDER_RGB}, {2, 1, 2, ZYR_PIXEL_ORDER_YVU},
                                     {3, 4, 4, ZYR_PIXEL_ORDER_RGB}, {3, 4, 1, ZYR_PIXEL_ORDER_RGB},
                                     {3, 2, 1, ZYR_PIXEL_ORDER_RGB}, {3, 1, 1, ZYR_PIXEL_ORDER_RGB}};

/// Places, in the order R, G, B, A, from the lowest bits upwards.
constexpr uint8_t ORDER_RGB[] = {0, 1, 2};
constexpr uint8_t ORDER_BGR[] = {2, 1, 0};
constexpr uint8_t FOUR_ORDERS[4][4] = {{0, 1, 2, 3}, {3, 0, 1, 2}, {2, 1, 0, 3}, {3, 2, 1, 0}};
constexpr uint32_t ALPHA_PLACE = 3;

void setChannel(PixelFormatDescriptor& p_descriptor, uint32_t p_place, uint32_t p_shift, uint32_t p_bits) {
    p_descriptor.m_channelShift[p_place] = p_shift;
    p_descriptor.m_channelBits[p_place] = p_bits;
    p_descriptor.m_channelMask[p_place] = p_bits >= 32 ? 0xFFFFFFFFu : (1u << p_bits) - 1;
    if (p_bits == 2 || p_bits == 4) {
        p_descriptor.m_hasNarrowChannels = 1;
    }
}

void setComponents(PixelFormatDescriptor& p_descriptor, uint32_t p_componentType, uint32_t p_byteOrder) {
    p_descriptor.m_componentType = p_componentType;
    p_descriptor.m_isInteger =
        p_componentType == ZYR_PIXEL_COMPONENT_BIT || p_componentType == ZYR_PIXEL_COMPONENT_INTEGER;
    p_descriptor.m_byteOrder = p_byteOrder;
}

void describeIndex(PixelFormatDescriptor& p_descriptor, uint32_t p_row) {
    uint32_t bits = INDEX_BITS[p_row];
    setComponents(p_descriptor, bits == 1 ? ZYR_PIXEL_COMPONENT_BIT : ZYR_PIXEL_COMPONENT_INTEGER,
                  bits == 16 ? p_row - 3 : 0);
    setChannel(p_descriptor, 0, 0, bits);
    p_descriptor.m_bitsPerPixel = bits;
    p_descriptor.m_channelModel = ZYR_PIXEL_MODEL_INDEX;
    p_descriptor.m_hasNarrowChannels = 1;
}

void describeSingle(PixelFormatDescriptor& p_descriptor, const ChannelWidth& p_width, PixelChannelModelEnum p_model) {
    setComponents(p_descriptor, p_width.m_componentType, p_width.m_byteOrder);
    setChannel(p_descriptor, p_model == ZYR_PIXEL_MODEL_ALPHA ? ALPHA_PLACE : 0, 0, p_width.m_bits);
    p_descriptor.m_bitsPerPixel = p_width.m_bits;
    p_descriptor.m_channelModel = p_model;
}

void describeDouble(PixelFormatDescriptor& p_descriptor, const ChannelWidth& p_width, PixelChannelModelEnum p_model,
                    PixelChannelOrderEnum p_order) {
    uint32_t bits = p_width.m_bits;
    bool valueAbove = p_order == ZYR_PIXEL_ORDER_VALUE_ABOVE_ALPHA;
    setComponents(p_descriptor, p_width.m_componentType, p_width.m_byteOrder);
    setChannel(p_descriptor, 0, valueAbove ? bits : 0, bits);
    setChannel(p_descriptor, ALPHA_PLACE, valueAbove ? 0 : bits, bits);
    p_descriptor.m_numOfChannels = 2;
    p_descriptor.m_bitsPerPixel = 2 * bits;
    p_descriptor.m_channelModel = p_model;
    p_descriptor.m_channelOrder = p_order;
}

/// Three channels without room for a fourth. `p_bgr` is 1 for the order B, G, R.
void describeThree(PixelFormatDescriptor& p_descriptor, uint32_t p_bgr, uint32_t p_red, uint32_t p_green,
                   uint32_t p_blue) {
    const uint32_t bits[] = {p_red, p_green, p_blue};
    const uint8_t* order = p_bgr != 0 ? ORDER_BGR : ORDER_RGB;
    uint32_t shift = 0;
    for (uint32_t i = 0; i < 3; ++i) {
        setChannel(p_descriptor, order[i], shift, bits[order[i]]);
        shift += bits[order[i]];
    }
    p_descriptor.m_numOfChannels = 3;
    p_descriptor.m_bitsPerPixel = shift;
    p_descriptor.m_channelModel = ZYR_PIXEL_MODEL_COLOR;
    p_descriptor.m_channelOrder = p_bgr != 0 ? ZYR_PIXEL_ORDER_BGR : ZYR_PIXEL_ORDER_RGB;
}

/// Three channels and alpha in one of the four orders. An odd `p_row` leaves the bits of alpha unused.
void describeFour(PixelFormatDescriptor& p_descriptor, uint32_t p_row, uint32_t p_bits, uint32_t p_alphaBits) {
    const uint8_t* order = FOUR_ORDERS[p_row / 2];
    bool hasAlpha = p_row % 2 == 0;
    uint32_t shift = 0;
    for (uint32_t i = 0; i < 4; ++i) {
        uint32_t bits = order[i] == ALPHA_PLACE ? p_alphaBits : p_bits;
        if (order[i] != ALPHA_PLACE || hasAlpha) {
            setChannel(p_descriptor, order[i], shift, bits);
        }
        shift += bits;
    }
    p_descriptor.m_numOfChannels = hasAlpha ? 4 : 3;
    p_descriptor.m_bitsPerPixel = shift;
    p_descriptor.m_channelModel = ZYR_PIXEL_MODEL_COLOR;
    p_descriptor.m_channelOrder = ZYR_COLOR_ORDER_RGBA + p_row / 2;
}

void describe16BitColor(PixelFormatDescriptor& p_descriptor, uint32_t p_row) {
    setComponents(p_descriptor, ZYR_PIXEL_COMPONENT_INTEGER, 1 + p_row % 2);
    uint32_t layout = p_row / 2;
    if (layout < 6) {
        const uint32_t wide = layout / 2;
        describeThree(p_descriptor, layout % 2, wide == 1 ? 6 : 5, wide == 0 ? 6 : 5, wide == 2 ? 6 : 5);
    } else if (layout < 14) {
        describeFour(p_descriptor, layout - 6, 5, 1);
    } else {
        describeFour(p_descriptor, layout - 14, 4, 4);
    }
}

void describeYuv(PixelFormatDescriptor& p_descriptor, uint32_t p_row) {
    const YuvLayout& layout = YUV_LAYOUTS[p_row];
    p_descriptor.m_numOfChannels = 3;
    p_descriptor.m_numOfPlanes = layout.m_numOfPlanes;
    p_descriptor.m_bitsPerPixel = 8;
    for (uint32_t i = 1; i < layout.m_numOfPlanes; ++i) {
        p_descriptor.m_horizontalSubsampling[i] = layout.m_horizontal;
        p_descriptor.m_verticalSubsampling[i] = layout.m_vertical;
    }
    p_descriptor.m_channelModel = ZYR_PIXEL_MODEL_YUV;
    p_descriptor.m_channelOrder = layout.m_channelOrder;
}

/// Fills all but the format's own number. False for a number outside the families.
bool describe(uint32_t p_format, PixelFormatDescriptor& p_descriptor) {
    auto within = [p_format](uint32_t p_first, uint32_t p_last) { return p_format >= p_first && p_format <= p_last; };
    if (within(1, 6)) {
        describeIndex(p_descriptor, p_format - 1);
    } else if (within(50, 64)) {
        describeSingle(p_descriptor, SINGLE_WIDTHS[p_format - 50], ZYR_PIXEL_MODEL_VALUE);
    } else if (within(100, 114)) {
        describeSingle(p_descriptor, SINGLE_WIDTHS[p_format - 100], ZYR_PIXEL_MODEL_ALPHA);
    } else if (within(150, 155)) {
        describeDouble(p_descriptor, DOUBLE_WIDTHS[p_format - 150], ZYR_PIXEL_MODEL_VALUE_ALPHA,
                       ZYR_PIXEL_ORDER_VALUE_ABOVE_ALPHA);
    } else if (within(200, 205)) {
        describeDouble(p_descriptor, DOUBLE_WIDTHS[p_format - 200], ZYR_PIXEL_MODEL_VALUE_ALPHA,
                       ZYR_PIXEL_ORDER_ALPHA_ABOVE_VALUE);
    } else if (within(250, 265)) {
        describeDouble(p_descriptor, WIDE_DOUBLE_WIDTHS[p_format - 250], ZYR_PIXEL_MODEL_WIDE_VALUE_ALPHA,
                       ZYR_PIXEL_ORDER_VALUE_ABOVE_ALPHA);
    } else if (within(300, 315)) {
        describeDouble(p_descriptor, WIDE_DOUBLE_WIDTHS[p_format - 300], ZYR_PIXEL_MODEL_WIDE_VALUE_ALPHA,
                       ZYR_PIXEL_ORDER_ALPHA_ABOVE_VALUE);
    } else if (within(350, 351)) {
        setComponents(p_descriptor, ZYR_PIXEL_COMPONENT_INTEGER, 0);
        describeThree(p_descriptor, p_format - 350, 3, 3, 2);
    } else if (within(400, 442)) {
        describe16BitColor(p_descriptor, p_format - 400);
    } else if (within(450, 451)) {
        setComponents(p_descriptor, ZYR_PIXEL_COMPONENT_INTEGER, 0);
        describeThree(p_descriptor, p_format - 450, 8, 8, 8);
    } else if (within(500, 507)) {
        setComponents(p_descriptor, ZYR_PIXEL_COMPONENT_INTEGER, 0);
        describeFour(p_descriptor, p_format - 500, 8, 8);
    } else if (within(550, 557)) {
        uint32_t row = p_format - 550;
        setComponents(p_descriptor, row < 4 ? ZYR_PIXEL_COMPONENT_INTEGER : ZYR_PIXEL_COMPONENT_FLOAT16, 1 + row % 2);
        describeThree(p_descriptor, row / 2 % 2, 16, 16, 16);
    } else if (within(600, 631)) {
        uint32_t row = p_format - 600;
        setComponents(p_descriptor, row < 16 ? ZYR_PIXEL_COMPONENT_INTEGER : ZYR_PIXEL_COMPONENT_FLOAT16, 1 + row % 2);
        describeFour(p_descriptor, row / 2 % 8, 16, 16);
    } else if (within(650, 653)) {
        uint32_t row = p_format - 650;
        setComponents(p_descriptor, ZYR_PIXEL_COMPONENT_FLOAT32, 1 + row % 2);
        describeThree(p_descriptor, row / 2, 32, 32, 32);
    } else if (within(700, 715)) {
        uint32_t row = p_format - 700;
        setComponents(p_descriptor, ZYR_PIXEL_COMPONENT_FLOAT32, 1 + row % 2);
        describeFour(p_descriptor, row / 2, 32, 32);
    } else if (within(1250, 1257)) {
        describeYuv(p_descriptor, p_format - 1250);
    } else {
        return false;
    }
    return true;
}

} // namespace

bool_t zyr_getPixelFormatDescriptor(PixelFormatEnum p_format, PixelFormatDescriptor& p_descriptor) {
    PixelFormatDescriptor descriptor;
    if (!describe(p_format, descriptor)) {
        ZYR_LOG_WARN("Unsupported pixel format 0x%X", p_format);
        return 0;
    }
    descriptor.m_format = p_format;
    p_descriptor = descriptor;
    return 1;
}

} // namespace zyr
