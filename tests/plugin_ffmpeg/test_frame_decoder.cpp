#include "plugin_ffmpeg/zyr_fake_picture.h"
#include "plugin_ffmpeg/zyr_plugin_host.h"
#include "support/render_node/zyr_render_node.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/platform/zyr_version.h"

using namespace zyr;
using namespace zyr_test;

namespace {

constexpr const char* CLASS_GUID = "999bc88e-a780-4b21-a85c-eef13c553370";

/// Owns what the decoder appended.
struct Requests {
    List<FrameCodecRequest*> list;
    std::vector<FrameCodecRequest*> items;

    explicit Requests(IFrameDecoder& p_decoder) { add(p_decoder); }
    ~Requests() {
        for (FrameCodecRequest* request : items) {
            request->release();
        }
    }
    void add(IFrameDecoder& p_decoder) {
        p_decoder.getCodecRequests(list);
        items.clear();
        for (FrameCodecRequest* request : list) {
            items.push_back(request);
        }
    }
    /// "implementation/device" of each.
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const FrameCodecRequest* request : items) {
            names.push_back(std::string(request->codecImplementation.getData()) + "/" +
                            request->hardwareDeviceName.getData());
        }
        return names;
    }
};

class FrameDecoder : public PluginTest {
protected:
    bool_t initialize(const char* p_codecName, const char* p_implementation, const char* p_device) {
        return m_decoder->initialize(
            makeCodecInfo(p_codecName, p_implementation, "", p_device, ZYR_COLOR_SPACE_BT_601));
    }

    Held<IFrameDecoder> m_decoder{createPluginObject<IFrameDecoder>("FFmpegFrameDecoder")};
};

typedef std::vector<std::string> Names;

} // namespace

TEST_F(FrameDecoder, NamesTheLibraryAndItsVersion) {
    EXPECT_STREQ("ffmpeg", m_decoder->getLibName().getData());
    EXPECT_EQ(zyr_encodeVersion64(7, 1, 0), m_decoder->getLibVersion());
}

TEST_F(FrameDecoder, HasAnEmptyRecordBeforeInitialization) {
    EXPECT_TRUE(m_decoder->getCodecName().isEmpty());
    ASSERT_NE(nullptr, m_decoder->getCodecInfo());
    EXPECT_TRUE(m_decoder->getCodecInfo()->planesModels.isEmpty());
}

