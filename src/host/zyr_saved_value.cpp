#include "host/zyr_saved_value.h"

#include "host/zyr_saved_reader.h"
#include "host/zyr_standard_output.h"

#include "core_module/serializers/zyr_binary_reader.h"
#include "core_module/serializers/zyr_text_bytes.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <nlohmann/json.hpp>

namespace zyr::host {

namespace {

constexpr size_t MAX_LINE_BYTES = 100;
constexpr size_t MAX_LINE_ITEMS = 8;

template <typename T> std::string realText(T p_value) {
    if (std::isnan(p_value) || std::isinf(p_value)) {
        return std::isnan(p_value) ? "\"nan\"" : p_value > 0 ? "\"inf\"" : "\"-inf\"";
    }
    char text[64];
    const auto end = std::to_chars(text, text + sizeof(text), p_value);
    return std::string(text, end.ptr);
}

template <typename T> T readBits(const void* p_bytes) {
    T value;
    memcpy(&value, p_bytes, sizeof(value));
    return value;
}

std::string signedText(uint64_t p_number) {
    // 0, -1, 1, -2 are stored as 0, 1, 2, 3.
    const uint64_t half = p_number >> 1;
    return std::to_string(static_cast<int64_t>((p_number & 1) != 0 ? ~half : half));
}

/// The items of an array without nodes, one at each call.
class Items {
public:
    Items(SavedKind p_kind, std::string_view p_bytes) : m_kind(p_kind), m_bytes(p_bytes) {
        if (p_kind == SavedKind::TEXTS || p_kind == SavedKind::ENUMERATIONS || p_kind == SavedKind::WORDS) {
            const auto* begin = reinterpret_cast<const uint8_t*>(p_bytes.data());
            m_reader = BinaryReader(begin, begin + p_bytes.size());
            m_reader.readNumber(m_left);
        }
    }

    /// False behind the last one.
    bool next(std::string& p_text) {
        switch (m_kind) {
        case SavedKind::FLOATS:
            return nextReal<float>(p_text);
        case SavedKind::DOUBLES:
            return nextReal<double>(p_text);
        case SavedKind::UINT32S:
            if (m_bytes.size() < sizeof(uint32_t)) {
                return false;
            }
            p_text = std::to_string(readBits<uint32_t>(m_bytes.data()));
            m_bytes.remove_prefix(sizeof(uint32_t));
            return true;
        case SavedKind::NUMBERS:
            p_text = nextSavedWord(m_bytes);
            return !p_text.empty();
        default:
            return nextCoded(p_text);
        }
    }

private:
    template <typename T> bool nextReal(std::string& p_text) {
        if (m_bytes.size() < sizeof(T)) {
            return false;
        }
        p_text = realText(readBits<T>(m_bytes.data()));
        m_bytes.remove_prefix(sizeof(T));
        return true;
    }
    bool nextCoded(std::string& p_text) {
        uint64_t number = 0;
        const char* text = nullptr;
        size_t length = 0;
        char guid[36];
        if (m_left == 0) {
            return false;
        }
        m_left--;
        if (m_kind == SavedKind::ENUMERATIONS) {
            const bool read = m_reader.readNumber(number);
            p_text = std::to_string(number);
            return read;
        }
        const bool read = m_reader.readTextView(text, length, guid);
        p_text = read ? quoteSavedText({text, length}) : "";
        return read;
    }

