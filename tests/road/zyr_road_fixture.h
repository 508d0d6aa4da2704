/// The framework, started once for the process, and what works on this machine.
#pragma once

#include "host/zyr_negotiation.h"
#include "support/zyr_temporary_directory.h"

#include <memory>
#include <string>

namespace zyr {

/// An encoder context and a decoder context of one software codec.
struct Road {
    Ref<IFrameEncoderContext> m_encoder;
    Ref<IFrameDecoderContext> m_decoder;
    std::string m_encoderName;
    std::string m_encoderOptions;
    std::string m_decoderName;
};

class RoadSystem {
public:
    /// The one of the process.
    static RoadSystem& get();

    /// New contexts for the codec; the decoder's implementation may be named.
    Road open(const std::string& p_codec, const std::string& p_decoder = "");

private:
    RoadSystem();

    TemporaryDirectory m_logs;
    std::unique_ptr<host::Framework> m_framework;
    host::Market m_market;
};

/// A packed frame that holds the bytes.
Ref<IPackedFrameData> createPacket(const uint8_t* p_data, size_t p_size, uint32_t p_width, uint32_t p_height);

/// Whether a picture equals R,G,B,A rows of `p_pitch` bytes.
bool equalsPicture(const IUnpackedFrameData& p_picture, const uint8_t* p_pixels, size_t p_pitch);

} // namespace zyr
