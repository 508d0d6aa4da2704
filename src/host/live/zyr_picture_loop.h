/// The thread that watches a source and encodes its pictures for those who have room for them.
#pragma once

#include "host/live/zyr_frame_coder.h"
#include "host/live/zyr_live_source.h"
#include "host/live/zyr_viewer_pace.h"

#include <array>
#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace zyr::host {

class FramePicture;

/// Beside the lanes of viewers there is one for a media server, with every picture at full size.
constexpr unsigned PUBLISHED_LANE = ViewerPace::NUM_OF_LANES;
constexpr unsigned NUM_OF_PICTURE_LANES = PUBLISHED_LANE + 1;

/// An encoded picture on its way to the viewers of a lane, which share it.
struct LiveFrame {
    unsigned m_lane = 0;
    LiveStream m_stream;
    LiveFrameHead m_head; ///< What its parts have in common; without the time in the queue.
    std::vector<CodedPart> m_parts;
    uint64_t m_readyTime = 0;
};

/// What a lane's viewers want. One picture is made for it; then it has to be told anew.
struct LaneDemand {
    bool m_wanted = false; ///< Some viewer has room for a picture.
    uint8_t m_missing = 0; ///< codecBit() of the codecs that some of these viewers have nothing to stand on for.
    uint8_t m_allowed = 0; ///< codecBit() of the codecs that all viewers of the lane know.
};

/// Something that the thread has to tell.
struct PictureNews {
    std::shared_ptr<LiveFrame> m_frame;
    std::shared_ptr<CursorPicture> m_cursor;
    std::optional<std::pair<int32_t, int32_t>> m_pointer;
    bool m_ended = false;
    std::string m_failure; ///< Why it ended, if not by itself.
};

/// Captures when the source has changed, a picture is due and somebody has room for it; otherwise it sleeps. A picture
/// that nothing follows is sent once more in its exact form. The public operations may be called on another thread.
class PictureLoop {
public:
    /// The arguments must outlive the object. `p_rate`: pictures per second at most.
    PictureLoop(LiveSource& p_source, const LiveCodecs& p_codecs, unsigned p_rate);
    ~PictureLoop();
    PictureLoop(const PictureLoop&) = delete;
    PictureLoop& operator=(const PictureLoop&) = delete;

    void start();
    void stop();

    void setDemand(unsigned p_lane, const LaneDemand& p_demand);

    /// Becomes readable when there are news.
    int getDescriptor() const { return m_newsEvent; }

    /// Gives the oldest piece of news. False when there is none.
    bool take(PictureNews& p_news);

    /// Where the picture lies on the screen.
    LiveArea getArea();

    /// Microseconds between two pictures of a lane.
    uint64_t getInterval(unsigned p_lane) const;

private:
    struct Lane;

    void run();
    void turn();
    uint64_t serve(uint64_t p_now);
    bool isReady(const Lane& p_lane, bool p_hasNews, bool& p_atRest, uint64_t p_now, uint64_t& p_wait) const;
    bool capture(uint64_t p_now);
    void encode(unsigned p_index, Lane& p_lane, bool p_atRest);
    void noteChanged();
    IUnpackedFrameData& scale(Lane& p_lane);
    void lookAtPointer(uint64_t p_now);
    void sleep(uint64_t p_micros);
    void tell(PictureNews p_news);

    LiveSource& m_source;
    const LiveCodecs& m_codecs;
    uint64_t m_interval;
    int m_newsEvent;
    int m_wakeEvent;
    std::thread m_thread;
    std::atomic<bool> m_stopping{false};

    std::mutex m_mutex; ///< Guards the next three.
    LiveArea m_area;
    std::array<LaneDemand, NUM_OF_PICTURE_LANES> m_demands;
    std::deque<PictureNews> m_news;

    std::array<std::unique_ptr<Lane>, NUM_OF_PICTURE_LANES> m_lanes;
    std::unique_ptr<FramePicture> m_picture;
    uint64_t m_generation = 0;    ///< Of the picture; 0: none yet.
    uint64_t m_newsTime = 0;      ///< When the source last changed.
    uint64_t m_firstNewsTime = 0; ///< When it first did so behind the last picture.
    uint64_t m_captureTime = 0;
    uint32_t m_captureMicros = 0;
    uint64_t m_pointerTime = 0;
    bool m_hadNews = false;   ///< Of the source, in this turn.
    bool m_isWatched = false; ///< Somebody looks on.
    std::pair<int32_t, int32_t> m_pointer{-1, -1};
};

} // namespace zyr::host
