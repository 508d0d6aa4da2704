#include "host/live/zyr_picture_loop.h"

#include "host/live/zyr_picture_beat.h"
#include "host/zyr_run_error.h"
#include "host/zyr_stream_run.h"

#include <libyuv.h>

#include <algorithm>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace zyr::host {

namespace {

constexpr uint64_t LONGEST_SLEEP = 1'000'000;
/// Nothing has changed for so long: what was sent roughly is now sent exactly.
constexpr uint64_t REST = 120'000;
/// The pointer moves without damage, so it is asked for.
constexpr uint64_t BETWEEN_POINTERS = 50'000;
/// How long the pointer may move unnoticed while nothing else happens.
constexpr uint64_t BETWEEN_LOOKS = 100'000;
/// After a picture that the source could not give, for instance in the middle of a change of size.
constexpr uint64_t BEFORE_ANOTHER_TRY = 20'000;

ViewerPace::Lane describeLane(unsigned p_lane) {
    return p_lane == PUBLISHED_LANE ? ViewerPace::Lane{1, 100} : ViewerPace::describe(p_lane);
}

void ring(int p_event) {
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(p_event, &one, sizeof(one));
}

void silence(int p_event) {
    uint64_t count = 0;
    [[maybe_unused]] const ssize_t taken = read(p_event, &count, sizeof(count));
}

} // namespace

struct PictureLoop::Lane {
    Lane(const LiveCodecs& p_codecs, bool p_hasSpare, unsigned p_percent)
        : m_coder(p_codecs, p_hasSpare), m_percent(p_percent) {}

    FrameCoder m_coder;
    unsigned m_percent;
    LaneDemand m_demand;
    FramePicture m_scaled;
    uint64_t m_scaledGeneration = 0;
    uint64_t m_generation = 0; ///< Of the picture that was encoded last.
    PictureArea m_changed;     ///< Since that one, in the picture at its full size.
    PictureBeat m_beat;
    bool m_isExact = false;
};

