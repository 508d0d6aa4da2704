/// The POSIX "C" view of text: what a host sets with setlocale has no say in it.
#pragma once

#include <locale.h>

namespace zyr {

/// The "C" locale; never freed.
locale_t getCLocale();

/// Puts the calling thread under the "C" locale as long as it lives.
class ScopedCLocale {
public:
    /// Changes this thread alone: other threads keep the locale of the process.
    ScopedCLocale() : m_old(uselocale(getCLocale())) {}
    /// Scopes on one thread end in the reverse order of their begin.
    ~ScopedCLocale() { uselocale(m_old); }
    ScopedCLocale(const ScopedCLocale&) = delete;
    ScopedCLocale& operator=(const ScopedCLocale&) = delete;

private:
    /// what the thread had before
    locale_t m_old;
};

} // namespace zyr
