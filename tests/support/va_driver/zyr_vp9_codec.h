/// VP9 for the test driver, done by libvpx in software.
#pragma once

#include "support/va_driver/zyr_nv12.h"

#include <vpx/vpx_decoder.h>
#include <vpx/vpx_encoder.h>

namespace zyr_test {

class Vp9Codec {
public:
    Vp9Codec() = default;
    Vp9Codec(const Vp9Codec&) = delete;
    Vp9Codec& operator=(const Vp9Codec&) = delete;
    ~Vp9Codec();

    /// Encodes one picture without delay; `p_keyFrame` forces a frame that needs no other. False on any failure.
    bool encode(Nv12Picture& p_source, uint32_t p_width, uint32_t p_height, bool p_keyFrame,
                std::vector<uint8_t>& p_bytes);

    /// Decodes one frame. A frame that isn't shown leaves `p_target` as it is, and that is a success.
    bool decode(const uint8_t* p_bytes, size_t p_size, Nv12Picture& p_target);

private:
    vpx_codec_ctx_t m_encoder = {};
    vpx_codec_ctx_t m_decoder = {};
    bool m_hasEncoder = false;
    bool m_hasDecoder = false;
    int64_t m_frameCount = 0;
};

} // namespace zyr_test
