/// How the quality of a stream (0 to 100, higher means better) becomes a setting of its encoder.
#pragma once

#include <cstdint>

struct AVCodecContext;

namespace zyr {

/// Applies a quality to an open encoder. Called for every frame.
typedef void (*quality_FUNC)(AVCodecContext* p_context, uint8_t p_quality);

/// The option "crf": 50 at quality 0, 15 at quality 100.
void crfSetQualityCallback(AVCodecContext* p_context, uint8_t p_quality);

/// One quantizer for all frames: 20 at quality 0, 2 from quality 100 on.
void qpSetQualityCallback(AVCodecContext* p_context, uint8_t p_quality);

/// For encoders whose quality is fixed.
void ignoreQualityCallback(AVCodecContext* p_context, uint8_t p_quality);

} // namespace zyr
