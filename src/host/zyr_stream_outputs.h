/// Everything that a stream run writes while it goes.
#pragma once

#include "host/zyr_command_line.h"
#include "host/zyr_frame_log.h"
#include "host/zyr_packet_file.h"
#include "host/zyr_picture_file.h"

#include <memory>
#include <string>
#include <vector>

namespace zyr::host {

/// Throws UsageError when an output is the input or another output, when two of them want the standard output, or when
/// packets cannot go where they are to be sent.
/// Devices such as /dev/null may be named more than once.
void refuseSharedFiles(const StreamOptions& p_options);

/// True when an option has claimed the standard output for its data.
bool isStandardOutputTaken(const StreamOptions& p_options);

/// The files of a run, all of them created at once so that none is found unwritable later.
struct StreamOutputs {
    /// Throws RunError. `p_fullRange` is what the coded planes' numbers mean.
    StreamOutputs(const StreamOptions& p_options, const std::string& p_codec, Fraction p_rate, bool p_fullRange);

    /// Completes all files but the report and its page. Throws RunError for the first one that fails, after trying all.
    void close();

    /// The files written, in order, and what they could not say.
    std::vector<std::string> getPaths() const;
    std::vector<std::string> getNotes() const;

    std::unique_ptr<PacketFile> m_packets; ///< Null where not asked for, as the others.
    std::unique_ptr<PictureFile> m_pictures;
    std::unique_ptr<PictureFile> m_sourcePictures;
    std::unique_ptr<FrameLog> m_framesLog;
    std::unique_ptr<OutputFile> m_report;
    std::unique_ptr<OutputFile> m_page;

private:
    const StreamOptions& m_options;
};

} // namespace zyr::host
