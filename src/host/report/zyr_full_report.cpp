#include "host/report/zyr_full_report.h"

#include "host/report/zyr_machine_facts.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace zyr::host {

namespace {

/// To so many parts of one: more digits say nothing and make files long. JSON knows neither infinity nor NaN.
nlohmann::json roundTo(double p_parts, double p_number) {
    return std::isfinite(p_number) ? nlohmann::json(std::round(p_number * p_parts) / p_parts) : nlohmann::json(nullptr);
}

nlohmann::json seriesToJson(const RunSeries& p_series) {
    nlohmann::json rows = nlohmann::json::array();
    for (const SeriesPoint& point : p_series.getPoints()) {
        rows.push_back({point.m_frame, point.m_frames, roundTo(1e6, point.m_seconds), point.m_width, point.m_height,
                        point.m_keys, point.m_bytes, roundTo(1e3, point.m_encode), roundTo(1e3, point.m_decode),
                        roundTo(1e3, point.m_psnr), roundTo(1e6, point.m_similarity)});
    }
    return {{"columns",
             {"frame", "frames", "time_s", "width", "height", "keys", "bytes", "encode_ms", "decode_ms", "psnr_db",
              "ssim"}},
            {"rows", rows}};
}

nlohmann::json worstToJson(const WorstFrames& p_worst) {
    nlohmann::json frames = nlohmann::json::array();
    for (const WorstFrame& frame : p_worst.getFrames()) {
        frames.push_back({{"frame", frame.m_frame},
                          {"psnr_db", roundTo(1e3, frame.m_psnr)},
                          {"ssim", roundTo(1e6, frame.m_similarity)},
                          {"width", frame.m_width},
                          {"height", frame.m_height},
                          {"source", makeDataPng(frame.m_source)},
                          {"result", makeDataPng(frame.m_result)},
                          {"difference", makeDataPng(frame.m_difference)}});
    }
    return frames;
}

} // namespace

nlohmann::json makeFullReport(const StreamReport& p_report) {
    nlohmann::json json = p_report.toJson();
    json["series"] = seriesToJson(p_report.m_series);
    json["worst_frames"] = worstToJson(p_report.m_worst);
    json["negotiation"] = p_report.m_negotiation;
    nlohmann::json machine = nlohmann::json::array();
    for (const auto& [name, text] : collectMachineFacts()) {
        machine.push_back({{"name", name}, {"value", text}});
    }
    json["machine"] = machine;
    return json;
}

} // namespace zyr::host
