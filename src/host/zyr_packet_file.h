/// Writes the packets of a stream into a file that players open.
#pragma once

#include "host/zyr_video_source.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zyr {
class FrameCodecInfo;
}

namespace zyr::host {

/// What a packet file tells about its stream.
struct PacketStream {
    const FrameCodecInfo* m_info = nullptr; ///< As the decoder needs it.
    uint32_t m_width = 0;                   ///< True size; codecs round it up to even.
    uint32_t m_height = 0;
    Fraction m_rate;
    Fraction m_timeBase; ///< Of the packets' times.
    bool m_constantRate = true;
    bool m_fullRange = false;
};

struct CodedPacket {
    const uint8_t* m_data;
    size_t m_size;
    int64_t m_timestamp;
    int64_t m_duration;
    uint32_t m_width;
    uint32_t m_height;
    bool m_key;
};

/// A packet file. The file is complete and playable once close() returned, and also when the object is destroyed after
/// an interruption. Used by one thread.
class PacketFile {
public:
    virtual ~PacketFile() = default;

    /// Writes the head of the file. Once, before the first packet. Throws RunError.
    virtual void begin(const PacketStream& p_stream) = 0;

    /// Appends a packet. Throws RunError, for instance when the disk is full.
    virtual void write(const CodedPacket& p_packet) = 0;

    /// Writes what the format keeps for the end. Throws RunError.
    virtual void close() = 0;

    /// What the format could not say about the stream.
    const std::vector<std::string>& getNotes() const { return m_notes; }

protected:
    std::vector<std::string> m_notes;
};

/// Creates the file; nothing but its name is written before begin(). `p_path` "-" is the standard output. `p_format` is
/// a libavformat name ("ivf", "webm", "mpeg") or "zyrs" for a stored stream; empty to go by the extension of the path.
/// A codec that no container knows is stored. `p_codec` is the negotiated codec name. Throws RunError.
std::unique_ptr<PacketFile> openPacketFile(const std::string& p_path, const std::string& p_format,
                                           const std::string& p_codec);

/// The format that a path's extension stands for; empty when there is none.
std::string packetFormatFromPath(const std::string& p_path);

/// The format for an output without an extension: "ivf", "mpeg", "h264", or "zyrs" for a codec that none of them holds.
std::string defaultPacketFormat(const std::string& p_codec);

/// Tells key frames by looking into the packets. Used by one thread.
class KeyFrameFinder {
public:
    explicit KeyFrameFinder(const std::string& p_codec);
    ~KeyFrameFinder();
    KeyFrameFinder(const KeyFrameFinder&) = delete;
    KeyFrameFinder& operator=(const KeyFrameFinder&) = delete;

    /// For each packet of the stream in order. Of a codec that is neither "blocks" nor known to FFmpeg only the
    /// first counts as one.
    bool isKeyFrame(const uint8_t* p_data, size_t p_size);

private:
    struct Parser;
    std::unique_ptr<Parser> m_parser;
    bool m_isBlocks;
    bool m_first = true;
};

} // namespace zyr::host
