#include "host/zyr_frame_log.h"

#include <cinttypes>
#include <cmath>
#include <cstdio>

namespace zyr::host {

namespace {

constexpr const char* NAMES = "frame,time_s,key,bytes,quality,read_ms,encode_ms,decode_ms,compare_ms,psnr_db,ssim\n";

bool endsWith(const std::string& p_text, const std::string& p_end) {
    return p_text.size() >= p_end.size() && p_text.compare(p_text.size() - p_end.size(), p_end.size(), p_end) == 0;
}

std::string numberText(double p_number, bool p_json) {
    if (std::isnan(p_number)) {
        return p_json ? "null" : "";
    }
    if (std::isinf(p_number)) {
        return p_json ? "null" : "inf";
    }
    char text[64];
    snprintf(text, sizeof(text), "%.6f", p_number);
    return text;
}

} // namespace

FrameLog::FrameLog(const std::string& p_path)
    : m_output(p_path), m_json(endsWith(p_path, ".jsonl") || endsWith(p_path, ".ndjson") || endsWith(p_path, ".json")) {
    if (!m_json) {
        m_output.write(NAMES, std::char_traits<char>::length(NAMES));
    }
}

void FrameLog::write(const FrameRecord& p_record) {
    const auto text = [&](double p_number) { return numberText(p_number, m_json); };
    char row[512];
    const int size = snprintf(
        row, sizeof(row),
        m_json ? "{\"frame\":%" PRIu64 ",\"time_s\":%s,\"key\":%s,\"bytes\":%" PRIu64 ",\"quality\":%u,\"read_ms\":%s,"
                 "\"encode_ms\":%s,\"decode_ms\":%s,\"compare_ms\":%s,\"psnr_db\":%s,\"ssim\":%s}\n"
               : "%" PRIu64 ",%s,%s,%" PRIu64 ",%u,%s,%s,%s,%s,%s,%s\n",
        p_record.m_number, text(p_record.m_seconds).c_str(),
        m_json ? (p_record.m_key ? "true" : "false") : (p_record.m_key ? "1" : "0"), p_record.m_bytes,
        p_record.m_quality, text(p_record.m_readMilliseconds).c_str(), text(p_record.m_encodeMilliseconds).c_str(),
        text(p_record.m_decodeMilliseconds).c_str(), text(p_record.m_compareMilliseconds).c_str(),
        text(p_record.m_psnr).c_str(), text(p_record.m_ssim).c_str());
    m_output.write(row, size_t(size));
}

} // namespace zyr::host
