/// How far a stream run has come, on a terminal.
#pragma once

#include <cstdint>

namespace zyr::host {

/// A line on the standard error that is overwritten while the run goes on and removed at its end. Nothing where the
/// standard error is no terminal.
class StreamProgress {
public:
    /// `p_expected` is the number of frames, 0 when it is not known.
    StreamProgress(bool p_wanted, uint64_t p_expected);
    ~StreamProgress();
    StreamProgress(const StreamProgress&) = delete;
    StreamProgress& operator=(const StreamProgress&) = delete;

    void show(uint64_t p_frames);

private:
    uint64_t m_expected;
    uint64_t m_start;
    bool m_shown;
    bool m_drawn = false;
};

} // namespace zyr::host
