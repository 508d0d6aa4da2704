// The base of codecs that pack whole pictures, by one that copies them.
#include "picture/zyr_codec_plugin.h"
#include "picture_module/picture_module_test.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

class CopyEncoderContext;
class CopyDecoderContext;

class CopyEncoder : public CodecEncoder<CopyEncoder, CopyEncoderContext> {
public:
    static constexpr const char* c_className = "CopyEncoder";
    static constexpr const char* c_classGUIDText = "6f4a1f5c-5f3a-4d38-9a55-0c1f5b6d2a01";
    static constexpr CodecOffer c_offer = {.m_codecName = "copy", .m_implementation = "memory"};
};

class CopyEncoderContext : public CodecEncoderContext<CopyEncoderContext, CopyEncoder> {
public:
    static constexpr const char* c_className = "CopyEncoderContext";
    static constexpr const char* c_classGUIDText = "6f4a1f5c-5f3a-4d38-9a55-0c1f5b6d2a02";

    bool_t encodePicture(const IImage& p_image, Array<uint8_t>& p_bytes) override {
        for (uint32_t y = 0; y < p_image.getHeight(); y++) {
            p_bytes.pushBackRange(getRow(p_image, y), p_image.getWidth() * 4);
        }
        return p_bytes[0] != 0;
    }
    void forget() override { m_forgotten++; }

    int m_forgotten = 0;
};

class CopyDecoder : public CodecDecoder<CopyDecoder, CopyDecoderContext> {
public:
    static constexpr const char* c_className = "CopyDecoder";
    static constexpr const char* c_classGUIDText = "6f4a1f5c-5f3a-4d38-9a55-0c1f5b6d2a03";
    static constexpr CodecOffer c_offer = CopyEncoder::c_offer;
};

class CopyDecoderContext : public CodecDecoderContext<CopyDecoderContext, CopyDecoder> {
public:
    static constexpr const char* c_className = "CopyDecoderContext";
    static constexpr const char* c_classGUIDText = "6f4a1f5c-5f3a-4d38-9a55-0c1f5b6d2a04";

    bool_t decodePicture(const Array<uint8_t>& p_bytes, IImage& p_image) override {
        if (p_bytes.getSize() != size_t{p_image.getWidth()} * p_image.getHeight() * 4) {
            return 0;
        }
        for (uint32_t y = 0; y < p_image.getHeight(); y++) {
            memcpy(getRow(p_image, y), p_bytes.getData() + size_t{y} * p_image.getWidth() * 4, p_image.getWidth() * 4);
        }
        return 1;
    }
};

class CodecPlugin : public PictureUpTest {
protected:
    static FrameCodecInfo makeInfo(const char* p_name) {
        FrameCodecInfo info;
        info.codecName = p_name;
        info.planesModels.pushBack(ZYR_PLANES_MODEL_SINGLE, nullptr);
        info.colorSpaces.pushBack(ZYR_COLOR_SPACE_RGB, nullptr);
        return info;
    }
    static Held<IUnpackedFrameData> makeFrame(IImage* p_image) {
        Held<IUnpackedFrameData> frame = make<IUnpackedFrameData>();
        frame->getUnpackedFrameDataReserved()->setSystemMemory(p_image);
        return frame;
    }
    static Held<IPackedFrameData> makePacket(uint32_t p_width, uint32_t p_height, const std::vector<uint8_t>& p_bytes) {
        Held<IPackedFrameData> packet = make<IPackedFrameData>();
        packet->getPackedFrameDataReserved()->setWidth(p_width);
        packet->getPackedFrameDataReserved()->setHeight(p_height);
        packet->getPackedFrameDataReserved()->getPackedDataMutable()->pushBackRange(p_bytes.data(), p_bytes.size());
        return packet;
    }
    void expectLine(const char* p_text) const {
        EXPECT_THAT(m_application->getMessages(), testing::Contains(testing::HasSubstr(p_text)));
    }
};

