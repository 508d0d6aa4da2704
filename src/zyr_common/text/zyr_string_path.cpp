/// Lines, case and paths.
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

namespace {

bool isLineBreak(char p_character) {
    return p_character == '\n' || p_character == '\r';
}

/// Walks back to the first byte of the line; gives its position and counts the characters.
size_t walkToLineStart(const String& p_text, size_t p_position, size_t& p_characters) {
    const size_t length = p_text.getLengthInBytes();
    size_t position = p_position < length ? p_position : length;
    p_characters = 0;
    while (position > 0 && !isLineBreak(p_text.getData()[position - 1])) {
        const size_t previous = p_text.getPrevCharacterPositionInBytes(position);
        if (previous == position) {
            break;
        }
        position = previous;
        p_characters++;
    }
    return position;
}

} // namespace

size_t String::getLineStartInBytes(size_t p_position) const {
    size_t characters = 0;
    return walkToLineStart(*this, p_position, characters);
}

size_t String::getLineStartInCharacters(size_t p_position) const {
    size_t characters = 0;
    walkToLineStart(*this, p_position, characters);
    return characters;
}

size_t String::getLineEndInBytes(size_t p_position) const {
    const size_t length = getLengthInBytes();
    size_t position = p_position < length ? p_position : length;
    while (position < length && !isLineBreak(m_data[position])) {
        position++;
    }
    const bool isPair = position + 1 < length && m_data[position] == '\r' && m_data[position + 1] == '\n';
    return isPair ? position + 1 : position;
}

void String::convertToUpperCase() {
    for (char* byte = m_data; *byte != 0; byte++) {
        if (*byte >= 'a' && *byte <= 'z') {
            *byte = static_cast<char>(*byte - 'a' + 'A');
        }
    }
}

void String::convertToLowerCase() {
    for (char* byte = m_data; *byte != 0; byte++) {
        if (*byte >= 'A' && *byte <= 'Z') {
            *byte = static_cast<char>(*byte - 'A' + 'a');
        }
    }
}

/// The last backslash or, without any, the last slash; a separator at position 0 counts here.
bool String::searchLastSlash(size_t& p_position) const {
    const size_t length = getLengthInBytes();
    const void* slash = memrchr(m_data, '\\', length);
    if (slash == nullptr) {
        slash = memrchr(m_data, '/', length);
    }
    if (slash == nullptr) {
        return false;
    }
    p_position = static_cast<size_t>(static_cast<const char*>(slash) - m_data);
    return true;
}

String String::getDirectoryPath() const {
    String path;
    size_t position = 0;
    if (searchLastSlash(position)) {
        path.assignUTF8SubString(m_data, position + 1);
    }
    return path;
}

String String::getFileName(String* p_directory) const {
    size_t position = 0;
    if (!searchLastSlash(position)) {
        return *this;
    }
    String name;
    assignSeparated(position + 1, position + 1, p_directory, &name);
    return name;
}

String String::getDirectoryName(String* p_directory) const {
    String path;
    size_t position = 0;
    if (searchLastSlash(position)) {
        path.assignUTF8SubString(m_data, position);
    }
    if (p_directory != nullptr) {
        p_directory->clear();
    }
    return path.getFileName(p_directory);
}

bool_t String::isAbsolutePath() const {
    return m_size != 0 && m_data[0] == '/';
}

void String::setCoherentPathSlashes() {
    const size_t length = getLengthInBytes();
    for (size_t i = 0; i < length; i++) {
        if (m_data[i] == '\\') {
            m_data[i] = '/';
        }
    }
}

void String::normalizeDirectoryPath() {
    const size_t length = getLengthInBytes();
    if (length == 0 || (m_data[length - 1] != '/' && m_data[length - 1] != '\\')) {
        pushBackAsciiCharacter('/');
    }
    setCoherentPathSlashes();
}

void String::getNestedDirectories(List<String>& p_list) const {
    String path(*this);
    do {
        String parent;
        const String name = path.getDirectoryName(&parent);
        if (!name.isEmpty()) {
            p_list.pushFront(parent + name + "/");
        }
        path = parent;
    } while (!path.isEmpty());
}

void String::getStringPathRoot(const String& p_path, String& p_root, String& p_rest) {
    if (!p_path.getSeparatedStrings('.', &p_root, &p_rest, 0, 0)) {
        p_root = p_path;
        p_rest.clear();
    }
}

} // namespace zyr
