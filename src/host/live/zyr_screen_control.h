/// Who steers the screen, and what of it reaches the screen.
#pragma once

#include "host/live/zyr_live_messages.h"
#include "host/live/zyr_live_source.h"

#include <cstdint>
#include <memory>
#include <string>

namespace zyr::host {

class ScreenInput;
class ScreenClipboard;

/// One viewer at a time steers. What it holds down is let go when it leaves, says so, or falls silent. One thread.
class ScreenControl {
public:
    static constexpr uint32_t NOBODY = 0;

    /// A screen that nobody steers: a video, or one that is only to be looked at.
    ScreenControl();
    /// Throws RunError.
    explicit ScreenControl(const std::string& p_display);
    ~ScreenControl();

    bool isPossible() const { return m_input != nullptr; }
    uint32_t getController() const { return m_controller; }

    /// Hands control over, to NOBODY too.
    void give(uint32_t p_viewer);

    /// Takes an input message of the viewer that steers. The pointer does not leave the part of the screen that is
    /// shown. False for a message that is none.
    bool take(LiveMessage p_type, const LiveReader& p_reader, const LiveArea& p_shown, uint64_t p_now);

    /// Lets go of what is held if the viewer has been silent for too long.
    void watch(uint64_t p_now);

    int getDescriptor() const;
    void requestClipboard();
    bool offerClipboard(const std::string& p_text);
    /// True when a requested text has come.
    bool updateClipboard(std::string& p_text);

private:
    std::unique_ptr<ScreenInput> m_input;         ///< Null where nobody steers.
    std::unique_ptr<ScreenClipboard> m_clipboard; ///< The same.
    uint32_t m_controller = NOBODY;
    uint64_t m_lastInput = 0;
};

} // namespace zyr::host
