#include "picture_module/zyr_diffmap_level.h"

#include "picture_module/zyr_image_state.h"
#include "zyr_common/geometry/zyr_rect.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_byte_stream.h"
#include "zyr_common/serialization/zyr_record_walker.h"

#include <climits>
#include <cstring>

namespace zyr {

template class RecordWalker<DiffmapState>;

namespace {

/// A map has at most this many blocks: one for each pixel of a large picture.
constexpr uint64_t MOST_BLOCKS = uint64_t{1} << 30;

const String& getMarksKey() {
    static const String& key = makePermanent<String>("marks");
    return key;
}

uint32_t divideUp(uint32_t p_size, uint32_t p_block) {
    return p_size / p_block + (p_size % p_block != 0);
}

/// First block and number of blocks that a range of pixels touches. False when it lies outside.
bool findBlocks(int64_t p_position, int64_t p_size, uint32_t p_imageSize, uint32_t p_blockSize, uint32_t& p_first,
                uint32_t& p_count) {
    const int64_t start = p_position > 0 ? p_position : 0;
    const int64_t end = p_position + p_size < p_imageSize ? p_position + p_size : p_imageSize;
    if (start >= end) {
        return false;
    }
    p_first = static_cast<uint32_t>(start / p_blockSize);
    p_count = static_cast<uint32_t>((end - 1) / p_blockSize) - p_first + 1;
    return true;
}

} // namespace

bool_t DiffmapLevel::init(uint32_t p_imageWidth, uint32_t p_imageHeight, uint32_t p_blockWidth, uint32_t p_blockHeight,
                          uint8_t p_value) {
    if (p_imageWidth == 0 || p_imageHeight == 0 || p_blockWidth == 0 || p_blockHeight == 0 || p_imageWidth > INT_MAX ||
        p_imageHeight > INT_MAX) {
        return 0;
    }
    const uint32_t columns = divideUp(p_imageWidth, p_blockWidth);
    const uint32_t rows = divideUp(p_imageHeight, p_blockHeight);
    if (uint64_t{columns} * rows > MOST_BLOCKS || !m_marks.resize(size_t{columns} * rows)) {
        return 0;
    }
    m_imageWidth = p_imageWidth;
    m_imageHeight = p_imageHeight;
    m_blockWidth = p_blockWidth;
    m_blockHeight = p_blockHeight;
    m_columns = columns;
    m_rows = rows;
    return clearValue(p_value);
}

bool_t DiffmapLevel::clearValue(uint8_t p_value) {
    if (m_marks.isEmpty()) {
        return 0;
    }
    memset(m_marks.getData(), p_value, m_marks.getSize());
    return 1;
}

bool_t DiffmapLevel::changeSize(uint32_t p_imageWidth, uint32_t p_imageHeight) {
    if (m_marks.isEmpty()) {
        return 0;
    }
    const Array<uint8_t> marks(m_marks);
    const uint32_t columns = m_columns;
    const uint32_t rows = m_rows;
    if (!init(p_imageWidth, p_imageHeight, m_blockWidth, m_blockHeight, 0)) {
        return 0;
    }
    for (uint32_t row = 0; row < rows && row < m_rows; ++row) {
        memcpy(m_marks.getData() + size_t{row} * m_columns, marks.getData() + size_t{row} * columns,
               columns < m_columns ? columns : m_columns);
    }
    return 1;
}

bool_t DiffmapLevel::setAllocationModel(uint32_t p_condition, uint32_t p_step) {
    // This pair would forbid every change of size.
    if (p_condition == ZYR_ALLOC_CONDITION_ON_RESIZE && (p_step & ZYR_ALLOC_STEP_CLASS_MASK) == ZYR_ALLOC_STEP_DOUBLE) {
        return 0;
    }
    return m_marks.setAllocationModel(p_condition, p_step);
}

bool_t DiffmapLevel::convert(IDiffmap* p_diffmap, bool_t p_merge) const {
    if (p_diffmap == nullptr || p_diffmap == this || m_marks.isEmpty() || p_diffmap->getImageWidth() != m_imageWidth ||
        p_diffmap->getImageHeight() != m_imageHeight) {
        return 0;
    }
    if (!p_merge) {
        p_diffmap->clearValue(0);
    }
    for (uint32_t row = 0; row < m_rows; ++row) {
        for (uint32_t column = 0; column < m_columns; ++column) {
            const uint8_t mark = m_marks[size_t{row} * m_columns + column];
            if (mark != 0) {
                p_diffmap->drawSingleRect(getBlocksRect(column, row, 1, 1), mark);
            }
        }
    }
    return 1;
}

bool_t DiffmapLevel::isEmpty() {
    for (const uint8_t mark : m_marks) {
        if (mark != 0) {
            return 0;
        }
    }
    return 1;
}

Rect<int> DiffmapLevel::getBlocksRect(uint32_t p_column, uint32_t p_row, uint32_t p_columns, uint32_t p_rows) const {
    const uint64_t x = uint64_t{p_column} * m_blockWidth;
    const uint64_t y = uint64_t{p_row} * m_blockHeight;
    const uint64_t width = uint64_t{p_columns} * m_blockWidth;
    const uint64_t height = uint64_t{p_rows} * m_blockHeight;
    return Rect<int>(static_cast<int>(x), static_cast<int>(y),
                     static_cast<int>(width < m_imageWidth - x ? width : m_imageWidth - x),
                     static_cast<int>(height < m_imageHeight - y ? height : m_imageHeight - y));
}

bool_t DiffmapLevel::convertIntoRects(Array<Rect<int>>& p_rects, bool_t p_merge) {
    if (m_marks.isEmpty()) {
        return 0;
    }
    p_rects.clear();
    Array<uint8_t> open(m_marks);
    uint8_t* marks = open.getData();
    for (uint32_t row = 0; row < m_rows; ++row) {
        for (uint32_t column = 0; column < m_columns; ++column) {
            if (marks[size_t{row} * m_columns + column] == 0) {
                continue;
            }
            uint32_t columns = 1;
            uint32_t rows = 1;
            // A run to the right first, then as many rows below it as are marked over its whole width.
            while (p_merge && column + columns < m_columns && marks[size_t{row} * m_columns + column + columns] != 0) {
                ++columns;
            }
            while (p_merge && row + rows < m_rows &&
                   memchr(marks + size_t{row + rows} * m_columns + column, 0, columns) == nullptr) {
                ++rows;
            }
            for (uint32_t i = 0; i < rows; ++i) {
                memset(marks + size_t{row + i} * m_columns + column, 0, columns);
            }
            p_rects.pushBack(getBlocksRect(column, row, columns, rows));
        }
    }
    return 1;
}

bool_t DiffmapLevel::drawSingleRect(const Rect<int>& p_rect, uint8_t p_value) {
    if (m_marks.isEmpty() || p_rect.width < 0 || p_rect.height < 0) {
        return 0;
    }
    uint32_t column = 0;
    uint32_t columns = 0;
    uint32_t row = 0;
    uint32_t rows = 0;
    if (findBlocks(p_rect.x, p_rect.width, m_imageWidth, m_blockWidth, column, columns) &&
        findBlocks(p_rect.y, p_rect.height, m_imageHeight, m_blockHeight, row, rows)) {
        for (uint32_t i = 0; i < rows; ++i) {
            memset(m_marks.getData() + size_t{row + i} * m_columns + column, p_value, columns);
        }
    }
    return 1;
}

bool_t DiffmapLevel::drawMultipleRects(const Array<Rect<int>>& p_rects, uint8_t p_value) {
    if (m_marks.isEmpty()) {
        return 0;
    }
    for (const Rect<int>& rect : p_rects) {
        if (rect.width < 0 || rect.height < 0) {
            return 0;
        }
    }
    for (const Rect<int>& rect : p_rects) {
        drawSingleRect(rect, p_value);
    }
    return 1;
}

bool_t DiffmapLevel::drawDiffmap(IDiffmap* p_diffmap, uint8_t p_value) {
    if (p_diffmap == nullptr || m_marks.isEmpty() || p_diffmap->getImageWidth() != m_imageWidth ||
        p_diffmap->getImageHeight() != m_imageHeight || p_diffmap->getBlockWidth() != m_blockWidth ||
        p_diffmap->getBlockHeight() != m_blockHeight || p_diffmap->getSize() != m_marks.getSize()) {
        return 0;
    }
    const uint8_t* other = p_diffmap->getData();
    for (size_t i = 0; i < m_marks.getSize(); ++i) {
        if (other[i] != 0) {
            m_marks[i] = p_value;
        }
    }
    return 1;
}

IDiffmap* DiffmapLevel::createSlice(uint32_t p_firstRow, uint32_t p_numOfRows) {
    if (p_numOfRows == 0 || p_firstRow >= m_rows || p_numOfRows > m_rows - p_firstRow) {
        return nullptr;
    }
    const Rect<int> rect = getBlocksRect(0, p_firstRow, m_columns, p_numOfRows);
    Diffmap* slice = new Diffmap;
    if (!slice->init(m_imageWidth, static_cast<uint32_t>(rect.height), m_blockWidth, m_blockHeight, 0)) {
        slice->release();
        return nullptr;
    }
    memcpy(slice->getData(), m_marks.getData() + size_t{p_firstRow} * m_columns, slice->getSize());
    return slice;
}

void DiffmapLevel::printToLog(LogLevelEnum p_level, bool_t p_blocks) {
    uint32_t changed = 0;
    for (const uint8_t mark : m_marks) {
        changed += mark != 0;
    }
    ZYR_LOG_AT(p_level, "Diffmap of %ux%u pixels in blocks of %ux%u: %u of %u changed", m_imageWidth, m_imageHeight,
               m_blockWidth, m_blockHeight, changed, getNumOfBlocks());
    for (uint32_t row = 0; row < m_rows && p_blocks; ++row) {
        String line;
        for (uint32_t column = 0; column < m_columns; ++column) {
            line.pushBackAsciiCharacter(m_marks[size_t{row} * m_columns + column] != 0 ? '#' : '.');
        }
        ZYR_LOG_AT(p_level, "%s", line.getData());
    }
}

void DiffmapLevel::init_This() {
    m_imageWidth = 0;
    m_imageHeight = 0;
    m_blockWidth = 0;
    m_blockHeight = 0;
    m_columns = 0;
    m_rows = 0;
}

void DiffmapLevel::release_This() {
    m_marks.clear();
}

void DiffmapLevel::copy_This(const IDiffmap* p_src) {
    if (p_src->getData() != nullptr &&
        init(p_src->getImageWidth(), p_src->getImageHeight(), p_src->getBlockWidth(), p_src->getBlockHeight(), 0)) {
        memcpy(m_marks.getData(), p_src->getData(), m_marks.getSize());
    }
}

bool_t DiffmapLevel::readSerialized_This(IDeserializer* p_deserializer) {
    static uint32_t cache = 0;
    DiffmapState state;
    Array<uint8_t> marks;
    if (!state.readSerialized_This(p_deserializer) || !readBytes(p_deserializer, getMarksKey(), cache, marks)) {
        return 0;
    }
    if (marks.isEmpty()) {
        return 1;
    }
    // The bytes that are there bound what is allocated for them.
    if (state.m_blockWidth == 0 || state.m_blockHeight == 0 ||
        uint64_t{divideUp(state.m_imageWidth, state.m_blockWidth)} *
                divideUp(state.m_imageHeight, state.m_blockHeight) !=
            marks.getSize() ||
        !init(state.m_imageWidth, state.m_imageHeight, state.m_blockWidth, state.m_blockHeight, 0)) {
        ZYR_LOG_WARN("Unable to read diffmap of %u by %u pixels: it has %zu blocks", state.m_imageWidth,
                     state.m_imageHeight, marks.getSize());
        return 0;
    }
    memcpy(m_marks.getData(), marks.getData(), marks.getSize());
    return 1;
}

bool_t DiffmapLevel::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                          bool_t& p_result) {
    DiffmapState state;
    state.m_imageWidth = m_imageWidth;
    state.m_imageHeight = m_imageHeight;
    state.m_blockWidth = m_blockWidth;
    state.m_blockHeight = m_blockHeight;
    p_result = state.writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result) &&
               writeBytes(p_serializer, getMarksKey(), p_firstPass, p_headerPass, m_marks.getData(), m_marks.getSize());
    return p_result;
}

} // namespace zyr
