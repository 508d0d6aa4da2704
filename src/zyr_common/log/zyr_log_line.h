/// The pieces of a log message: its level word, its short form on the standard output and its line in the log.
#pragma once

#include "zyr_common/zyr_types.h"

#include <cstdarg>

namespace zyr {

/// Gives the word of five characters that stands for the level, "NONE" for any other value.
const char* getLogLevelWord(LogLevelEnum p_level);

/// Writes "<level word>: <message>" and a line feed to the standard output.
void printMessageOnStdout(LogLevelEnum p_level, const char* p_format, va_list p_arguments)
    __attribute__((format(printf, 2, 0)));

/// A log line with its time stamp in front. It lives on the stack of the reporting thread and takes a heap block only
/// for long messages.
class LogLine {
public:
    /// An empty line.
    LogLine() : m_text(m_inlineText), m_length(0), m_bodyOffset(0), m_capacity(sizeof(m_inlineText)) {}
    /// Frees the block of a long message.
    ~LogLine();
    LogLine(const LogLine&) = delete;
    LogLine& operator=(const LogLine&) = delete;

    /// Fills a fresh line. A message whose length can't be measured is left out.
    void build(const char* p_time, uint32_t p_processId, uint32_t p_threadId, LogLevelEnum p_level,
               const char* p_module, const char* p_function, const char* p_format, va_list p_arguments)
        __attribute__((format(printf, 8, 0)));

    /// The whole line, with its line feed and a terminator.
    const char* getText() const { return m_text; }
    size_t getLength() const { return m_length; }

    /// What stands behind the time stamp and its blank: the part by which runs of equal lines are known.
    const char* getBody() const { return m_text + m_bodyOffset; }
    size_t getBodyLength() const { return m_length - m_bodyOffset; }

private:
    /// Formats behind what is there. What can't be formatted is left out.
    void append(const char* p_format, ...) __attribute__((format(printf, 2, 3)));
    void appendArguments(const char* p_format, va_list p_arguments) __attribute__((format(printf, 2, 0)));
    /// Room for so many bytes, the terminator included; the text moves to the heap where the line's own buffer is too
    /// small.
    void reserve(size_t p_capacity);

    /// the line's own buffer, or a heap block
    char* m_text;
    /// bytes without the terminator
    size_t m_length;
    /// where the part behind the time stamp begins
    size_t m_bodyOffset;
    size_t m_capacity;
    char m_inlineText[1024];
};

} // namespace zyr
