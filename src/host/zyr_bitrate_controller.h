/// Holds a stream at a target bitrate.
#pragma once

#include "host/zyr_stream_coder.h"
#include "host/zyr_stream_report.h"

#include <cstddef>
#include <cstdint>
#include <deque>

namespace zyr::host {

/// Steers a coder after each picture, on the coder's thread. An encoder that follows the quality from picture to
/// picture is steered by it. One that takes its settings only when it is opened runs its own rate control at the
/// target; when what it spends drifts away all the same it is opened anew with a corrected rate, and one without rate
/// control of its own with another quality, at most every four seconds, since a new context costs a key frame.
class BitrateController {
public:
    /// `p_target` is in bits per second. `p_coder` is open and must outlive the object.
    BitrateController(StreamCoder& p_coder, uint64_t p_target, Fraction p_rate);

    /// Options that `p_coder` has to be opened with.
    static EncoderOptions getOptions(const EncoderOptions& p_agreed, const std::string& p_implementation,
                                     uint64_t p_target, Fraction p_rate);

    /// Takes account of a picture that took so many bytes and lasts so long, and steers the next one.
    void add(size_t p_bytes, double p_seconds);

    /// What it did so far.
    const BitrateReport& getReport() const { return m_report; }

private:
    void watchWindow(double p_bits, double p_seconds);
    void stepQuality(double p_bits, double p_seconds);
    void correctContext();
    void setQuality(double p_quality);

    struct Spent {
        double m_bits;
        double m_seconds;
    };

    StreamCoder& m_coder;
    BitrateReport m_report;
    Fraction m_rate;
    double m_target;
    double m_quality;
    double m_usualBits = 0;    ///< Moving mean of a picture's bits.
    double m_usualQuality = 0; ///< Moving mean of the quality that they had.
    double m_debt = 0;         ///< Bits spent beyond the target, kept within bounds.
    double m_contextRate;      ///< What the encoder's own rate control was last told.
    double m_sinceOpening = 0; ///< Seconds.
    double m_allBits = 0;
    double m_allSeconds = 0;
    std::deque<Spent> m_window; ///< The last ten seconds.
    double m_windowBits = 0;
    double m_windowSeconds = 0;
    bool m_started = false;
};

} // namespace zyr::host
