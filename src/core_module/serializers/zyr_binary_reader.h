/// Reading of the encodings that the two binary formats share. Nothing is read behind the end that is given.
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"
#include "core_module/serializers/zyr_field_kind.h"

namespace zyr {

/// A place in the bytes and their end. Every call gives false and leaves the place anywhere when the bytes end too
/// early or are not what they should be.
class BinaryReader {
public:
    BinaryReader() = default;
    BinaryReader(const uint8_t* p_begin, const uint8_t* p_end) : m_place(p_begin), m_end(p_end) {}

    size_t getRemaining() const { return static_cast<size_t>(m_end - m_place); }
    bool isAtEnd() const { return m_place == m_end; }

    bool readNumber(uint64_t& p_number) {
        if (m_place != m_end && *m_place < 0x80) {
            p_number = *m_place++;
            return true;
        }
        return readLongNumber(p_number);
    }
    bool readBytes(void* p_target, size_t p_size) {
        if (getRemaining() < p_size) {
            return false;
        }
        if (p_size != 0) { // An empty array has no place for bytes.
            memcpy(p_target, m_place, p_size);
            m_place += p_size;
        }
        return true;
    }
    bool skip(uint64_t p_size) {
        if (getRemaining() < p_size) {
            return false;
        }
        m_place += p_size;
        return true;
    }
    /// Gives a count of items that take at least p_itemSize bytes each.
    bool readCount(uint64_t& p_count, size_t p_itemSize) {
        return readNumber(p_count) && p_count <= UINT32_MAX && p_count <= getRemaining() / p_itemSize;
    }
    /// Gives a part that begins with its length.
    bool readPart(BinaryReader& p_part) {
        uint64_t length = 0;
        if (!readNumber(length) || length > getRemaining()) {
            return false;
        }
        p_part = BinaryReader(m_place, m_place + length);
        m_place += length;
        return true;
    }
    bool readText(String& p_text) {
        uint64_t code = 0;
        if (!readNumber(code)) {
            return false;
        }
        if (code == 0) {
            char text[36];
            const bool done = readGUID(text);
            if (done) {
                p_text.assignUTF8SubString(text, sizeof(text));
            }
            return done;
        }
        if (code - 1 > getRemaining()) {
            return false;
        }
        p_text.assignUTF8SubString(reinterpret_cast<const char*>(m_place), code - 1);
        m_place += code - 1;
        return true;
    }
    bool skipText();
    /// A text that is compared and not kept. That of a GUID is written into p_guidText and needs it to stay.
    bool readTextView(const char*& p_text, size_t& p_length, char (&p_guidText)[36]);
    /// Steps over a value of any kind but objects and arrays of records, which the two formats begin differently.
    bool skipPlainValue(FieldKind p_kind);

    const uint8_t* m_place = nullptr;
    const uint8_t* m_end = nullptr;

private:
    bool readLongNumber(uint64_t& p_number);
    bool readGUID(char (&p_text)[36]);
};

} // namespace zyr
