#include "plugin_ffmpeg/zyr_fake_picture.h"
#include "plugin_ffmpeg/zyr_plugin_host.h"
#include "support/render_node/zyr_render_node.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/platform/zyr_version.h"

using namespace zyr;
using namespace zyr_test;

namespace {

constexpr const char* CLASS_GUID = "34a75fed-1d36-4ea9-9756-43bb88c2ba21";

/// Owns what the encoder appended.
struct Proposals {
    List<FrameCodecProposal*> list;
    std::vector<FrameCodecProposal*> items;

    explicit Proposals(IFrameEncoder& p_encoder) { add(p_encoder); }
    ~Proposals() {
        for (FrameCodecProposal* proposal : items) {
            proposal->release();
        }
    }
    void add(IFrameEncoder& p_encoder) {
        p_encoder.getCodecProposals(list);
        items.clear();
        for (FrameCodecProposal* proposal : list) {
            items.push_back(proposal);
        }
    }
    std::vector<std::string> implementations() const {
        std::vector<std::string> names;
        for (const FrameCodecProposal* proposal : items) {
            names.push_back(proposal->codecImplementation.getData());
        }
        return names;
    }
};

class FrameEncoder : public PluginTest {
protected:
    Held<IFrameEncoder> m_encoder{createPluginObject<IFrameEncoder>("FFmpegFrameEncoder")};
};

typedef std::vector<std::string> Names;

/// Everything that no entry of the table sets.
void expectOtherFieldsEmpty(const FrameCodecProposal& p_proposal) {
    for (ProposalTypeEnum field :
         {p_proposal.planesModelSingle, p_proposal.planesModel410, p_proposal.planesModel411, p_proposal.planesModel422,
          p_proposal.planesModel444, p_proposal.colorSpaceRGB, p_proposal.colorSpaceBT709,
          p_proposal.colorSpaceBT709FullRange, p_proposal.lossless, p_proposal.packedBlocks, p_proposal.multiSlice,
          p_proposal.compressionRle, p_proposal.compressionLz4, p_proposal.compressionZip}) {
        EXPECT_EQ(ZYR_PROPOSAL_NONE, field);
    }
    for (bool_t field :
         {p_proposal.planesModelYUV, p_proposal.planesModel, p_proposal.colorSpaceYUV, p_proposal.compression}) {
        EXPECT_EQ(0, field);
    }
    EXPECT_EQ(ZYR_PROPOSAL_MANDATORY, p_proposal.planesModel420);
    EXPECT_EQ(1, p_proposal.colorSpace);
    EXPECT_EQ(ZYR_PROPOSAL_MANDATORY, p_proposal.video);
}

} // namespace

TEST_F(FrameEncoder, NamesTheLibraryAndItsVersion) {
    EXPECT_STREQ("ffmpeg", m_encoder->getLibName().getData());
    EXPECT_EQ(zyr_encodeVersion64(7, 1, 0), m_encoder->getLibVersion());
}

TEST_F(FrameEncoder, HasAnEmptyRecordBeforeInitialization) {
    EXPECT_TRUE(m_encoder->getCodecName().isEmpty());
    ASSERT_NE(nullptr, m_encoder->getCodecInfo());
    EXPECT_TRUE(m_encoder->getCodecInfo()->colorSpaces.isEmpty());
}

