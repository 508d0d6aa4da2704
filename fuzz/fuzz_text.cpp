// The readers of texts on any bytes: numbers, GUIDs, lists, brackets, ranges, patterns, paths, and the wide forms.
#include "zyr_fuzz.h"

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/containers/zyr_pair.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/text/zyr_number_text.h"

#include <cmath>
#include <string>

using namespace zyr;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    zyr_fuzz::getFramework(true);
    const std::string bytes(reinterpret_cast<const char*>(p_data), p_size);
    const String text(bytes.c_str());

    const double number = zyr_convertStringToDouble(text.getData());
    zyr_fuzz::require(!std::isnan(number), "a text is no NaN");
    String shown;
    zyr_convertDoubleToString(number, shown);
    zyr_fuzz::require(shown.getLengthInBytes() != 0, "every number has a text");

    GUID_t guid;
    GUID_t_fromString(guid, text.getData());
    GUID_t again;
    GUID_t_fromString(again, String::newFromGUID(guid).getData());
    zyr_fuzz::require(guid == again, "a GUID's text gives the GUID");

    List<String> pieces;
    text.parseCsvString(',', pieces);
    size_t length = 0;
    for (const String& piece : pieces) {
        zyr_fuzz::require(piece.getLengthInBytes() != 0 || text.isEmpty(), "a piece of a text has a text");
        length += piece.getLengthInBytes();
    }
    zyr_fuzz::require(length <= text.getLengthInBytes(), "pieces are not longer than their text");

    String prefix;
    text.parseBracketsString('[', ']', &prefix);
    text.parseBracketsUInt32('(', ')');
    Pair<unsigned int, unsigned int> range;
    text.parseBracketsStringAndIndexRange(prefix, '[', ']', &range);
    text.parseRangeUInt32();
    text.compareTruncatedString(text);

    String path(text);
    path.normalizeDirectoryPath();
    List<String> directories;
    path.getNestedDirectories(directories);
    String rest;
    path.getFileName(&rest);
    path.getDirectoryName(&rest);
    String root;
    String::getStringPathRoot(text, root, rest);
    for (size_t position = 0; position <= text.getLengthInBytes(); position += 7) {
        zyr_fuzz::require(text.getLineStartInBytes(position) <= position, "a line starts before its end");
        text.getLeftAndRight(position, &root, &rest, 0);
        text.getLeftAndRight(position, &root, &rest, 1);
    }

    Array<short> units;
    text.convertToUnicode16(units);
    Array<wchar_t> characters;
    text.convertToUnicode32(characters);
    zyr_fuzz::require(characters.getSize() <= text.getLengthInBytes() + 1, "a character has a byte at least");
    return 0;
}