    SavedKind m_kind;
    std::string_view m_bytes;
    BinaryReader m_reader;
    uint64_t m_left = 0;
};

bool isItems(SavedKind p_kind) {
    return (p_kind >= SavedKind::TEXTS && p_kind <= SavedKind::ENUMERATIONS) || p_kind == SavedKind::NUMBERS ||
           p_kind == SavedKind::WORDS;
}

/// The value of a single node.
std::string scalarText(const SavedTree& p_tree, uint32_t p_node) {
    const uint64_t number = p_tree.getNumber(p_node);
    switch (p_tree.getKind(p_node)) {
    case SavedKind::BOOL:
        return number != 0 ? "true" : "false";
    case SavedKind::INT32:
    case SavedKind::INT64:
        return signedText(number);
    case SavedKind::UINT32:
    case SavedKind::UINT64:
        return std::to_string(number);
    case SavedKind::FLOAT:
        return realText(readBits<float>(&number));
    case SavedKind::DOUBLE:
        return realText(readBits<double>(&number));
    case SavedKind::ENUMERATION:
        return p_tree.getWord(p_node).empty() ? std::to_string(number) : quoteSavedText(p_tree.getWord(p_node));
    case SavedKind::TEXT:
    case SavedKind::SHARED_TEXT:
        return quoteSavedText(p_tree.getBytes(p_node));
    case SavedKind::NUMBER:
        return std::string(p_tree.getBytes(p_node));
    default:
        return "null";
    }
}

/// The text up to so many bytes, without half a character at its end.
std::string_view cutText(std::string_view p_text) {
    size_t size = MAX_LINE_BYTES;
    while (size > 0 && (static_cast<unsigned char>(p_text[size]) & 0xC0) == 0x80) {
        size--;
    }
    return p_text.substr(0, size != 0 ? size : MAX_LINE_BYTES);
}

std::string itemsLine(const SavedTree& p_tree, uint32_t p_node, bool p_full) {
    Items items(p_tree.getKind(p_node), p_tree.getBytes(p_node));
    std::string line = "[";
    std::string item;
    uint64_t count = 0;
    for (; items.next(item); count++) {
        if (p_full || count < MAX_LINE_ITEMS) {
            line += (count != 0 ? ", " : "") + (p_full || item.size() <= MAX_LINE_BYTES ? item : "...");
        }
    }
    return line + (p_full || count <= MAX_LINE_ITEMS ? "]" : ", ...] (" + std::to_string(count) + " items)");
}

} // namespace

const char* getSavedTypeText(SavedKind p_kind) {
    static constexpr const char* TEXTS[] = {
        "nothing",      "bool",    "int32",  "uint32",           "int64",           "uint64",
        "float",        "double",  "text",   "shared text",      "enumeration",     "record",
        "object",       "records", "texts",  "array of float",   "array of double", "array of uint32",
        "enumerations", "null",    "number", "array of numbers", "array",           "enumerations",
        "contents"};
    static_assert(sizeof(TEXTS) / sizeof(*TEXTS) == static_cast<size_t>(SavedKind::CONTENTS) + 1);
    return TEXTS[static_cast<size_t>(p_kind)];
}

std::string quoteSavedText(std::string_view p_text) {
    if (!isUTF8(p_text.data(), p_text.size()) || hasBytesMark(p_text.data(), p_text.size())) {
        static constexpr char DIGITS[] = "0123456789abcdef";
        std::string text = "\"\\\\bytes:";
        for (const char character : p_text) {
            text += DIGITS[static_cast<unsigned char>(character) >> 4];
            text += DIGITS[static_cast<unsigned char>(character) & 15];
        }
        return text + '"';
    }
    return nlohmann::json(p_text).dump();
}

std::string makeSavedJson(const SavedTree& p_tree, uint32_t p_node) {
    const SavedKind kind = p_tree.getKind(p_node);
    if (kind != SavedKind::LIST && !isItems(kind)) {
        return scalarText(p_tree, p_node);
    }
    std::string text = "[";
    if (kind == SavedKind::LIST) {
        for (uint32_t child = p_node + 1; child < p_tree.getNext(p_node); child = p_tree.getNext(child)) {
            text += (text.size() > 1 ? "," : "") + scalarText(p_tree, child);
        }
        return text + "]";
    }
    Items items(kind, p_tree.getBytes(p_node));
    for (std::string item; items.next(item);) {
        text += (text.size() > 1 ? "," : "") + item;
    }
    return text + "]";
}

std::string makeSavedLine(const SavedTree& p_tree, uint32_t p_node, bool p_full) {
    const SavedKind kind = p_tree.getKind(p_node);
    std::string line;
    if (isItems(kind)) {
        line = itemsLine(p_tree, p_node, p_full);
    } else if (!p_full && (kind == SavedKind::TEXT || kind == SavedKind::SHARED_TEXT || kind == SavedKind::NUMBER) &&
               p_tree.getBytes(p_node).size() > MAX_LINE_BYTES) {
        const std::string_view bytes = p_tree.getBytes(p_node);
        line = quoteSavedText(cutText(bytes)) + "... (" + std::to_string(bytes.size()) + " bytes)";
    } else {
        line = scalarText(p_tree, p_node);
    }
    return maskControls(line);
}

} // namespace zyr::host
