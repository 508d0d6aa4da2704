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
};

} // namespace zyr
