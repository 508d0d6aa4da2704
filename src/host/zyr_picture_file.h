/// Writes decoded pictures as Y4M or as a run of PNG files.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace zyr::host {

/// A sink of R,G,B,A pictures. Used by one thread.
class PictureFile {
public:
    virtual ~PictureFile() = default;

    /// Appends picture number `p_index` (from 0). Throws RunError.
    virtual void write(const uint8_t* p_pixels, uint32_t p_pitch, uint32_t p_width, uint32_t p_height,
                       uint64_t p_index) = 0;

    /// Completes the output. Throws RunError.
    virtual void close() = 0;

    /// The files written so far, in order.
    virtual std::vector<std::string> getPaths() const = 0;
};

/// Opens a sink by its path: "name.y4m" for one file (a change of size goes on in "name-2.y4m" and so on, since the
/// format knows one size), or a pattern such as "dir/%04d.png" for a file a picture. Throws RunError.
std::unique_ptr<PictureFile> openPictureFile(const std::string& p_path, int p_rateNumerator, int p_rateDenominator);

} // namespace zyr::host
