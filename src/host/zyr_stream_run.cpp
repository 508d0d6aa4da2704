#include "host/zyr_stream_run.h"

#include "host/zyr_interruption.h"
#include "host/zyr_stage_pipeline.h"
#include "host/zyr_stream_progress.h"
#include "zyr_common/colour/zyr_picture_calls.h"
#include "zyr_common/platform/zyr_time.h"

#include <libyuv.h>

#include <atomic>
#include <cinttypes>
#include <cmath>
#include <cstdio>

namespace zyr::host {

namespace {

/// So many failed frames in a row mean that the stream does not work at all.
constexpr uint64_t MAX_FAILURES_IN_A_ROW = 30;

/// Pictures under way. Each takes the memory of nearly three of the source's; more of them than this gain no time,
/// since encoding takes longest by far: one is read, one encoded, and one goes through the rest.
constexpr size_t NUM_OF_JOBS = 3;

double toMilliseconds(uint64_t p_nanoseconds) {
    return double(p_nanoseconds) / 1e6;
}

/// Runs a stage's work and gives how long it took, in nanoseconds.
template <typename Work> uint64_t measure(Work p_work) {
    const uint64_t start = zyr_getCurrentTime();
    p_work();
    return zyr_getCurrentTime() - start;
}

} // namespace

/// A picture on its way. It is with one stage at a time.
struct StreamRun::Job {
    uint64_t m_number = 0;
    FramePicture m_source;
    PlanePicture m_sourcePlanes;
    PlanePicture m_resultPlanes;
    EncodedFrame m_encoded;
    DecodedFrame m_decoded;
    Likeness m_coded{};
    Likeness m_rgb{};
    size_t m_bytes = 0;
    unsigned m_quality = 0;
    bool m_key = false;
    bool m_compared = false;
    uint64_t m_readTime = 0;
    uint64_t m_encodeTime = 0;
    uint64_t m_decodeTime = 0;
    uint64_t m_compareTime = 0;
    uint64_t m_storeTime = 0;

