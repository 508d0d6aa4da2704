/// Difference maps: which blocks of a picture changed.
///
/// A map divides a picture into blocks of equal size, the last ones of a row or column cut at the edge, and keeps one
/// byte for each: 0 for a block that stayed, anything else for one that changed.
///
///     diffmap->init(1920, 1080, 16, 16, 0);
///     diffmap->drawSingleRect(Rect<int>(100, 100, 50, 20), 1);
///     diffmap->convertIntoRects(rects, 1);
///
/// Operations that return a truth value give false for arguments that cannot be met and change nothing then. A map is
/// not synchronised.
#pragma once

#include "zyr_common/object/zyr_object.h"

namespace zyr {

template <typename T> class Rect;

/// Made by the picture module. Sizes are in pixels unless the name says blocks.
class IDiffmap : public IObject {
public:
    /// Makes the map of a picture of that size in blocks of that size (both in pixels, none of them 0) and gives each
    /// block the value.
    virtual bool_t init(uint32_t p_imageWidth, uint32_t p_imageHeight, uint32_t p_blockWidth, uint32_t p_blockHeight,
                        uint8_t p_value) = 0;
    /// Gives each block the value.
    virtual bool_t clearValue(uint8_t p_value) = 0;
    /// Changes the picture size and keeps the values of the blocks that remain; new blocks are 0.
    virtual bool_t changeSize(uint32_t p_imageWidth, uint32_t p_imageHeight) = 0;
    /// When and how the storage grows; see Array.
    virtual bool_t setAllocationModel(uint32_t p_condition, uint32_t p_step) = 0;
    /// Marks in `p_diffmap`, which has the same picture size and may have other block sizes, each block that a changed
    /// block of this map touches. With `p_merge` set its own marks stay, otherwise it is emptied first.
    virtual bool_t convert(IDiffmap* p_diffmap, bool_t p_merge) const = 0;
    /// True when no block changed, and for a map without blocks.
    virtual bool_t isEmpty() = 0;
    /// Replaces the contents of `p_rects` by rectangles, in pixels and cut at the picture's edge, that cover exactly
    /// the changed blocks and do not overlap. With `p_merge` set neighbouring blocks share a rectangle, otherwise each
    /// block has its own.
    virtual bool_t convertIntoRects(Array<Rect<int>>& p_rects, bool_t p_merge) = 0;
    /// Gives the value to each block that the rectangle touches. Parts outside the picture are ignored.
    virtual bool_t drawSingleRect(const Rect<int>& p_rect, uint8_t p_value) = 0;
    /// The same for each of the rectangles.
    virtual bool_t drawMultipleRects(const Array<Rect<int>>& p_rects, uint8_t p_value) = 0;
    /// Gives the value to each block whose counterpart in `p_diffmap` changed. Both need the same sizes.
    virtual bool_t drawDiffmap(IDiffmap* p_diffmap, uint8_t p_value) = 0;
    /// A new map, which the caller owns, of `p_numOfRows` rows of blocks from `p_firstRow` on; null when there are no
    /// such rows.
    virtual IDiffmap* createSlice(uint32_t p_firstRow, uint32_t p_numOfRows) = 0;
    /// Writes the sizes and the number of changed blocks to the log, and with `p_blocks` set one line for each row of
    /// blocks.
    virtual void printToLog(LogLevelEnum p_level, bool_t p_blocks) = 0;
    /// Blocks in all: `getHBlocks() * getVBlocks()`.
    virtual uint32_t getNumOfBlocks() const = 0;
    /// The sizes that `init` was given; 0 before.
    virtual uint32_t getImageWidth() const = 0;
    /// Pixels, like the width.
    virtual uint32_t getImageHeight() const = 0;
    /// Blocks in a row and in a column.
    virtual uint32_t getHBlocks() const = 0;
    /// The last row counts as a whole one.
    virtual uint32_t getVBlocks() const = 0;
    /// Of a whole block; the last ones of a row or column cover less.
    virtual uint32_t getBlockWidth() const = 0;
    virtual uint32_t getBlockHeight() const = 0;
    /// One byte for each block, row by row, owned by the map; null for a map without blocks.
    virtual uint8_t* getData() const = 0;
    /// Bytes at `getData`.
    virtual uint64_t getSize() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getDiffmapReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Diffmap, IObject, "c01048e8-5f00-44ee-bb02-d6ea1c70192a")

/// Forwards each operation to the Diffmap of its module; what extends that class derives from this.
template <class Interface> class DiffmapFacade : public ObjectFacade<Interface> {
public:
    bool_t init(uint32_t p_imageWidth, uint32_t p_imageHeight, uint32_t p_blockWidth, uint32_t p_blockHeight,
                uint8_t p_value) override {
        return this->m_interfaceObject->init(p_imageWidth, p_imageHeight, p_blockWidth, p_blockHeight, p_value);
    }
    bool_t clearValue(uint8_t p_value) override { return this->m_interfaceObject->clearValue(p_value); }
    bool_t changeSize(uint32_t p_imageWidth, uint32_t p_imageHeight) override {
        return this->m_interfaceObject->changeSize(p_imageWidth, p_imageHeight);
    }
    bool_t setAllocationModel(uint32_t p_condition, uint32_t p_step) override {
        return this->m_interfaceObject->setAllocationModel(p_condition, p_step);
    }
    bool_t convert(IDiffmap* p_diffmap, bool_t p_merge) const override {
        return this->m_interfaceObject->convert(p_diffmap, p_merge);
    }
    bool_t isEmpty() override { return this->m_interfaceObject->isEmpty(); }
    bool_t convertIntoRects(Array<Rect<int>>& p_rects, bool_t p_merge) override {
        return this->m_interfaceObject->convertIntoRects(p_rects, p_merge);
    }
    bool_t drawSingleRect(const Rect<int>& p_rect, uint8_t p_value) override {
        return this->m_interfaceObject->drawSingleRect(p_rect, p_value);
    }
    bool_t drawMultipleRects(const Array<Rect<int>>& p_rects, uint8_t p_value) override {
        return this->m_interfaceObject->drawMultipleRects(p_rects, p_value);
    }
    bool_t drawDiffmap(IDiffmap* p_diffmap, uint8_t p_value) override {
        return this->m_interfaceObject->drawDiffmap(p_diffmap, p_value);
    }
    IDiffmap* createSlice(uint32_t p_firstRow, uint32_t p_numOfRows) override {
        return this->m_interfaceObject->createSlice(p_firstRow, p_numOfRows);
    }
    void printToLog(LogLevelEnum p_level, bool_t p_blocks) override {
        this->m_interfaceObject->printToLog(p_level, p_blocks);
    }
    uint32_t getNumOfBlocks() const override { return this->m_interfaceObject->getNumOfBlocks(); }
    uint32_t getImageWidth() const override { return this->m_interfaceObject->getImageWidth(); }
    uint32_t getImageHeight() const override { return this->m_interfaceObject->getImageHeight(); }
    uint32_t getHBlocks() const override { return this->m_interfaceObject->getHBlocks(); }
    uint32_t getVBlocks() const override { return this->m_interfaceObject->getVBlocks(); }
    uint32_t getBlockWidth() const override { return this->m_interfaceObject->getBlockWidth(); }
    uint32_t getBlockHeight() const override { return this->m_interfaceObject->getBlockHeight(); }
    uint8_t* getData() const override { return this->m_interfaceObject->getData(); }
    uint64_t getSize() const override { return this->m_interfaceObject->getSize(); }
    ILevelReserved* getDiffmapReserved() const override { return this->m_interfaceObject->getDiffmapReserved(); }
};

using WDiffmap = DiffmapFacade<IDiffmap>;

} // namespace zyr
