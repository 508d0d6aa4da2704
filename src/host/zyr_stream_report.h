/// What a run measured, and how it is told.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

/// The times that one stage took, picture by picture, in nanoseconds.
class StageTimes {
public:
    void add(uint64_t p_nanoseconds) { m_times.push_back(p_nanoseconds); }

    /// The time in milliseconds below which `p_percent` percent of the pictures stayed; 0 without pictures.
    double getPercentile(double p_percent) const;

    /// Sum in seconds.
    double getTotal() const;

private:
    std::vector<uint64_t> m_times;
};

/// Likeness of two pictures, added up over a run.
class QualityMeter {
public:
    /// Compares a B,G,R,A source with an R,G,B,A result of the same size.
    void add(const uint8_t* p_source, uint32_t p_sourcePitch, const uint8_t* p_result, uint32_t p_resultPitch,
             uint32_t p_width, uint32_t p_height);

    bool isEmpty() const { return m_count == 0; }

    /// Mean of the pictures' peak signal-to-noise ratios over Y, U and V, in dB; identical pictures count as 128.
    double getPsnr() const;

    /// Mean structural similarity, 1 for identical pictures.
    double getSsim() const;

private:
    std::vector<uint8_t> m_sourcePlanes;
    std::vector<uint8_t> m_resultPlanes;
    double m_psnrSum = 0;
    double m_ssimSum = 0;
    uint64_t m_count = 0;
};

/// Everything that a stream run tells at its end.
struct StreamReport {
    std::string m_source;
    std::string m_codec;
    std::string m_encoder;
    std::string m_decoder;
    std::string m_hardware;
    std::string m_colorSpace;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint32_t m_quality = 0;
    uint64_t m_frames = 0;
    uint64_t m_packets = 0;
    uint64_t m_emptyPackets = 0;
    uint64_t m_pictures = 0;
    uint64_t m_failedEncodes = 0;
    uint64_t m_failedDecodes = 0;
    uint64_t m_unreadable = 0;
    uint64_t m_bytes = 0;
    uint64_t m_resizes = 0;
    double m_wallSeconds = 0;
    bool m_interrupted = false;
    StageTimes m_read;
    StageTimes m_encode;
    StageTimes m_decode;
    StageTimes m_write;
    QualityMeter m_meter;
    std::vector<std::string> m_notes;
    std::vector<std::string> m_files;

    /// Pictures per second through encoder and decoder, reading and writing left out.
    double getThroughput() const;
    std::string toTable() const;
    nlohmann::json toJson() const;
};

} // namespace zyr::host
