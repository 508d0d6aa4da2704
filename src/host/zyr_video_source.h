/// Where the pictures of a stream come from: a file that libavformat reads, an image sequence, a stored stream of this
/// program, or a generated picture.
#pragma once

#include "host/zyr_run_error.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zyr::host {

/// One picture in memory: B,G,R,A bytes, rows of `m_pitch` bytes, top row first. The storage is the derived class's.
class PictureBuffer {
public:
    virtual ~PictureBuffer() = default;

    /// Gives the picture a size. Contents are undefined afterwards.
    virtual void resize(uint32_t p_width, uint32_t p_height) = 0;
    virtual uint8_t* getPixels() = 0;

    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint32_t m_pitch = 0;
    int64_t m_timestamp = 0; ///< When it is shown, in the time base of its source.
    int64_t m_duration = 0;  ///< How long, in the same unit; 0 when the source does not tell.
};

/// A picture in memory of its own, reused from picture to picture.
class Picture : public PictureBuffer {
public:
    void resize(uint32_t p_width, uint32_t p_height) override;
    uint8_t* getPixels() override { return m_pixels.data(); }

    std::vector<uint8_t> m_pixels;
};

/// A fraction: a rate in pictures per second, or the unit of time stamps in seconds.
struct Fraction {
    int m_numerator = 1;
    int m_denominator = 1;
};

/// How the numbers of a source's pictures were read.
struct SourceColors {
    std::string m_matrix = "rgb"; ///< "rgb", "bt601", "bt709" or "bt2020".
    bool m_fullRange = true;
    bool m_assumed = false; ///< The source does not say; it was guessed by the picture's height.
};

/// A source of pictures. Used by one thread.
class VideoSource {
public:
    virtual ~VideoSource() = default;

    /// Reads the next picture. False at the end of the source, or when the program is told to end. Throws RunError when
    /// the source cannot be read at all.
    virtual bool read(PictureBuffer& p_picture) = 0;

    /// Pictures per second, on the average where they vary.
    virtual Fraction getRate() const = 0;

    /// False for a source whose pictures come at varying distances.
    virtual bool hasConstantRate() const { return true; }

    /// The unit of the pictures' time stamps.
    virtual Fraction getTimeBase() const { return Fraction{getRate().m_denominator, getRate().m_numerator}; }

    /// Number of pictures if the source tells it, otherwise 0.
    virtual uint64_t getExpectedCount() const = 0;

    /// One line that names the source.
    virtual std::string describe() const = 0;

    /// Colours of the pictures read so far.
    virtual SourceColors getColors() const { return {}; }

    /// Packets and pictures that could not be decoded and were left out.
    virtual uint64_t getUnreadableCount() const { return 0; }

    /// What was wrong with the source once read() has given false: damaged or missing parts, with counts. Empty for a
    /// source that is whole.
    virtual std::vector<std::string> getComplaints() const { return {}; }
};

class InputFile;

/// Opens a source. `p_input` is a path, "-" for the standard input, an image sequence pattern ("frames/%04d.png") or
/// "generate:WIDTHxHEIGHT[@RATE][:COUNT]". Null for a stored stream, which cannot be read without a decoder: `p_stored`
/// is the file then. Throws RunError with the reason.
std::unique_ptr<VideoSource> openVideoSource(const std::string& p_input, std::unique_ptr<InputFile>& p_stored);

/// The same where stored streams are not expected.
std::unique_ptr<VideoSource> openVideoSource(const std::string& p_input);

/// Opens a video file or, with a null `p_file`, the image sequence or other source that libavformat knows by its path.
std::unique_ptr<VideoSource> openVideoFile(const std::string& p_path, std::unique_ptr<InputFile> p_file);

/// Parses "640x360". False when the text has another form or a size is 0 or above 16384.
bool parseSize(const std::string& p_text, uint32_t& p_width, uint32_t& p_height);

} // namespace zyr::host
