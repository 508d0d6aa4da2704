/// One row of data for each frame of a run.
#pragma once

#include "host/zyr_output_file.h"

#include <cstdint>
#include <string>

namespace zyr::host {

/// What is known of a frame. Values that there are none of are NaN.
struct FrameRecord {
    uint64_t m_number;
    double m_seconds; ///< When it is shown.
    bool m_key;
    uint64_t m_bytes;
    unsigned m_quality;
    double m_readMilliseconds;
    double m_encodeMilliseconds;
    double m_decodeMilliseconds;
    double m_compareMilliseconds;
    double m_psnr; ///< Of the coded planes, weighted.
    double m_ssim;
};

/// Writes CSV with a line of names, or JSON lines for a path that ends in ".jsonl", ".ndjson" or ".json". Values that
/// there are none of are empty in CSV and null in JSON, and so is an infinite PSNR in JSON; CSV has "inf" there. Used
/// by one thread.
class FrameLog {
public:
    /// Creates the file. Throws RunError.
    explicit FrameLog(const std::string& p_path);

    /// Appends a row. Throws RunError.
    void write(const FrameRecord& p_record);

    /// Throws RunError.
    void close() { m_output.close(); }

private:
    OutputFile m_output;
    bool m_json;
};

} // namespace zyr::host
