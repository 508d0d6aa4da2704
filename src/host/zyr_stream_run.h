/// One run of "stream": the pictures of a source through encoder and decoder, stage beside stage.
#pragma once

#include "host/zyr_bitrate_controller.h"
#include "host/zyr_command_line.h"
#include "host/zyr_packet_file.h"
#include "host/zyr_stream_coder.h"
#include "host/zyr_stream_outputs.h"
#include "host/zyr_stream_report.h"
#include "host/zyr_video_source.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zyr::host {

/// A picture in storage of the picture module's, as encoders take it.
class FramePicture : public PictureBuffer {
public:
    void resize(uint32_t p_width, uint32_t p_height) override;
    uint8_t* getPixels() override;
    IUnpackedFrameData& getFrame() { return *m_frame; }

private:
    Ref<IUnpackedFrameData> m_frame;
    IImage* m_image = nullptr; ///< The frame's.
};

/// Reading, encoding, decoding, comparing and writing, each on a worker of its own and in order, so that the results
/// are the same to the byte however the machine divides its time. Made and run on one thread.
class StreamRun {
public:
    /// The arguments must outlive the object. `p_outputs` are open.
    StreamRun(const StreamOptions& p_options, VideoSource& p_source, StreamCoder& p_coder, StreamOutputs& p_outputs,
              const PacketStream& p_stream, StreamReport& p_report);
    ~StreamRun();

    /// Runs until the source ends, the wanted number is reached, or the program is told to end. Completes the outputs
    /// in every case. Throws RunError.
    void run();

private:
    struct Job;

    bool read(Job& p_job);
    void encode(Job& p_job);
    void keepAndDecode(Job& p_job);
    void compare(Job& p_job);
    void write(Job& p_job);
    void store(Job& p_job);
    void noteFrame(Job& p_job, double p_seconds);
    void noteFailure(const Job& p_job, const char* p_what, const std::string& p_reason);
    bool wantsPlanes() const;
    void completePlanes(Job& p_job);

    const StreamOptions& m_options;
    VideoSource& m_source;
    StreamCoder& m_coder;
    StreamOutputs& m_outputs;
    PacketStream m_stream;
    StreamReport& m_report;
    KeyFrameFinder m_keyFrames;
    LikenessMeter m_meter;
    std::unique_ptr<BitrateController> m_bitrate; ///< Null without a target.
    Picture m_unscaled;
    std::vector<std::unique_ptr<Job>> m_jobs;
    uint64_t m_numOfRead = 0;
    uint32_t m_targetWidth = 0;
    uint32_t m_targetHeight = 0;
    uint32_t m_sourceWidth = 0;
    uint32_t m_sourceHeight = 0;
    uint64_t m_failuresInARow = 0;
    int64_t m_firstTime = 0;
    bool m_begun = false;
};

} // namespace zyr::host