TEST_F(CodecPlugin, OffersOneProposalAndOneRequest) {
    const Held<CopyEncoder> encoder(new CopyEncoder);
    const Held<CopyDecoder> decoder(new CopyDecoder);
    static_cast<IFrameEncoder*>(encoder.get())->setAdapterID(5);
    List<FrameCodecProposal*> proposals;
    List<FrameCodecRequest*> requests;
    encoder->getCodecProposals(proposals);
    decoder->getCodecRequests(requests);
    ASSERT_EQ(proposals.getSize(), 1u);
    ASSERT_EQ(requests.getSize(), 1u);
    const FrameCodecProposal& proposal = *proposals.frontConst();
    EXPECT_EQ(proposal.codecName, "copy");
    EXPECT_EQ(proposal.codecImplementation, "memory");
    EXPECT_EQ(proposal.rating, ZYR_CODEC_RATING_NORMAL);
    EXPECT_EQ(proposal.adapterID, 5u);
    EXPECT_EQ(proposal.planesModelSingle, ZYR_PROPOSAL_MANDATORY);
    EXPECT_EQ(proposal.colorSpaceRGB, ZYR_PROPOSAL_MANDATORY);
    EXPECT_EQ(proposal.video, ZYR_PROPOSAL_OPTIONAL);
    EXPECT_EQ(proposal.lossless, ZYR_PROPOSAL_MANDATORY);
    EXPECT_EQ(requests.frontConst()->codecName, "copy");
    EXPECT_EQ(requests.frontConst()->lossless, ZYR_REQUEST_MANDATORY);
    EXPECT_EQ(requests.frontConst()->video, ZYR_REQUEST_OPTIONAL);
    proposals.front()->release();
    requests.front()->release();
}

TEST_F(CodecPlugin, KeepsTheRecordThatItsOfferLeadsToAlone) {
    const Held<CopyEncoder> encoder(new CopyEncoder);
    EXPECT_EQ(encoder->getLibName(), "memory");
    EXPECT_EQ(encoder->getLibVersion(), zyr_encodeVersion64(1, 0, 0));
    EXPECT_TRUE(encoder->getCodecName().isEmpty());
    EXPECT_TRUE(encoder->initialize(makeInfo("copy")));
    FrameCodecInfo planes = makeInfo("copy");
    planes.colorSpaces.clear();
    planes.colorSpaces.pushBack(ZYR_COLOR_SPACE_BT_601, nullptr);
    FrameCodecInfo empty = makeInfo("copy");
    empty.planesModels.clear();
    for (const FrameCodecInfo& other : {makeInfo("other"), planes, empty}) {
        EXPECT_FALSE(encoder->initialize(other));
    }
    EXPECT_EQ(encoder->getCodecName(), "copy");
    EXPECT_EQ(encoder->getCodecInfo()->colorSpaces.frontConst(), ZYR_COLOR_SPACE_RGB);
    encoder->clear();
    EXPECT_TRUE(encoder->deinitialize());
    EXPECT_EQ(encoder->getCodecName(), "copy");
    const Held<IFrameEncoder> copy(static_cast<IFrameEncoder*>(encoder->clone()));
    EXPECT_TRUE(copy->getCodecName().isEmpty());
}

TEST_F(CodecPlugin, PicturesComeBackThroughItsContexts) {
    const Held<CopyEncoder> encoder(new CopyEncoder);
    const Held<CopyDecoder> decoder(new CopyDecoder);
    const Held<IFrameEncoderContext> encoding(encoder->createFrameEncoderContext());
    const Held<IFrameDecoderContext> decoding(decoder->createFrameDecoderContext());
    EXPECT_EQ(encoding->getEncoder(), static_cast<IFrameEncoder*>(encoder->getTLIObject()));
    EXPECT_EQ(decoding->getDecoder(), static_cast<IFrameDecoder*>(decoder->getTLIObject()));
    EXPECT_EQ(encoding->getQuality(), 100);
    EXPECT_TRUE(encoding->setQuality(30));
    EXPECT_EQ(encoding->getQuality(), 30);
    const Held<IImage> image = makeImage(3, 2, ZYR_PIXEL_FORMAT_BGRA_8);
    fillWithNumbers(*image);
    const Held<IUnpackedFrameData> frame = makeFrame(image.get());
    for (uint64_t number = 1; number < 4; number++) {
        const Held<IPackedFrameData> packet(encoding->encode(frame.get()));
        ASSERT_NE(packet, nullptr);
        EXPECT_EQ(packet->getVideoFrameID(), number);
        EXPECT_EQ(packet->getPackedData()->getSize(), 24u);
        const Held<IUnpackedFrameData> decoded(decoding->decode(packet.get()));
        ASSERT_NE(decoded, nullptr);
        EXPECT_EQ(decoded->getVideoFrameID(), number);
        EXPECT_EQ(decoded->getWidth(), 3u);
        EXPECT_EQ(decoded->getHeight(), 2u);
        const IImage* picture = decoded->getSystemMemory(0, 1);
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(picture->getFormat(), ZYR_PIXEL_FORMAT_RGBA_8);
        EXPECT_EQ(getPixel(*picture, 2, 1), getPixel(*image, 2, 1));
    }
    EXPECT_TRUE(encoding->deinitialize());
    EXPECT_TRUE(encoding->initialize(static_cast<IFrameEncoder*>(encoder->getTLIObject())));
    const Held<IPackedFrameData> packet(encoding->encode(frame.get()));
    EXPECT_EQ(packet->getVideoFrameID(), 1u);
}