    const IImage* getResult() const {
        return m_decoded.m_picture ? m_decoded.m_picture->getSystemMemory(0, 1) : nullptr;
    }
};

void FramePicture::resize(uint32_t p_width, uint32_t p_height) {
    if (p_width != m_width || p_height != m_height) {
        m_frame = createSourceFrame(p_width, p_height, m_image);
        m_width = p_width;
        m_height = p_height;
        m_pitch = m_image->getPitch();
    }
}

uint8_t* FramePicture::getPixels() {
    return static_cast<uint8_t*>(m_image->getData());
}

StreamRun::StreamRun(const StreamOptions& p_options, VideoSource& p_source, StreamCoder& p_coder,
                     StreamOutputs& p_outputs, const PacketStream& p_stream, StreamReport& p_report)
    : m_options(p_options),
      m_source(p_source),
      m_coder(p_coder),
      m_outputs(p_outputs),
      m_stream(p_stream),
      m_report(p_report),
      m_keyFrames(p_report.m_codec),
      m_targetWidth(p_options.m_width),
      m_targetHeight(p_options.m_height) {
    if (p_options.m_bitrate > 0) {
        m_bitrate = std::make_unique<BitrateController>(p_coder, p_options.m_bitrate, p_stream.m_rate);
    }
    for (size_t i = 0; i < NUM_OF_JOBS; i++) {
        m_jobs.push_back(std::make_unique<Job>());
    }
}

StreamRun::~StreamRun() = default;

bool StreamRun::wantsPlanes() const {
    return m_options.m_metrics || m_outputs.m_pictures || m_outputs.m_sourcePictures;
}

bool StreamRun::read(Job& p_job) {
    if (getInterruption() != 0 || (m_options.m_maxFrames != 0 && m_numOfRead == m_options.m_maxFrames)) {
        return false;
    }
    for (const ResizeStep& step : m_options.m_resizes) {
        if (step.m_frame == m_numOfRead) {
            m_targetWidth = step.m_width;
            m_targetHeight = step.m_height;
        }
    }
    const auto isScaled = [this] {
        return m_targetWidth != 0 && (m_targetWidth != m_sourceWidth || m_targetHeight != m_sourceHeight);
    };
    const bool scaled = isScaled();
    bool there = false;
    p_job.m_readTime = measure([&] {
        // The picture goes straight to where the encoder takes it, unless it has to be scaled.
        PictureBuffer& target = scaled ? static_cast<PictureBuffer&>(m_unscaled) : p_job.m_source;
        there = m_source.read(target);
        if (!there) {
            return;
        }
        m_sourceWidth = target.m_width;
        m_sourceHeight = target.m_height;
        p_job.m_source.m_timestamp = target.m_timestamp;
        p_job.m_source.m_duration = target.m_duration;
        if (!scaled && isScaled()) {
            m_unscaled.resize(target.m_width, target.m_height);
            libyuv::ARGBCopy(target.getPixels(), int(target.m_pitch), m_unscaled.getPixels(), int(m_unscaled.m_pitch),
                             int(target.m_width), int(target.m_height));
        }
        if (scaled || isScaled()) {
            p_job.m_source.resize(m_targetWidth, m_targetHeight);
            libyuv::ARGBScale(m_unscaled.getPixels(), int(m_unscaled.m_pitch), int(m_unscaled.m_width),
                              int(m_unscaled.m_height), p_job.m_source.getPixels(), int(p_job.m_source.m_pitch),
                              int(m_targetWidth), int(m_targetHeight), libyuv::kFilterBox);
        }
    });
    p_job.m_number = m_numOfRead;
    m_numOfRead += there;
    return there;
}

void StreamRun::encode(Job& p_job) {
    p_job.m_quality = m_coder.getQuality();
    p_job.m_encodeTime = measure([&] {
        p_job.m_encoded = m_coder.encode(p_job.m_source.getFrame(), wantsPlanes() ? &p_job.m_sourcePlanes : nullptr);
    });
    p_job.m_bytes = p_job.m_encoded.m_packet ? p_job.m_encoded.m_packet->getPackedData()->getSize() : 0;
    if (m_bitrate) {
        const Fraction& tick = m_stream.m_timeBase;
        m_bitrate->add(p_job.m_bytes, double(p_job.m_source.m_duration) * tick.m_numerator / tick.m_denominator);
    }
}

/// The packet goes out before it is decoded: who reads it from a pipe gets it as early as can be.
void StreamRun::keepAndDecode(Job& p_job) {
    p_job.m_decoded = DecodedFrame();
    p_job.m_decodeTime = p_job.m_storeTime = 0;
    if (!p_job.m_encoded.m_packet) {
        return;
    }
    p_job.m_storeTime = measure([&] { store(p_job); });
    p_job.m_decodeTime = measure([&] {
        p_job.m_decoded = m_coder.decode(*p_job.m_encoded.m_packet, wantsPlanes() ? &p_job.m_resultPlanes : nullptr);
    });
}

void StreamRun::store(Job& p_job) {
    const Array<uint8_t>* bytes = p_job.m_encoded.m_packet->getPackedData();
    p_job.m_key = false;
    if (bytes->getSize() == 0) {
        return;
    }
    p_job.m_key = m_keyFrames.isKeyFrame(bytes->getData(), bytes->getSize());
    const uint32_t width = p_job.m_encoded.m_packet->getWidth();
    const uint32_t height = p_job.m_encoded.m_packet->getHeight();
    if (m_outputs.m_packets) {
        if (!m_begun) {
            m_stream.m_width = width;
            m_stream.m_height = height;
            m_outputs.m_packets->begin(m_stream);
        }
        m_outputs.m_packets->write(CodedPacket{bytes->getData(), bytes->getSize(), p_job.m_source.m_timestamp,
                                               p_job.m_source.m_duration, width, height, p_job.m_key});
    }
    if (!m_begun) {
        m_report.m_firstPacketMilliseconds = toMilliseconds(zyr_getCurrentTime() - m_options.m_startTime);
    }
    m_begun = true;
}

void StreamRun::compare(Job& p_job) {
    p_job.m_compared = false;
    p_job.m_compareTime = 0;
    const IImage* image = p_job.getResult();
    if (image == nullptr) {
        return;
    }
    p_job.m_compareTime = measure([&] {
        if (wantsPlanes()) {
            completePlanes(p_job);
        }
        if (!m_options.m_metrics || image->getWidth() != p_job.m_source.m_width ||
            image->getHeight() != p_job.m_source.m_height) {
            return;
        }
        p_job.m_coded = m_meter.comparePlanes(p_job.m_sourcePlanes, p_job.m_resultPlanes);
        p_job.m_rgb = m_meter.comparePixels(p_job.m_source.getPixels(), p_job.m_source.m_pitch,
                                            static_cast<const uint8_t*>(image->getData()), image->getPitch(),
                                            image->getWidth(), image->getHeight());
        p_job.m_compared = true;
    });
}

/// Codecs that have a conversion of their own (in hardware) did not show their planes: these are made from the pixels.
void StreamRun::completePlanes(Job& p_job) {
    const ColorSpaceEnum agreed = firstOf(m_stream.m_info->colorSpaces);
    // Codecs of RGB have no planes of their own either.
    const ColorSpaceEnum space = agreed < ZYR_COLOR_SPACE_BT_601 ? ZYR_COLOR_SPACE_BT_601_FR : agreed;
    const auto fill = [&](PlanePicture& p_planes, const void* p_pixels, uint32_t p_pitch, uint32_t p_width,
                          uint32_t p_height, bool_t p_blueFirst) {
        if (p_planes.getWidth() == p_width && p_planes.getHeight() == p_height) {
            return;
        }
        p_planes.resize(p_width, p_height);
        zyr_picture_convertRGBToYUV((p_width + 1) & ~1u, (p_height + 1) & ~1u, p_pixels, 4, p_pitch, p_blueFirst,
                                    p_planes.getPlane(0), p_planes.getPlane(1), p_planes.getPlane(2), 1, 1, 1,
                                    p_planes.getPitch(0), p_planes.getPitch(1), p_planes.getPitch(2),
                                    ZYR_PLANES_MODEL_I420, space);
    };
    const IImage* image = p_job.getResult();
    fill(p_job.m_sourcePlanes, p_job.m_source.getPixels(), p_job.m_source.m_pitch, p_job.m_source.m_width,
         p_job.m_source.m_height, 1);
    fill(p_job.m_resultPlanes, image->getData(), image->getPitch(), image->getWidth(), image->getHeight(), 0);
}

void StreamRun::noteFailure(const Job& p_job, const char* p_what, const std::string& p_reason) {
    const std::string reason = p_reason.empty() ? "" : ": " + p_reason;
    if (m_failuresInARow++ == 0) {
        fprintf(stderr, "zyr-host: frame %" PRIu64 " could not be %s%s\n", p_job.m_number, p_what, reason.c_str());
    }
    if (m_failuresInARow >= MAX_FAILURES_IN_A_ROW) {
        throw RunError("too many frames in a row could not be " + std::string(p_what) + reason);
    }
}

/// For the report that tells of each frame.
void StreamRun::noteFrame(Job& p_job, double p_seconds) {
    FramePicture& source = p_job.m_source;
    SeriesPoint point;
    point.m_frame = p_job.m_number;
    point.m_seconds = p_seconds;
    point.m_width = source.m_width;
    point.m_height = source.m_height;
    point.m_keys = p_job.m_encoded.m_packet && p_job.m_key;
    point.m_bytes = p_job.m_bytes;
    point.m_encode = toMilliseconds(p_job.m_encodeTime);
    point.m_decode = toMilliseconds(p_job.m_decodeTime);
    point.m_psnr = p_job.m_compared ? p_job.m_coded.getPsnr() : std::nan("");
    point.m_similarity = p_job.m_compared ? p_job.m_coded.m_allSsim : std::nan("");
    m_report.m_series.add(point);
    if (p_job.m_compared) {
        const IImage* image = p_job.getResult();
        m_report.m_worst.add(p_job.m_number, point.m_psnr, point.m_similarity,
                             FramePixels{source.getPixels(), source.m_pitch},
                             FramePixels{static_cast<const uint8_t*>(image->getData()), image->getPitch()},
                             source.m_width, source.m_height);
    }
}

void StreamRun::write(Job& p_job) {
    StreamReport& report = m_report;
    const FramePicture& source = p_job.m_source;
    if (source.m_width != report.m_width || source.m_height != report.m_height) {
        report.m_resizes += report.m_width != 0;
        report.m_width = source.m_width;
        report.m_height = source.m_height;
    }
    const double tick = double(m_stream.m_timeBase.m_numerator) / m_stream.m_timeBase.m_denominator;
    if (report.m_frames == 0) {
        m_firstTime = source.m_timestamp;
    }
    report.m_durationSeconds = double(source.m_timestamp + source.m_duration - m_firstTime) * tick;
    report.m_frames++;
    report.m_read.add(p_job.m_readTime);
    report.m_encode.add(p_job.m_encodeTime);
    noteFrame(p_job, double(source.m_timestamp - m_firstTime) * tick);
    if (!p_job.m_encoded.m_packet) {
        report.m_failedEncodes++;
        noteFailure(p_job, "encoded", p_job.m_encoded.m_reason);
        return;
    }
    report.m_packets++;
    report.m_bytes += p_job.m_bytes;
    report.m_emptyPackets += p_job.m_bytes == 0;
    report.m_keyFrames += p_job.m_key;
    report.m_decode.add(p_job.m_decodeTime);
    const IImage* image = p_job.getResult();
    const uint64_t time = measure([&] {
        if (image != nullptr && m_outputs.m_pictures) {
            m_outputs.m_pictures->write(ShownPicture{&p_job.m_resultPlanes,
                                                     static_cast<const uint8_t*>(image->getData()), image->getPitch(),
                                                     image->getWidth(), image->getHeight(), false},
                                        p_job.m_number);
        }
        if (image != nullptr && m_outputs.m_sourcePictures) {
            m_outputs.m_sourcePictures->write(ShownPicture{&p_job.m_sourcePlanes, p_job.m_source.getPixels(),
                                                           source.m_pitch, source.m_width, source.m_height, true},
                                              p_job.m_number);
        }
        if (m_outputs.m_framesLog) {
            const bool compared = p_job.m_compared;
            m_outputs.m_framesLog->write(FrameRecord{
                p_job.m_number, double(source.m_timestamp) * tick, p_job.m_key, p_job.m_bytes, p_job.m_quality,
                toMilliseconds(p_job.m_readTime), toMilliseconds(p_job.m_encodeTime),
                toMilliseconds(p_job.m_decodeTime), toMilliseconds(p_job.m_compareTime),
                compared ? p_job.m_coded.getPsnr() : std::nan(""), compared ? p_job.m_coded.m_allSsim : std::nan("")});
        }
    });
    report.m_write.add(p_job.m_storeTime + time);
    if (image == nullptr) {
        report.m_failedDecodes++;
        noteFailure(p_job, "decoded", p_job.m_decoded.m_reason);
        return;
    }
    report.m_pictures++;
    m_failuresInARow = 0;
    if (p_job.m_compared) {
        report.m_compare.add(p_job.m_compareTime);
        report.m_coded.add(p_job.m_coded, p_job.m_number);
        report.m_rgb.add(p_job.m_rgb, p_job.m_number);
    }
    // The storage goes back where it was taken while it is still in the cache.
    p_job.m_decoded = DecodedFrame();
    p_job.m_encoded = EncodedFrame();
}

void StreamRun::run() {
    std::atomic<uint64_t> done{0};
    {
        StreamProgress progress(m_options.m_progress,
                                m_options.m_maxFrames != 0 ? m_options.m_maxFrames : m_source.getExpectedCount());
        StagePipeline pipeline(m_jobs.size());
        const auto stage = [&](void (StreamRun::*p_work)(Job&)) {
            pipeline.addStage([this, p_work](size_t p_slot) {
                (this->*p_work)(*m_jobs[p_slot]);
                return true;
            });
        };
        pipeline.addStage([this](size_t p_slot) { return read(*m_jobs[p_slot]); });
        stage(&StreamRun::encode);
        stage(&StreamRun::keepAndDecode);
        stage(&StreamRun::compare);
        pipeline.addStage([this, &done](size_t p_slot) {
            write(*m_jobs[p_slot]);
            done++;
            return true;
        });
        m_report.m_wallSeconds = double(measure([&] { pipeline.run([&] { progress.show(done); }); })) / 1e9;
    }
    m_outputs.close();
    if (m_bitrate) {
        m_report.m_bitrate = m_bitrate->getReport();
    }
    m_report.m_interrupted = getInterruption() != 0;
    m_report.m_unreadable = m_source.getUnreadableCount();
    m_report.m_sourceColors = m_source.getColors();
    m_report.m_complaints = m_source.getComplaints();
    m_report.m_files = m_outputs.getPaths();
    for (const std::string& note : m_outputs.getNotes()) {
        m_report.m_notes.push_back(note);
    }
}

} // namespace zyr::host
