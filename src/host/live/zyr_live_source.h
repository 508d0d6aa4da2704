/// What a live stream shows: a screen, or a video at its own pace.
#pragma once

#include "host/zyr_video_source.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zyr::host {

/// The pointer's picture: R,G,B,A, not premultiplied.
struct CursorPicture {
    uint16_t m_width = 0;
    uint16_t m_height = 0;
    uint16_t m_hotX = 0;
    uint16_t m_hotY = 0;
    std::vector<uint8_t> m_pixels;
};

/// A part of a screen, in its pixels.
struct LiveArea {
    int32_t m_x = 0;
    int32_t m_y = 0;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
};

/// A source of live pictures. One thread.
class LiveSource {
public:
    virtual ~LiveSource() = default;

    /// Becomes readable when there may be news; -1 for a source that goes by the clock.
    virtual int getDescriptor() const { return -1; }

    /// Takes the news in. True when there is a picture that grab() has not given yet. Throws RunError when the source
    /// has gone.
    virtual bool update() = 0;

    /// Microseconds until update() should be called though nothing was readable; a second at most.
    virtual uint64_t getPatience() const { return 1'000'000; }

    /// Gives the present picture, in its present size. False when there is none just now. Of a picture that is given
    /// again, only what has changed may be written.
    virtual bool grab(PictureBuffer& p_picture) = 0;

    /// Tells what of its picture the last grab() can have changed, in the picture's pixels. False: any of it.
    virtual bool findChanged(LiveArea&) const { return false; }

    /// Gives the pointer's picture when it has changed since the last call.
    virtual bool takeCursor(CursorPicture&) { return false; }

    /// Gives where the pointer is, in pixels of the picture. False where there is none or it is elsewhere.
    virtual bool findPointer(int32_t&, int32_t&) { return false; }

    /// Where the picture lies on the screen, which input needs to know.
    virtual void getOrigin(int32_t& p_x, int32_t& p_y) const {
        p_x = 0;
        p_y = 0;
    }

    /// True once no more pictures will come.
    virtual bool hasEnded() const { return false; }
};

/// What of a screen is shown.
struct ScreenChoice {
    std::string m_display; ///< Empty: that of the environment.
    std::string m_monitor; ///< Empty: all of them.
    std::string m_window;  ///< Empty: the whole screen.
};

/// Opens a screen. Throws RunError.
std::unique_ptr<LiveSource> openScreenSource(const ScreenChoice& p_choice);

/// Shows a video or a generated picture in real time; pictures that nobody grabbed in time are left out.
std::unique_ptr<LiveSource> openClockedSource(std::unique_ptr<VideoSource> p_video);

/// Microseconds of a clock that only goes on.
uint64_t getLiveTime();

} // namespace zyr::host