TEST_F(FrameDecoder, RequestsTheThreeSoftwareDecodersWithoutADevice) {
    Requests requests(*m_decoder);
    EXPECT_EQ((Names{"vp9/", "libvpx-vp9/", "mpeg1video/"}), requests.names());
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(FrameDecoder, RequestsAllFiveDecodersWithADevice) {
    setRenderNodePresent(true);
    Requests requests(*m_decoder);
    ASSERT_EQ((Names{"vp9/", "libvpx-vp9/", "vp9/vaapi", "h264/vaapi", "mpeg1video/"}), requests.names());
    const char* const codecNames[] = {"vp9", "vp9", "vp9", "h264", "mpeg1video"};
    const CodecRatingEnum ratings[] = {ZYR_CODEC_RATING_FAST, ZYR_CODEC_RATING_NORMAL, ZYR_CODEC_RATING_ULTRA_FAST,
                                       ZYR_CODEC_RATING_ULTRA_FAST, ZYR_CODEC_RATING_FAST};
    for (int i = 0; i < 5; i++) {
        const FrameCodecRequest& request = *requests.items[i];
        EXPECT_STREQ(codecNames[i], request.codecName.getData());
        EXPECT_TRUE(request.codecOptions.isEmpty());
        EXPECT_EQ(ratings[i], request.rating);
        EXPECT_EQ(ZYR_REQUEST_MANDATORY, request.planesModel420);
        EXPECT_EQ(ZYR_REQUEST_OPTIONAL_1, request.colorSpaceBT601FullRange);
        EXPECT_EQ(ZYR_REQUEST_OPTIONAL_2, request.colorSpaceBT709FullRange);
        EXPECT_EQ(ZYR_REQUEST_OPTIONAL_3, request.colorSpaceBT601);
        EXPECT_EQ(ZYR_REQUEST_OPTIONAL_4, request.colorSpaceBT709);
        EXPECT_EQ(1, request.colorSpaceYUV);
        EXPECT_EQ(1, request.colorSpace);
        EXPECT_EQ(ZYR_REQUEST_OPTIONAL, request.codecProfileBaseline);
        EXPECT_EQ(ZYR_REQUEST_OPTIONAL, request.codecProfileMain);
        EXPECT_EQ(ZYR_REQUEST_OPTIONAL, request.codecProfileHigh);
        EXPECT_EQ(ZYR_REQUEST_MANDATORY, request.variableQuality);
        EXPECT_EQ(ZYR_REQUEST_MANDATORY, request.video);
        for (RequestTypeEnum field :
             {request.planesModelSingle, request.planesModel410, request.planesModel411, request.planesModel422,
              request.planesModel444, request.colorSpaceRGB, request.lossless, request.packedBlocks, request.multiSlice,
              request.compressionRle, request.compressionLz4, request.compressionZip}) {
            EXPECT_EQ(ZYR_REQUEST_NONE, field);
        }
        for (bool_t field : {request.planesModelYUV, request.planesModel, request.codecProfile, request.compression}) {
            EXPECT_EQ(0, field);
        }
    }
}

TEST_F(FrameDecoder, RequestsHardwareWithoutTryingAFrame) {
    setRenderNodePresent(true);
    failVaDriverAt("EndPicture,CreateSurfaces,VP9,H264");
    Requests requests(*m_decoder);
    EXPECT_EQ(5u, requests.items.size());
}

TEST_F(FrameDecoder, LeavesOutHardwareWhoseDriverDoesNotStart) {
    setRenderNodePresent(true);
    failVaDriverAt("Initialize");
    Requests requests(*m_decoder);
    EXPECT_EQ((Names{"vp9/", "libvpx-vp9/", "mpeg1video/"}), requests.names());
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(FrameDecoder, ProbesOnceAndAppendsAtEachCall) {
    Requests requests(*m_decoder);
    setRenderNodePresent(true);
    requests.add(*m_decoder);
    EXPECT_EQ((Names{"vp9/", "libvpx-vp9/", "mpeg1video/", "vp9/", "libvpx-vp9/", "mpeg1video/"}), requests.names());
    m_decoder->clear();
    requests.add(*m_decoder);
    EXPECT_EQ(11u, requests.items.size());
}

TEST_F(FrameDecoder, AcceptsWhateverIsNotH264) {
    EXPECT_TRUE(initialize("vp9", "vp9", ""));
    EXPECT_STREQ("vp9", m_decoder->getCodecName().getData());
    EXPECT_TRUE(initialize("vp9", "", ""));
    EXPECT_TRUE(initialize("vp9", "no such decoder", "no such device"));
    EXPECT_STREQ("no such decoder", m_decoder->getCodecInfo()->codecImplementation.getData());
    EXPECT_TRUE(m_decoder->deinitialize());
    EXPECT_STREQ("vp9", m_decoder->getCodecName().getData());
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(FrameDecoder, AcceptsH264WithVaapiOnly) {
    EXPECT_TRUE(initialize("h264", "h264", "vaapi"));
    EXPECT_STREQ("h264", m_decoder->getCodecName().getData());
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(FrameDecoder, RefusesEveryOtherFormOfH264) {
    const char* const forms[][3] = {{"h264", "h264", ""},      {"h264", "h264_cuvid", "vaapi"}, {"h264", "", "vaapi"},
                                    {"h264", "vp9", "vaapi"},  {"vp9", "h264", "vaapi"},        {"", "h264", ""},
                                    {"h264", "h264", "vulkan"}};
    for (const auto& form : forms) {
        EXPECT_FALSE(initialize(form[0], form[1], form[2])) << form[0] << " " << form[1] << " " << form[2];
        EXPECT_EQ((Lines{"WARN FFmpeg H.264 requires a supported hardware decoder"}), takeLog());
    }
    EXPECT_TRUE(m_decoder->getCodecName().isEmpty());
}

TEST_F(FrameDecoder, CreatesContextsThatHoldIt) {
    Held<IFrameDecoderContext> context(m_decoder->createFrameDecoderContext());
    EXPECT_EQ(m_decoder.get(), context->getDecoder());
    EXPECT_EQ(1u, m_decoder->getRefCount());
    context = Held<IFrameDecoderContext>();
    EXPECT_EQ(0u, m_decoder->getRefCount());
}

TEST_F(FrameDecoder, AnswersToItsOwnGUIDAndToItsInterfaces) {
    const GUID_t own = GUID_t_fromString(CLASS_GUID);
    EXPECT_TRUE(m_decoder->findClassGUID(own));
    EXPECT_TRUE(m_decoder->findClassGUID(zyr_getInterfaceGUID<IFrameDecoder>()));
    EXPECT_FALSE(m_decoder->findClassGUID(zyr_getInterfaceGUID<IFrameEncoder>()));
    EXPECT_EQ(m_decoder.get(), m_decoder->findInterfaceObjectByClassGUID(own));
    EXPECT_EQ(nullptr, m_decoder->findInterfaceObjectByClassGUID(zyr_getInterfaceGUID<IFrameEncoder>()));
}

TEST_F(FrameDecoder, ClonesWithoutRecordAndTable) {
    ASSERT_TRUE(initialize("vp9", "vp9", ""));
    Held<IFrameDecoder> clone(static_cast<IFrameDecoder*>(m_decoder->clone()));
    EXPECT_STREQ("FFmpegFrameDecoder", clone->getClassName().getData());
    EXPECT_TRUE(clone->getCodecName().isEmpty());
}

TEST_F(FrameDecoder, EndsTheProcessWhenCopiedFromNull) {
    EXPECT_EXIT(
        {
            hostData().takeMessages();
            atexit([] {
                for (const LogMessage& message : hostData().takeMessages()) {
                    fprintf(stderr, "%s %s\n", message.level.c_str(), message.text.c_str());
                }
            });
            m_decoder->copyUnsafe(nullptr);
        },
        testing::ExitedWithCode(0), "ERROR assert\\(p_src != NULL\\)");
}