TEST_F(FrameEncoder, OffersTheTwoSoftwareEncodersWithoutADevice) {
    m_encoder->setAdapterID(7);
    Proposals proposals(*m_encoder);
    ASSERT_EQ((Names{"libvpx-vp9", "mpeg1video"}), proposals.implementations());

    const FrameCodecProposal& vp9 = *proposals.items[0];
    EXPECT_STREQ("vp9", vp9.codecName.getData());
    EXPECT_STREQ("crf=32,deadline=realtime,cpu-used=8,threads=8,lag-in-frames=0", vp9.codecOptions.getData());
    EXPECT_TRUE(vp9.hardwareDeviceName.isEmpty());
    EXPECT_EQ(ZYR_CODEC_RATING_NORMAL, vp9.rating);
    EXPECT_EQ(7u, vp9.adapterID);
    EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, vp9.colorSpaceBT601);
    EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, vp9.colorSpaceBT601FullRange);
    EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, vp9.codecProfileBaseline);
    EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, vp9.codecProfileMain);
    EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, vp9.codecProfileHigh);
    EXPECT_EQ(1, vp9.codecProfile);
    EXPECT_EQ(ZYR_PROPOSAL_MANDATORY, vp9.variableQuality);
    expectOtherFieldsEmpty(vp9);

    const FrameCodecProposal& mpeg = *proposals.items[1];
    EXPECT_STREQ("mpeg1video", mpeg.codecName.getData());
    EXPECT_STREQ("strict=unofficial", mpeg.codecOptions.getData());
    EXPECT_TRUE(mpeg.hardwareDeviceName.isEmpty());
    EXPECT_EQ(ZYR_CODEC_RATING_FAST, mpeg.rating);
    EXPECT_EQ(7u, mpeg.adapterID);
    EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, mpeg.colorSpaceBT601);
    EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, mpeg.colorSpaceBT601FullRange);
    EXPECT_EQ(ZYR_PROPOSAL_NONE, mpeg.codecProfileBaseline);
    EXPECT_EQ(ZYR_PROPOSAL_NONE, mpeg.codecProfileMain);
    EXPECT_EQ(ZYR_PROPOSAL_NONE, mpeg.codecProfileHigh);
    EXPECT_EQ(0, mpeg.codecProfile);
    EXPECT_EQ(ZYR_PROPOSAL_MANDATORY, mpeg.variableQuality);
    expectOtherFieldsEmpty(mpeg);

    const Lines log = takeLog();
    ASSERT_EQ(2u, log.size());
    EXPECT_EQ(0u, log[0].find("DEBUG Unable to create VAAPI device for FFmpeg encoder (-"));
    EXPECT_EQ(0u, log[1].find("DEBUG Unable to create VAAPI device for FFmpeg encoder (-"));
}

TEST_F(FrameEncoder, OffersAllFourEncodersWithADevice) {
    setRenderNodePresent(true);
    m_encoder->setAdapterID(9);
    Proposals proposals(*m_encoder);
    ASSERT_EQ((Names{"libvpx-vp9", "vp9_vaapi", "h264_vaapi", "mpeg1video"}), proposals.implementations());
    EXPECT_STREQ("vp9", proposals.items[1]->codecName.getData());
    EXPECT_STREQ("h264", proposals.items[2]->codecName.getData());
    for (int i : {1, 2}) {
        const FrameCodecProposal& proposal = *proposals.items[i];
        EXPECT_STREQ("async_depth=1", proposal.codecOptions.getData());
        EXPECT_STREQ("vaapi", proposal.hardwareDeviceName.getData());
        EXPECT_EQ(ZYR_CODEC_RATING_ULTRA_FAST, proposal.rating);
        EXPECT_EQ(9u, proposal.adapterID);
        EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, proposal.colorSpaceBT601);
        EXPECT_EQ(ZYR_PROPOSAL_NONE, proposal.colorSpaceBT601FullRange);
        EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, proposal.codecProfileBaseline);
        EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, proposal.codecProfileMain);
        EXPECT_EQ(ZYR_PROPOSAL_OPTIONAL, proposal.codecProfileHigh);
        EXPECT_EQ(1, proposal.codecProfile);
        EXPECT_EQ(ZYR_PROPOSAL_NONE, proposal.variableQuality);
        expectOtherFieldsEmpty(proposal);
    }
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(FrameEncoder, LeavesOutTheEncoderWhoseProfileTheDriverLacks) {
    setRenderNodePresent(true);
    failVaDriverAt("VP9");
    Proposals proposals(*m_encoder);
    EXPECT_EQ((Names{"libvpx-vp9", "h264_vaapi", "mpeg1video"}), proposals.implementations());
    const Lines log = takeLog();
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(0u, log[0].find("DEBUG Unable to open ffmpeg encoder context with error:"));
}

TEST_F(FrameEncoder, LeavesOutHardwareThatGivesNoPacketForAFrame) {
    const Lines refusal = {"DEBUG VAAPI encoder cannot return a packet for each submitted frame",
                           "DEBUG Unable to open ffmpeg encoder context with error:Resource temporarily unavailable"};
    const Lines twice = {refusal[0], refusal[1], refusal[0], refusal[1]};
    setRenderNodePresent(true);
    for (const char* word : {"EmptyPacket", "EndPicture", "BeginPicture", "RenderPicture", "CreateBuffer",
                             "SyncSurface", "DeriveImage,CreateImage"}) {
        failVaDriverAt(word);
        Held<IFrameEncoder> encoder(createPluginObject<IFrameEncoder>("FFmpegFrameEncoder"));
        Proposals proposals(*encoder);
        EXPECT_EQ((Names{"libvpx-vp9", "mpeg1video"}), proposals.implementations()) << word;
        EXPECT_EQ(twice, takeLog()) << word;
    }
}

