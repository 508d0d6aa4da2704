/// Turns the frames of FFmpeg's decoders into the pictures that encoders take.
#pragma once

#include "host/zyr_ffmpeg_handles.h"
#include "host/zyr_video_source.h"

namespace zyr::host {

/// Converts frames of one source to B,G,R,A. Used by one thread.
class FrameConverter {
public:
    /// Fills the picture, size included. False when there is no way from the frame's format. Planar and semi-planar
    /// 4:2:0, 4:2:2 and 4:4:4 of 8 bits take libyuv's vectorised roads, all else libswscale's.
    bool convert(const AVFrame& p_frame, PictureBuffer& p_picture);

    /// What the last frame was taken for. A frame without a word of its own is full range in the JPEG formats only, and
    /// has the matrix of BT.709 from 720 lines on, of BT.601 below.
    const SourceColors& getColors() const { return m_colors; }

private:
    void findColors(const AVFrame& p_frame);

    ScalerHandle m_scaler;
    SourceColors m_colors;
};

} // namespace zyr::host
