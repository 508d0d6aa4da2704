/// What the benchmark's native viewers note, whatever they speak.
///
/// Commands come on the standard input: "click" presses the painter's button, "hash" tells from now on each picture's
/// hash, the end of the input ends the viewer. Lines on the standard output: "P" seen painted frame, "H" seen hash, "C"
/// sent seen, "D" frame path; times are microseconds of the clock on the wall.
#pragma once

#include "live_cells.h"

#include <cinttypes>
#include <poll.h>
#include <unistd.h>

namespace zyr::bench {

class LiveWatch {
public:
    /// `p_folder` takes each `p_every`th picture; empty: none.
    LiveWatch(std::string p_folder, unsigned p_every) : m_folder(std::move(p_folder)), m_every(p_every) {}

    /// A picture is there.
    void see(const uint8_t* p_pixels, size_t p_pitch, bool p_redFirst) {
        const uint64_t now = getWallTime();
        const std::optional<Stamp> stamp = readStamp(p_pixels, p_pitch);
        const auto clicks = uint32_t(readCells(p_pixels, p_pitch, 1, CLICK_CELLS));
        if (clicks != m_clicks) {
            if (m_clickTime != 0) {
                printf("C %" PRIu64 " %" PRIu64 "\n", m_clickTime, now);
                m_clickTime = 0;
            }
            m_clicks = clicks;
        }
        if (stamp && (stamp->m_time != m_last.m_time || stamp->m_frame != m_last.m_frame)) {
            m_last = *stamp;
            printf("P %" PRIu64 " %.1f %u\n", now, stamp->getAge(now), stamp->m_frame);
            if (!m_folder.empty() && stamp->m_frame > 0 && stamp->m_frame % m_every == 0) {
                const std::string path = m_folder + "/" + std::to_string(stamp->m_frame);
                keepPicture(path, p_pixels, p_pitch, p_redFirst);
                printf("D %u %s\n", stamp->m_frame, path.c_str());
            }
        }
        if (m_wantsHash) {
            printf("H %" PRIu64 " %016" PRIx64 "\n", now, hashPicture(p_pixels, p_pitch, p_redFirst));
        }
        fflush(stdout);
    }

    /// Takes one command in when there is one. False at the end. `p_press` presses and releases the button.
    template <typename Press> bool obey(Press p_press) {
        pollfd wait{STDIN_FILENO, POLLIN, 0};
        if (poll(&wait, 1, 0) <= 0) {
            return true;
        }
        char letters[256];
        const ssize_t count = read(STDIN_FILENO, letters, sizeof(letters));
        const std::string line(letters, size_t(count > 0 ? count : 0));
        if (line.find("click") != std::string::npos) {
            m_clickTime = getWallTime();
            p_press();
        }
        m_wantsReport = m_wantsReport || line.find("report") != std::string::npos;
        m_wantsHash = m_wantsHash || line.find("hash") != std::string::npos;
        return count > 0;
    }

    bool wantsReport() const { return m_wantsReport; }

private:
    std::string m_folder;
    unsigned m_every;
    Stamp m_last;
    uint32_t m_clicks = 0;
    uint64_t m_clickTime = 0;
    bool m_wantsHash = false;
    bool m_wantsReport = false;
};

} // namespace zyr::bench