TEST_F(FrameEncoder, LeavesOutHardwareWithoutSurfaces) {
    setRenderNodePresent(true);
    failVaDriverAt("CreateSurfaces");
    Proposals proposals(*m_encoder);
    EXPECT_EQ((Names{"libvpx-vp9", "mpeg1video"}), proposals.implementations());
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(FrameEncoder, LeavesOutHardwareWhoseDriverDoesNotStart) {
    setRenderNodePresent(true);
    failVaDriverAt("Initialize");
    Proposals proposals(*m_encoder);
    EXPECT_EQ((Names{"libvpx-vp9", "mpeg1video"}), proposals.implementations());
    EXPECT_EQ(2u, takeLog().size());
}

TEST_F(FrameEncoder, ProbesOnceAndAppendsAtEachCall) {
    Proposals proposals(*m_encoder);
    takeLog();
    proposals.add(*m_encoder);
    EXPECT_EQ((Names{"libvpx-vp9", "mpeg1video", "libvpx-vp9", "mpeg1video"}), proposals.implementations());
    EXPECT_NE(proposals.items[0], proposals.items[2]);
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(FrameEncoder, DoesNotNoticeADeviceThatAppearsLater) {
    Proposals before(*m_encoder);
    setRenderNodePresent(true);
    Proposals after(*m_encoder);
    EXPECT_EQ(before.implementations(), after.implementations());
}

TEST_F(FrameEncoder, ProbesAnewAfterClearAndKeepsItsRecord) {
    ASSERT_TRUE(m_encoder->initialize(makeCodecInfo("vp9", "libvpx-vp9", "crf=20", "", ZYR_COLOR_SPACE_BT_601)));
    takeLog();
    fakeRecord().calls.clear();
    m_encoder->clear();
    EXPECT_EQ((Lines{"clear"}), fakeRecord().calls);
    EXPECT_STREQ("vp9", m_encoder->getCodecName().getData());
    setRenderNodePresent(true);
    Proposals proposals(*m_encoder);
    EXPECT_EQ(4u, proposals.items.size());
}

TEST_F(FrameEncoder, ProposesTheAdapterOfTheTimeOfProbing) {
    m_encoder->setAdapterID(5);
    Proposals before(*m_encoder);
    m_encoder->setAdapterID(6);
    Proposals after(*m_encoder);
    EXPECT_EQ(6u, m_encoder->getAdapterID());
    EXPECT_EQ(5u, after.items[0]->adapterID);
}

TEST_F(FrameEncoder, IsInitializedWithAWorkingEncoder) {
    for (ColorSpaceEnum colorSpace : {ZYR_COLOR_SPACE_BT_601, ZYR_COLOR_SPACE_BT_601_FR}) {
        EXPECT_EQ(1, m_encoder->initialize(makeCodecInfo("vp9", "libvpx-vp9", "crf=20", "", colorSpace)));
        EXPECT_STREQ("vp9", m_encoder->getCodecName().getData());
        EXPECT_STREQ("crf=20", m_encoder->getCodecInfo()->codecOptions.getData());
        EXPECT_EQ(colorSpace, m_encoder->getCodecInfo()->colorSpaces.frontConst());
    }
    EXPECT_EQ(1, m_encoder->initialize(makeCodecInfo("mpeg1video", "mpeg1video", "", "", ZYR_COLOR_SPACE_BT_601)));
    EXPECT_STREQ("mpeg1video", m_encoder->getCodecName().getData());
    EXPECT_EQ(1, m_encoder->deinitialize());
    EXPECT_STREQ("mpeg1video", m_encoder->getCodecName().getData());
}

TEST_F(FrameEncoder, RefusesOtherColourSpacesInSilence) {
    FrameCodecInfo info = makeCodecInfo("vp9", "libvpx-vp9", "", "", ZYR_COLOR_SPACE_BT_709);
    info.colorSpaces.pushBack(ZYR_COLOR_SPACE_BT_601, nullptr);
    EXPECT_EQ(0, m_encoder->initialize(info));
    info.colorSpaces.clear();
    EXPECT_EQ(0, m_encoder->initialize(info));
    EXPECT_TRUE(m_encoder->getCodecName().isEmpty());
    EXPECT_EQ(Lines{}, takeWholeLog());
}

TEST_F(FrameEncoder, RefusesFullRangeOnHardware) {
    EXPECT_EQ(0, m_encoder->initialize(makeCodecInfo("vp9", "libvpx-vp9", "", "vaapi", ZYR_COLOR_SPACE_BT_601_FR)));
    EXPECT_EQ(Lines{}, takeWholeLog());
    EXPECT_EQ(1, m_encoder->initialize(makeCodecInfo("vp9", "libvpx-vp9", "", "", ZYR_COLOR_SPACE_BT_601_FR)));
}

TEST_F(FrameEncoder, RefusesAnEncoderThatDoesNotWorkHere) {
    EXPECT_EQ(0, m_encoder->initialize(makeCodecInfo("vp9", "vp9_vaapi", "", "vaapi", ZYR_COLOR_SPACE_BT_601)));
    EXPECT_EQ(0, m_encoder->initialize(makeCodecInfo("vp9", "mpeg1video", "", "", ZYR_COLOR_SPACE_BT_601)));
    EXPECT_EQ(0, m_encoder->initialize(makeCodecInfo("vp8", "libvpx-vp9", "", "", ZYR_COLOR_SPACE_BT_601)));
    EXPECT_TRUE(m_encoder->getCodecName().isEmpty());
}

TEST_F(FrameEncoder, CreatesContextsThatHoldIt) {
    Held<IFrameEncoderContext> context(m_encoder->createFrameEncoderContext());
    EXPECT_EQ(m_encoder.get(), context->getEncoder());
    EXPECT_EQ(1u, m_encoder->getRefCount());
    EXPECT_STREQ("FFmpegFrameEncoderContext", context->getClassName().getData());
    context = Held<IFrameEncoderContext>();
    EXPECT_EQ(0u, m_encoder->getRefCount());
}

TEST_F(FrameEncoder, AnswersToItsOwnGUIDAndToItsInterfaces) {
    const GUID_t own = GUID_t_fromString(CLASS_GUID);
    EXPECT_TRUE(m_encoder->findClassGUID(own));
    EXPECT_TRUE(m_encoder->findClassGUID(zyr_getInterfaceGUID<IFrameEncoder>()));
    EXPECT_TRUE(m_encoder->findClassGUID(zyr_getInterfaceGUID<IObject>()));
    EXPECT_FALSE(m_encoder->findClassGUID(zyr_getInterfaceGUID<IFrameDecoder>()));
    EXPECT_EQ(m_encoder.get(), m_encoder->findInterfaceObjectByClassGUID(own));
    IObject* base = m_encoder->findInterfaceObjectByClassGUID(zyr_getInterfaceGUID<IFrameEncoder>());
    EXPECT_NE(nullptr, base);
    EXPECT_NE(m_encoder.get(), base);
    EXPECT_EQ(m_encoder.get(), base->getTLIObject());
}

TEST_F(FrameEncoder, ClonesWithoutRecordAndTable) {
    ASSERT_TRUE(m_encoder->initialize(makeCodecInfo("vp9", "libvpx-vp9", "", "", ZYR_COLOR_SPACE_BT_601)));
    fakeRecord().calls.clear();
    Held<IFrameEncoder> clone(static_cast<IFrameEncoder*>(m_encoder->clone()));
    EXPECT_EQ((Lines{"clear", "copy_Backwards"}), fakeRecord().calls);
    EXPECT_STREQ("FFmpegFrameEncoder", clone->getClassName().getData());
    EXPECT_TRUE(clone->getCodecName().isEmpty());
    EXPECT_EQ(0u, clone->getRefCount());
    takeLog();
    Proposals proposals(*clone);
    EXPECT_EQ(2u, takeLog().size()) << "the clone probes for itself";
}

TEST_F(FrameEncoder, EndsTheProcessWhenCopiedFromNull) {
    EXPECT_EXIT(
        {
            hostData().takeMessages();
            atexit([] {
                for (const LogMessage& message : hostData().takeMessages()) {
                    fprintf(stderr, "%s %s\n", message.level.c_str(), message.text.c_str());
                }
            });
            m_encoder->copyUnsafe(nullptr);
        },
        testing::ExitedWithCode(0), "ERROR assert\\(p_src != NULL\\)");
}

TEST_F(FrameEncoder, LeavesNoObjectBehind) {
    const int before = fakeRecord().liveObjects;
    {
        EncodingStream stream(makeCodecInfo("vp9", "libvpx-vp9", "", "", ZYR_COLOR_SPACE_BT_601));
        Proposals proposals(*stream.encoder);
        EXPECT_LT(before, fakeRecord().liveObjects);
    }
    EXPECT_EQ(before, fakeRecord().liveObjects);
}
