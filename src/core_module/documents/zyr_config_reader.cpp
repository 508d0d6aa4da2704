#include "core_module/documents/zyr_config_reader.h"

namespace zyr {

namespace {

bool isLineEnd(char p_byte) {
    return p_byte == '\n' || p_byte == '\r';
}

bool isLineBlank(char p_byte) {
    return p_byte == ' ' || p_byte == '\t';
}

bool isComment(char p_byte) {
    return p_byte == '#' || p_byte == ';';
}

bool isHexadecimal(const char* p_text, const char* p_end) {
    if (p_end - p_text < 3 || p_text[0] != '0' || (p_text[1] | 0x20) != 'x') {
        return false;
    }
    for (p_text += 2; p_text != p_end; ++p_text) {
        const char letter = static_cast<char>(*p_text | 0x20);
        if (!isDocumentDigit(*p_text) && (letter < 'a' || letter > 'f')) {
            return false;
        }
    }
    return true;
}

bool isNumber(const String& p_value) {
    const char* begin = p_value.getData();
    const char* end = begin + p_value.getLengthInBytes();
    if (begin != end && *begin == '+' && begin + 1 != end && begin[1] != '-') {
        ++begin;
    }
    return begin != end && (findNumberEnd(begin, end) == end || isHexadecimal(begin, end));
}

} // namespace

bool ConfigReader::read() {
    if (!m_text.checkUTF8()) {
        m_messages.pushBack(m_text.makeMessage());
        return false;
    }
    size_t numOfFaults = 0;
    while (!m_text.isAtEnd() && numOfFaults < MAX_MESSAGES) {
        if (!readLine() || !readLineEnd()) {
            m_messages.pushBack(m_text.makeMessage());
            ++numOfFaults;
            m_text.clearFault(); // The next line can be a good one.
            while (!m_text.isAtEnd() && !isLineEnd(*m_text.m_current)) {
                ++m_text.m_current;
            }
        }
    }
    return numOfFaults == 0;
}

/// Up to the end of what the line says.
bool ConfigReader::readLine() {
    m_text.skipBlanks();
    if (m_text.isAtEnd() || isComment(*m_text.m_current)) {
        return true;
    }
    return *m_text.m_current == '[' ? readHeader() : readPair();
}

bool ConfigReader::readHeader() {
    const char* place = m_text.m_current;
    ++m_text.m_current;
    skipLineBlanks();
    const char* begin = m_text.m_current;
    while (!m_text.isAtEnd() && *m_text.m_current != ']' && !isLineEnd(*m_text.m_current)) {
        ++m_text.m_current;
    }
    if (m_text.isAtEnd() || *m_text.m_current != ']') {
        return m_text.fail("Section without a closing bracket", place);
    }
    const char* end = m_text.m_current;
    ++m_text.m_current;
    while (end != begin && isLineBlank(end[-1])) {
        --end;
    }
    if (end == begin) {
        return m_text.fail("Section without a name", place);
    }
    m_section = findSection(String(begin, static_cast<size_t>(end - begin)));
    return true;
}

bool ConfigReader::readPair() {
    const char* begin = m_text.m_current;
    while (!m_text.isAtEnd() && *m_text.m_current != '=' && !isLineEnd(*m_text.m_current)) {
        ++m_text.m_current;
    }
    const char* end = m_text.m_current;
    while (end != begin && isLineBlank(end[-1])) {
        --end;
    }
    if (m_text.isAtEnd() || *m_text.m_current != '=') {
        return m_text.fail("Line without a value", begin);
    }
    if (end == begin) {
        return m_text.fail("Value without a name", begin);
    }
    const String name(begin, static_cast<size_t>(end - begin));
    ++m_text.m_current;
    skipLineBlanks();
    String value;
    bool_t numeric = 0;
    if (!m_text.isAtEnd() && *m_text.m_current == '"') {
        if (!readQuotedValue(value)) {
            return false;
        }
    } else {
        readPlainValue(value);
        numeric = isNumber(value);
    }
    if (m_section == nullptr) {
        m_section = findSection(String());
    }
    ConfigPair* pair = new ConfigPair(name, value, numeric);
    m_section->pushBackPair(pair);
    pair->release();
    return true;
}

bool ConfigReader::readQuotedValue(String& p_value) {
    static const char letters[] = "\\\"nrt";
    static const char meanings[] = "\\\"\n\r\t";
    const char* begin = m_text.m_current++;
    for (;; ++m_text.m_current) {
        if (m_text.isAtEnd() || isLineEnd(*m_text.m_current)) {
            return m_text.fail("Text without end", begin);
        }
        const char byte = *m_text.m_current;
        if (byte == '"') {
            ++m_text.m_current;
            return true;
        }
        if (byte != '\\') {
            p_value.pushBackAsciiCharacter(byte);
            continue;
        }
        const char letter = m_text.getRest() > 1 ? m_text.m_current[1] : '\0';
        const char* place = letter != 0 ? strchr(letters, letter) : nullptr;
        if (place == nullptr) {
            return m_text.fail("Unknown escape");
        }
        p_value.pushBackAsciiCharacter(meanings[place - letters]);
        ++m_text.m_current;
    }
}

void ConfigReader::readPlainValue(String& p_value) {
    const char* begin = m_text.m_current;
    while (!m_text.isAtEnd() && !isLineEnd(*m_text.m_current) &&
           !(isComment(*m_text.m_current) && (m_text.m_current == begin || isLineBlank(m_text.m_current[-1])))) {
        ++m_text.m_current;
    }
    const char* end = m_text.m_current;
    while (end != begin && isLineBlank(end[-1])) {
        --end;
    }
    p_value.assignUTF8SubString(begin, static_cast<size_t>(end - begin));
}

/// Only a comment may follow on a line.
bool ConfigReader::readLineEnd() {
    skipLineBlanks();
    if (!m_text.isAtEnd() && isComment(*m_text.m_current)) {
        while (!m_text.isAtEnd() && !isLineEnd(*m_text.m_current)) {
            ++m_text.m_current;
        }
    }
    return m_text.isAtEnd() || isLineEnd(*m_text.m_current) || m_text.fail("Text behind the value");
}

void ConfigReader::skipLineBlanks() {
    while (!m_text.isAtEnd() && isLineBlank(*m_text.m_current)) {
        ++m_text.m_current;
    }
}

ConfigSection* ConfigReader::findSection(const String& p_name) {
    const auto place = m_sectionsByName.find(p_name);
    if (place != m_sectionsByName.end()) {
        return place->m_second;
    }
    ConfigSection* section = new ConfigSection;
    section->setName(p_name);
    m_sections.pushBack(section);
    m_sectionsByName.pushBack(p_name, section, nullptr);
    return section;
}

} // namespace zyr
