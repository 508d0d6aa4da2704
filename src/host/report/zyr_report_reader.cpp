#include "host/report/zyr_report_reader.h"

#include "host/zyr_stream_report.h"
#include "host/zyr_strict_json.h"

#include <cmath>

namespace zyr::host {

namespace {

using Json = nlohmann::json;

/// One value with its place, for messages.
struct Place {
    const Json& m_value;
    std::string m_pointer;

    Place at(const std::string& p_key) const {
        const std::string pointer = makePointer(m_pointer, p_key);
        if (!m_value.is_object()) {
            throw JsonError(m_pointer, "an object is expected");
        }
        const auto found = m_value.find(p_key);
        if (found == m_value.end()) {
            throw JsonError(pointer, "it is missing");
        }
        return {*found, pointer};
    }
    Place at(size_t p_index) const { return {m_value[p_index], m_pointer + "/" + std::to_string(p_index)}; }
    bool has(const std::string& p_key) const { return m_value.is_object() && m_value.contains(p_key); }

    size_t count() const {
        if (!m_value.is_array()) {
            throw JsonError(m_pointer, "a list is expected");
        }
        return m_value.size();
    }
    std::string text() const {
        if (!m_value.is_string()) {
            throw JsonError(m_pointer, "a text is expected");
        }
        return m_value.get<std::string>();
    }
    /// NaN for null.
    double number() const {
        if (m_value.is_null()) {
            return std::nan("");
        }
        if (!m_value.is_number()) {
            throw JsonError(m_pointer, "a number is expected");
        }
        return m_value.get<double>();
    }
    uint64_t whole() const {
        // A report that has just been made has signed numbers as well.
        if (!m_value.is_number_unsigned() && !(m_value.is_number_integer() && m_value.get<int64_t>() >= 0)) {
            throw JsonError(m_pointer, "a whole number is expected");
        }
        return m_value.get<uint64_t>();
    }
};

std::string numberText(const Place& p_place) {
    return std::to_string(p_place.whole());
}

void readFacts(PagedRun& p_run, const Place& p_report) {
    const std::string hardware = p_report.at("hardware").text();
    p_run.m_facts = {
        {"source", p_report.at("source").text()},
        {"codec", p_report.at("codec").text()},
        {"encoder", p_report.at("encoder").text()},
        {"decoder", p_report.at("decoder").text()},
        {"hardware", hardware.empty() ? "none" : hardware},
        {"options", p_report.at("encoder_options").text()},
        {"color space", p_report.at("color_space").text()},
        {"picture", numberText(p_report.at("width")) + "x" + numberText(p_report.at("height"))},
        {"quality setting", numberText(p_report.at("quality_setting"))},
        {"frames", numberText(p_report.at("frames"))},
        {"packets", numberText(p_report.at("packets")) + ", empty " + numberText(p_report.at("empty_packets"))},
        {"key frames", numberText(p_report.at("key_frames"))},
        {"size changes", numberText(p_report.at("size_changes"))},
        {"failed", numberText(p_report.at("failed_encodes")) + " encodes, " +
                       numberText(p_report.at("failed_decodes")) + " decodes, " +
                       numberText(p_report.at("unreadable_frames")) + " unreadable"}};
}

void readFigures(PagedRun& p_run, const Place& p_report) {
    const double bytes = p_report.at("bytes").number();
    const double seconds = p_report.at("duration_seconds").number();
    p_run.m_figures = {{"bytes", "", bytes, 0},
                       {"bytes per frame", "", p_report.at("bytes_per_frame").number(), 0},
                       {"bitrate", "kbit/s", seconds > 0 ? bytes * 8 / 1000 / seconds : std::nan(""), 0}};
    double psnr = std::nan("");
    double lowest = psnr;
    double similarity = psnr;
    const Place quality = p_report.at("quality");
    if (!quality.m_value.is_null()) {
        const Place coded = quality.at("coded");
        const bool lossless = coded.at("lossless").m_value == Json(true);
        psnr = lossless ? INFINITY : coded.at("psnr_db").at("weighted").number();
        lowest = lossless ? INFINITY : coded.at("psnr_db").at("minimum").number();
        similarity = coded.at("ssim").at("weighted").number();
    }
    const std::vector<PageFigure> more = {{"PSNR", "dB", psnr, 2},
                                          {"lowest PSNR", "dB", lowest, 2},
                                          {"SSIM", "", similarity, 4},
                                          {"coding", "frames/s", p_report.at("fps").number(), 1},
                                          {"first packet", "ms", p_report.at("first_packet_ms").number(), 1},
                                          {"whole run", "s", p_report.at("wall_seconds").number(), 2}};
    p_run.m_figures.insert(p_run.m_figures.end(), more.begin(), more.end());
}

void readStages(PagedRun& p_run, const Place& p_latency) {
    for (const char* const name : {"read", "encode", "decode", "compare", "write"}) {
        const Place stage = p_latency.at(name);
        p_run.m_stages.push_back(
            {name, {stage.at("p50_ms").number(), stage.at("p95_ms").number(), stage.at("p99_ms").number()}});
    }
}

void readSeries(PagedRun& p_run, const Place& p_series) {
    static constexpr const char* COLUMNS[] = {"frame", "frames",    "time_s",    "width",   "height", "keys",
                                              "bytes", "encode_ms", "decode_ms", "psnr_db", "ssim"};
    const Place columns = p_series.at("columns");
    bool known = columns.count() == std::size(COLUMNS);
    for (size_t i = 0; known && i < std::size(COLUMNS); i++) {
        known = columns.at(i).text() == COLUMNS[i];
    }
    if (!known) {
        throw JsonError(columns.m_pointer, "these are other columns than this program knows");
    }
    const Place rows = p_series.at("rows");
    for (size_t i = 0; i < rows.count(); i++) {
        const Place row = rows.at(i);
        if (row.count() != std::size(COLUMNS)) {
            throw JsonError(row.m_pointer, "a value for each column is expected");
        }
        SeriesPoint point;
        point.m_frame = row.at(0).whole();
        point.m_frames = row.at(1).whole();
        point.m_seconds = row.at(2).number();
        point.m_width = uint32_t(row.at(3).whole());
        point.m_height = uint32_t(row.at(4).whole());
        point.m_keys = row.at(5).whole();
        point.m_bytes = row.at(6).whole();
        point.m_encode = row.at(7).number();
        point.m_decode = row.at(8).number();
        point.m_psnr = row.at(9).number();
        point.m_similarity = row.at(10).number();
        if (point.m_frames == 0) {
            throw JsonError(row.m_pointer, "a point of no frames");
        }
        p_run.m_series.push_back(point);
    }
}

/// Anything but the text of a picture in the page itself could make it fetch something from elsewhere.
std::string pictureOf(const Place& p_place) {
    static const std::string BEGINNING = "data:image/png;base64,";
    const std::string text = p_place.text();
    const bool picture = text.compare(0, BEGINNING.size(), BEGINNING) == 0 &&
                         text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=",
                                                BEGINNING.size()) == std::string::npos;
    if (!text.empty() && !picture) {
        throw JsonError(p_place.m_pointer, "a PNG picture in base64 is expected");
    }
    return text;
}

void readWorst(PagedRun& p_run, const Place& p_frames) {
    for (size_t i = 0; i < p_frames.count(); i++) {
        const Place frame = p_frames.at(i);
        p_run.m_worst.push_back(
            {frame.at("frame").whole(),
             frame.at("psnr_db").number(),
             frame.at("ssim").number(),
             numberText(frame.at("width")) + "x" + numberText(frame.at("height")),
             {pictureOf(frame.at("source")), pictureOf(frame.at("result")), pictureOf(frame.at("difference"))}});
    }
}

void readTexts(std::vector<std::string>& p_texts, const Place& p_list) {
    for (size_t i = 0; i < p_list.count(); i++) {
        p_texts.push_back(p_list.at(i).text());
    }
}

} // namespace

PagedRun readReport(const std::string& p_name, const Json& p_report) {
    const Place report{p_report, ""};
    if (report.at("schema_version").whole() != StreamReport::SCHEMA_VERSION) {
        throw JsonError("/schema_version",
                        "only version " + std::to_string(StreamReport::SCHEMA_VERSION) + " is known to this program");
    }
    PagedRun run;
    run.m_name = p_name;
    readFacts(run, report);
    readFigures(run, report);
    readStages(run, report.at("latency"));
    if (report.has("series")) {
        readSeries(run, report.at("series"));
    }
    if (report.has("worst_frames")) {
        readWorst(run, report.at("worst_frames"));
    }
    if (report.has("negotiation")) {
        readTexts(run.m_negotiation, report.at("negotiation"));
    }
    readTexts(run.m_remarks, report.at("complaints"));
    readTexts(run.m_remarks, report.at("notes"));
    if (report.has("machine")) {
        const Place machine = report.at("machine");
        for (size_t i = 0; i < machine.count(); i++) {
            run.m_machine.emplace_back(machine.at(i).at("name").text(), machine.at(i).at("value").text());
        }
    }
    return run;
}

} // namespace zyr::host
