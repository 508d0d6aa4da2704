/// The writer of binary data: numbers of known size, little-endian, numbers of variable length, and blocks.
///
///     writer->beginBlock();
///     writer->writeMultipleFloat(values.getData(), values.getSize());
///     writer->endBlock();
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/documents/zyr_raw_type.h"
#include "zyr_common/documents/zyr_writer.h"

namespace zyr {

/// Every operation gives false, with nothing written, when the output can't grow. A Boolean is written as 0 or 1.
/// Numbers in Base128 (see zyr_base128.h) take as few bytes as they need; those of signed types are stored as signed.
///
/// A block is its size in bytes as an unsigned number of eight bytes, and its bytes. Blocks can stand in each other.
class IBinaryWriter : public IWriter {
public:
    /// Bytes as they are; null is allowed for 0 bytes.
    virtual bool_t writeBytes(const void* p_bytes, size_t p_size) = 0;

/// One number in as many bytes as its type has.
#define ZYR_RAW_NUMBER(suffix, many, type) virtual bool_t writeSingle##suffix(type p_value) = 0;
#include "zyr_common/documents/zyr_raw_numbers.inl"
/// One number in Base128.
#define ZYR_BASE128_NUMBER(suffix, type) virtual bool_t writeSingle##suffix##Base128(type p_value) = 0;
#include "zyr_common/documents/zyr_raw_numbers.inl"
    /// The bytes that writeSingleUInt32Ext takes for the number: 1 below 255, else 5.
    virtual uint8_t getSizeSingleUInt32Ext(uint32_t p_value) const = 0;
    /// The bits of the number as those of an unsigned one.
    virtual bool_t writeSingleInt32Ext(int32_t p_value) = 0;
    /// A number below 255 in one byte, others in a byte 255 and four more.
    virtual bool_t writeSingleUInt32Ext(uint32_t p_value) = 0;

/// So many numbers one behind the other, without their count; null is allowed for none.
#define ZYR_RAW_NUMBER(suffix, many, type) virtual bool_t writeMultiple##many(const type* p_values, size_t p_count) = 0;
#include "zyr_common/documents/zyr_raw_numbers.inl"
#define ZYR_BASE128_NUMBER(suffix, type)                                                                               \
    virtual bool_t writeMultiple##suffix##Base128(const type* p_values, size_t p_count) = 0;
#include "zyr_common/documents/zyr_raw_numbers.inl"

    /// Puts a place for the size; endBlock fills it in.
    virtual bool_t beginBlock() = 0;
    /// Ends the block that was begun last. False without one.
    virtual bool_t endBlock() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getBinaryWriterReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(BinaryWriter, IWriter, "9b780b47-84f3-4ca9-b03c-92ab4bd26ff4")

/// Forwards each operation to the BinaryWriter of its module; what extends that class derives from this.
template <class Interface> class BinaryWriterFacade : public WriterFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t writeBytes(const void* p_bytes, size_t p_size) override {
        return m_interfaceObject->writeBytes(p_bytes, p_size);
    }
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    bool_t writeSingle##suffix(type p_value) override {                                                                \
        return m_interfaceObject->writeSingle##suffix(p_value);                                                        \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
#define ZYR_BASE128_NUMBER(suffix, type)                                                                               \
    bool_t writeSingle##suffix##Base128(type p_value) override {                                                       \
        return m_interfaceObject->writeSingle##suffix##Base128(p_value);                                               \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    uint8_t getSizeSingleUInt32Ext(uint32_t p_value) const override {
        return m_interfaceObject->getSizeSingleUInt32Ext(p_value);
    }
    bool_t writeSingleInt32Ext(int32_t p_value) override {
        return m_interfaceObject->writeSingleInt32Ext(p_value);
    }
    bool_t writeSingleUInt32Ext(uint32_t p_value) override {
        return m_interfaceObject->writeSingleUInt32Ext(p_value);
    }
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    bool_t writeMultiple##many(const type* p_values, size_t p_count) override {                                        \
        return m_interfaceObject->writeMultiple##many(p_values, p_count);                                              \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
#define ZYR_BASE128_NUMBER(suffix, type)                                                                               \
    bool_t writeMultiple##suffix##Base128(const type* p_values, size_t p_count) override {                             \
        return m_interfaceObject->writeMultiple##suffix##Base128(p_values, p_count);                                   \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    bool_t beginBlock() override {
        return m_interfaceObject->beginBlock();
    }
    bool_t endBlock() override {
        return m_interfaceObject->endBlock();
    }
    ILevelReserved* getBinaryWriterReserved() const override {
        return m_interfaceObject->getBinaryWriterReserved();
    }
};

using WBinaryWriter = BinaryWriterFacade<IBinaryWriter>;

} // namespace zyr