PictureLoop::PictureLoop(LiveSource& p_source, const LiveCodecs& p_codecs, unsigned p_rate)
    : m_source(p_source),
      m_codecs(p_codecs),
      m_interval(1'000'000 / std::max(1u, p_rate)),
      m_newsEvent(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_wakeEvent(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_picture(std::make_unique<FramePicture>()) {
    for (unsigned i = 0; i < m_lanes.size(); i++) {
        // Players of all ages get what is published.
        m_lanes[i] = std::make_unique<Lane>(p_codecs, i != PUBLISHED_LANE, describeLane(i).m_percent);
    }
}

PictureLoop::~PictureLoop() {
    stop();
    close(m_newsEvent);
    close(m_wakeEvent);
}

void PictureLoop::start() {
    m_thread = std::thread([this] { run(); });
}

void PictureLoop::stop() {
    m_stopping = true;
    ring(m_wakeEvent);
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

uint64_t PictureLoop::getInterval(unsigned p_lane) const {
    return m_interval * describeLane(p_lane).m_divisor;
}

LiveArea PictureLoop::getArea() {
    const std::lock_guard lock(m_mutex);
    return m_area;
}

void PictureLoop::setDemand(unsigned p_lane, const LaneDemand& p_demand) {
    {
        const std::lock_guard lock(m_mutex);
        m_demands[p_lane] = p_demand;
    }
    if (p_demand.m_wanted) {
        ring(m_wakeEvent);
    }
}

bool PictureLoop::take(PictureNews& p_news) {
    const std::lock_guard lock(m_mutex);
    if (m_news.empty()) {
        silence(m_newsEvent);
        return false;
    }
    p_news = std::move(m_news.front());
    m_news.pop_front();
    return true;
}

void PictureLoop::tell(PictureNews p_news) {
    const std::lock_guard lock(m_mutex);
    m_news.push_back(std::move(p_news));
    ring(m_newsEvent);
}

void PictureLoop::run() {
    PictureNews end;
    end.m_ended = true;
    try {
        while (!m_stopping && !m_source.hasEnded()) {
            turn();
        }
    } catch (const std::exception& error) {
        end.m_failure = error.what();
    }
    tell(std::move(end));
}

void PictureLoop::turn() {
    const uint64_t now = getLiveTime();
    {
        const std::lock_guard lock(m_mutex);
        m_isWatched = false;
        for (unsigned i = 0; i < m_lanes.size(); i++) {
            m_lanes[i]->m_demand = m_demands[i];
            m_isWatched = m_isWatched || m_demands[i].m_allowed != 0;
        }
    }
    const uint64_t wait = serve(now);
    if (wait > 0) {
        lookAtPointer(now);
        sleep(std::min(wait, m_source.getPatience()));
    }
}

/// Encodes what is due. Gives how long nothing will be.
uint64_t PictureLoop::serve(uint64_t p_now) {
    const bool hasNews = m_source.update();
    m_newsTime = hasNews ? p_now : m_newsTime;
    m_firstNewsTime = hasNews && !m_hadNews ? p_now : m_firstNewsTime;
    m_hadNews = hasNews;
    uint64_t wait = LONGEST_SLEEP;
    bool isCaptured = !hasNews && m_generation > 0;
    for (unsigned i = 0; i < m_lanes.size(); i++) {
        Lane& lane = *m_lanes[i];
        bool atRest = false;
        if (!isReady(lane, hasNews, atRest, p_now, wait)) {
            continue;
        }
        if (!isCaptured && !capture(p_now)) {
            return BEFORE_ANOTHER_TRY;
        }
        isCaptured = true;
        encode(i, lane, atRest);
        wait = 0;
    }
    return wait;
}

bool PictureLoop::isReady(const Lane& p_lane, bool p_hasNews, bool& p_atRest, uint64_t p_now, uint64_t& p_wait) const {
    if (!p_lane.m_demand.m_wanted) {
        return false;
    }
    const bool isFresh = p_hasNews || p_lane.m_generation != m_generation;
    const uint64_t restTime = m_newsTime + REST;
    p_atRest = !p_hasNews && p_now >= restTime;
    if (p_lane.m_coder.isKeyDue(p_lane.m_demand.m_missing, p_atRest, p_now) && (m_generation > 0 || p_hasNews)) {
        return true;
    }
    const bool isMissing = (p_lane.m_demand.m_missing & p_lane.m_coder.getUsed(p_atRest, p_now)) != 0;
    if (!isFresh && p_lane.m_isExact && !isMissing) {
        return false;
    }
    // Waiting viewers are looked at again when the next key frame may be made.
    p_wait = std::min<uint64_t>(p_wait, isMissing ? REST : LONGEST_SLEEP);
    const uint64_t nextTime = p_lane.m_beat.getNextTime();
    if (isFresh && p_now < nextTime) {
        p_wait = std::min(p_wait, nextTime - p_now);
        return false;
    }
    if (isFresh || p_lane.m_isExact) {
        return isFresh;
    }
    if (!p_atRest) {
        p_wait = std::min(p_wait, restTime - std::min(restTime, p_now));
    }
    return p_atRest && m_generation > 0;
}

bool PictureLoop::capture(uint64_t p_now) {
    if (!m_source.grab(*m_picture)) {
        return false;
    }
    m_generation++;
    m_hadNews = false; // What comes now is of the next picture.
    noteChanged();
    m_captureTime = p_now;
    m_captureMicros = uint32_t(getLiveTime() - p_now);
    LiveArea area{0, 0, m_picture->m_width, m_picture->m_height};
    m_source.getOrigin(area.m_x, area.m_y);
    const std::lock_guard lock(m_mutex);
    m_area = area;
    return true;
}

void PictureLoop::noteChanged() {
    PictureArea changed{0, 0, m_picture->m_width, m_picture->m_height};
    LiveArea area;
    if (m_source.findChanged(area)) {
        changed = PictureArea{uint32_t(area.m_x), uint32_t(area.m_y), area.m_width, area.m_height};
    }
    for (const std::unique_ptr<Lane>& lane : m_lanes) {
        lane->m_changed.include(changed);
    }
}

IUnpackedFrameData& PictureLoop::scale(Lane& p_lane) {
    const unsigned percent = p_lane.m_percent;
    if (percent == 100) {
        return m_picture->getFrame();
    }
    if (p_lane.m_scaledGeneration != m_generation) {
        p_lane.m_scaledGeneration = m_generation;
        p_lane.m_scaled.resize(std::max(1u, m_picture->m_width * percent / 100),
                               std::max(1u, m_picture->m_height * percent / 100));
        libyuv::ARGBScale(m_picture->getPixels(), int(m_picture->m_pitch), int(m_picture->m_width),
                          int(m_picture->m_height), p_lane.m_scaled.getPixels(), int(p_lane.m_scaled.m_pitch),
                          int(p_lane.m_scaled.m_width), int(p_lane.m_scaled.m_height), libyuv::kFilterBox);
    }
    return p_lane.m_scaled.getFrame();
}

void PictureLoop::encode(unsigned p_index, Lane& p_lane, bool p_atRest) {
    IUnpackedFrameData& source = scale(p_lane);
    const uint64_t start = getLiveTime();
    if (p_lane.m_demand.m_allowed != 0) {
        p_lane.m_coder.setAllowed(p_lane.m_demand.m_allowed);
    }
    // A picture that another lane has had captured before has not waited for this one's beat.
    p_lane.m_beat.note(getInterval(p_index), p_lane.m_generation + 1 == m_generation ? m_firstNewsTime : m_captureTime,
                       m_captureTime);
    // Scaled pixels also have something of their neighbours.
    const PictureArea whole{0, 0, source.getWidth(), source.getHeight()};
    std::vector<CodedPart> parts = p_lane.m_coder.encode(source, p_lane.m_percent == 100 ? p_lane.m_changed : whole,
                                                         p_lane.m_demand.m_missing, p_atRest, start);
    p_lane.m_changed = PictureArea();
    if (parts.empty()) {
        return;
    }
    const bool canBeExact = (p_lane.m_demand.m_allowed & m_codecs.getCodecs() & codecBit(LiveCodec::BLOCKS)) != 0;
    p_lane.m_generation = m_generation;
    p_lane.m_isExact = parts.front().m_exact || !canBeExact;
    auto frame = std::make_shared<LiveFrame>();
    frame->m_lane = p_index;
    frame->m_stream = LiveStream{m_picture->m_width,   m_picture->m_height,    source.getWidth(), source.getHeight(),
                                 m_codecs.getCodecs(), m_codecs.isFullRange(), m_codecs.isBt709()};
    frame->m_head.m_captureTime = m_captureTime;
    frame->m_head.m_captureMicros = m_captureMicros;
    frame->m_readyTime = getLiveTime();
    frame->m_head.m_encodeMicros = uint32_t(frame->m_readyTime - start);
    frame->m_parts = std::move(parts);
    {
        const std::lock_guard lock(m_mutex);
        m_demands[p_index].m_wanted = false;
    }
    PictureNews news;
    news.m_frame = std::move(frame);
    tell(std::move(news));
}

void PictureLoop::lookAtPointer(uint64_t p_now) {
    auto cursor = std::make_shared<CursorPicture>();
    PictureNews news;
    if (m_source.takeCursor(*cursor)) {
        news.m_cursor = std::move(cursor);
    }
    std::pair<int32_t, int32_t> place;
    if (p_now - m_pointerTime >= BETWEEN_POINTERS) {
        m_pointerTime = p_now;
        if (m_source.findPointer(place.first, place.second) && place != m_pointer) {
            m_pointer = place;
            news.m_pointer = place;
        }
    }
    if (news.m_cursor || news.m_pointer) {
        tell(std::move(news));
    }
}

void PictureLoop::sleep(uint64_t p_micros) {
    // Whoever asked the X server something may have taken events in: they do not make the descriptor readable again.
    if (m_source.update() && !m_hadNews) {
        return;
    }
    if (m_isWatched && m_source.getDescriptor() >= 0) {
        p_micros = std::min(p_micros, BETWEEN_LOOKS);
    }
    pollfd waits[] = {{m_wakeEvent, POLLIN, 0}, {m_source.getDescriptor(), POLLIN, 0}};
    const int timeout = int((p_micros + 999) / 1000);
    poll(waits, m_source.getDescriptor() < 0 ? 1 : 2, timeout);
    if ((waits[0].revents & POLLIN) != 0) {
        silence(m_wakeEvent);
    }
}

} // namespace zyr::host