TEST_F(CodecPlugin, ContextsTakeACodecOfTheirOwnOnce) {
    const Held<CopyEncoder> encoder(new CopyEncoder);
    const Held<IFrameEncoder> other = make<IFrameEncoder>();
    const Held<CopyEncoderContext> context(new CopyEncoderContext);
    EXPECT_FALSE(context->deinitialize());
    expectLine("Not initialized. Cannot deinitialize");
    EXPECT_FALSE(context->initialize(other.get()));
    EXPECT_FALSE(context->initialize(nullptr));
    expectLine("The codec is not a CopyEncoder. Cannot initialize");
    EXPECT_EQ(context->getEncoder(), nullptr);
    auto* codec = static_cast<IFrameEncoder*>(encoder->getTLIObject());
    EXPECT_TRUE(context->initialize(codec));
    EXPECT_FALSE(context->initialize(codec));
    expectLine("Already initialized. Cannot initialize");
    EXPECT_EQ(encoder->getRefCount(), 1u);
    EXPECT_TRUE(context->deinitialize());
    EXPECT_EQ(encoder->getRefCount(), 0u);
    EXPECT_EQ(context->m_forgotten, 1);
}

TEST_F(CodecPlugin, FramesThatCannotBeEncodedTakeNoNumber) {
    const Held<CopyEncoderContext> context(new CopyEncoderContext);
    const Held<IImage> wrong = makeImage(2, 2, ZYR_PIXEL_FORMAT_RGBA_8);
    const Held<IImage> black = makeImage(2, 2, ZYR_PIXEL_FORMAT_BGRA_8);
    memset(black->getData(), 0, size_t{black->getPitch()} * 2);
    const Held<IUnpackedFrameData> none = make<IUnpackedFrameData>();
    EXPECT_EQ(context->encode(nullptr), nullptr);
    EXPECT_EQ(context->encode(none.get()), nullptr);
    EXPECT_EQ(context->encode(makeFrame(wrong.get()).get()), nullptr);
    EXPECT_EQ(context->m_forgotten, 0);
    EXPECT_EQ(context->encode(makeFrame(black.get()).get()), nullptr);
    expectLine("Unable to encode a picture of 2x2");
    EXPECT_EQ(context->m_forgotten, 1);
    static_cast<uint8_t*>(black->getData())[0] = 1;
    const Held<IPackedFrameData> packet(context->encode(makeFrame(black.get()).get()));
    ASSERT_NE(packet, nullptr);
    EXPECT_EQ(packet->getVideoFrameID(), 1u);
}

TEST_F(CodecPlugin, PacketsThatAreNoneAreRefused) {
    const Held<CopyDecoderContext> context(new CopyDecoderContext);
    EXPECT_EQ(context->decode(nullptr), nullptr);
    EXPECT_EQ(context->decode(makePacket(1, 1, {}).get()), nullptr);
    expectLine("Cannot decode a packet without bytes");
    EXPECT_EQ(context->decode(makePacket(0, 1, {1, 2, 3, 4}).get()), nullptr);
    expectLine("Cannot decode a picture of 0x1");
    EXPECT_EQ(context->decode(makePacket(1, UINT32_MAX, {1, 2, 3, 4}).get()), nullptr);
    expectLine("Cannot decode a picture of 1x4294967295");
    EXPECT_EQ(context->decode(makePacket(1, 2, {1, 2, 3, 4}).get()), nullptr);
    expectLine("Unable to decode a packet of 1x2");
}

} // namespace
} // namespace zyr
