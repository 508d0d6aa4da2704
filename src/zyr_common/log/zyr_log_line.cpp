#include "zyr_common/log/zyr_log_line.h"

#include "zyr_common/memory/zyr_memory.h"

#include <cstdio>
#include <cstring>

namespace zyr {

const char* getLogLevelWord(LogLevelEnum p_level) {
    switch (p_level) {
    case ZYR_LOG_LEVEL_ERROR:
        return "ERROR";
    case ZYR_LOG_LEVEL_WARN:
        return "WARN ";
    case ZYR_LOG_LEVEL_INFO:
        return "INFO ";
    case ZYR_LOG_LEVEL_DEBUG:
        return "DEBUG";
    case ZYR_LOG_LEVEL_TRACE:
        return "TRACE";
    }
    return "NONE";
}

void printMessageOnStdout(LogLevelEnum p_level, const char* p_format, va_list p_arguments) {
    // Held over the three pieces, so that those of two threads don't mix.
    flockfile(stdout);
    fprintf(stdout, "%s: ", getLogLevelWord(p_level));
    vfprintf(stdout, p_format, p_arguments);
    fputc('\n', stdout);
    funlockfile(stdout);
}

LogLine::~LogLine() {
    if (m_text != m_inlineText) {
        zyr_free(m_text);
    }
}

void LogLine::build(const char* p_time, uint32_t p_processId, uint32_t p_threadId, LogLevelEnum p_level,
                    const char* p_module, const char* p_function, const char* p_format, va_list p_arguments) {
    append("%s ", p_time);
    m_bodyOffset = m_length;
    append("[%6d:%-6d] %s %s %s - ", static_cast<int>(p_processId), static_cast<int>(p_threadId),
           getLogLevelWord(p_level), p_module, p_function);
    appendArguments(p_format, p_arguments);
    append("\n");
}

void LogLine::append(const char* p_format, ...) {
    va_list arguments;
    va_start(arguments, p_format);
    appendArguments(p_format, arguments);
    va_end(arguments);
}

void LogLine::appendArguments(const char* p_format, va_list p_arguments) {
    va_list again;
    va_copy(again, p_arguments);
    int size = vsnprintf(m_text + m_length, m_capacity - m_length, p_format, p_arguments);
    if (size >= 0 && static_cast<size_t>(size) >= m_capacity - m_length) {
        reserve(m_length + static_cast<size_t>(size) + 1);
        size = vsnprintf(m_text + m_length, m_capacity - m_length, p_format, again);
    }
    va_end(again);
    if (size < 0) {
        m_text[m_length] = '\0';
    }
    // A zero byte inside the message ends it, as it would end any text that holds the line.
    m_length += strlen(m_text + m_length);
}

void LogLine::reserve(size_t p_capacity) {
    // With room for the line feed and more, so that a long message costs one block.
    size_t capacity = p_capacity + 64;
    char* text = static_cast<char*>(zyr_malloc(capacity));
    memcpy(text, m_text, m_length);
    if (m_text != m_inlineText) {
        zyr_free(m_text);
    }
    m_text = text;
    m_capacity = capacity;
}

} // namespace zyr
