#include "core_module/transport/zyr_http_head.h"

#include "zyr_common/text/zyr_c_locale.h"

#include <strings.h>

namespace zyr {

namespace {

constexpr const char* LINE_END = "\r\n";

bool isBlank(char p_character) {
    return p_character == ' ' || p_character == '\t';
}

bool isAlphanumeric(char p_character) {
    const char lower = static_cast<char>(p_character | 0x20);
    return (p_character >= '0' && p_character <= '9') || (lower >= 'a' && lower <= 'z');
}

// The characters of methods and names of fields.
bool isTokenCharacter(char p_character) {
    return isAlphanumeric(p_character) || (p_character != 0 && strchr("!#$%&'*+-.^_`|~", p_character) != nullptr);
}

bool isToken(TextPart p_text) {
    for (size_t i = 0; i < p_text.m_size; i++) {
        if (!isTokenCharacter(p_text.m_data[i])) {
            return false;
        }
    }
    return p_text.m_size != 0;
}

// Printable and not blank: what a target may consist of.
bool isVisible(TextPart p_text) {
    for (size_t i = 0; i < p_text.m_size; i++) {
        const unsigned char character = static_cast<unsigned char>(p_text.m_data[i]);
        if (character <= 0x20 || character >= 0x7f) {
            return false;
        }
    }
    return p_text.m_size != 0;
}

// A name or an address, and perhaps a port; an address of version 6 stands in brackets.
bool isHost(TextPart p_text) {
    const bool hasBrackets = p_text.m_size != 0 && p_text.m_data[0] == '[';
    const char* others = hasBrackets ? "-._~!$&'()*+,;=%:" : "-._~!$&'()*+,;=%";
    size_t end = hasBrackets ? 1 : 0;
    while (end < p_text.m_size && p_text.m_data[end] != 0 &&
           (isAlphanumeric(p_text.m_data[end]) || strchr(others, p_text.m_data[end]) != nullptr)) {
        end++;
    }
    if (hasBrackets && (end == p_text.m_size || p_text.m_data[end++] != ']')) {
        return false;
    }
    bool isGood = end == p_text.m_size || p_text.m_data[end] == ':';
    for (size_t i = end + 1; i < p_text.m_size; i++) {
        isGood = isGood && p_text.m_data[i] >= '0' && p_text.m_data[i] <= '9';
    }
    return isGood;
}

bool isFieldText(TextPart p_text) {
    for (size_t i = 0; i < p_text.m_size; i++) {
        const unsigned char character = static_cast<unsigned char>(p_text.m_data[i]);
        if ((character < 0x20 && character != '\t') || character == 0x7f) {
            return false;
        }
    }
    return true;
}

TextPart trim(TextPart p_text) {
    while (p_text.m_size != 0 && isBlank(p_text.m_data[0])) {
        p_text.m_data++;
        p_text.m_size--;
    }
    while (p_text.m_size != 0 && isBlank(p_text.m_data[p_text.m_size - 1])) {
        p_text.m_size--;
    }
    return p_text;
}

// Cuts the text at the separator. False, with nothing changed, where there is none.
bool cut(TextPart& p_text, const char* p_separator, TextPart& p_left) {
    const size_t size = strlen(p_separator);
    const void* found = memmem(p_text.m_data, p_text.m_size, p_separator, size);
    if (found == nullptr) {
        return false;
    }
    const size_t left = static_cast<size_t>(static_cast<const char*>(found) - p_text.m_data);
    p_left = {p_text.m_data, left};
    p_text = {p_text.m_data + left + size, p_text.m_size - left - size};
    return true;
}

bool readVersion(TextPart p_text, uint32_t& p_minor) {
    p_minor = p_text.equals("HTTP/1.1") ? 1 : 0;
    return p_minor == 1 || p_text.equals("HTTP/1.0");
}

} // namespace

String TextPart::getPrintable() const {
    String text = getString();
    for (size_t i = 0; i < text.getLengthInBytes(); i++) {
        char& character = text.getData()[i];
        character = character >= 0x20 && character < 0x7f ? character : '?';
    }
    return text;
}

bool TextPart::equalsName(const char* p_text) const {
    return strlen(p_text) == m_size && strncasecmp_l(m_data, p_text, m_size, getCLocale()) == 0;
}

bool zyr_takeListItem(TextPart& p_list, TextPart& p_item) {
    while (!p_list.isEmpty()) {
        if (!cut(p_list, ",", p_item)) {
            p_item = p_list;
            p_list.m_size = 0;
        }
        p_item = trim(p_item);
        if (!p_item.isEmpty()) {
            return true;
        }
    }
    return false;
}

bool zyr_hasListItem(TextPart p_list, const char* p_word) {
    TextPart item;
    while (zyr_takeListItem(p_list, item)) {
        if (item.equalsName(p_word)) {
            return true;
        }
    }
    return false;
}

size_t HttpHead::findEnd(const unsigned char* p_bytes, size_t p_size) {
    const void* found = p_size != 0 ? memmem(p_bytes, p_size, "\r\n\r\n", 4) : nullptr;
    return found != nullptr ? static_cast<size_t>(static_cast<const unsigned char*>(found) - p_bytes) + 4 : 0;
}

bool HttpHead::refuse(const char* p_failure) {
    m_failure = p_failure;
    return false;
}

bool HttpHead::readTarget() {
    for (const char* scheme : {"http://", "https://"}) {
        const size_t size = strlen(scheme);
        if (m_second.m_size <= size || !TextPart{m_second.m_data, size}.equalsName(scheme)) {
            continue;
        }
        const TextPart rest{m_second.m_data + size, m_second.m_size - size};
        const void* slash = memchr(rest.m_data, '/', rest.m_size);
        m_authority = {rest.m_data, slash != nullptr
                                        ? static_cast<size_t>(static_cast<const char*>(slash) - rest.m_data)
                                        : rest.m_size};
        m_second = slash != nullptr ? TextPart{rest.m_data + m_authority.m_size, rest.m_size - m_authority.m_size}
                                    : TextPart{"/", 1};
        // A query or a user in the place of a host is nothing that a client sends.
        return !m_authority.isEmpty() && isHost(m_authority);
    }
    // These methods have targets of their own; that they are not answered is said later.
    return m_second.m_data[0] == '/' || (m_first.equals("OPTIONS") && m_second.equals("*")) ||
           (m_first.equals("CONNECT") && isHost(m_second));
}

bool HttpHead::readRequest(const unsigned char* p_bytes, size_t p_size) {
    TextPart rest{reinterpret_cast<const char*>(p_bytes), p_size};
    TextPart line;
    // Old clients send an empty line behind a request, which then is in front of the next one.
    if (!cut(rest, LINE_END, line) || (line.isEmpty() && !cut(rest, LINE_END, line)) || !cut(line, " ", m_first) ||
        !cut(line, " ", m_second) || !isToken(m_first) || !isVisible(m_second) || !readTarget()) {
        return refuse("the request line is malformed");
    }
    if (!readVersion(line, m_minorVersion)) {
        return refuse("the version of HTTP is not spoken here");
    }
    if (!readFields(rest)) {
        return false;
    }
    const uint32_t hosts = countFields("Host");
    if (hosts > 1 || (hosts == 0 && m_minorVersion == 1)) {
        return refuse("a request has one Host");
    }
    if (!isHost(getField("Host"))) {
        return refuse("the Host is malformed");
    }
    return hasKnownLength() || refuse("the length of the body is malformed");
}

bool HttpHead::readAnswer(const unsigned char* p_bytes, size_t p_size) {
    TextPart rest{reinterpret_cast<const char*>(p_bytes), p_size};
    TextPart line;
    TextPart version;
    if (!cut(rest, LINE_END, line) || !cut(line, " ", version) || !readVersion(version, m_minorVersion) ||
        line.m_size < 3) {
        return refuse("the status line is malformed");
    }
    m_status = 0;
    for (size_t i = 0; i < 3; i++) {
        if (line.m_data[i] < '0' || line.m_data[i] > '9') {
            return refuse("the status line is malformed");
        }
        m_status = m_status * 10 + static_cast<uint32_t>(line.m_data[i] - '0');
    }
    return readFields(rest);
}

bool HttpHead::readFields(TextPart p_rest) {
    m_fieldCount = 0;
    TextPart line;
    while (cut(p_rest, LINE_END, line) && !line.isEmpty()) {
        if (!readField(line)) {
            return false;
        }
    }
    return true;
}

bool HttpHead::readField(TextPart p_line) {
    if (m_fieldCount == MAX_FIELDS) {
        return refuse("there are too many header fields");
    }
    // A blank in front of the colon, or of the line (a folded field), is no part of a name.
    Field& field = m_fields[m_fieldCount];
    if (!cut(p_line, ":", field.m_name) || !isToken(field.m_name) || !isFieldText(p_line)) {
        return refuse("a header field is malformed");
    }
    field.m_value = trim(p_line);
    m_fieldCount++;
    return true;
}

TextPart HttpHead::getField(const char* p_name, uint32_t p_index) const {
    for (size_t i = 0; i < m_fieldCount; i++) {
        if (m_fields[i].m_name.equalsName(p_name) && p_index-- == 0) {
            return m_fields[i].m_value;
        }
    }
    return {};
}

uint32_t HttpHead::countFields(const char* p_name) const {
    uint32_t count = 0;
    for (size_t i = 0; i < m_fieldCount; i++) {
        count += m_fields[i].m_name.equalsName(p_name);
    }
    return count;
}

bool HttpHead::listsWord(const char* p_name, const char* p_word) const {
    for (size_t i = 0; i < m_fieldCount; i++) {
        if (m_fields[i].m_name.equalsName(p_name) && zyr_hasListItem(m_fields[i].m_value, p_word)) {
            return true;
        }
    }
    return false;
}

bool HttpHead::hasKnownLength() const {
    const TextPart length = getField("Content-Length");
    bool isGood = countFields("Content-Length") <= 1 && (!length.isEmpty() || countFields("Content-Length") == 0);
    for (size_t i = 0; i < length.m_size; i++) {
        isGood = isGood && length.m_data[i] >= '0' && length.m_data[i] <= '9';
    }
    // The last coding says where the body ends.
    const uint32_t codings = countFields("Transfer-Encoding");
    TextPart list = codings != 0 ? getField("Transfer-Encoding", codings - 1) : TextPart();
    TextPart last;
    while (zyr_takeListItem(list, last)) {
    }
    return isGood && (codings == 0 || last.equalsName("chunked"));
}

bool HttpHead::hasBody() const {
    return countFields("Transfer-Encoding") != 0 ||
           (countFields("Content-Length") != 0 && !getField("Content-Length").equals("0"));
}

} // namespace zyr
