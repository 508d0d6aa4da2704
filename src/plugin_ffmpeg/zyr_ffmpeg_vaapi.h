/// Hardware coding through VAAPI, as far as encoders and decoders share it.
#pragma once

#include "zyr_common/zyr_types.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace zyr {

class String;

/// True for the name by which codec records ask for VAAPI.
bool_t isVaapiDevice(const String& p_hardwareDeviceName);

/// Gives an encoder context that is about to be opened a pool of NV12 surfaces in its size. The only lasting reference
/// is the context's. False when there is no device, or no surfaces.
bool_t configureVAAPIEncoder(AVCodecContext* p_context);

/// Gives a decoder context that is about to be opened a VAAPI device, and returns how the decoder works with it; null
/// when the decoder cannot or there is no device.
const AVCodecHWConfig* configureVAAPIDecoder(AVCodecContext* p_context, const AVCodec* p_codec);

} // namespace zyr
