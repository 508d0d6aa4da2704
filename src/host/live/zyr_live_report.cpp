#include "host/live/zyr_live_report.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>

namespace zyr::host {

namespace {

using nlohmann::ordered_json;

ordered_json describe(const StageTimes& p_times) {
    return {{"p50", p_times.getPercentile(50)}, {"p95", p_times.getPercentile(95)}, {"p99", p_times.getPercentile(99)}};
}

} // namespace

void LiveReport::note(const ShownFrame& p_frame, uint64_t p_shownTime) {
    const LiveFrameHead& head = p_frame.m_head;
    const size_t size = p_frame.m_packet->getPackedData()->getSize();
    m_failed += p_frame.m_isDecoded ? 0 : 1;
    m_keys += (head.m_flags & LiveFrameHead::KEY) != 0 ? 1 : 0;
    m_exact += (head.m_flags & LiveFrameHead::EXACT) != 0 ? 1 : 0;
    m_bytes += size;
    m_ofCodec[size_t(head.m_codec)]++;
    m_bytesOfCodec[size_t(head.m_codec)] += size;
    m_stream = p_frame.m_stream;
    m_roundTrip = p_frame.m_roundTrip;
    if (head.m_width < m_stream.m_codedWidth || head.m_height < m_stream.m_codedHeight) {
        m_regions++;
        m_region = head;
    }
    m_firstTime = m_frames == 0 ? p_frame.m_arrivalTime : m_firstTime;
    m_lastTime = p_frame.m_arrivalTime;
    if ((head.m_flags & LiveFrameHead::LAST) == 0) {
        return; // The times are those of the picture.
    }
    m_frames++;
    const auto add = [](StageTimes& p_times, int64_t p_micros) {
        p_times.add(uint64_t(std::max<int64_t>(p_micros, 0)) * 1000);
    };
    add(m_capture, head.m_captureMicros);
    add(m_encode, head.m_encodeMicros);
    add(m_queue, head.m_queueMicros);
    add(m_decode, int64_t(p_frame.m_decodeMicros));
    add(m_draw, int64_t(p_shownTime - p_frame.m_arrivalTime - p_frame.m_decodeMicros));
    if (p_frame.m_roundTrip > 0) {
        const int64_t arrival = int64_t(p_frame.m_arrivalTime) + p_frame.m_clockOffset - int64_t(head.m_captureTime);
        add(m_network, arrival - head.m_captureMicros - head.m_encodeMicros - head.m_queueMicros);
        add(m_total, arrival + int64_t(p_shownTime - p_frame.m_arrivalTime));
    }
}

std::string LiveReport::toText(bool p_json) const {
    const double seconds = double(m_lastTime - m_firstTime) / 1e6;
    const double rate = m_frames > 1 && seconds > 0 ? double(m_frames - 1) / seconds : 0;
    ordered_json report = {{"frames", m_frames},
                           {"failed", m_failed},
                           {"keyFrames", m_keys},
                           {"exactFrames", m_exact},
                           {"width", m_stream.m_width},
                           {"height", m_stream.m_height},
                           {"codedWidth", m_stream.m_codedWidth},
                           {"codedHeight", m_stream.m_codedHeight},
                           {"codecs", {{"blocks", m_ofCodec[0]}, {"vp9", m_ofCodec[1]}}},
                           {"bytesOfCodecs", {{"blocks", m_bytesOfCodec[0]}, {"vp9", m_bytesOfCodec[1]}}},
                           {"regionFrames", m_regions},
                           {"seconds", seconds},
                           {"fps", rate},
                           {"bytes", m_bytes},
                           {"bytesPerSecond", seconds > 0 ? double(m_bytes) / seconds : 0},
                           {"roundTripMs", double(m_roundTrip) / 1000}};
    if (m_regions > 0) {
        report["lastRegion"] = {
            {"x", m_region.m_x}, {"y", m_region.m_y}, {"width", m_region.m_width}, {"height", m_region.m_height}};
    }
    const std::pair<const char*, const StageTimes*> stages[] = {
        {"capture", &m_capture}, {"encode", &m_encode}, {"queue", &m_queue}, {"network", &m_network},
        {"decode", &m_decode},   {"draw", &m_draw},     {"total", &m_total}};
    for (const auto& [name, times] : stages) {
        report["latencyMs"][name] = describe(*times);
    }
    if (p_json) {
        return report.dump(2) + "\n";
    }
    char line[256];
    snprintf(line, sizeof(line), "%llu frames (%llu blocks, %llu vp9) of %ux%u, %.1f fps, %.1f kB/s\n",
             static_cast<unsigned long long>(m_frames), static_cast<unsigned long long>(m_ofCodec[0]),
             static_cast<unsigned long long>(m_ofCodec[1]), m_stream.m_width, m_stream.m_height, rate,
             seconds > 0 ? double(m_bytes) / seconds / 1000 : 0);
    std::string text = line;
    if (m_regions > 0) {
        snprintf(line, sizeof(line), "%llu of the vp9 frames were of a region, at last %ux%u at %u,%u\n",
                 static_cast<unsigned long long>(m_regions), unsigned{m_region.m_width}, unsigned{m_region.m_height},
                 unsigned{m_region.m_x}, unsigned{m_region.m_y});
        text += line;
    }
    for (const auto& [name, times] : stages) {
        snprintf(line, sizeof(line), "%-8s %7.2f %7.2f %7.2f ms (p50, p95, p99)\n", name, times->getPercentile(50),
                 times->getPercentile(95), times->getPercentile(99));
        text += line;
    }
    return text;
}

} // namespace zyr::host
