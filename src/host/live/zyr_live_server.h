/// Serves a live screen to its viewers.
#pragma once

#include "host/live/zyr_live_access.h"
#include "host/live/zyr_published_stream.h"
#include "host/live/zyr_screen_control.h"
#include "host/live/zyr_viewer_link.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zyr::host {

struct LiveServerOptions {
    std::string m_address = "127.0.0.1"; ///< Where to listen; empty: everywhere.
    uint32_t m_port = 0;                 ///< 0: any that is free.
    std::string m_certificatePath;       ///< Empty: without TLS.
    std::string m_keyPath;
    std::string m_pageDirectory;
    std::vector<std::string> m_names; ///< By which the server may be called.
    LiveAccess m_access;
    unsigned m_mostViewers = 32;
};

/// The thread of run() does all the talking; pictures come from the loop's own.
class LiveServer {
public:
    /// The arguments must outlive the object. Begins to listen. Throws RunError.
    LiveServer(const LiveServerOptions& p_options, PictureLoop& p_pictures, ScreenControl& p_control,
               const LiveCodecs& p_codecs);
    ~LiveServer();

    /// Feeds a stream to a media server as well. It must outlive the object.
    void publish(PublishedStream& p_stream) { m_published = &p_stream; }

    /// Viewers that were let in so far.
    uint64_t getNumOfViewers() const { return m_numOfViewers; }

    uint32_t getPort() const { return m_listener->getLocalPort(); }

    /// Serves until the program is told to end, or the source has ended. Throws RunError when the source has failed.
    void run();

    /// What run() does again and again: waits for something to happen, a second at most, and serves it.
    void turn();

private:
    struct Guest {
        std::unique_ptr<ViewerLink> m_link;
        AccessCheck m_check;
        std::string m_peer;
        std::string m_account; ///< Empty for one who came by the token.
        bool m_wasLetIn = false;
        bool m_wasRefused = false;
    };
    using Guests = std::map<uint32_t, Guest>;

    void wait();
    void acceptAll();
    void makeRoom(const std::string& p_peer);
    void tellCrowd(const std::string& p_peer);
    void keepCheck(Guest& p_guest);
    static void refuse(Guest& p_guest, LiveRefusal p_reason, const char* p_text);
    void serve(Guest& p_guest, uint64_t p_now);
    void take(Guest& p_guest, const DataMessage& p_message, uint64_t p_now);
    void takeHello(Guest& p_guest, const LiveReader& p_reader);
    size_t countViewers() const;
    size_t countChecks() const;
    void settle(Guest& p_guest);
    void welcome(Guest& p_guest);
    bool takeFromViewer(Guest& p_guest, const DataMessage& p_message, uint64_t p_now);
    void takeControl(uint32_t p_viewer, bool p_wants);
    void tellControl();
    void takeNews();
    void sendCursor(ViewerLink& p_link);
    void takeClipboard();
    void refreshDemand();
    void tick(uint64_t p_now);
    void remove(Guests::iterator p_guest);
    uint64_t findPatience(uint64_t p_now) const;

    const LiveServerOptions& m_options;
    PictureLoop& m_pictures;
    ScreenControl& m_control;
    const LiveCodecs& m_codecs;
    Ref<Socket> m_listener;
    TransportFeatures m_features;
    Guests m_guests;
    PublishedStream* m_published = nullptr;
    uint32_t m_lastId = 0;
    uint64_t m_numOfViewers = 0;
    std::array<LaneDemand, NUM_OF_PICTURE_LANES> m_demands;
    std::array<bool, NUM_OF_PICTURE_LANES> m_demandsMet{};
    std::vector<AccessCheck> m_forsaken; ///< Under way though the viewer has gone: their end is not waited for.
    std::shared_ptr<CursorPicture> m_cursor;
    uint64_t m_tickTime = 0;
    uint64_t m_crowdTime = 0; ///< When the log last told of a crowd; 0: never.
    uint32_t m_crowd = 0;     ///< Who had to go since.
    uint64_t m_statisticsTime = 0;
    bool m_ended = false;
    std::string m_failure;
};

} // namespace zyr::host
