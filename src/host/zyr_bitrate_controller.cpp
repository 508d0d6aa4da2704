#include "host/zyr_bitrate_controller.h"

#include <algorithm>
#include <cmath>

namespace zyr::host {

namespace {

constexpr double WINDOW_SECONDS = 10;
constexpr double SECONDS_BETWEEN_CONTEXTS = 4;
constexpr double QUALITY_PER_DOUBLING = 25; ///< Of the bits; about right for all codecs, and feedback does the rest.
constexpr double LARGEST_STEP = 4;          ///< Of the quality from picture to picture.

std::string numberText(double p_number) {
    return std::to_string(std::llround(p_number));
}

EncoderOptions rateControl(double p_bits) {
    // Half a second of buffer: the first picture, a key frame, may not spend more than that.
    const std::string bits = numberText(p_bits);
    return EncoderOptions("b=" + bits + ",minrate=" + bits + ",maxrate=" + bits + ",bufsize=" + numberText(p_bits / 2));
}

bool hasRateControl(const std::string& p_implementation) {
    return p_implementation.rfind("libvpx", 0) == 0;
}

} // namespace

BitrateController::BitrateController(StreamCoder& p_coder, uint64_t p_target, Fraction p_rate)
    : m_coder(p_coder),
      m_rate(p_rate),
      m_target(double(p_target)),
      m_quality(p_coder.getQuality()),
      m_usualQuality(p_coder.getQuality()),
      m_contextRate(double(p_target)) {
    m_report.m_target = p_target;
    m_report.m_lowestQuality = m_report.m_highestQuality = p_coder.getQuality();
}

EncoderOptions BitrateController::getOptions(const EncoderOptions& p_agreed, const std::string& p_implementation,
                                             uint64_t p_target, Fraction p_rate) {
    EncoderOptions options;
    if (isSteeredByCrf(p_agreed) && hasRateControl(p_implementation)) {
        options = rateControl(double(p_target));
        options.set("crf", "-1");
        // Rate control goes by time, and pictures are numbered in this unit.
        options.set("time_base", std::to_string(p_rate.m_denominator) + "/" + std::to_string(p_rate.m_numerator));
    }
    return options;
}

void BitrateController::add(size_t p_bytes, double p_seconds) {
    const double seconds = p_seconds > 0 ? p_seconds : double(m_rate.m_denominator) / m_rate.m_numerator;
    const double bits = double(p_bytes) * 8;
    watchWindow(bits, seconds);
    m_sinceOpening += seconds;
    // Neither an old debt nor old savings may rule the next ten seconds.
    m_debt = std::clamp(m_debt + bits - m_target * seconds, -m_target, 3 * m_target);
    if (m_coder.isQualityFixed()) {
        if (m_sinceOpening >= SECONDS_BETWEEN_CONTEXTS) {
            correctContext();
        }
    } else {
        stepQuality(bits, seconds);
    }
}

void BitrateController::watchWindow(double p_bits, double p_seconds) {
    m_allBits += p_bits;
    m_allSeconds += p_seconds;
    m_report.m_reached = m_allBits / m_allSeconds;
    m_window.push_back(Spent{p_bits, p_seconds});
    m_windowBits += p_bits;
    m_windowSeconds += p_seconds;
    while (m_window.size() > 1 && m_windowSeconds - m_window.front().m_seconds >= WINDOW_SECONDS) {
        m_windowBits -= m_window.front().m_bits;
        m_windowSeconds -= m_window.front().m_seconds;
        m_window.pop_front();
    }
    const double distance = std::fabs(m_windowBits / m_windowSeconds / m_target - 1);
    // A stream that is shorter than a window is one.
    const bool full = m_windowSeconds >= WINDOW_SECONDS;
    m_report.m_worstWindow = full && m_started ? std::max(m_report.m_worstWindow, distance) : distance;
    m_started = full;
}

void BitrateController::stepQuality(double p_bits, double p_seconds) {
    constexpr double SHARE_OF_NEW = 1.0 / 12; // About a group of pictures, so that key frames don't shake the quality.
    m_usualBits = m_usualBits == 0 ? p_bits : m_usualBits + SHARE_OF_NEW * (p_bits - m_usualBits);
    m_usualQuality += SHARE_OF_NEW * (m_quality - m_usualQuality);
    const double wanted = m_target * p_seconds * std::clamp(1 - m_debt / m_target / 2, 0.25, 2.0);
    const double quality = m_usualQuality + QUALITY_PER_DOUBLING * std::log2(wanted / std::max(m_usualBits, 1.0));
    setQuality(std::clamp(quality, m_quality - LARGEST_STEP, m_quality + LARGEST_STEP));
}

void BitrateController::correctContext() {
    // Worth a key frame once the window's share is off by more than eight in a hundred.
    const double spent = m_windowBits / m_windowSeconds / m_target;
    if (std::fabs(spent - 1) < 0.08) {
        return;
    }
    if (hasRateControl(m_coder.getImplementation())) {
        const double rate = std::clamp(m_contextRate / spent, m_target / 2, m_target * 2);
        if (rate == m_contextRate) {
            return;
        }
        m_contextRate = rate;
        m_coder.reopen(rateControl(rate));
        m_report.m_newContexts++;
    } else {
        setQuality(m_quality - QUALITY_PER_DOUBLING * std::log2(std::max(spent, 0.1)));
    }
    m_sinceOpening = 0;
}

void BitrateController::setQuality(double p_quality) {
    m_quality = std::clamp(p_quality, 0.0, 100.0);
    const unsigned quality = unsigned(std::lround(m_quality));
    if (quality == m_coder.getQuality()) {
        return;
    }
    const uint64_t reopenings = m_coder.getReopenings();
    m_coder.setQuality(quality);
    m_report.m_newContexts += m_coder.getReopenings() - reopenings;
    m_report.m_qualitySteps++;
    m_report.m_lowestQuality = std::min(m_report.m_lowestQuality, quality);
    m_report.m_highestQuality = std::max(m_report.m_highestQuality, quality);
}

} // namespace zyr::host
