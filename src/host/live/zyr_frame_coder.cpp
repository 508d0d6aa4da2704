#include "host/live/zyr_frame_coder.h"

namespace zyr::host {

namespace {

/// Key frames are the largest frames there are: viewers that join or fail together share one.
constexpr uint64_t BETWEEN_KEYS = 1'000'000;

} // namespace

void FrameCoder::setAllowed(uint8_t p_codecs) {
    m_allowed = p_codecs & m_codecs.getCodecs();
    m_choice.setCodecs(m_allowed);
}

bool FrameCoder::isKeyDue(uint8_t p_missing, bool p_atRest, uint64_t p_time) const {
    const LiveCodec codec = m_choice.choose(p_atRest);
    const Side& side = m_sides[size_t(codec)];
    return (p_missing & codecBit(codec)) != 0 && (side.m_keyTime == 0 || p_time - side.m_keyTime >= BETWEEN_KEYS);
}

uint64_t FrameCoder::countChangedPixels(const IPackedFrameData& p_packet) {
    const IDiffmap* diffmap = p_packet.getDiffmap(0);
    if (diffmap == nullptr || diffmap->getData() == nullptr) {
        return uint64_t{p_packet.getWidth()} * p_packet.getHeight();
    }
    uint64_t blocks = 0;
    const auto* marks = static_cast<const uint8_t*>(diffmap->getData());
    for (uint64_t i = 0; i < diffmap->getSize(); i++) {
        blocks += marks[i] != 0 ? 1 : 0;
    }
    return blocks * diffmap->getBlockWidth() * diffmap->getBlockHeight();
}

CodedPicture FrameCoder::encode(IUnpackedFrameData& p_frame, uint8_t p_missing, bool p_atRest, uint64_t p_time) {
    CodedPicture result;
    result.m_codec = m_choice.choose(p_atRest);
    Side& side = m_sides[size_t(result.m_codec)];
    // A video codec that was left for a while has nothing to stand on.
    const bool isTurnToVideo = result.m_codec == LiveCodec::VP9 && m_last != LiveCodec::VP9;
    if (!side.m_context || isTurnToVideo || isKeyDue(p_missing, p_atRest, p_time)) {
        side.m_context = m_codecs.createEncoder(result.m_codec);
    }
    result.m_packet = Ref<IPackedFrameData>::adopt(side.m_context->encode(&p_frame));
    if (!result.m_packet) {
        side.m_context.clear();
        return result;
    }
    const Array<uint8_t>& bytes = *result.m_packet->getPackedData();
    result.m_key = LiveCodecs::isKey(result.m_codec, bytes.getData(), bytes.getSize());
    result.m_exact = result.m_codec == LiveCodec::BLOCKS;
    side.m_keyTime = result.m_key ? p_time : side.m_keyTime;
    m_last = result.m_codec;
    m_choice.noteFrame(result.m_codec, result.m_key, bytes.getSize(), countChangedPixels(*result.m_packet), p_time);
    return result;
}

} // namespace zyr::host
