/// Where the pictures of a stream come from: a file that libavformat reads, an image sequence, or a generated picture.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace zyr::host {

/// A failure that ends the run with exit code 1. The text is meant for the user.
class RunError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One picture in memory: B,G,R,A bytes, rows of `m_pitch` bytes, top row first. The buffer is reused from picture to
/// picture.
struct Picture {
    std::vector<uint8_t> m_pixels;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint32_t m_pitch = 0;

    /// Gives the picture a size. Contents are undefined afterwards.
    void resize(uint32_t p_width, uint32_t p_height);
};

/// A source of pictures. Used by one thread.
class VideoSource {
public:
    virtual ~VideoSource() = default;

    /// Reads the next picture. False at the end of the source. Throws RunError when the source cannot be read on.
    virtual bool read(Picture& p_picture) = 0;

    /// Pictures per second as a fraction.
    virtual int getRateNumerator() const = 0;
    virtual int getRateDenominator() const = 0;

    /// Number of pictures if the source tells it, otherwise 0.
    virtual uint64_t getExpectedCount() const = 0;

    /// One line that names the source.
    virtual std::string describe() const = 0;

    /// Pictures that could not be decoded and were left out.
    virtual uint64_t getUnreadableCount() const { return 0; }
};

/// Opens a source. `p_input` is a path, an image sequence pattern ("frames/%04d.png") or
/// "generate:WIDTHxHEIGHT[@RATE][:COUNT]". Throws RunError with the reason.
std::unique_ptr<VideoSource> openVideoSource(const std::string& p_input);

/// Parses "640x360". False when the text has another form or a size is 0 or above 16384.
bool parseSize(const std::string& p_text, uint32_t& p_width, uint32_t& p_height);

} // namespace zyr::host
