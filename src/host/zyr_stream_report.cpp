#include "host/zyr_stream_report.h"

#include <libyuv.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zyr::host {

namespace {

template <typename... Values> std::string format(const char* p_format, Values... p_values) {
    char text[512];
    snprintf(text, sizeof(text), p_format, p_values...);
    return text;
}

struct Planes {
    uint8_t* y;
    uint8_t* u;
    uint8_t* v;
    int width;
    int half;
};

Planes layOut(std::vector<uint8_t>& p_storage, uint32_t p_width, uint32_t p_height) {
    const int half = int(p_width + 1) / 2;
    const size_t luma = size_t(p_width) * p_height;
    const size_t chroma = size_t(half) * ((p_height + 1) / 2);
    p_storage.resize(luma + 2 * chroma);
    uint8_t* start = p_storage.data();
    return Planes{start, start + luma, start + luma + chroma, int(p_width), half};
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

} // namespace

double StageTimes::getPercentile(double p_percent) const {
    if (m_times.empty()) {
        return 0;
    }
    std::vector<uint64_t> sorted = m_times;
    std::sort(sorted.begin(), sorted.end());
    const size_t rank = size_t(std::ceil(p_percent / 100.0 * double(sorted.size())));
    return double(sorted[std::clamp<size_t>(rank, 1, sorted.size()) - 1]) / 1e6;
}

double StageTimes::getTotal() const {
    uint64_t sum = 0;
    for (const uint64_t time : m_times) {
        sum += time;
    }
    return double(sum) / 1e9;
}

void QualityMeter::add(const uint8_t* p_source, uint32_t p_sourcePitch, const uint8_t* p_result, uint32_t p_resultPitch,
                       uint32_t p_width, uint32_t p_height) {
    const Planes a = layOut(m_sourcePlanes, p_width, p_height);
    const Planes b = layOut(m_resultPlanes, p_width, p_height);
    const int width = int(p_width);
    const int height = int(p_height);
    // libyuv names pixels as little-endian words: its ARGB is B,G,R,A in memory, its ABGR is R,G,B,A.
    libyuv::ARGBToI420(p_source, int(p_sourcePitch), a.y, a.width, a.u, a.half, a.v, a.half, width, height);
    libyuv::ABGRToI420(p_result, int(p_resultPitch), b.y, b.width, b.u, b.half, b.v, b.half, width, height);
    m_psnrSum +=
        libyuv::I420Psnr(a.y, a.width, a.u, a.half, a.v, a.half, b.y, b.width, b.u, b.half, b.v, b.half, width, height);
    // The similarity window is 8 by 8: smaller pictures have none and count as alike.
    m_ssimSum += width > 16 && height > 16 ? libyuv::I420Ssim(a.y, a.width, a.u, a.half, a.v, a.half, b.y, b.width, b.u,
                                                              b.half, b.v, b.half, width, height)
                                           : 1.0;
    m_count++;
}

double QualityMeter::getPsnr() const {
    return m_count == 0 ? 0 : m_psnrSum / double(m_count);
}

double QualityMeter::getSsim() const {
    return m_count == 0 ? 0 : m_ssimSum / double(m_count);
}

double StreamReport::getThroughput() const {
    const double seconds = m_encode.getTotal() + m_decode.getTotal();
    return seconds > 0 ? double(m_frames) / seconds : 0;
}

std::string StreamReport::toTable() const {
    std::string text;
    text += "source    " + m_source + "\n";
    text += "codec     " + m_codec + ", encoder " + m_encoder + ", decoder " + m_decoder +
            (m_hardware.empty() ? "" : ", hardware " + m_hardware) + ", " + m_colorSpace + "\n";
    text += format("picture   %ux%u, quality %u, %llu size changes\n", m_width, m_height, m_quality,
                   static_cast<unsigned long long>(m_resizes));
    text += format("frames    %llu in, %llu packets (%llu empty), %llu pictures out, %llu failed encodes, "
                   "%llu failed decodes, %llu unreadable\n",
                   static_cast<unsigned long long>(m_frames), static_cast<unsigned long long>(m_packets),
                   static_cast<unsigned long long>(m_emptyPackets), static_cast<unsigned long long>(m_pictures),
                   static_cast<unsigned long long>(m_failedEncodes), static_cast<unsigned long long>(m_failedDecodes),
                   static_cast<unsigned long long>(m_unreadable));
    text += format("speed     %.1f fps coding, %.1f fps in all\n", getThroughput(),
                   m_wallSeconds > 0 ? double(m_frames) / m_wallSeconds : 0.0);
    text += format("size      %.0f bytes per frame, %llu in all\n",
                   m_packets > 0 ? double(m_bytes) / double(m_packets) : 0.0, static_cast<unsigned long long>(m_bytes));
    if (!m_meter.isEmpty()) {
        text += format("quality   PSNR %.2f dB, SSIM %.4f\n", m_meter.getPsnr(), m_meter.getSsim());
    }
    text += "latency (ms)     p50       p95       p99\n";
    text += stageRow("read", m_read) + stageRow("encode", m_encode) + stageRow("decode", m_decode) +
            stageRow("write", m_write);
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
    if (!m_meter.isEmpty()) {
        quality = {{"psnr_db", m_meter.getPsnr()}, {"ssim", m_meter.getSsim()}};
    }
    return {{"source", m_source},
            {"codec", m_codec},
            {"encoder", m_encoder},
            {"decoder", m_decoder},
            {"hardware", m_hardware},
            {"color_space", m_colorSpace},
            {"width", m_width},
            {"height", m_height},
            {"quality_setting", m_quality},
            {"frames", m_frames},
            {"packets", m_packets},
            {"empty_packets", m_emptyPackets},
            {"pictures", m_pictures},
            {"failed_encodes", m_failedEncodes},
            {"failed_decodes", m_failedDecodes},
            {"unreadable_frames", m_unreadable},
            {"size_changes", m_resizes},
            {"bytes", m_bytes},
            {"bytes_per_frame", m_packets > 0 ? double(m_bytes) / double(m_packets) : 0.0},
            {"fps", getThroughput()},
            {"wall_seconds", m_wallSeconds},
            {"quality", quality},
            {"latency",
             {{"read", stageToJson(m_read)},
              {"encode", stageToJson(m_encode)},
              {"decode", stageToJson(m_decode)},
              {"write", stageToJson(m_write)}}},
            {"notes", m_notes},
            {"files", m_files},
            {"interrupted", m_interrupted}};
}

} // namespace zyr::host
