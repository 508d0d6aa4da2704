/// A screen to show where there is none.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <sys/types.h>
#include <thread>

namespace zyr::host {

/// Runs Xvfb until the object ends, and a thread that paints moving things on it if wanted.
class DemoScreen {
public:
    /// Throws RunError when Xvfb is not installed or does not start.
    DemoScreen(uint32_t p_width, uint32_t p_height, bool p_isPainted);
    ~DemoScreen();
    DemoScreen(const DemoScreen&) = delete;
    DemoScreen& operator=(const DemoScreen&) = delete;

    /// ":7", for instance.
    const std::string& getDisplay() const { return m_display; }

private:
    void paint();

    std::string m_display;
    pid_t m_server = -1;
    std::atomic<bool> m_stopping{false};
    std::thread m_painter;
};

} // namespace zyr::host
