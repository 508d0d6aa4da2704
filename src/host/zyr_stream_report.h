/// What a run measured, and how it is told.
#pragma once

#include "host/report/zyr_run_series.h"
#include "host/report/zyr_worst_frames.h"
#include "host/zyr_likeness.h"
#include "host/zyr_stage_times.h"
#include "host/zyr_video_source.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

/// What held a target bitrate, and how well.
struct BitrateReport {
    uint64_t m_target = 0; ///< Bits per second, 0 without a target.
    double m_reached = 0;
    uint64_t m_qualitySteps = 0;
    uint64_t m_newContexts = 0;
    unsigned m_lowestQuality = 0;
    unsigned m_highestQuality = 0;
    double m_worstWindow = 0; ///< Largest distance from the target over ten seconds, as a part of the target.
};

/// Everything that a stream run tells at its end.
struct StreamReport {
    /// Of the JSON form, which docs/stream-report.schema.json describes. Goes up with every change that breaks a
    /// reader.
    static constexpr int SCHEMA_VERSION = 1;

    std::string m_source;
    std::string m_codec;
    std::string m_encoder;
    std::string m_encoderOptions;
    std::string m_decoder;
    std::string m_hardware;
    std::string m_colorSpace;
    SourceColors m_sourceColors;
    Fraction m_rate;
    bool m_constantRate = true;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint32_t m_quality = 0;
    uint64_t m_frames = 0;
    uint64_t m_packets = 0;
    uint64_t m_emptyPackets = 0;
    uint64_t m_keyFrames = 0;
    uint64_t m_pictures = 0;
    uint64_t m_failedEncodes = 0;
    uint64_t m_failedDecodes = 0;
    uint64_t m_unreadable = 0;
    uint64_t m_bytes = 0;
    uint64_t m_resizes = 0;
    double m_durationSeconds = 0; ///< From the first picture's time to the end of the last.
    double m_wallSeconds = 0;
    double m_firstPacketMilliseconds = 0; ///< From the start of the program.
    bool m_interrupted = false;
    bool m_metrics = true;
    StageTimes m_read;
    StageTimes m_encode;
    StageTimes m_decode;
    StageTimes m_compare;
    StageTimes m_write;
    LikenessTotal m_coded;
    LikenessTotal m_rgb;
    BitrateReport m_bitrate;
    RunSeries m_series;
    WorstFrames m_worst;
    std::vector<std::string> m_negotiation; ///< How encoder and decoder were chosen, line by line.
    std::vector<std::string> m_complaints;  ///< About the source.
    std::vector<std::string> m_notes;
    std::vector<std::string> m_files;

    /// Pictures per second through encoder and decoder one after the other, reading and writing left out.
    double getThroughput() const;
    std::string toTable() const;
    nlohmann::json toJson() const;
};

} // namespace zyr::host
