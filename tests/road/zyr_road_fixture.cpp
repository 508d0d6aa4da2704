#include "zyr_road_fixture.h"

#include <cstring>

namespace zyr {

RoadSystem& RoadSystem::get() {
    // It lives until the process ends, as the application data does.
    static RoadSystem* system = new RoadSystem();
    return *system;
}

RoadSystem::RoadSystem() {
    host::FrameworkOptions options;
    options.m_moduleDirectory = ZYR_MODULE_DIRECTORY;
    options.m_logDirectory = m_logs.getPath();
    options.m_logLevel = ZYR_LOG_LEVEL_WARN;
    m_framework = std::make_unique<host::Framework>(options);
    m_market = host::openMarket(*m_framework);
}

Road RoadSystem::open(const std::string& p_codec, const std::string& p_decoder) {
    std::vector<std::string> log;
    std::vector<std::string> notes;
    host::Choice choice;
    choice.m_codec = p_codec;
    choice.m_decoder = p_decoder;
    choice.m_require = "sw";
    const auto matches = host::judge(m_market, choice, log, notes);
    const host::Match* match = host::chooseMatch(matches);
    Road road;
    if (match == nullptr) {
        return road;
    }
    IFrameEncoder& encoder = *m_market.m_encoders[match->m_offer->m_encoder];
    IFrameDecoder& decoder = *m_market.m_decoders[match->m_wish->m_decoder];
    encoder.initialize(match->m_info);
    decoder.initialize(match->m_decoderInfo);
    road.m_encoder = Ref<IFrameEncoderContext>::adopt(encoder.createFrameEncoderContext());
    road.m_decoder = Ref<IFrameDecoderContext>::adopt(decoder.createFrameDecoderContext());
    road.m_encoderName = host::toText(match->m_info.codecImplementation);
    road.m_encoderOptions = host::toText(match->m_info.codecOptions);
    road.m_decoderName = host::toText(match->m_decoderInfo.codecImplementation);
    return road;
}

Ref<IPackedFrameData> createPacket(const uint8_t* p_data, size_t p_size, uint32_t p_width, uint32_t p_height) {
    GUID_t guid;
    GUID_t_fromString(guid, InterfaceTraits<IPackedFrameData>::c_guidText);
    IPackedFrameData* packet =
        static_cast<IPackedFrameData*>(zyr_createObjectFromGUIDAndTypeName(guid, String::getConstEmpty()));
    IPackedFrameDataReserved* reserved = packet->getPackedFrameDataReserved();
    reserved->setWidth(p_width);
    reserved->setHeight(p_height);
    reserved->getPackedDataMutable()->pushBackRange(p_data, p_size);
    return Ref<IPackedFrameData>::adopt(packet);
}

bool equalsPicture(const IUnpackedFrameData& p_picture, const uint8_t* p_pixels, size_t p_pitch) {
    const IImage* image = p_picture.getSystemMemory(0, 1);
    for (uint32_t y = 0; y < image->getHeight(); y++) {
        if (memcmp(static_cast<const uint8_t*>(image->getData()) + size_t(y) * image->getPitch(),
                   p_pixels + size_t(y) * p_pitch, size_t(image->getWidth()) * 4) != 0) {
            return false;
        }
    }
    return true;
}

} // namespace zyr
