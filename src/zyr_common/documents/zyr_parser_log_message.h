/// What a parser has to say about a text.
#pragma once

#include "zyr_common/documents/zyr_token.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"

namespace zyr {

#pragma pack(push, 1)

/// A counted record. The place points into the parser's input and is valid as long as that is; its line and column stay
/// good.
class ParserLogMessage : public RefCountedData {
public:
    /// how bad it is; a warning at first
    LogLevelEnum m_level;
    StringCursor m_cursor; ///< where the text is wrong
    String m_text;         ///< what is wrong, and the offending text cut short

    /// At no place, without a text.
    ParserLogMessage() : m_level(ZYR_LOG_LEVEL_WARN) {}
    ParserLogMessage(LogLevelEnum p_level, const StringCursor& p_cursor, const String& p_text)
        : m_level(p_level), m_cursor(p_cursor), m_text(p_text) {}

    /// A copy with a count of its own, which the caller owns.
    ParserLogMessage* clone() const override { return new ParserLogMessage(*this); }
};

#pragma pack(pop)

static_assert(sizeof(ParserLogMessage) == 180 && alignof(ParserLogMessage) == 1);

} // namespace zyr
