/// Packets in one of libavformat's containers, on their way to a file or into the network.
#pragma once

#include "host/zyr_ffmpeg_handles.h"
#include "host/zyr_packet_file.h"

#include <memory>
#include <string>

namespace zyr::host {

/// Where a container's bytes go. Used by one thread.
class ContainerTarget {
public:
    virtual ~ContainerTarget() = default;

    /// How messages name it.
    virtual const std::string& getName() const = 0;
    /// What messages call it: "file" or "stream".
    virtual const char* getKind() const = 0;
    virtual bool canSeek() const = 0;

    /// Gives the format what it writes to. Once. Throws RunError.
    virtual void attach(AVFormatContext& p_format) = 0;

    /// The container's head is about to be written.
    virtual void prepareHead() = 0;

    /// Called before each packet, `p_seconds` of stream time after the first one.
    virtual void awaitPacket(double p_seconds) = 0;

    /// The container's head has been written. Throws RunError.
    virtual void noteBegun(AVFormatContext& p_format) = 0;

    /// True after an error that ended it.
    virtual bool hasFailed() const = 0;

    /// Throws the RunError of an operation on the format that gave `p_result`, or else failed. Nothing for one that
    /// went well.
    virtual void check(int p_result) = 0;

    /// The container's end is about to be written.
    virtual void prepareEnd() = 0;

    /// Takes back what attach() gave.
    virtual void detach(AVFormatContext& p_format) = 0;

    /// Completes the target after detach(). Throws RunError.
    virtual void complete() = 0;
};

class ContainerFile : public PacketFile {
public:
    /// Throws RunError when the target cannot be had.
    ContainerFile(std::unique_ptr<ContainerTarget> p_target, const AVOutputFormat* p_format);
    ~ContainerFile() override;
    ContainerFile(const ContainerFile&) = delete;
    ContainerFile& operator=(const ContainerFile&) = delete;

    void begin(const PacketStream& p_stream) override;
    void write(const CodedPacket& p_packet) override;
    void close() override { finish(); }

private:
    void tellSize(const PacketStream& p_stream, AVStream& p_target);
    void tellColors(const PacketStream& p_stream, AVCodecParameters& p_target);
    void releaseHeld(const CodedPacket* p_next);
    void writeOut();
    void finish();
    bool isFormat(const char* p_name) const;

    std::unique_ptr<ContainerTarget> m_target;
    AVFormatContext* m_format = nullptr;
    PacketHandle m_packet;
    AVRational m_timeBase{1, 25};
    int64_t m_firstTime = AV_NOPTS_VALUE; ///< In m_timeBase.
    int64_t m_lastTime = AV_NOPTS_VALUE;  ///< In the container's own.
    int64_t m_step = 0;                   ///< From picture to picture at the frame rate, in m_timeBase.
    bool m_headerWritten = false;
    bool m_timesMoved = false;
};

/// The codec of a negotiated name; AV_CODEC_ID_NONE for one that FFmpeg does not know.
AVCodecID codecFromName(const std::string& p_codec);

/// True when a container of the format can hold the codec.
bool canHold(const AVOutputFormat& p_format, const std::string& p_codec);

} // namespace zyr::host
