// Streams of packets, through the decoder contexts. The first byte chooses the way of decoding; each packet has its
// size in front of it, in two bytes, and the last may be cut off.
#include "zyr_fuzz.h"

#include "host/zyr_negotiation.h"
#include "zyr_common/object/zyr_factories.h"

#include <algorithm>

using namespace zyr;
using namespace zyr::host;

namespace {

constexpr uint32_t WIDTH = 32;
constexpr uint32_t HEIGHT = 24;

/// Every way of decoding that works here, in list order.
class Decoders {
public:
    Decoders() : m_market(openMarket(zyr_fuzz::getFramework(false))) {
        std::vector<std::string> log;
        std::vector<std::string> notes;
        m_matches = judge(m_market, Choice(), log, notes);
        zyr_fuzz::require(!m_matches.empty(), "something can be decoded here");
    }

    IFrameDecoder& initialize(size_t p_way) {
        const Match& match = *m_matches[p_way % m_matches.size()];
        IFrameDecoder& decoder = *m_market.m_decoders[match.m_wish->m_decoder];
        zyr_fuzz::require(decoder.initialize(match.m_decoderInfo), "the decoder takes what was agreed");
        return decoder;
    }

private:
    Market m_market;
    std::vector<std::unique_ptr<Match>> m_matches;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    static Decoders decoders;
    if (p_size == 0) {
        return 0;
    }
    IFrameDecoder& decoder = decoders.initialize(p_data[0]);
    auto context = Ref<IFrameDecoderContext>::adopt(decoder.createFrameDecoderContext());
    const uint8_t* end = p_data + p_size;
    p_data++;
    for (uint64_t id = 1; end - p_data >= 2; id++) {
        const size_t size = std::min<size_t>(p_data[0] | p_data[1] << 8, static_cast<size_t>(end - p_data - 2));
        p_data += 2;
        const auto packed = Ref<IPackedFrameData>::adopt(zyr_createInterfaceObject<IPackedFrameData>());
        IPackedFrameDataReserved* fill = packed->getPackedFrameDataReserved();
        fill->setWidth(WIDTH);
        fill->setHeight(HEIGHT);
        fill->setVideoFrameID(id);
        fill->getPackedDataMutable()->pushBackRange(p_data, size);
        p_data += size;
        IUnpackedFrameData* unpacked = context->decode(packed.get());
        if (unpacked != nullptr) {
            const auto picture = Ref<IUnpackedFrameData>::adopt(unpacked);
            zyr_fuzz::require(picture->getVideoFrameID() == id, "a picture carries the number of its packet");
        }
    }
    context.clear();
    decoder.deinitialize();
    return 0;
}
