/// The picture module's implementation of IDiffmap.
#pragma once

#include "picture/zyr_diffmap.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/implementation/zyr_implementation.h"

namespace zyr {

/// See IDiffmap for the operations.
class DiffmapLevel : public ObjectLevel<IDiffmap> {
public:
    using LevelBase = ObjectLevel<IDiffmap>;
    using LevelInterface = IDiffmap;

    bool_t init(uint32_t p_imageWidth, uint32_t p_imageHeight, uint32_t p_blockWidth, uint32_t p_blockHeight,
                uint8_t p_value) override;
    bool_t clearValue(uint8_t p_value) override;
    bool_t changeSize(uint32_t p_imageWidth, uint32_t p_imageHeight) override;
    bool_t setAllocationModel(uint32_t p_condition, uint32_t p_step) override;
    bool_t convert(IDiffmap* p_diffmap, bool_t p_merge) const override;
    bool_t isEmpty() override;
    bool_t convertIntoRects(Array<Rect<int>>& p_rects, bool_t p_merge) override;
    bool_t drawSingleRect(const Rect<int>& p_rect, uint8_t p_value) override;
    bool_t drawMultipleRects(const Array<Rect<int>>& p_rects, uint8_t p_value) override;
    bool_t drawDiffmap(IDiffmap* p_diffmap, uint8_t p_value) override;
    IDiffmap* createSlice(uint32_t p_firstRow, uint32_t p_numOfRows) override;
    void printToLog(LogLevelEnum p_level, bool_t p_blocks) override;
    uint32_t getNumOfBlocks() const override { return m_columns * m_rows; }
    uint32_t getImageWidth() const override { return m_imageWidth; }
    uint32_t getImageHeight() const override { return m_imageHeight; }
    uint32_t getHBlocks() const override { return m_columns; }
    uint32_t getVBlocks() const override { return m_rows; }
    uint32_t getBlockWidth() const override { return m_blockWidth; }
    uint32_t getBlockHeight() const override { return m_blockHeight; }
    uint8_t* getData() const override { return m_marks.getData(); }
    uint64_t getSize() const override { return m_marks.getSize(); }
    ILevelReserved* getDiffmapReserved() const override { return &m_diffmapReserved; }

    void init_This();
    void release_This();
    void copy_This(const IDiffmap* p_src);
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

private:
    /// The rectangle of blocks, in pixels and cut at the edge of the picture.
    Rect<int> getBlocksRect(uint32_t p_column, uint32_t p_row, uint32_t p_columns, uint32_t p_rows) const;

    uint32_t m_imageWidth = 0;
    uint32_t m_imageHeight = 0;
    uint32_t m_blockWidth = 0;
    uint32_t m_blockHeight = 0;
    uint32_t m_columns = 0;
    uint32_t m_rows = 0;
    Array<uint8_t> m_marks;
    mutable LevelReserved<DiffmapLevel> m_diffmapReserved{this};
};

using Diffmap = Implementation<DiffmapLevel>;

} // namespace zyr
