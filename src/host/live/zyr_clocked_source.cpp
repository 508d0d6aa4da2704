#include "host/live/zyr_live_source.h"

#include <chrono>
#include <cstring>

namespace zyr::host {

namespace {

class ClockedSource : public LiveSource {
public:
    explicit ClockedSource(std::unique_ptr<VideoSource> p_video) : m_video(std::move(p_video)) {}

    bool update() override {
        const uint64_t now = getLiveTime();
        m_start = m_start == 0 ? now : m_start;
        while (!m_ended && now - m_start >= m_due) {
            m_ended = !m_video->read(m_picture);
            if (m_ended) {
                break;
            }
            m_hasNews = true;
            m_due = findEnd();
        }
        return m_hasNews;
    }

    uint64_t getPatience() const override {
        constexpr uint64_t LONGEST = 1'000'000;
        const uint64_t passed = m_start == 0 ? 0 : getLiveTime() - m_start;
        return m_ended ? LONGEST : std::min(LONGEST, m_due > passed ? m_due - passed : 0);
    }

    bool grab(PictureBuffer& p_picture) override {
        if (m_picture.m_width == 0) {
            return false;
        }
        m_hasNews = false;
        p_picture.resize(m_picture.m_width, m_picture.m_height);
        for (uint32_t y = 0; y < m_picture.m_height; y++) {
            memcpy(p_picture.getPixels() + size_t(y) * p_picture.m_pitch,
                   m_picture.getPixels() + size_t(y) * m_picture.m_pitch, size_t(m_picture.m_width) * 4);
        }
        return true;
    }

    bool hasEnded() const override { return m_ended && !m_hasNews; }

private:
    /// When the next picture is due, in microseconds from the first.
    uint64_t findEnd() {
        const Fraction base = m_video->getTimeBase();
        const Fraction rate = m_video->getRate();
        m_count++;
        if (m_video->hasConstantRate() || m_picture.m_duration <= 0) {
            return m_count * 1'000'000 * uint64_t(rate.m_denominator) / uint64_t(rate.m_numerator);
        }
        const double end = double(m_picture.m_timestamp + m_picture.m_duration) * base.m_numerator / base.m_denominator;
        return end > 0 ? uint64_t(end * 1e6) : 0;
    }

    std::unique_ptr<VideoSource> m_video;
    Picture m_picture;
    uint64_t m_start = 0;
    uint64_t m_due = 0;
    uint64_t m_count = 0;
    bool m_hasNews = false;
    bool m_ended = false;
};

} // namespace

uint64_t getLiveTime() {
    return uint64_t(
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now().time_since_epoch())
            .count());
}

std::unique_ptr<LiveSource> openClockedSource(std::unique_ptr<VideoSource> p_video) {
    return std::make_unique<ClockedSource>(std::move(p_video));
}

} // namespace zyr::host
