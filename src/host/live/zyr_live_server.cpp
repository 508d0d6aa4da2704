#include "host/live/zyr_live_server.h"

#include "host/live/zyr_live_identity.h"
#include "host/live/zyr_live_strangers.h"
#include "host/zyr_interruption.h"
#include "host/zyr_run_error.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <poll.h>

namespace zyr::host {

namespace {

constexpr const char* WEB_SOCKET_PATH = "/live";
constexpr const char* SECURITY_POLICY = "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob: "
                                        "data:; connect-src 'self'; base-uri 'none'; form-action 'none'; "
                                        "frame-ancestors 'none'";
constexpr uint32_t HANDSHAKE_MILLIS = 10'000;
constexpr uint32_t IDLE_MILLIS = 30'000;
constexpr uint32_t PING_MILLIS = 10'000;
constexpr uint64_t HELLO_TIME = 10'000'000;
constexpr uint64_t BETWEEN_TICKS = 100'000;
constexpr uint64_t BETWEEN_STATISTICS = 1'000'000;
constexpr uint64_t BETWEEN_CROWDS = 10'000'000;
/// Connections that the kernel may hold until they are taken.
constexpr uint32_t BACKLOG = 512;
/// Bytes that the kernel holds back at most: what waits there cannot be dropped any more.
constexpr uint32_t UNSENT_LIMIT = 128 * 1024;
/// Passwords that are looked at side by side, each on a thread of its own.
constexpr size_t MOST_CHECKS = 8;

} // namespace

LiveServer::LiveServer(const LiveServerOptions& p_options, PictureLoop& p_pictures, ScreenControl& p_control,
                       const LiveCodecs& p_codecs)
    : m_options(p_options),
      m_pictures(p_pictures),
      m_control(p_control),
      m_codecs(p_codecs),
      m_listener(Ref<Socket>::adopt(new Socket)) {
    if (!m_listener->listenTcp(String(p_options.m_address), p_options.m_port, BACKLOG)) {
        throw RunError("cannot listen at " + p_options.m_address + ":" + std::to_string(p_options.m_port) +
                       " (see the log)");
    }
    const bool isSecure = !p_options.m_certificatePath.empty();
    const std::vector<std::string> hosts = makeHosts(p_options.m_names, getPort(), isSecure);
    for (const std::string& host : hosts) {
        m_features.m_allowedHosts.pushBack(String(host));
    }
    for (const std::string& origin : makeOrigins(hosts, isSecure)) {
        m_features.m_allowedOrigins.pushBack(String(origin));
    }
    m_features.m_handshakeTimeout = HANDSHAKE_MILLIS;
    m_features.m_idleTimeout = IDLE_MILLIS;
    m_features.m_pingInterval = PING_MILLIS;
    m_features.m_maxHeaderSize = 4096;
    m_features.m_contentSecurityPolicy = SECURITY_POLICY;
}

LiveServer::~LiveServer() = default;

void LiveServer::run() {
    while (getInterruption() == 0 && !m_ended) {
        turn();
    }
    for (auto& [id, guest] : m_guests) {
        guest.m_link->refuse(LiveRefusal::ENDING, "the server ends");
        guest.m_link->iterate();
    }
    if (!m_failure.empty()) {
        throw RunError(m_failure);
    }
}

void LiveServer::turn() {
    wait();
    acceptAll();
    takeNews();
    takeClipboard();
    const uint64_t now = getLiveTime();
    for (auto it = m_guests.begin(); it != m_guests.end();) {
        const auto guest = it++;
        serve(guest->second, now);
        if (guest->second.m_link->isClosed()) {
            remove(guest);
        }
    }
    if (now - m_tickTime >= BETWEEN_TICKS) {
        m_tickTime = now;
        tick(now);
    }
    refreshDemand();
}

uint64_t LiveServer::findPatience(uint64_t p_now) const {
    uint64_t patience = m_published == nullptr ? 1'000'000 : m_published->getPatience(p_now);
    for (const auto& [id, guest] : m_guests) {
        const bool isWatched = guest.m_link->m_state != ViewerLink::State::VIEWING || guest.m_link->getLane() > 0 ||
                               !guest.m_link->hasCredit(m_pictures.getInterval(guest.m_link->getLane()));
        patience = std::min<uint64_t>(patience, isWatched ? BETWEEN_TICKS : patience);
        const int64_t deadline = guest.m_link->getSocket().getState().m_deadline;
        const int64_t left = deadline / 1000 - int64_t(p_now);
        patience = deadline == 0 ? patience : std::min<uint64_t>(patience, uint64_t(std::max<int64_t>(left, 0)));
    }
    return patience;
}

void LiveServer::wait() {
    std::vector<pollfd> waits{{m_listener->getDescriptor(), POLLIN, 0},
                              {m_pictures.getDescriptor(), POLLIN, 0},
                              {m_control.getDescriptor(), POLLIN, 0},
                              {m_published == nullptr ? -1 : m_published->getDescriptor(), POLLIN, 0}};
    for (const auto& [id, guest] : m_guests) {
        waits.push_back({guest.m_link->getSocket().getDescriptor(), guest.m_link->getPollEvents(), 0});
    }
    poll(waits.data(), waits.size(), int((findPatience(getLiveTime()) + 999) / 1000));
}

/// Who has not told the secret makes way for a newcomer: otherwise a few that say nothing could keep everybody out.
void LiveServer::makeRoom(const std::string& p_peer) {
    std::vector<Stranger> strangers;
    for (const auto& [id, guest] : m_guests) {
        const ViewerLink& link = *guest.m_link;
        const TransportState& state = link.getSocket().getState();
        if (link.m_state == ViewerLink::State::VIEWING) {
            continue;
        }
        const bool isSilent = link.m_state == ViewerLink::State::WAITING && state.m_phase == ZYR_TRANSPORT_OPEN;
        const uint64_t end = link.m_state == ViewerLink::State::CHECKING ? UINT64_MAX
                             : isSilent                                  ? link.m_since + HELLO_TIME
                                                                         : uint64_t(state.m_deadline) / 1000;
        strangers.push_back({id, findOrigin(guest.m_peer), end});
    }
    const uint32_t leaver = findLeaver(strangers, findOrigin(p_peer));
    if (leaver != 0) {
        tellCrowd(m_guests.at(leaver).m_peer);
        keepCheck(m_guests.at(leaver));
        m_guests.erase(leaver);
    }
}

void LiveServer::tellCrowd(const std::string& p_peer) {
    m_crowd++;
    const uint64_t now = getLiveTime();
    if (m_crowdTime != 0 && now - m_crowdTime < BETWEEN_CROWDS) {
        return;
    }
    fprintf(stderr, "zyr-host: %s turned away, too many connections without a secret (%u turned away)\n",
            p_peer.c_str(), m_crowd);
    m_crowdTime = now;
    m_crowd = 0;
}

void LiveServer::keepCheck(Guest& p_guest) {
    if (!p_guest.m_check.isDone()) {
        m_forsaken.push_back(std::move(p_guest.m_check));
    }
}

void LiveServer::acceptAll() {
    for (;;) {
        auto socket = Ref<Socket>::adopt(new Socket);
        if (!m_listener->acceptConnection(*socket)) {
            return;
        }
        const std::string peer = toText(socket->getPeerAddress());
        makeRoom(peer);
        socket->setUnsentLimit(UNSENT_LIMIT);
        auto transport = Ref<IServerTransport>::adopt(zyr_createInterfaceObject<IServerTransport>());
        transport->setFeatures(m_features);
        transport->setHttpsDocumentRoot(String(m_options.m_pageDirectory), String("index.html"));
        transport->setWebSocketPath(String(WEB_SOCKET_PATH));
        const bool begun = m_options.m_certificatePath.empty()
                               ? transport->initialize(socket.get())
                               : transport->initializeSecure(socket.get(), String(m_options.m_certificatePath),
                                                             String(m_options.m_keyPath));
        if (begun) {
            const uint32_t id = ++m_lastId;
            Guest& guest = m_guests[id];
            guest.m_link = std::make_unique<ViewerLink>(id, std::move(socket), std::move(transport));
            guest.m_peer = peer;
        }
    }
}

void LiveServer::serve(Guest& p_guest, uint64_t p_now) {
    ViewerLink& link = *p_guest.m_link;
    link.iterate();
    while (const Ref<DataMessage> message = link.receive()) {
        take(p_guest, *message, p_now);
    }
    if (link.m_state == ViewerLink::State::CHECKING) {
        settle(p_guest);
    }
    const bool isOpen = link.getSocket().getState().m_phase == ZYR_TRANSPORT_OPEN;
    link.m_since = isOpen || link.m_state != ViewerLink::State::WAITING ? link.m_since : p_now;
    if (link.m_state == ViewerLink::State::WAITING && isOpen && p_now > link.m_since + HELLO_TIME) {
        refuse(p_guest, LiveRefusal::TOO_LATE, "nothing was said");
    }
    link.iterate();
}

void LiveServer::take(Guest& p_guest, const DataMessage& p_message, uint64_t p_now) {
    ViewerLink& link = *p_guest.m_link;
    if (link.m_state == ViewerLink::State::ENDING) {
        return;
    }
    if (link.isTooFast(p_now)) {
        refuse(p_guest, LiveRefusal::TOO_FAST, "too many messages");
        return;
    }
    const LiveReader reader(p_message.getHeader(), p_message.getHeaderSize());
    if (link.m_state == ViewerLink::State::WAITING && p_message.getType() == uint32_t(LiveMessage::HELLO)) {
        takeHello(p_guest, reader);
    } else if (link.m_state == ViewerLink::State::CHECKING && p_message.getType() == uint32_t(LiveMessage::PING)) {
        return; // A password can take seconds, and viewers that keep their line alive do not know how far it is.
    } else if (link.m_state != ViewerLink::State::VIEWING || !takeFromViewer(p_guest, p_message, p_now)) {
        refuse(p_guest, LiveRefusal::BROKEN_MESSAGE, "a message that is not understood");
    }
}

void LiveServer::takeHello(Guest& p_guest, const LiveReader& p_reader) {
    ViewerLink& link = *p_guest.m_link;
    LiveHello hello;
    if (!hello.read(p_reader)) {
        refuse(p_guest, LiveRefusal::BROKEN_MESSAGE, "a message that is not understood");
        return;
    }
    if (hello.m_version != LIVE_VERSION) {
        refuse(p_guest, LiveRefusal::ANOTHER_VERSION, "another version of the protocol");
        return;
    }
    if (!hello.m_user.empty() && countChecks() >= MOST_CHECKS) {
        refuse(p_guest, LiveRefusal::TOO_MANY, "too many come in at once");
        return;
    }
    link.m_codecs = hello.m_codecs & m_codecs.getCodecs();
    link.m_wantsControl = (hello.m_flags & LiveHello::WANTS_CONTROL) != 0;
    link.m_state = ViewerLink::State::CHECKING;
    p_guest.m_account = hello.m_user;
    p_guest.m_check.begin(m_options.m_access, hello);
}

/// Tells the viewer and the log. What the log says of a wrong secret is short and fixed, for those that count guesses.
void LiveServer::refuse(Guest& p_guest, LiveRefusal p_reason, const char* p_text) {
    fprintf(stderr, "zyr-host: %s refused, %s\n", p_guest.m_peer.c_str(),
            p_reason == LiveRefusal::WRONG_SECRET ? "wrong secret" : p_text);
    p_guest.m_wasRefused = true;
    p_guest.m_link->refuse(p_reason, p_text);
}

size_t LiveServer::countViewers() const {
    return size_t(std::count_if(m_guests.begin(), m_guests.end(), [](const auto& p_guest) {
        return p_guest.second.m_link->m_state == ViewerLink::State::VIEWING;
    }));
}

size_t LiveServer::countChecks() const {
    return m_forsaken.size() + size_t(std::count_if(m_guests.begin(), m_guests.end(), [](const auto& p_guest) {
               return p_guest.second.m_link->m_state == ViewerLink::State::CHECKING;
           }));
}

void LiveServer::settle(Guest& p_guest) {
    ViewerLink& link = *p_guest.m_link;
    if (!p_guest.m_check.isDone()) {
        return;
    }
    if (!p_guest.m_check.isGranted()) {
        refuse(p_guest, LiveRefusal::WRONG_SECRET, "the token or password is wrong");
        return;
    }
    uint8_t shared = link.m_codecs;
    for (const auto& [id, other] : m_guests) {
        shared &= other.m_link->m_state == ViewerLink::State::VIEWING ? other.m_link->m_codecs : UINT8_MAX;
    }
    if (countViewers() >= m_options.m_mostViewers) {
        refuse(p_guest, LiveRefusal::TOO_MANY, "too many look on already");
    } else if (shared == 0) {
        refuse(p_guest, LiveRefusal::NO_COMMON_CODEC, "there is no codec that all viewers know");
    } else {
        welcome(p_guest);
    }
}

void LiveServer::welcome(Guest& p_guest) {
    ViewerLink& link = *p_guest.m_link;
    link.m_state = ViewerLink::State::VIEWING;
    p_guest.m_wasLetIn = true;
    m_numOfViewers++;
    fprintf(stderr, "zyr-host: %s looks on%s%s\n", p_guest.m_peer.c_str(), p_guest.m_account.empty() ? "" : " as ",
            p_guest.m_account.c_str());
    LiveWelcome welcome;
    welcome.m_viewer = link.getId();
    welcome.m_flags = m_control.isPossible() ? LiveWelcome::CLIPBOARD : LiveWelcome::VIEW_ONLY;
    link.send(LiveMessage::WELCOME, welcome.write());
    sendCursor(link);
    if (link.m_wantsControl && m_control.getController() == ScreenControl::NOBODY) {
        takeControl(link.getId(), true);
    } else {
        tellControl();
    }
}

void LiveServer::sendCursor(ViewerLink& p_link) {
    if (m_cursor && p_link.m_state == ViewerLink::State::VIEWING) {
        const LiveCursor cursor{m_cursor->m_width, m_cursor->m_height, m_cursor->m_hotX, m_cursor->m_hotY};
        p_link.send(LiveMessage::CURSOR, cursor.write(), m_cursor->m_pixels.data(), m_cursor->m_pixels.size());
    }
}

void LiveServer::takeNews() {
    PictureNews news;
    while (m_pictures.take(news)) {
        const uint64_t now = getLiveTime();
        m_ended = m_ended || news.m_ended;
        m_failure = news.m_ended ? news.m_failure : m_failure;
        m_cursor = news.m_cursor ? news.m_cursor : m_cursor;
        if (news.m_frame && news.m_frame->m_lane == PUBLISHED_LANE) {
            m_published->offer(news.m_frame, now);
        }
        for (auto& [id, guest] : m_guests) {
            ViewerLink& link = *guest.m_link;
            if (news.m_frame && news.m_frame->m_lane == link.getLane()) {
                link.sendFrame(news.m_frame, m_pictures.getInterval(link.getLane()), now);
            }
            if (news.m_cursor) {
                sendCursor(link);
            }
            if (news.m_pointer && link.m_state == ViewerLink::State::VIEWING) {
                link.send(LiveMessage::POINTER_AT,
                          LiveWriter().add(news.m_pointer->first).add(news.m_pointer->second).getBytes());
            }
        }
        if (news.m_frame) {
            m_demandsMet[news.m_frame->m_lane] = true;
        }
        news = PictureNews();
    }
}

void LiveServer::refreshDemand() {
    std::array<LaneDemand, NUM_OF_PICTURE_LANES> demands;
    if (m_published != nullptr) {
        demands[PUBLISHED_LANE] = m_published->getDemand(getLiveTime());
    }
    for (const auto& [id, guest] : m_guests) {
        const ViewerLink& link = *guest.m_link;
        if (link.m_state != ViewerLink::State::VIEWING) {
            continue;
        }
        LaneDemand& demand = demands[link.getLane()];
        demand.m_allowed = demand.m_allowed == 0 ? link.m_codecs : demand.m_allowed & link.m_codecs;
        if (link.hasCredit(m_pictures.getInterval(link.getLane()))) {
            demand.m_wanted = true;
            demand.m_missing |= link.getMissing();
        }
    }
    for (unsigned i = 0; i < demands.size(); i++) {
        const LaneDemand& old = m_demands[i];
        const bool isSame = demands[i].m_wanted == old.m_wanted && demands[i].m_missing == old.m_missing &&
                            demands[i].m_allowed == old.m_allowed;
        if (!isSame || m_demandsMet[i]) {
            m_pictures.setDemand(i, demands[i]);
        }
        m_demandsMet[i] = false;
    }
    m_demands = demands;
}

void LiveServer::tick(uint64_t p_now) {
    m_control.watch(p_now);
    std::erase_if(m_forsaken, [](AccessCheck& p_check) { return p_check.isDone(); });
    const bool isStatisticsTime = p_now - m_statisticsTime >= BETWEEN_STATISTICS;
    m_statisticsTime = isStatisticsTime ? p_now : m_statisticsTime;
    const auto viewers = uint16_t(countViewers());
    for (auto& [id, guest] : m_guests) {
        ViewerLink& link = *guest.m_link;
        if (link.m_state != ViewerLink::State::VIEWING) {
            continue;
        }
        link.pace(m_pictures.getInterval(link.getLane()), p_now);
        if (isStatisticsTime) {
            LiveStatistics statistics = link.takeStatistics(m_pictures.getInterval(link.getLane()), p_now);
            statistics.m_viewers = viewers;
            link.send(LiveMessage::STATISTICS, statistics.write());
        }
    }
}

void LiveServer::remove(Guests::iterator p_guest) {
    const ViewerLink& link = *p_guest->second.m_link;
    const TransportState& state = link.getSocket().getState();
    // Those who took nothing but the page are not worth a line.
    const bool hasPageOnly = !state.m_isWebSocket && (state.m_closeReason == ZYR_TRANSPORT_CLOSE_HTTP_DONE ||
                                                      state.m_closeReason == ZYR_TRANSPORT_CLOSE_PEER ||
                                                      state.m_closeReason == ZYR_TRANSPORT_CLOSE_HANDSHAKE_TIMEOUT);
    const bool hasLine = p_guest->second.m_wasRefused && !p_guest->second.m_wasLetIn;
    if (!hasPageOnly && !hasLine) {
        fprintf(stderr, "zyr-host: %s left after %" PRIu64 " s, %" PRIu64 " frames: %s\n",
                p_guest->second.m_peer.c_str(), (getLiveTime() - link.m_since) / 1'000'000, link.getFrames(),
                toText(state.m_closeText).c_str());
    }
    const uint32_t id = p_guest->first;
    keepCheck(p_guest->second);
    m_guests.erase(p_guest);
    if (m_control.getController() == id) {
        takeControl(id, false);
    }
}

} // namespace zyr::host
