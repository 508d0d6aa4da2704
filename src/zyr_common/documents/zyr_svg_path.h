/// How the text of an SVG path is cut into tokens: the common ground of Path2D::pushBackSVGPath and of whoever checks a
/// text before it.
#pragma once

#include "zyr_common/documents/zyr_lexer.h"

namespace zyr {

/// Gives a new lexer the words of SVG paths: the command letters as keywords, comma and minus as punctuators, blanks
/// and line ends as fillers. Tabs are none.
void zyr_prepareSVGPathLexer(ILexer* p_lexer);

/// How many numbers make one command of this letter, in either case; 0 for Z and for what is no letter of a command.
uint32_t zyr_getSVGPathGroupSize(char p_letter);

} // namespace zyr
