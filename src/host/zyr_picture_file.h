/// Writes pictures as Y4M or as a run of PNG files.
#pragma once

#include "host/zyr_plane_picture.h"
#include "host/zyr_video_source.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zyr::host {

/// A picture in both forms in which a codec's road has it.
struct ShownPicture {
    const PlanePicture* m_planes; ///< As coded.
    const uint8_t* m_pixels;      ///< Bytes of four, with the pitch below.
    uint32_t m_pitch;
    uint32_t m_width;
    uint32_t m_height;
    bool m_blueFirst; ///< B,G,R,A in place of R,G,B,A.
};

/// A sink of pictures. Used by one thread.
class PictureFile {
public:
    virtual ~PictureFile() = default;

    /// Appends picture number `p_index` (from 0). Throws RunError.
    virtual void write(const ShownPicture& p_picture, uint64_t p_index) = 0;

    /// Completes the output. Throws RunError.
    virtual void close() = 0;

    /// The files written so far, in order; a run of files by its pattern.
    virtual std::vector<std::string> getPaths() const = 0;
};

/// Opens a sink by its path: "name.y4m" for one file of the planes as coded (a change of size goes on in "name-2.y4m"
/// and so on, since the format knows one size), "-" for Y4M on the standard output, or a pattern such as "dir/%04d.png"
/// for a file of RGB a picture. A Y4M file is created at once; a pattern's directory must be there and writable.
/// `p_fullRange` tells how the planes' numbers are meant. Throws RunError.
std::unique_ptr<PictureFile> openPictureFile(const std::string& p_path, Fraction p_rate, bool p_fullRange);

} // namespace zyr::host
