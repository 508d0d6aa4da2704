// The part of a path that reads text: it needs the lexer, which stands above the shapes.
#include "zyr_common/documents/zyr_svg_path.h"
#include "zyr_common/geometry/zyr_path2d.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/text/zyr_number_text.h"

namespace zyr {

namespace {

enum PathLetter : uint32_t {
    LETTER_MOVE,
    LETTER_LINE,
    LETTER_HORIZONTAL,
    LETTER_VERTICAL,
    LETTER_CURVE,
    LETTER_SMOOTH,
    LETTER_QUAD_CURVE,
    LETTER_QUAD_SMOOTH,
    LETTER_ARC,
    LETTER_CLOSE,
    NUM_OF_LETTERS
};

const char* c_letters[NUM_OF_LETTERS] = {"M", "L", "H", "V", "C", "S", "Q", "T", "A", "Z"};
/// The numbers that make one command.
constexpr uint32_t c_groupSizes[NUM_OF_LETTERS] = {2, 2, 1, 1, 6, 4, 4, 2, 7, 0};
constexpr uint32_t MAX_GROUP_SIZE = 7;

enum GroupResult {
    GROUP_READ,
    GROUP_BROKEN, ///< the token at hand is no number: it stands where a command must
    GROUP_ENDED   ///< the text is over
};

template <typename T> GroupResult readNumber(ILexer* p_lexer, Token& p_token, T& p_number) {
    if (!p_lexer->readToken(p_token)) {
        return GROUP_ENDED;
    }
    bool minus = false;
    // One comma or minus may stand in front of a number, not both.
    if (p_token.m_type == ZYR_TOKEN_TYPE_PUNCTUATOR) {
        minus = p_token.m_text == "-";
        if (!p_lexer->readToken(p_token)) {
            return GROUP_ENDED;
        }
    }
    if (p_token.m_type != ZYR_TOKEN_TYPE_INTEGER_LITERAL && p_token.m_type != ZYR_TOKEN_TYPE_REAL_LITERAL) {
        return GROUP_BROKEN;
    }
    p_number = static_cast<T>(zyr_convertStringToDouble(String(p_token.m_text).getData()));
    if (minus) {
        p_number *= -1;
    }
    return GROUP_READ;
}

template <typename T>
GroupResult readGroup(ILexer* p_lexer, Token& p_token, uint32_t p_count, T (&p_numbers)[MAX_GROUP_SIZE]) {
    for (uint32_t i = 0; i < p_count; ++i) {
        const GroupResult result = readNumber(p_lexer, p_token, p_numbers[i]);
        if (result != GROUP_READ) {
            return result;
        }
    }
    return GROUP_READ;
}

template <typename T> ExtVector2<T> makePoint(const T* p_numbers, bool p_relative) {
    return {Vector2<T>(p_numbers[0], p_numbers[1]), p_relative ? ZYR_POSITION_X_PREV_LEFT : ZYR_POSITION_X_LEFT,
            p_relative ? ZYR_POSITION_Y_PREV_TOP : ZYR_POSITION_Y_TOP};
}

template <typename T> void addCommand(Path2D<T>& p_path, uint32_t p_letter, bool p_relative, const T* p_n) {
    auto point = [=](uint32_t p_first) { return makePoint(p_n + p_first, p_relative); };
    switch (p_letter) {
    case LETTER_MOVE:
        p_path.moveTo(point(0));
        break;
    case LETTER_LINE:
        p_path.lineTo(point(0));
        break;
    // The other axis stays where the point before is, in the absolute form too.
    case LETTER_HORIZONTAL:
        p_path.lineTo({Vector2<T>(p_n[0], 0), p_relative ? ZYR_POSITION_X_PREV_LEFT : ZYR_POSITION_X_LEFT,
                       ZYR_POSITION_Y_PREV_TOP});
        break;
    case LETTER_VERTICAL:
        p_path.lineTo({Vector2<T>(0, p_n[0]), ZYR_POSITION_X_PREV_LEFT,
                       p_relative ? ZYR_POSITION_Y_PREV_TOP : ZYR_POSITION_Y_TOP});
        break;
    case LETTER_CURVE:
        p_path.curveTo(point(0), point(2), point(4));
        break;
    case LETTER_SMOOTH:
        p_path.smooth(point(0), point(2));
        break;
    case LETTER_QUAD_CURVE:
        p_path.quadCurveTo(point(0), point(2));
        break;
    case LETTER_QUAD_SMOOTH:
        p_path.quadSmooth(point(0));
        break;
    case LETTER_ARC:
        p_path.arc(Vector2<T>(p_n[0], p_n[1]), p_n[2], p_n[3] == 1, p_n[4] == 1, point(5));
        break;
    default:
        break;
    }
}

/// Reads the groups behind a letter. Gives false at the end of the text.
template <typename T>
bool readGroups(ILexer* p_lexer, Token& p_token, Path2D<T>& p_path, uint32_t p_letter, bool p_relative) {
    if (p_letter == LETTER_CLOSE) {
        p_path.close();
        return p_lexer->readToken(p_token);
    }
    T numbers[MAX_GROUP_SIZE] = {};
    GroupResult result = GROUP_READ;
    while ((result = readGroup(p_lexer, p_token, c_groupSizes[p_letter], numbers)) == GROUP_READ) {
        addCommand(p_path, p_letter, p_relative, numbers);
    }
    return result == GROUP_BROKEN;
}

/// The reader stands still at a token that is no command, and is relied upon to: there is nobody to tell.
void waitForKeyword(const Token& p_token) {
    const volatile TokenTypeEnum type = p_token.m_type;
    while (type != ZYR_TOKEN_TYPE_KEYWORD) {
    }
}

/// The letters by their text.
struct PathLetters {
    PathLetters() : m_map(String::createMapOfStringCases(NUM_OF_LETTERS, c_letters)) {}
    ~PathLetters() { delete m_map; }
    PathLetters(const PathLetters&) = delete;
    PathLetters& operator=(const PathLetters&) = delete;

