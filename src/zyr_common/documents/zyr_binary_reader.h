/// The reader of binary data: numbers of known size, little-endian, numbers of variable length, and blocks.
///
///     reader->setInputData(bytes);
///     uint32_t count = 0;
///     Array<float> values;
///     if (reader->readSingleUInt32(count) && ...) { reader->readMultipleFloat(values.getData(), count); }
///
/// What a count or size in the data says is not trusted by itself: compare it with what is left before memory is taken
/// for it.
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/documents/zyr_raw_type.h"
#include "zyr_common/documents/zyr_reader.h"

namespace zyr {

/// Every operation gives false, with position and outputs as they were, when the input (inside of a block: the block)
/// has not enough bytes. A Boolean is read as 0 or 1, whatever its byte is.
///
/// The flag of the Base128 operations tells that the stored number is signed (see zyr_base128.h); a writer stores
/// numbers of signed types so and others not. They give false for a number that is not in the range of the type, and
/// for one without end. A Boolean is any number but 0, and float and double take the number itself.
///
/// A group of blocks: after beginGroupOfBlocks() each pushBlock() notes the block that begins at the position, and
/// moves behind it; after endGroupOfBlocks() the blocks are read by their index in any order and any number of times.
/// popGroupOfBlocks() moves behind the last block. Groups can be nested: a group that is begun while a block is read is
/// one of blocks inside of it.
class IBinaryReader : public IReader {
public:
    /// Copies bytes; the destination may be null for 0 bytes.
    virtual bool_t readBytes(void* p_dest, size_t p_size) = 0;

#define ZYR_RAW_NUMBER(suffix, many, type) virtual bool_t readSingle##suffix(type& p_value) = 0;
#include "zyr_common/documents/zyr_raw_numbers.inl"
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    virtual bool_t readSingle##suffix##Base128(type& p_value, bool_t p_signed) = 0;
#include "zyr_common/documents/zyr_raw_numbers.inl"
    /// A number below 255 in one byte, others in a byte 255 and four more.
    virtual bool_t readSingleInt32Ext(int32_t& p_value) = 0;
    virtual bool_t readSingleUInt32Ext(uint32_t& p_value) = 0;

#define ZYR_RAW_NUMBER(suffix, many, type) virtual bool_t readMultiple##many(type* p_values, size_t p_count) = 0;
#include "zyr_common/documents/zyr_raw_numbers.inl"
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    virtual bool_t readMultiple##many##Base128(type* p_values, size_t p_count, bool_t p_signed) = 0;
#include "zyr_common/documents/zyr_raw_numbers.inl"

    /// Opens a group at the position; see above. False never moves the position.
    virtual bool_t beginGroupOfBlocks() = 0;
    /// False without an open group, and when the size of the block is no multiple of that of its numbers.
    virtual bool_t pushBlock(RawTypeEnum p_type) = 0;
    /// Ends the noting of blocks. False without an open group.
    virtual bool_t endGroupOfBlocks() = 0;
    /// Moves to the first byte of a block. Reading then ends with the block.
    virtual bool_t readFromBlockIndex(size_t p_index) = 0;
    /// Leaves the group. False without one that was ended.
    virtual bool_t popGroupOfBlocks() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getBinaryReaderReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(BinaryReader, IReader, "6873158a-b746-4099-9166-92d2f3d2df70")

/// Forwards each operation to the BinaryReader of its module; what extends that class derives from this.
template <class Interface> class BinaryReaderFacade : public ReaderFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t readBytes(void* p_dest, size_t p_size) override { return m_interfaceObject->readBytes(p_dest, p_size); }
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    bool_t readSingle##suffix(type& p_value) override {                                                                \
        return m_interfaceObject->readSingle##suffix(p_value);                                                         \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    bool_t readSingle##suffix##Base128(type& p_value, bool_t p_signed) override {                                      \
        return m_interfaceObject->readSingle##suffix##Base128(p_value, p_signed);                                      \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    bool_t readSingleInt32Ext(int32_t& p_value) override {
        return m_interfaceObject->readSingleInt32Ext(p_value);
    }
    bool_t readSingleUInt32Ext(uint32_t& p_value) override {
        return m_interfaceObject->readSingleUInt32Ext(p_value);
    }
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    bool_t readMultiple##many(type* p_values, size_t p_count) override {                                               \
        return m_interfaceObject->readMultiple##many(p_values, p_count);                                               \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    bool_t readMultiple##many##Base128(type* p_values, size_t p_count, bool_t p_signed) override {                     \
        return m_interfaceObject->readMultiple##many##Base128(p_values, p_count, p_signed);                            \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    bool_t beginGroupOfBlocks() override {
        return m_interfaceObject->beginGroupOfBlocks();
    }
    bool_t pushBlock(RawTypeEnum p_type) override {
        return m_interfaceObject->pushBlock(p_type);
    }
    bool_t endGroupOfBlocks() override {
        return m_interfaceObject->endGroupOfBlocks();
    }
    bool_t readFromBlockIndex(size_t p_index) override {
        return m_interfaceObject->readFromBlockIndex(p_index);
    }
    bool_t popGroupOfBlocks() override {
        return m_interfaceObject->popGroupOfBlocks();
    }
    ILevelReserved* getBinaryReaderReserved() const override {
        return m_interfaceObject->getBinaryReaderReserved();
    }
};

using WBinaryReader = BinaryReaderFacade<IBinaryReader>;

} // namespace zyr
