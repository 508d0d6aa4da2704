/// Numbers and texts of live messages: little-endian, without padding.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace zyr::host {

/// Puts a message together.
class LiveWriter {
public:
    template <typename Number> LiveWriter& add(Number p_number) {
        static_assert(std::is_arithmetic_v<Number>);
        const auto* bytes = reinterpret_cast<const uint8_t*>(&p_number);
        m_bytes.insert(m_bytes.end(), bytes, bytes + sizeof(p_number));
        return *this;
    }

    /// Seven bits a byte, the lowest first; all but the last byte have their highest bit set.
    LiveWriter& addNumber(uint64_t p_number) {
        for (; p_number >= 0x80; p_number >>= 7) {
            m_bytes.push_back(uint8_t(p_number | 0x80));
        }
        m_bytes.push_back(uint8_t(p_number));
        return *this;
    }

    /// A text behind its length of 16 bits; what is longer is cut.
    LiveWriter& addText(const std::string& p_text) {
        const auto size = static_cast<uint16_t>(p_text.size() < UINT16_MAX ? p_text.size() : UINT16_MAX);
        add(size);
        m_bytes.insert(m_bytes.end(), p_text.begin(), p_text.begin() + size);
        return *this;
    }

    const std::vector<uint8_t>& getBytes() const { return m_bytes; }

private:
    std::vector<uint8_t> m_bytes;
};

/// Takes a message apart. Every read is checked against the end; after one that does not fit, all give 0 or nothing.
class LiveReader {
public:
    LiveReader(const void* p_data, size_t p_size) : m_data(static_cast<const uint8_t*>(p_data)), m_size(p_size) {}

    template <typename Number> Number take() {
        static_assert(std::is_arithmetic_v<Number>);
        Number number{};
        if (claim(sizeof(number))) {
            memcpy(&number, m_data + m_position - sizeof(number), sizeof(number));
        }
        return number;
    }

    /// As addNumber wrote it.
    uint64_t takeNumber() {
        uint64_t number = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            const auto byte = take<uint8_t>();
            number |= uint64_t{byte & 0x7Fu} << shift;
            if ((byte & 0x80) == 0) {
                return number;
            }
        }
        m_good = false;
        return 0;
    }

    std::string takeText(size_t p_longest) {
        const uint16_t size = take<uint16_t>();
        if (size > p_longest || !claim(size)) {
            m_good = false;
            return {};
        }
        return std::string(reinterpret_cast<const char*>(m_data) + m_position - size, size);
    }

    /// True when all that was asked for was there. More may follow, as later versions add to the end.
    bool isGood() const { return m_good; }

private:
    bool claim(size_t p_size) {
        m_good = m_good && p_size <= m_size - m_position;
        m_position += m_good ? p_size : 0;
        return m_good;
    }

    const uint8_t* m_data;
    size_t m_size;
    size_t m_position = 0;
    bool m_good = true;
};

} // namespace zyr::host
