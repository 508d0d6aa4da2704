/// Brackets, lists, ranges, wildcards and names of enumerations.
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/containers/zyr_pair.h"
#include "zyr_common/text/zyr_c_locale.h"
#include "zyr_common/text/zyr_string.h"

#include <cstdlib>

namespace zyr {

namespace {

/// Numbers wrap into 32 bits, as the casts of the system do.
uint32_t readUInt32(const char* p_text) {
    return static_cast<uint32_t>(strtol_l(p_text, nullptr, 10, getCLocale()));
}

} // namespace

String String::parseBracketsString(char p_open, char p_close, String* p_prefix) const {
    const size_t length = getLengthInBytes();
    size_t depth = 0;
    size_t start = 0;
    for (size_t position = 0; position < length; position++) {
        if (m_data[position] == p_open) {
            depth++;
            if (start == 0) {
                start = position + 1;
            }
        } else if (m_data[position] == p_close && depth > 0 && --depth == 0) {
            if (position == start) {
                break;
            }
            String inside(m_data + start, position - start);
            if (p_prefix != nullptr) {
                p_prefix->assignUTF8SubString(m_data, start - 1);
            }
            return inside;
        }
    }
    return String();
}

uint32_t String::parseBracketsUInt32(char p_open, char p_close) const {
    return readUInt32(parseBracketsString(p_open, p_close, nullptr).m_data);
}

void String::parseCsvString(char p_separator, List<String>& p_list) const {
    const char* rest = m_data;
    const char* separator = p_separator != 0 ? strchr(rest, p_separator) : nullptr;
    if (separator == nullptr) {
        p_list.pushBack(*this);
        return;
    }
    while (separator != nullptr) {
        if (separator != rest) {
            p_list.pushBack(String(rest, static_cast<size_t>(separator - rest)));
        }
        rest = separator + 1;
        if (*rest == ' ') {
            rest++;
        }
        separator = strchr(rest, p_separator);
    }
    if (*rest != 0) {
        p_list.pushBack(String(rest));
    }
}

Pair<unsigned int, unsigned int> String::parseRangeUInt32() const {
    String left;
    String right;
    if (!getSeparatedStrings(String(".."), &left, &right, 0)) {
        const uint32_t number = readUInt32(m_data);
        return Pair<unsigned int, unsigned int>(number, number);
    }
    return Pair<unsigned int, unsigned int>(left.isEmpty() ? INDEX_NONE : readUInt32(left.m_data),
                                            right.isEmpty() ? INDEX_NONE : readUInt32(right.m_data));
}

String String::parseBracketsStringAndIndexRange(const String& p_name, char p_open, char p_close,
                                                Pair<unsigned int, unsigned int>* p_range) const {
    String prefix;
    const String inside = parseBracketsString(p_open, p_close, &prefix);
    if (inside.isEmpty() || prefix != p_name) {
        return String();
    }
    String left;
    String right;
    if (!inside.getSeparatedStrings(',', &left, &right, 0, 0)) {
        if (p_range != nullptr) {
            *p_range = Pair<unsigned int, unsigned int>(INDEX_NONE, INDEX_NONE);
        }
        return inside;
    }
    if (p_range != nullptr && !right.isEmpty()) {
        *p_range = right.parseRangeUInt32();
    }
    return left;
}

bool_t String::compareTruncatedString(const String& p_pattern) const {
    if (*this == p_pattern) {
        return 1;
    }
    const char* part = p_pattern.m_data;
    const char* const patternEnd = part + p_pattern.getLengthInBytes();
    const char* star = static_cast<const char*>(memchr(part, '*', p_pattern.getLengthInBytes()));
    if (star == nullptr) {
        return 0;
    }
    const char* rest = m_data;
    const char* const textEnd = rest + getLengthInBytes();
    size_t size = static_cast<size_t>(star - part);
    if (size > getLengthInBytes() || memcmp(rest, part, size) != 0) {
        return 0;
    }
    rest += size;
    for (part = star + 1; part != patternEnd; part = star + 1) {
        const size_t remaining = static_cast<size_t>(textEnd - rest);
        star = static_cast<const char*>(memchr(part, '*', static_cast<size_t>(patternEnd - part)));
        if (star == nullptr) {
            // The last part is a backward search in what remains, which does not look at its first byte.
            size = static_cast<size_t>(patternEnd - part);
            return size < remaining && memcmp(textEnd - size, part, size) == 0;
        }
        size = static_cast<size_t>(star - part);
        const void* const match = memmem(rest, remaining, part, size);
        if (match == nullptr) {
            return 0;
        }
        rest = static_cast<const char*>(match) + size;
    }
    return 1;
}

HashMap<String, uint32_t>* String::createMapOfStringCases(uint32_t p_count, const char** p_names) {
    HashMap<String, uint32_t>* map = new HashMap<String, uint32_t>();
    for (uint32_t i = 0; i < p_count; i++) {
        map->pushBack(String(p_names[i]), i, nullptr);
    }
    return map;
}

uint32_t String::getCaseFromString(const String& p_text, uint32_t& p_index, const HashMap<String, uint32_t>& p_map) {
    constexpr uint32_t UNKNOWN = 0xFFFFFFFF;
    auto present = p_map.findConst(p_text);
    if (present != p_map.endConst()) {
        return present->m_second;
    }
    size_t open = 0;
    size_t close = 0;
    if (!p_text.searchCharacter('[', 0, 0, open) || !p_text.searchCharacter(']', 0, 0, close)) {
        return UNKNOWN;
    }
    String key;
    key.assignUTF8SubString(p_text.m_data, open);
    key += "[i]";
    present = p_map.findConst(key);
    if (present == p_map.endConst()) {
        return UNKNOWN;
    }
    p_index = readUInt32(p_text.m_data + open + 1);
    return present->m_second;
}

} // namespace zyr
