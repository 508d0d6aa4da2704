#include "host/zyr_path_check.h"

#include "host/zyr_framework.h"
#include "zyr_common/documents/zyr_svg_path.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/text/zyr_number_text.h"

#include <algorithm>
#include <cmath>

namespace zyr::host {

namespace {

std::string toText(const WrappedString& p_text) {
    return std::string(p_text.getData(), p_text.getSize());
}

bool isNumber(const Token& p_token) {
    return p_token.m_type == ZYR_TOKEN_TYPE_INTEGER_LITERAL || p_token.m_type == ZYR_TOKEN_TYPE_REAL_LITERAL;
}

/// Reads a text as the library does, and throws where that would lose something.
class PathChecker {
public:
    explicit PathChecker(const std::string& p_text) : m_text(p_text), m_lexer(zyr_createObject<ILexer>()) {
        if (m_lexer == nullptr) {
            throw ModuleError("the core module offers no lexer");
        }
        zyr_prepareSVGPathLexer(m_lexer.get());
        m_data.bindFixedSizeData(const_cast<char*>(m_text.data()), m_text.size());
        m_lexer->setInputData(&m_data);
    }

    void check() {
        for (bool reading = next(); reading;) {
            if (m_token.m_type != ZYR_TOKEN_TYPE_KEYWORD) {
                fail("a command letter must stand here, not " + shown());
            }
            m_letter = *m_token.m_text.getData();
            reading = checkGroups();
        }
    }

private:
    /// False at the end of the text.
    bool next() {
        if (m_lexer->readToken(m_token)) {
            return true;
        }
        if (m_token.m_text.getSize() != 0) {
            fail(shown() + " has no place in a path");
        }
        return false;
    }

    /// Checks the numbers behind a letter and gives whether a command follows.
    bool checkGroups() {
        const uint32_t size = zyr_getSVGPathGroupSize(m_letter);
        if (size == 0) {
            return next();
        }
        for (bool first = true;; first = false) {
            for (uint32_t i = 0; i < size; ++i) {
                const Found found = checkNumber(i);
                if (found == FOUND_NUMBER) {
                    continue;
                }
                if (i != 0 || first) {
                    fail(std::string(1, m_letter) + " takes " + std::to_string(size) +
                         (size == 1 ? " number" : " numbers at a time") + ", and here are " + std::to_string(i));
                }
                return found == FOUND_OTHER;
            }
        }
    }

    enum Found { FOUND_NUMBER, FOUND_OTHER, FOUND_END };

    Found checkNumber(uint32_t p_index) {
        if (!next()) {
            return FOUND_END;
        }
        if (m_token.m_type == ZYR_TOKEN_TYPE_PUNCTUATOR) {
            const std::string mark = shown();
            if (!next() || !isNumber(m_token)) {
                fail("a number must follow on " + mark);
            }
            checkSize();
            checkFlag(p_index, mark == "'-'");
            return FOUND_NUMBER;
        }
        if (!isNumber(m_token)) {
            return FOUND_OTHER;
        }
        checkSize();
        checkFlag(p_index, false);
        return FOUND_NUMBER;
    }

    void checkSize() const {
        if (!std::isfinite(zyr_convertStringToDouble(String(m_token.m_text).getData()))) {
            fail(shown() + " is too large a number");
        }
    }

    void checkFlag(uint32_t p_index, bool p_negative) const {
        if ((m_letter != 'A' && m_letter != 'a') || (p_index != 3 && p_index != 4)) {
            return;
        }
        const double value = zyr_convertStringToDouble(String(m_token.m_text).getData());
        if (value != 0 && (value != 1 || p_negative)) {
            fail("an arc's flag is 0 or 1, set apart from what follows, not " + shown());
        }
    }

    std::string shown() const {
        const std::string text = toText(m_token.m_text);
        const unsigned char first = static_cast<unsigned char>(text.empty() ? 0 : text[0]);
        if (text.empty()) {
            return "the end";
        }
        if (first == '\t') {
            return "a tab";
        }
        if (first < 0x20 || first == 0x7F) {
            char code[16];
            snprintf(code, sizeof(code), "byte 0x%02X", first);
            return code;
        }
        return "'" + text + "'";
    }

    /// The line of the token, with a mark below it. Tabs are shown as blanks, so that the mark stands where it should.
    [[noreturn]] void fail(const std::string& p_reason) const {
        const StringCursor& cursor = m_token.m_cursor;
        const size_t place = cursor.m_current != nullptr ? static_cast<size_t>(cursor.m_current - m_text.data()) : 0;
        const size_t before = place == 0 ? std::string::npos : m_text.find_last_of("\r\n", place - 1);
        const size_t begin = before == std::string::npos ? 0 : before + 1;
        const size_t end = std::min(m_text.find_first_of("\r\n", place), m_text.size());
        std::string line = m_text.substr(begin, end - begin);
        std::replace_if(
            line.begin(), line.end(), [](char p_byte) { return static_cast<unsigned char>(p_byte) < 0x20; }, ' ');
        const size_t column = std::max<size_t>(cursor.m_column, 1);
        throw PathError("line " + std::to_string(std::max<size_t>(cursor.m_line, 1)) + ", column " +
                        std::to_string(column) + ": " + p_reason + "\n  " + line + "\n  " +
                        std::string(column - 1, ' ') + "^");
    }

    const std::string& m_text;
    ObjectHandle<ILexer> m_lexer;
    Array<unsigned char> m_data;
    Token m_token;
    char m_letter = 0;
};

} // namespace

void checkPath(const std::string& p_text) {
    PathChecker(p_text).check();
}

} // namespace zyr::host