    HashMap<String, uint32_t>* const m_map;
};

} // namespace

void zyr_prepareSVGPathLexer(ILexer* p_lexer) {
    p_lexer->pushBackFiller(" ");
    p_lexer->pushBackFiller("\n");
    p_lexer->pushBackFiller("\r");
    p_lexer->pushBackPunctuators(", -");
    p_lexer->pushBackKeywords("M L H V C S Q T A Z m l h v c s q t a z");
}

uint32_t zyr_getSVGPathGroupSize(char p_letter) {
    const char upper = p_letter >= 'a' ? static_cast<char>(p_letter - 'a' + 'A') : p_letter;
    for (uint32_t i = 0; i < NUM_OF_LETTERS; ++i) {
        if (c_letters[i][0] == upper) {
            return c_groupSizes[i];
        }
    }
    return 0;
}

template <typename T> void Path2D<T>::pushBackSVGPath(const String& p_path) {
    static const PathLetters letters;
    ILexer* lexer = zyr_createObject<ILexer>();
    ZYR_ASSERT(lexer != NULL);
    zyr_prepareSVGPathLexer(lexer);
    Array<unsigned char> data;
    data.bindFixedSizeData(const_cast<char*>(p_path.getData()), p_path.getLengthInBytes());
    lexer->setInputData(&data);
    Token token;
    bool reading = lexer->readToken(token);
    while (reading) {
        waitForKeyword(token);
        const String letter(token.m_text);
        String upper(letter);
        upper.convertToUpperCase();
        uint32_t index = 0;
        const uint32_t letterCase = String::getCaseFromString(upper, index, *letters.m_map);
        reading = readGroups(lexer, token, *this, letterCase, letter != upper);
    }
    lexer->release();
}

template void Path2D<float>::pushBackSVGPath(const String&);
template void Path2D<double>::pushBackSVGPath(const String&);

} // namespace zyr
