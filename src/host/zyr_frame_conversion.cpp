#include "host/zyr_frame_conversion.h"

#include <libyuv.h>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace zyr::host {

namespace {

constexpr int LINES_OF_HIGH_DEFINITION = 720;

const libyuv::YuvConstants* constantsOf(const SourceColors& p_colors) {
    if (p_colors.m_matrix == "bt709") {
        return p_colors.m_fullRange ? &libyuv::kYuvF709Constants : &libyuv::kYuvH709Constants;
    }
    if (p_colors.m_matrix == "bt2020") {
        return p_colors.m_fullRange ? &libyuv::kYuvV2020Constants : &libyuv::kYuv2020Constants;
    }
    return p_colors.m_fullRange ? &libyuv::kYuvJPEGConstants : &libyuv::kYuvI601Constants;
}

int coefficientsOf(const SourceColors& p_colors) {
    if (p_colors.m_matrix == "bt709") {
        return SWS_CS_ITU709;
    }
    return p_colors.m_matrix == "bt2020" ? SWS_CS_BT2020 : SWS_CS_ITU601;
}

bool isJpegFormat(int p_format) {
    return p_format == AV_PIX_FMT_YUVJ420P || p_format == AV_PIX_FMT_YUVJ422P || p_format == AV_PIX_FMT_YUVJ444P ||
           p_format == AV_PIX_FMT_YUVJ440P || p_format == AV_PIX_FMT_YUVJ411P;
}

} // namespace

void FrameConverter::findColors(const AVFrame& p_frame) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(AVPixelFormat(p_frame.format));
    if (p_frame.colorspace == AVCOL_SPC_RGB ||
        (format != nullptr && (format->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) != 0)) {
        m_colors = SourceColors{};
        return;
    }
    m_colors.m_assumed = false;
    switch (p_frame.colorspace) {
    case AVCOL_SPC_BT709:
        m_colors.m_matrix = "bt709";
        break;
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
    case AVCOL_SPC_FCC:
        m_colors.m_matrix = "bt601";
        break;
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        m_colors.m_matrix = "bt2020";
        break;
    default:
        m_colors.m_matrix = p_frame.height >= LINES_OF_HIGH_DEFINITION ? "bt709" : "bt601";
        m_colors.m_assumed = true;
    }
    m_colors.m_fullRange = p_frame.color_range == AVCOL_RANGE_UNSPECIFIED ? isJpegFormat(p_frame.format)
                                                                          : p_frame.color_range == AVCOL_RANGE_JPEG;
}

bool FrameConverter::convert(const AVFrame& p_frame, PictureBuffer& p_picture) {
    findColors(p_frame);
    p_picture.resize(uint32_t(p_frame.width), uint32_t(p_frame.height));
    uint8_t* target = p_picture.getPixels();
    const int pitch = int(p_picture.m_pitch);
    const libyuv::YuvConstants* constants = constantsOf(m_colors);
    const uint8_t* const* data = p_frame.data;
    const int* lines = p_frame.linesize;
    // libyuv names pixels as little-endian words: its ARGB is B,G,R,A in memory.
    switch (p_frame.format) {
    case AV_PIX_FMT_YUV420P:
    case AV_PIX_FMT_YUVJ420P:
        return libyuv::I420ToARGBMatrix(data[0], lines[0], data[1], lines[1], data[2], lines[2], target, pitch,
                                        constants, p_frame.width, p_frame.height) == 0;
    case AV_PIX_FMT_YUV422P:
    case AV_PIX_FMT_YUVJ422P:
        return libyuv::I422ToARGBMatrix(data[0], lines[0], data[1], lines[1], data[2], lines[2], target, pitch,
                                        constants, p_frame.width, p_frame.height) == 0;
    case AV_PIX_FMT_YUV444P:
    case AV_PIX_FMT_YUVJ444P:
        return libyuv::I444ToARGBMatrix(data[0], lines[0], data[1], lines[1], data[2], lines[2], target, pitch,
                                        constants, p_frame.width, p_frame.height) == 0;
    case AV_PIX_FMT_NV12:
        return libyuv::NV12ToARGBMatrix(data[0], lines[0], data[1], lines[1], target, pitch, constants, p_frame.width,
                                        p_frame.height) == 0;
    case AV_PIX_FMT_BGRA:
    case AV_PIX_FMT_BGR0:
        return libyuv::ARGBCopy(data[0], lines[0], target, pitch, p_frame.width, p_frame.height) == 0;
    case AV_PIX_FMT_RGBA:
    case AV_PIX_FMT_RGB0:
        return libyuv::ABGRToARGB(data[0], lines[0], target, pitch, p_frame.width, p_frame.height) == 0;
    case AV_PIX_FMT_RGB24:
        return libyuv::RAWToARGB(data[0], lines[0], target, pitch, p_frame.width, p_frame.height) == 0;
    case AV_PIX_FMT_BGR24:
        return libyuv::RGB24ToARGB(data[0], lines[0], target, pitch, p_frame.width, p_frame.height) == 0;
    default:
        break;
    }
    m_scaler.reset(sws_getCachedContext(
        m_scaler.release(), p_frame.width, p_frame.height, AVPixelFormat(p_frame.format), p_frame.width, p_frame.height,
        AV_PIX_FMT_BGRA, SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr));
    if (!m_scaler) {
        return false;
    }
    sws_setColorspaceDetails(m_scaler.get(), sws_getCoefficients(coefficientsOf(m_colors)), m_colors.m_fullRange,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    uint8_t* planes[1] = {target};
    const int pitches[1] = {pitch};
    return sws_scale(m_scaler.get(), data, lines, 0, p_frame.height, planes, pitches) > 0;
}

} // namespace zyr::host
