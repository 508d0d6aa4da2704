/// What is wrong with a document, for the log.
#pragma once

#include <cstddef>

namespace zyr {

/// The reason is null as long as nothing is.
struct TextScanError {
    const char* m_reason = nullptr;
    const char* m_place = nullptr;

    bool set(const char* p_reason, const char* p_place) {
        if (m_reason == nullptr) {
            m_reason = p_reason;
            m_place = p_place;
        }
        return false;
    }
    /// Line and column of the place, from 1; columns count bytes.
    void locate(const char* p_text, size_t& p_line, size_t& p_column) const {
        p_line = 1;
        p_column = 1;
        for (; p_text != m_place; p_text++) {
            p_column = *p_text == '\n' ? 1 : p_column + 1;
            p_line += *p_text == '\n';
        }
    }
};

} // namespace zyr
