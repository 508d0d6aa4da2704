#include "host/live/zyr_prepared_encoder.h"

#include "host/zyr_stream_run.h"

#include <chrono>
#include <cstring>

namespace zyr::host {

namespace {

PreparedEncoder::Spare open(Ref<IFrameEncoderContext> p_context, Ref<IFrameEncoderContext> p_old, uint32_t p_width,
                            uint32_t p_height) {
    constexpr int GREY = 128;
    p_old.clear();
    FramePicture picture;
    picture.resize(p_width, p_height);
    memset(picture.getPixels(), GREY, size_t{picture.m_pitch} * p_height);
    PreparedEncoder::Spare spare;
    const auto packet = Ref<IPackedFrameData>::adopt(p_context->encode(&picture.getFrame()));
    if (packet && packet->getPackedData()->getSize() > 0) {
        const Array<uint8_t>& bytes = *packet->getPackedData();
        spare.m_context = std::move(p_context);
        spare.m_key.assign(bytes.getData(), bytes.getData() + bytes.getSize());
    }
    return spare;
}

} // namespace

void PreparedEncoder::collect() {
    if (m_work.valid() && m_work.wait_for(std::chrono::seconds(0)) == std::future_status::ready) {
        m_spare = m_work.get();
        m_isReady = true;
    }
}

void PreparedEncoder::prepare(uint32_t p_width, uint32_t p_height) {
    collect();
    const bool isOfSize = p_width == m_width && p_height == m_height;
    if (m_work.valid() || (m_isReady && isOfSize)) {
        return; // One of another size is thrown away once it is there.
    }
    m_isReady = false;
    m_spare = Spare();
    m_width = p_width;
    m_height = p_height;
    m_work = std::async(std::launch::async, open, m_codecs.createEncoder(LiveCodec::VP9), std::move(m_old), p_width,
                        p_height);
}

bool PreparedEncoder::isReady(uint32_t p_width, uint32_t p_height) {
    collect();
    return m_isReady && p_width == m_width && p_height == m_height;
}

PreparedEncoder::Spare PreparedEncoder::take(uint32_t p_width, uint32_t p_height) {
    if (!isReady(p_width, p_height)) {
        return Spare();
    }
    m_isReady = false;
    return std::move(m_spare);
}

void PreparedEncoder::finish() {
    if (m_work.valid()) {
        m_work.wait();
    }
}

} // namespace zyr::host
