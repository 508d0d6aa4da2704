#include "host/zyr_path_check.h"

#include "host/zyr_framework.h"
#include "host/zyr_standard_output.h"
#include "zyr_common/documents/zyr_svg_path.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/text/zyr_number_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zyr::host {

namespace {

std::string toText(const WrappedString& p_text) {
    return std::string(p_text.getData(), p_text.getSize());
}

/// Of a wrong text so many bytes are shown, and of its line so many before and behind the place.
constexpr size_t MAX_SHOWN = 40;
constexpr size_t MAX_LINE_SIDE = 60;

/// The start of a text as it may go to a terminal, cut before a character that would not be whole.
std::string showStart(const std::string& p_text) {
    size_t size = std::min(p_text.size(), MAX_SHOWN);
    while (size > 0 && size < p_text.size() && (static_cast<unsigned char>(p_text[size]) & 0xC0) == 0x80) {
        size--;
    }
    return maskControls(p_text.substr(0, size)) + (size < p_text.size() ? "..." : "");
}

bool isNumber(const Token& p_token) {
    return p_token.m_type == ZYR_TOKEN_TYPE_INTEGER_LITERAL || p_token.m_type == ZYR_TOKEN_TYPE_REAL_LITERAL;
}

/// Reads a text as the library does, and throws where that would lose something.
class PathChecker {
public:
    explicit PathChecker(const std::string& p_text)
        : m_text(p_text), m_lexer(Ref<ILexer>::adopt(zyr_createObject<ILexer>())) {
        if (!m_lexer) {
            throw ModuleError("the core module offers no lexer");
        }
        zyr_prepareSVGPathLexer(m_lexer.get());
        m_data.bindFixedSizeData(const_cast<char*>(m_text.data()), m_text.size());
        m_lexer->setInputData(&m_data);
    }

    /// What a reader may not expect, by line and column.
    const std::vector<std::string>& getWarnings() const { return m_warnings; }

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
                    if (!first && i == 0 && (m_letter == 'M' || m_letter == 'm')) {
                        warnOfMove();
                    }
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
        // The library reads some of these as the largest number.
        if (!std::isfinite(strtod(toText(m_token.m_text).c_str(), nullptr))) {
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
        return "'" + showStart(text) + "'";
    }

    std::string getPlace() const {
        return "line " + std::to_string(std::max<size_t>(m_token.m_cursor.m_line, 1)) + ", column " +
               std::to_string(std::max<size_t>(m_token.m_cursor.m_column, 1));
    }

    /// Once for each path: the pairs behind the first are what differs from SVG.
    void warnOfMove() {
        if (m_warnings.empty()) {
            m_warnings.push_back(getPlace() + ": further pairs behind " + m_letter + " are moves here, not lines");
        }
    }

    /// The line of the token, with a mark below it.
    [[noreturn]] void fail(const std::string& p_reason) const {
        const StringCursor& cursor = m_token.m_cursor;
        const size_t place = cursor.m_current != nullptr ? static_cast<size_t>(cursor.m_current - m_text.data()) : 0;
        const size_t lineEnd = place == 0 ? std::string::npos : m_text.find_last_of("\r\n", place - 1);
        const size_t begin = lineEnd == std::string::npos ? 0 : lineEnd + 1;
        const size_t end = std::min(m_text.find_first_of("\r\n", place), m_text.size());
        // Of a long line only the surroundings are shown. Bytes inside a character are no place to cut.
        size_t left = place - begin > MAX_LINE_SIDE ? place - MAX_LINE_SIDE : begin;
        size_t right = end - place > MAX_LINE_SIDE ? place + MAX_LINE_SIDE : end;
        const auto isInside = [this](size_t p_place) {
            return p_place < m_text.size() && (static_cast<unsigned char>(m_text[p_place]) & 0xC0) == 0x80;
        };
        while (left > begin && isInside(left)) {
            left--;
        }
        while (right < end && isInside(right)) {
            right++;
        }
        const std::string before = (left > begin ? "..." : "") + blankControls(m_text.substr(left, place - left));
        const std::string behind = blankControls(m_text.substr(place, right - place)) + (right < end ? "..." : "");
        throw PathError(getPlace() + ": " + p_reason + "\n  " + before + behind + "\n  " +
                        std::string(countCharacters(before), ' ') + "^");
    }

    /// Tabs and other controls as blanks, so that the mark stands where it should.
    static std::string blankControls(std::string p_text) {
        std::replace_if(
            p_text.begin(), p_text.end(), [](char p_byte) { return static_cast<unsigned char>(p_byte) < 0x20; }, ' ');
        return maskControls(p_text);
    }

    static size_t countCharacters(const std::string& p_text) {
        return static_cast<size_t>(std::count_if(p_text.begin(), p_text.end(), [](char p_byte) {
            return (static_cast<unsigned char>(p_byte) & 0xC0) != 0x80;
        }));
    }

    const std::string& m_text;
    Ref<ILexer> m_lexer;
    Array<unsigned char> m_data;
    Token m_token;
    char m_letter = 0;
    std::vector<std::string> m_warnings;
};

} // namespace

std::vector<std::string> checkPath(const std::string& p_text) {
    PathChecker checker(p_text);
    checker.check();
    return checker.getWarnings();
}

} // namespace zyr::host
