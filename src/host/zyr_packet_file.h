/// Writes the packets of a stream into a file that players open.
#pragma once

#include "host/zyr_ffmpeg_handles.h"
#include "host/zyr_video_source.h"

#include <cstdint>
#include <string>

namespace zyr::host {

/// A packet file, through libavformat. Used by one thread. The file is complete and playable once close() returned, and
/// also when the object is destroyed after an interruption.
class PacketFile {
public:
    PacketFile() = default;
    PacketFile(const PacketFile&) = delete;
    PacketFile& operator=(const PacketFile&) = delete;
    ~PacketFile();

    /// Creates the file. `p_format` is a libavformat name ("ivf", "webm", "mpeg"), or empty to go by the extension of
    /// the path. `p_codec` is the negotiated codec name. Throws RunError.
    void open(const std::string& p_path, const std::string& p_format, const std::string& p_codec, uint32_t p_width,
              uint32_t p_height, int p_rateNumerator, int p_rateDenominator);

    bool isOpen() const { return m_format != nullptr; }

    /// Appends the packet of picture number `p_index` (from 0). Throws RunError, for instance when the disk is full.
    void write(const uint8_t* p_data, size_t p_size, uint64_t p_index);

    /// Writes what the format keeps for the end. Throws RunError.
    void close();

private:
    bool isKeyFrame(const uint8_t* p_data, size_t p_size);
    [[noreturn]] void fail(int p_error);

    std::string m_path;
    AVFormatContext* m_format = nullptr;
    CodecHandle m_codec;
    AVCodecParserContext* m_parser = nullptr;
    PacketHandle m_packet;
    AVRational m_frameDuration{1, 25};
    bool m_headerWritten = false;
};

/// The format that a path's extension stands for; empty when there is none.
std::string packetFormatFromPath(const std::string& p_path);

/// The extension of a file that players open for a codec: "ivf", "mpg" or "h264".
std::string defaultPacketExtension(const std::string& p_codec);

} // namespace zyr::host
