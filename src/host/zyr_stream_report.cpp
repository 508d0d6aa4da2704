#include "host/zyr_stream_report.h"

#include <nlohmann/json.hpp>

#include <cinttypes>
#include <cmath>
#include <cstdio>

namespace zyr::host {

namespace {

template <typename... Values> std::string format(const char* p_format, Values... p_values) {
    char text[512];
    snprintf(text, sizeof(text), p_format, p_values...);
    return text;
}

nlohmann::json stageToJson(const StageTimes& p_stage) {
    return {{"p50_ms", p_stage.getPercentile(50)},
            {"p95_ms", p_stage.getPercentile(95)},
            {"p99_ms", p_stage.getPercentile(99)}};
}

std::string stageRow(const char* p_name, const StageTimes& p_stage) {
    return format("  %-8s %9.3f %9.3f %9.3f\n", p_name, p_stage.getPercentile(50), p_stage.getPercentile(95),
                  p_stage.getPercentile(99));
}

/// JSON knows neither infinity nor "not a number".
nlohmann::json numberToJson(double p_number) {
    return std::isfinite(p_number) ? nlohmann::json(p_number) : nlohmann::json(nullptr);
}

nlohmann::json likenessToJson(const LikenessTotal& p_total, const char* const (&p_planes)[3], const char* p_all) {
    if (p_total.isEmpty()) {
        return nullptr;
    }
    nlohmann::json psnr = {{p_all, numberToJson(p_total.getPsnr())},
                           {"mean_of_frames", numberToJson(p_total.getMeanPsnr())},
                           {"minimum", numberToJson(p_total.getLowestPsnr())},
                           {"minimum_frame", p_total.getLowestPsnrFrame()}};
    nlohmann::json ssim = {{p_all, numberToJson(p_total.getSsim())},
                           {"minimum", numberToJson(p_total.getLowestSsim())},
                           {"minimum_frame", p_total.getLowestSsimFrame()}};
    for (int i = 0; i < Likeness::NUM_OF_PLANES; i++) {
        psnr[p_planes[i]] = numberToJson(p_total.getPsnr(i));
        ssim[p_planes[i]] = numberToJson(p_total.getSsim(i));
    }
    return {{"psnr_db", psnr}, {"ssim", ssim}, {"lossless", std::isinf(p_total.getPsnr())}};
}

std::string likenessRow(const char* p_name, const LikenessTotal& p_total, const char* p_planes) {
    if (p_total.isEmpty()) {
        return {};
    }
    return format("%s PSNR %.2f dB (%c %.2f, %c %.2f, %c %.2f; mean of frames %.2f, lowest %.2f in frame %" PRIu64 ")\n"
                  "          SSIM %.4f (%c %.4f, %c %.4f, %c %.4f; lowest %.4f in frame %" PRIu64 ")\n",
                  p_name, p_total.getPsnr(), p_planes[0], p_total.getPsnr(0), p_planes[1], p_total.getPsnr(1),
                  p_planes[2], p_total.getPsnr(2), p_total.getMeanPsnr(), p_total.getLowestPsnr(),
                  p_total.getLowestPsnrFrame(), p_total.getSsim(), p_planes[0], p_total.getSsim(0), p_planes[1],
                  p_total.getSsim(1), p_planes[2], p_total.getSsim(2), p_total.getLowestSsim(),
                  p_total.getLowestSsimFrame());
}

std::string colorsText(const SourceColors& p_colors) {
    return p_colors.m_matrix +
           (p_colors.m_matrix == "rgb" ? ""
            : p_colors.m_fullRange     ? ", full range"
                                       : ", limited range") +
           (p_colors.m_assumed ? " (assumed by the height: the source does not say)" : "");
}

} // namespace

double StreamReport::getThroughput() const {
    const double seconds = m_encode.getTotal() + m_decode.getTotal();
    return seconds > 0 ? double(m_frames) / seconds : 0;
}

std::string StreamReport::toTable() const {
    std::string text;
    text += "source    " + m_source + "\n";
    text += "colors    " + colorsText(m_sourceColors) + "\n";
    text += "codec     " + m_codec + ", encoder " + m_encoder + ", decoder " + m_decoder +
            (m_hardware.empty() ? "" : ", hardware " + m_hardware) + ", " + m_colorSpace + "\n";
    text += "options   " + m_encoderOptions + "\n";
    text += format("picture   %ux%u, quality %u, %" PRIu64 " size changes\n", m_width, m_height, m_quality, m_resizes);
    text += format("frames    %" PRIu64 " in, %" PRIu64 " packets (%" PRIu64 " empty), %" PRIu64
                   " pictures out, %" PRIu64 " failed encodes, %" PRIu64 " failed decodes, %" PRIu64 " unreadable\n",
                   m_frames, m_packets, m_emptyPackets, m_pictures, m_failedEncodes, m_failedDecodes, m_unreadable);
    text += format("speed     %.1f fps coding, %.1f fps in all\n", getThroughput(),
                   m_wallSeconds > 0 ? double(m_frames) / m_wallSeconds : 0.0);
    text += format("size      %.0f bytes per frame, %" PRIu64 " in all, %.0f kbit/s over %.2f s\n",
                   m_packets > 0 ? double(m_bytes) / double(m_packets) : 0.0, m_bytes,
                   m_durationSeconds > 0 ? double(m_bytes) * 8 / 1000 / m_durationSeconds : 0.0, m_durationSeconds);
    if (m_bitrate.m_target > 0) {
        text +=
            format("bitrate   target %.0f kbit/s, off by at most %.1f %% in ten seconds; quality %u to %u in %" PRIu64
                   " steps, %" PRIu64 " new contexts\n",
                   double(m_bitrate.m_target) / 1000, m_bitrate.m_worstWindow * 100, m_bitrate.m_lowestQuality,
                   m_bitrate.m_highestQuality, m_bitrate.m_qualitySteps, m_bitrate.m_newContexts);
    }
    text += likenessRow("quality  ", m_coded, "YUV") + likenessRow("in RGB   ", m_rgb, "RGB");
    text += "latency (ms)     p50       p95       p99\n";
    text += stageRow("read", m_read) + stageRow("encode", m_encode) + stageRow("decode", m_decode) +
            stageRow("compare", m_compare) + stageRow("write", m_write);
    for (const std::string& complaint : m_complaints) {
        text += "damage    " + complaint + "\n";
    }
    for (const std::string& note : m_notes) {
        text += "note      " + note + "\n";
    }
    for (const std::string& file : m_files) {
        text += "file      " + file + "\n";
    }
    if (m_interrupted) {
        text += "interrupted: the files hold what was done until then\n";
    }
    return text;
}

nlohmann::json StreamReport::toJson() const {
    nlohmann::json quality = nullptr;
    if (m_metrics && !m_coded.isEmpty()) {
        quality = {{"coded", likenessToJson(m_coded, {"y", "u", "v"}, "weighted")},
                   {"rgb", likenessToJson(m_rgb, {"r", "g", "b"}, "average")}};
    }
    nlohmann::json bitrate = nullptr;
    if (m_bitrate.m_target > 0) {
        bitrate = {{"target", m_bitrate.m_target},
                   {"reached", m_bitrate.m_reached},
                   {"worst_window", m_bitrate.m_worstWindow},
                   {"quality_steps", m_bitrate.m_qualitySteps},
                   {"new_contexts", m_bitrate.m_newContexts},
                   {"lowest_quality", m_bitrate.m_lowestQuality},
                   {"highest_quality", m_bitrate.m_highestQuality}};
    }
    return {{"schema_version", SCHEMA_VERSION},
            {"source", m_source},
            {"source_colors",
             {{"matrix", m_sourceColors.m_matrix},
              {"range", m_sourceColors.m_fullRange ? "full" : "limited"},
              {"assumed", m_sourceColors.m_assumed}}},
            {"frame_rate",
             {{"numerator", m_rate.m_numerator}, {"denominator", m_rate.m_denominator}, {"constant", m_constantRate}}},
            {"codec", m_codec},
            {"encoder", m_encoder},
            {"encoder_options", m_encoderOptions},
            {"decoder", m_decoder},
            {"hardware", m_hardware},
            {"color_space", m_colorSpace},
            {"width", m_width},
            {"height", m_height},
            {"quality_setting", m_quality},
            {"frames", m_frames},
            {"packets", m_packets},
            {"empty_packets", m_emptyPackets},
            {"key_frames", m_keyFrames},
            {"pictures", m_pictures},
            {"failed_encodes", m_failedEncodes},
            {"failed_decodes", m_failedDecodes},
            {"unreadable_frames", m_unreadable},
            {"size_changes", m_resizes},
            {"bytes", m_bytes},
            {"bytes_per_frame", m_packets > 0 ? double(m_bytes) / double(m_packets) : 0.0},
            {"duration_seconds", m_durationSeconds},
            {"fps", getThroughput()},
            {"wall_seconds", m_wallSeconds},
            {"first_packet_ms", m_firstPacketMilliseconds},
            {"bitrate", bitrate},
            {"quality", quality},
            {"latency",
             {{"read", stageToJson(m_read)},
              {"encode", stageToJson(m_encode)},
              {"decode", stageToJson(m_decode)},
              {"compare", stageToJson(m_compare)},
              {"write", stageToJson(m_write)}}},
            {"complaints", m_complaints},
            {"notes", m_notes},
            {"files", m_files},
            {"interrupted", m_interrupted}};
}

} // namespace zyr::host
