/// An owner of a file descriptor, of whatever kind.
#pragma once

#include <unistd.h>
#include <utility>

namespace zyr::host {

/// Closes what it owns, which may be none (-1).
class Descriptor {
public:
    explicit Descriptor(int p_number) : m_number(p_number) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& p_other) noexcept : m_number(std::exchange(p_other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& p_other) noexcept {
        std::swap(m_number, p_other.m_number);
        return *this;
    }

    int get() const { return m_number; }
    /// Closes it now.
    void close() {
        if (m_number >= 0) {
            ::close(std::exchange(m_number, -1));
        }
    }

private:
    int m_number;
};

} // namespace zyr::host
