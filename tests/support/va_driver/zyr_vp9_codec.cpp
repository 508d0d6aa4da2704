#include "support/va_driver/zyr_vp9_codec.h"

#include <algorithm>
#include <vpx/vp8cx.h>
#include <vpx/vp8dx.h>

namespace zyr_test {

Vp9Codec::~Vp9Codec() {
    if (m_hasEncoder) {
        vpx_codec_destroy(&m_encoder);
    }
    if (m_hasDecoder) {
        vpx_codec_destroy(&m_decoder);
    }
}

bool Vp9Codec::encode(Nv12Picture& p_source, uint32_t p_width, uint32_t p_height, bool p_keyFrame,
                      std::vector<uint8_t>& p_bytes) {
    if (!m_hasEncoder) {
        vpx_codec_enc_cfg_t configuration;
        if (vpx_codec_enc_config_default(vpx_codec_vp9_cx(), &configuration, 0) != VPX_CODEC_OK) {
            return false;
        }
        configuration.g_w = p_width;
        configuration.g_h = p_height;
        configuration.g_timebase = {1, 60};
        configuration.g_lag_in_frames = 0;
        configuration.rc_end_usage = VPX_Q;
        configuration.kf_mode = VPX_KF_DISABLED;
        if (vpx_codec_enc_init(&m_encoder, vpx_codec_vp9_cx(), &configuration, 0) != VPX_CODEC_OK) {
            return false;
        }
        m_hasEncoder = true;
        vpx_codec_control(&m_encoder, VP8E_SET_CPUUSED, 8);
        vpx_codec_control(&m_encoder, VP8E_SET_CQ_LEVEL, 10);
    }
    vpx_image_t* image = vpx_img_alloc(nullptr, VPX_IMG_FMT_I420, p_width, p_height, 16);
    if (image == nullptr) {
        return false;
    }
    for (uint32_t y = 0; y < p_height; y++) {
        std::copy_n(p_source.luma(y), p_width, image->planes[0] + static_cast<size_t>(y) * image->stride[0]);
    }
    for (uint32_t y = 0; y < p_height / 2; y++) {
        for (uint32_t x = 0; x < p_width / 2; x++) {
            image->planes[1][static_cast<size_t>(y) * image->stride[1] + x] = p_source.chroma(y)[x * 2];
            image->planes[2][static_cast<size_t>(y) * image->stride[2] + x] = p_source.chroma(y)[x * 2 + 1];
        }
    }
    vpx_codec_err_t result =
        vpx_codec_encode(&m_encoder, image, m_frameCount++, 1, p_keyFrame ? VPX_EFLAG_FORCE_KF : 0, VPX_DL_REALTIME);
    vpx_img_free(image);
    if (result != VPX_CODEC_OK) {
        return false;
    }
    p_bytes.clear();
    vpx_codec_iter_t iterator = nullptr;
    while (const vpx_codec_cx_pkt_t* packet = vpx_codec_get_cx_data(&m_encoder, &iterator)) {
        if (packet->kind == VPX_CODEC_CX_FRAME_PKT) {
            const uint8_t* bytes = static_cast<const uint8_t*>(packet->data.frame.buf);
            p_bytes.insert(p_bytes.end(), bytes, bytes + packet->data.frame.sz);
        }
    }
    return true;
}

bool Vp9Codec::decode(const uint8_t* p_bytes, size_t p_size, Nv12Picture& p_target) {
    if (!m_hasDecoder) {
        if (vpx_codec_dec_init(&m_decoder, vpx_codec_vp9_dx(), nullptr, 0) != VPX_CODEC_OK) {
            return false;
        }
        m_hasDecoder = true;
    }
    if (vpx_codec_decode(&m_decoder, p_bytes, static_cast<unsigned>(p_size), nullptr, 0) != VPX_CODEC_OK) {
        return false;
    }
    vpx_codec_iter_t iterator = nullptr;
    const vpx_image_t* image = vpx_codec_get_frame(&m_decoder, &iterator);
    if (image == nullptr) {
        return true;
    }
    if (image->fmt != VPX_IMG_FMT_I420 || image->d_w > p_target.m_pitch || image->d_h > p_target.m_rows) {
        return false;
    }
    for (uint32_t y = 0; y < image->d_h; y++) {
        std::copy_n(image->planes[0] + static_cast<size_t>(y) * image->stride[0], image->d_w, p_target.luma(y));
    }
    for (uint32_t y = 0; y < (image->d_h + 1) / 2; y++) {
        for (uint32_t x = 0; x < (image->d_w + 1) / 2; x++) {
            p_target.chroma(y)[x * 2] = image->planes[1][static_cast<size_t>(y) * image->stride[1] + x];
            p_target.chroma(y)[x * 2 + 1] = image->planes[2][static_cast<size_t>(y) * image->stride[2] + x];
        }
    }
    return true;
}

} // namespace zyr_test
