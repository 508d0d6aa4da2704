/// Texts and lines over any stream that reads or writes bytes.
#pragma once

#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Replaces the text by up to p_size bytes. Memory grows with what is read, not with what is asked for.
template <class Stream> uint64_t readStreamString(Stream* p_stream, String& p_text, uint64_t p_size) {
    uint64_t done = 0;
    char piece[4096];
    p_text.clear();
    while (done < p_size) {
        const uint64_t wanted = p_size - done < sizeof(piece) ? p_size - done : sizeof(piece);
        const uint64_t size = p_stream->readBytes(piece, wanted);
        p_text.pushBackUTF8SubString(piece, size);
        done += size;
        if (size < wanted) {
            break;
        }
    }
    return done;
}

/// Byte by byte, since what follows the line must stay in the stream.
template <class Stream> bool_t readStreamLine(Stream* p_stream, String& p_line) {
    char character = 0;
    bool_t found = 0;
    p_line.clear();
    while (p_stream->readBytes(&character, 1) == 1) {
        found = 1;
        if (character == '\n') {
            break;
        }
        p_line.pushBackAsciiCharacter(character);
    }
    const size_t length = p_line.getLengthInBytes();
    if (character == '\n' && length != 0 && p_line.getData()[length - 1] == '\r') {
        p_line.deleteRange(length - 1, 1);
    }
    return found;
}

template <class Stream> bool_t writeStreamString(Stream* p_stream, const String& p_text) {
    const size_t length = p_text.getLengthInBytes();
    return p_stream->writeBytes(p_text.getData(), length) == length;
}

template <class Stream> bool_t writeStreamLine(Stream* p_stream, const String& p_line) {
    return writeStreamString(p_stream, p_line) && p_stream->writeBytes("\n", 1) == 1;
}

} // namespace zyr
