#include "host/conform/zyr_conform_road.h"

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_object.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace zyr::host {

namespace {

constexpr uint32_t BYTES_PER_PIXEL = 4;
constexpr uint32_t SMALLEST_WITH_BOX = 32;
/// The gradient of a smaller picture is no steeper: colours that are stored at half the size survive.
constexpr uint32_t SMALLEST_FULL_GRADIENT = 64;
/// Mean difference of a channel. A lossy codec at its default quality stays far below it, another picture far above.
constexpr double LARGEST_MEAN_DIFFERENCE = 16;
constexpr uint8_t BEST_QUALITY = 100;

template <typename Interface> std::vector<Ref<Interface>> createCodecs(PluginBench& p_bench) {
    std::vector<Ref<Interface>> codecs;
    for (Ref<IObject>& object : p_bench.createAll(zyr_getInterfaceGUID<Interface>())) {
        codecs.push_back(Ref<Interface>::adopt(static_cast<Interface*>(object.release())));
    }
    return codecs;
}

} // namespace

ConformMarket::ConformMarket(PluginBench& p_bench) : m_bench(p_bench) {
    p_bench.start();
    m_market.m_encoders = createCodecs<IFrameEncoder>(p_bench);
    m_market.m_decoders = createCodecs<IFrameDecoder>(p_bench);
    for (size_t i = 0; i < m_market.m_encoders.size(); i++) {
        IFrameEncoder& encoder = *m_market.m_encoders[i];
        List<FrameCodecProposal*> proposals;
        p_bench.call(encoder, "getCodecProposals", [&] {
            encoder.getCodecProposals(proposals);
            return 0;
        });
        for (FrameCodecProposal* proposal : proposals) {
            const std::string reason = checkProposal(proposal);
            require(reason.empty(), toText(encoder.getClassName()) + " hands out " + reason);
            m_market.m_offers.push_back(Offer{i, Ref<FrameCodecProposal>::adopt(proposal)});
        }
    }
    for (size_t i = 0; i < m_market.m_decoders.size(); i++) {
        IFrameDecoder& decoder = *m_market.m_decoders[i];
        List<FrameCodecRequest*> requests;
        p_bench.call(decoder, "getCodecRequests", [&] {
            decoder.getCodecRequests(requests);
            return 0;
        });
        for (FrameCodecRequest* request : requests) {
            const std::string reason = checkRequest(request);
            require(reason.empty(), toText(decoder.getClassName()) + " hands out " + reason);
            m_market.m_wishes.push_back(Wish{i, Ref<FrameCodecRequest>::adopt(request)});
        }
    }
    std::vector<std::string> log;
    std::vector<std::string> notes;
    m_matches = judge(m_market, Choice{}, log, notes);
}

std::vector<Match*> ConformMarket::listPairs() {
    std::set<const void*> taken;
    std::vector<Match*> pairs;
    for (const std::unique_ptr<Match>& match : m_matches) {
        const bool newOffer = taken.insert(match->m_offer).second;
        const bool newWish = taken.insert(match->m_wish).second;
        if (newOffer || newWish) {
            pairs.push_back(match.get());
        }
    }
    if (pairs.empty()) {
        throw ConformSkip("no encoder and decoder of it agree here");
    }
    return pairs;
}

std::string nameOf(const Match& p_match) {
    return toText(p_match.m_info.codecName) + ": " + toText(p_match.m_info.codecImplementation) + " to " +
           toText(p_match.m_decoderInfo.codecImplementation);
}

Ref<IUnpackedFrameData> makePicture(uint32_t p_width, uint32_t p_height, unsigned p_number) {
    IImage* image = nullptr;
    Ref<IUnpackedFrameData> frame = createSourceFrame(p_width, p_height, image);
    uint8_t* row = static_cast<uint8_t*>(image->getData());
    const uint64_t spanX = std::max(p_width, SMALLEST_FULL_GRADIENT);
    const uint64_t spanY = std::max(p_height, SMALLEST_FULL_GRADIENT);
    const bool hasBox = p_width >= SMALLEST_WITH_BOX && p_height >= SMALLEST_WITH_BOX;
    const uint32_t boxX = (p_number * 3) % (p_width > 8 ? p_width - 8 : 1);
    const uint32_t boxY = (p_number * 5) % (p_height > 8 ? p_height - 8 : 1);
    for (uint32_t y = 0; y < p_height; y++, row += image->getPitch()) {
        for (uint32_t x = 0; x < p_width; x++) {
            uint8_t* pixel = row + size_t{x} * BYTES_PER_PIXEL;
            const bool inBox = hasBox && x - boxX < 8 && y - boxY < 8;
            pixel[0] = inBox ? 200 : uint8_t(60 + x * 100 / spanX);
            pixel[1] = inBox ? 180 : uint8_t(60 + y * 100 / spanY);
            pixel[2] = inBox ? 40 : uint8_t(90 + p_number % 16 * 4);
            pixel[3] = 255;
        }
    }
    return frame;
}

ConformRoad::ConformRoad(ConformMarket& p_market, Match& p_match)
    : m_bench(p_market.getBench()),
      m_match(p_match),
      m_encoder(*p_market.getMarket().m_encoders[p_match.m_offer->m_encoder]),
      m_decoder(*p_market.getMarket().m_decoders[p_match.m_wish->m_decoder]),
      m_name(nameOf(p_match)) {
    reopen();
}

void ConformRoad::reopen() {
    close();
    if (!m_bench.call(m_encoder, "initialize", [&] { return m_encoder.initialize(m_match.m_info); })) {
        fail("the encoder refuses what was agreed" + m_bench.takeWarning());
    }
    if (!m_bench.call(m_decoder, "initialize", [&] { return m_decoder.initialize(m_match.m_decoderInfo); })) {
        fail("the decoder refuses what was agreed" + m_bench.takeWarning());
    }
    m_encoderContext = Ref<IFrameEncoderContext>::adopt(
        m_bench.call(m_encoder, "createFrameEncoderContext", [&] { return m_encoder.createFrameEncoderContext(); }));
    m_decoderContext = Ref<IFrameDecoderContext>::adopt(
        m_bench.call(m_decoder, "createFrameDecoderContext", [&] { return m_decoder.createFrameDecoderContext(); }));
    if (!m_encoderContext || !m_decoderContext) {
        fail(std::string(m_encoderContext ? "the decoder" : "the encoder") + " gives no context");
    }
    m_encoded = 0;
    m_decoded = 0;
    if (m_match.m_info.lossless) {
        m_encoderContext->setQuality(BEST_QUALITY);
    }
}

void ConformRoad::close() {
    m_encoderContext.clear();
    m_decoderContext.clear();
}

Ref<IPackedFrameData> ConformRoad::tryEncode(IUnpackedFrameData* p_picture) {
    return Ref<IPackedFrameData>::adopt(m_bench.call(toText(m_encoder.getClassName()), "encode", ++m_encoded,
                                                     [&] { return m_encoderContext->encode(p_picture); }));
}

Ref<IUnpackedFrameData> ConformRoad::tryDecode(IPackedFrameData* p_packet) {
    return Ref<IUnpackedFrameData>::adopt(m_bench.call(toText(m_decoder.getClassName()), "decode", ++m_decoded,
                                                       [&] { return m_decoderContext->decode(p_packet); }));
}

void ConformRoad::checkPacket(const IPackedFrameData& p_packet, uint32_t p_width, uint32_t p_height) const {
    const std::string reason = checkPackedFrame(&p_packet, p_width, p_height);
    if (!reason.empty()) {
        fail("the encoder gives " + reason);
    }
}

void ConformRoad::checkPicture(const IUnpackedFrameData& p_picture, uint32_t p_width, uint32_t p_height) const {
    const std::string reason = checkUnpackedFrame(&p_picture, p_width, p_height);
    if (!reason.empty()) {
        fail("the decoder gives " + reason);
    }
    if (p_picture.getSystemMemory(0, 1)->getFormat() != PixelFormatEnum(500)) {
        fail("the decoder gives a picture in pixel format " +
             std::to_string(p_picture.getSystemMemory(0, 1)->getFormat()) + " in place of 500 (R, G, B, A)");
    }
}

Ref<IPackedFrameData> ConformRoad::encode(IUnpackedFrameData& p_picture) {
    Ref<IPackedFrameData> packet = tryEncode(&p_picture);
    const std::string size = std::to_string(p_picture.getWidth()) + "x" + std::to_string(p_picture.getHeight());
    if (!packet) {
        fail("no packet for frame " + std::to_string(m_encoded) + " of " + size + m_bench.takeWarning());
    }
    checkPacket(*packet, p_picture.getWidth(), p_picture.getHeight());
    if (packet->getPackedData()->getSize() == 0) {
        fail("a packet without bytes for frame " + std::to_string(m_encoded) + " of " + size);
    }
    return packet;
}

Ref<IUnpackedFrameData> ConformRoad::decode(IPackedFrameData& p_packet) {
    Ref<IUnpackedFrameData> picture = tryDecode(&p_packet);
    if (!picture) {
        fail("no picture for packet " + std::to_string(m_decoded) + " of " + std::to_string(p_packet.getWidth()) + "x" +
             std::to_string(p_packet.getHeight()) + m_bench.takeWarning());
    }
    checkPicture(*picture, p_packet.getWidth(), p_packet.getHeight());
    return picture;
}

void ConformRoad::compare(const IUnpackedFrameData& p_source, const IUnpackedFrameData& p_decoded) const {
    const IImage& source = *p_source.getSystemMemory(0, 1);
    const IImage& decoded = *p_decoded.getSystemMemory(0, 1);
    uint64_t sum = 0;
    for (uint32_t y = 0; y < source.getHeight(); y++) {
        const uint8_t* from = static_cast<const uint8_t*>(source.getData()) + size_t{y} * source.getPitch();
        const uint8_t* to = static_cast<const uint8_t*>(decoded.getData()) + size_t{y} * decoded.getPitch();
        for (uint32_t x = 0; x < source.getWidth(); x++, from += BYTES_PER_PIXEL, to += BYTES_PER_PIXEL) {
            sum += uint64_t(abs(from[0] - to[2]) + abs(from[1] - to[1]) + abs(from[2] - to[0]));
        }
    }
    const std::string size = std::to_string(source.getWidth()) + "x" + std::to_string(source.getHeight());
    if (m_match.m_info.lossless && sum != 0) {
        fail("a picture of " + size + " comes back with differences, although no loss was agreed");
    }
    const double mean = double(sum) / (3.0 * source.getWidth() * source.getHeight());
    if (mean > LARGEST_MEAN_DIFFERENCE) {
        fail("a picture of " + size + " comes back as another one: channels differ by " + std::to_string(mean));
    }
}

void ConformRoad::send(uint32_t p_width, uint32_t p_height, unsigned p_number) {
    const Ref<IUnpackedFrameData> picture = makePicture(p_width, p_height, p_number);
    const Ref<IPackedFrameData> packet = encode(*picture);
    compare(*picture, *decode(*packet));
}

} // namespace zyr::host
