/// A live stream that is sent on to a media server, which has viewers of its own.
#pragma once

#include "host/live/zyr_picture_loop.h"
#include "host/zyr_network_output.h"

#include <nlohmann/json_fwd.hpp>

#include <condition_variable>

namespace zyr::host {

struct PublishOptions {
    NetworkOutputOptions m_network; ///< Only address, format and description.
    unsigned m_keySeconds = 5;      ///< Between key frames.
};

/// Sends the pictures of the published lane, VP9 alone, on a thread of its own, so that a slow or absent server holds
/// up nobody. What it has no room for is left out up to the next key frame; a lost connection is made anew, after a
/// time that grows with each failure in a row. The public operations are for one other thread.
class PublishedStream {
public:
    /// `p_codecs` must outlive the object. `p_rate`: pictures per second at most. Throws RunError when the stream
    /// cannot be sent so; nothing is connected yet.
    PublishedStream(const PublishOptions& p_options, const LiveCodecs& p_codecs, unsigned p_rate);
    ~PublishedStream();
    PublishedStream(const PublishedStream&) = delete;
    PublishedStream& operator=(const PublishedStream&) = delete;

    /// Becomes readable when the demand may have changed.
    int getDescriptor() const { return m_event; }

    /// What the lane should have next.
    LaneDemand getDemand(uint64_t p_now);

    /// Microseconds until the demand changes by itself; a second at most.
    uint64_t getPatience(uint64_t p_now);

    /// Takes the lane's next picture.
    void offer(const std::shared_ptr<LiveFrame>& p_frame, uint64_t p_now);

    /// Sends what was taken, ends the stream and the thread.
    void finish();

    /// What happened, for the report.
    nlohmann::ordered_json describe();

private:
    struct Figures {
        uint64_t m_connections = 0;
        uint64_t m_failures = 0;
        uint64_t m_pictures = 0; ///< Sent.
        uint64_t m_keys = 0;
        uint64_t m_bytes = 0;
        uint64_t m_dropped = 0;
        std::string m_lastFailure;
    };

    bool hasRoom() const;
    void run();
    std::shared_ptr<LiveFrame> await();
    void send(const LiveFrame& p_frame);
    void connect(const LiveFrame& p_frame);
    void recover(const std::string& p_reason);
    void ring() const;

    PublishOptions m_options;
    const LiveCodecs& m_codecs;
    unsigned m_rate;
    std::string m_name;
    int m_event;
    std::atomic<bool> m_isEnding{false};

    std::mutex m_mutex; ///< Guards the next seven.
    std::condition_variable m_change;
    std::deque<std::shared_ptr<LiveFrame>> m_waiting;
    bool m_isStanding = false; ///< The server has what the next frame stands on.
    bool m_isResting = false;  ///< After a failure.
    bool m_isConnected = false;
    uint64_t m_keyTime = 0; ///< When the last key frame was taken.
    Figures m_figures;

    std::unique_ptr<PacketFile> m_output; ///< This and the next three: the thread's.
    uint64_t m_firstTime = 0;             ///< Of the connection's first picture.
    uint64_t m_connectTime = 0;
    unsigned m_restSeconds = 0;
    std::thread m_thread;
};

} // namespace zyr::host
