// The test driver under the real libva and libavcodec, without anything of ours between them.

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/hwcontext.h>
#include <libavutil/log.h>
}

#include "support/render_node/zyr_render_node.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

using namespace zyr_test;

namespace {

using Bytes = std::vector<uint8_t>;

/// Luma and chroma of a picture, rows without padding.
Bytes makePicture(int p_width, int p_height, int p_number) {
    Bytes bytes;
    for (int y = 0; y < p_height; y++) {
        for (int x = 0; x < p_width; x++) {
            bytes.push_back(static_cast<uint8_t>(40 + (x + y * 2 + p_number * 5) % 160));
        }
    }
    for (int y = 0; y < p_height / 2; y++) {
        for (int x = 0; x < p_width; x++) {
            bytes.push_back(static_cast<uint8_t>(x % 2 == 0 ? 90 + (x / 4 + p_number) % 60 : 180 - (y / 2) % 60));
        }
    }
    return bytes;
}

void copyRows(AVFrame* p_frame, Bytes& p_bytes, bool p_intoFrame) {
    size_t position = 0;
    for (int plane = 0; plane < 2; plane++) {
        for (int y = 0; y < (plane == 0 ? p_frame->height : p_frame->height / 2); y++) {
            uint8_t* row = p_frame->data[plane] + static_cast<ptrdiff_t>(y) * p_frame->linesize[plane];
            size_t width = static_cast<size_t>(p_frame->width);
            if (p_intoFrame) {
                memcpy(row, &p_bytes[position], width);
            } else {
                p_bytes.insert(p_bytes.end(), row, row + width);
            }
            position += width;
        }
    }
}

double psnr(const Bytes& p_first, const Bytes& p_second) {
    double sum = 0;
    for (size_t i = 0; i < p_first.size(); i++) {
        double difference = double(p_first[i]) - double(p_second[i]);
        sum += difference * difference;
    }
    return sum == 0 ? 100 : 10 * std::log10(255.0 * 255.0 * double(p_first.size()) / sum);
}

class Encoder {
public:
    ~Encoder() { avcodec_free_context(&m_context); }

    int open(const char* p_name, int p_width, int p_height) {
        m_context = avcodec_alloc_context3(avcodec_find_encoder_by_name(p_name));
        m_context->width = p_width;
        m_context->height = p_height;
        m_context->pix_fmt = AV_PIX_FMT_VAAPI;
        m_context->time_base = {1, 60};
        m_context->max_b_frames = 0;
        AVBufferRef* device = nullptr;
        int result = av_hwdevice_ctx_create(&device, AV_HWDEVICE_TYPE_VAAPI, nullptr, nullptr, 0);
        if (result < 0) {
            return result;
        }
        m_context->hw_frames_ctx = av_hwframe_ctx_alloc(device);
        av_buffer_unref(&device);
        AVHWFramesContext* frames = reinterpret_cast<AVHWFramesContext*>(m_context->hw_frames_ctx->data);
        frames->format = AV_PIX_FMT_VAAPI;
        frames->sw_format = AV_PIX_FMT_NV12;
        frames->width = p_width;
        frames->height = p_height;
        frames->initial_pool_size = 20;
        result = av_hwframe_ctx_init(m_context->hw_frames_ctx);
        if (result < 0) {
            return result;
        }
        AVDictionary* options = nullptr;
        av_dict_set(&options, "async_depth", "1", 0);
        result = avcodec_open2(m_context, nullptr, &options);
        av_dict_free(&options);
        return result;
    }

    int encode(Bytes p_picture, Bytes& p_packet) {
        AVFrame* frame = av_frame_alloc();
        frame->format = AV_PIX_FMT_NV12;
        frame->width = m_context->width;
        frame->height = m_context->height;
        av_frame_get_buffer(frame, 16);
        copyRows(frame, p_picture, true);
        AVFrame* surface = av_frame_alloc();
        AVPacket* packet = av_packet_alloc();
        int result = av_hwframe_get_buffer(m_context->hw_frames_ctx, surface, 0);
        if (result >= 0) {
            result = av_hwframe_transfer_data(surface, frame, 0);
        }
        surface->pts = m_number++;
        if (result >= 0) {
            result = avcodec_send_frame(m_context, surface);
        }
        if (result >= 0) {
            result = avcodec_receive_packet(m_context, packet);
        }
        if (result >= 0) {
            p_packet.assign(packet->data, packet->data + packet->size);
        }
        av_packet_free(&packet);
        av_frame_free(&surface);
        av_frame_free(&frame);
        return result;
    }

private:
    AVCodecContext* m_context = nullptr;
    int m_number = 0;
};

AVPixelFormat chooseVaapi(AVCodecContext*, const AVPixelFormat* p_formats) {
    for (; *p_formats != AV_PIX_FMT_NONE; p_formats++) {
        if (*p_formats == AV_PIX_FMT_VAAPI) {
            return *p_formats;
        }
    }
    return AV_PIX_FMT_NONE;
}

class Decoder {
public:
    ~Decoder() { avcodec_free_context(&m_context); }

    int open(const char* p_name, bool p_hardware) {
        m_context = avcodec_alloc_context3(avcodec_find_decoder_by_name(p_name));
        m_context->flags |= AV_CODEC_FLAG_LOW_DELAY;
        if (p_hardware) {
            m_context->get_format = chooseVaapi;
            int result = av_hwdevice_ctx_create(&m_context->hw_device_ctx, AV_HWDEVICE_TYPE_VAAPI, nullptr, nullptr, 0);
            if (result < 0) {
                return result;
            }
        }
        return avcodec_open2(m_context, nullptr, nullptr);
    }

    /// `p_format` gets the format before the download, `p_picture` luma and chroma (interleaved only from a surface).
    int decode(Bytes p_packet, AVPixelFormat& p_format, Bytes& p_picture) {
        AVPacket* packet = av_packet_alloc();
        av_new_packet(packet, static_cast<int>(p_packet.size()));
        memcpy(packet->data, p_packet.data(), p_packet.size());
        AVFrame* frame = av_frame_alloc();
        AVFrame* copy = av_frame_alloc();
        int result = avcodec_send_packet(m_context, packet);
        if (result >= 0) {
            result = avcodec_receive_frame(m_context, frame);
        }
        p_format = static_cast<AVPixelFormat>(frame->format);
        p_picture.clear();
        if (result >= 0 && p_format == AV_PIX_FMT_VAAPI) {
            result = av_hwframe_transfer_data(copy, frame, 0);
            if (result >= 0) {
                copyRows(copy, p_picture, false);
            }
        } else if (result >= 0) {
            for (int y = 0; y < frame->height; y++) {
                p_picture.insert(p_picture.end(), frame->data[0] + static_cast<ptrdiff_t>(y) * frame->linesize[0],
                                 frame->data[0] + static_cast<ptrdiff_t>(y) * frame->linesize[0] + frame->width);
            }
            for (int y = 0; y < frame->height / 2; y++) {
                for (int x = 0; x < frame->width / 2; x++) {
                    for (int plane = 1; plane <= 2; plane++) {
                        p_picture.push_back(frame->data[plane][static_cast<ptrdiff_t>(y) * frame->linesize[plane] + x]);
                    }
                }
            }
        }
        av_frame_free(&copy);
        av_frame_free(&frame);
        av_packet_free(&packet);
        return result;
    }

private:
    AVCodecContext* m_context = nullptr;
};

class VaDriver : public testing::Test {
protected:
    void SetUp() override {
        av_log_set_level(AV_LOG_QUIET);
        useTestVaDriver(ZYR_TEST_VA_DRIVER_DIR);
        failVaDriverAt(nullptr);
        setRenderNodePresent(true);
    }

    /// One frame at 64x48 with a fresh encoder; what the encoder, or else its opening, gave.
    int encodeOnce(const char* p_name, Bytes& p_packet) {
        Encoder encoder;
        int result = encoder.open(p_name, 64, 48);
        return result < 0 ? result : encoder.encode(makePicture(64, 48, 0), p_packet);
    }
};

} // namespace

TEST_F(VaDriver, GivesOneVp9PacketPerFrame) {
    Encoder encoder;
    ASSERT_EQ(0, encoder.open("vp9_vaapi", 640, 360));
    for (int i = 0; i < 10; i++) {
        Bytes packet;
        ASSERT_EQ(0, encoder.encode(makePicture(640, 360, i), packet)) << "frame " << i;
        EXPECT_GT(packet.size(), 0u) << "frame " << i;
    }
}

TEST_F(VaDriver, DecodesVp9CloseToTheSource) {
    Encoder encoder;
    Decoder decoder;
    ASSERT_EQ(0, encoder.open("vp9_vaapi", 642, 482));
    ASSERT_EQ(0, decoder.open("vp9", true));
    for (int i = 0; i < 5; i++) {
        Bytes source = makePicture(642, 482, i);
        Bytes packet;
        Bytes picture;
        AVPixelFormat format;
        ASSERT_EQ(0, encoder.encode(source, packet));
        ASSERT_EQ(0, decoder.decode(packet, format, picture)) << "frame " << i;
        EXPECT_EQ(AV_PIX_FMT_VAAPI, format);
        ASSERT_EQ(source.size(), picture.size());
        EXPECT_GT(psnr(source, picture), 30) << "frame " << i;
    }
}

TEST_F(VaDriver, DecodesH264EqualToTheSource) {
    for (auto [width, height] : {std::pair(2, 2), std::pair(16, 16), std::pair(642, 482), std::pair(1920, 1080)}) {
        Encoder encoder;
        Decoder decoder;
        ASSERT_EQ(0, encoder.open("h264_vaapi", width, height)) << width;
        ASSERT_EQ(0, decoder.open("h264", true));
        for (int i = 0; i < 3; i++) {
            Bytes source = makePicture(width, height, i);
            Bytes packet;
            Bytes picture;
            AVPixelFormat format;
            ASSERT_EQ(0, encoder.encode(source, packet));
            ASSERT_EQ(0, decoder.decode(packet, format, picture)) << width << ", frame " << i;
            EXPECT_EQ(AV_PIX_FMT_VAAPI, format);
            EXPECT_TRUE(source == picture) << width << ", frame " << i;
        }
    }
}

TEST_F(VaDriver, WritesH264ThatASoftwareDecoderReads) {
    Encoder encoder;
    Decoder decoder;
    ASSERT_EQ(0, encoder.open("h264_vaapi", 200, 100));
    ASSERT_EQ(0, decoder.open("h264", false));
    for (int i = 0; i < 3; i++) {
        Bytes source = makePicture(200, 100, i);
        Bytes packet;
        Bytes picture;
        AVPixelFormat format;
        ASSERT_EQ(0, encoder.encode(source, packet));
        ASSERT_EQ(0, decoder.decode(packet, format, picture)) << "frame " << i;
        EXPECT_EQ(AV_PIX_FMT_YUV420P, format);
        EXPECT_TRUE(source == picture) << "frame " << i;
    }
}

TEST_F(VaDriver, FailsAtOpeningAnEncoderOnDemand) {
    for (const char* word : {"Initialize", "VP9", "Encoding", "CreateConfig", "CreateContext", "CreateSurfaces"}) {
        failVaDriverAt(word);
        Encoder encoder;
        EXPECT_LT(encoder.open("vp9_vaapi", 64, 48), 0) << word;
    }
    failVaDriverAt("H264");
    Encoder encoder;
    EXPECT_LT(encoder.open("h264_vaapi", 64, 48), 0);
}

TEST_F(VaDriver, FailsAtEncodingAFrameOnDemand) {
    for (const char* word : {"CreateBuffer", "BeginPicture", "RenderPicture", "EndPicture", "SyncSurface", "MapBuffer",
                             "CreateImage,DeriveImage", "PutImage,DeriveImage"}) {
        Encoder encoder;
        ASSERT_EQ(0, encoder.open("vp9_vaapi", 64, 48));
        failVaDriverAt(word);
        Bytes packet;
        EXPECT_LT(encoder.encode(makePicture(64, 48, 0), packet), 0) << word;
        failVaDriverAt(nullptr);
    }
}

TEST_F(VaDriver, GivesAnEmptyPacketOnDemand) {
    failVaDriverAt("EmptyPacket");
    for (const char* name : {"vp9_vaapi", "h264_vaapi"}) {
        Bytes packet = {1};
        EXPECT_EQ(0, encodeOnce(name, packet)) << name;
        EXPECT_EQ(0u, packet.size()) << name;
    }
}

TEST_F(VaDriver, FailsAtTheDownloadOnDemand) {
    Bytes packet;
    ASSERT_EQ(0, encodeOnce("vp9_vaapi", packet));
    for (const char* word : {"CreateImage", "GetImage"}) {
        Decoder decoder;
        ASSERT_EQ(0, decoder.open("vp9", true));
        failVaDriverAt(word);
        Bytes picture;
        AVPixelFormat format;
        EXPECT_LT(decoder.decode(packet, format, picture), 0) << word;
        EXPECT_EQ(AV_PIX_FMT_VAAPI, format) << word;
        failVaDriverAt(nullptr);
    }
}

TEST_F(VaDriver, IsNotFoundWithoutARenderNode) {
    setRenderNodePresent(false);
    AVBufferRef* device = nullptr;
    EXPECT_LT(av_hwdevice_ctx_create(&device, AV_HWDEVICE_TYPE_VAAPI, nullptr, nullptr, 0), 0);
    EXPECT_EQ(nullptr, device);
}

TEST_F(VaDriver, RefusesADamagedPacketAndReadsTheNextKeyFrame) {
    Bytes packet;
    ASSERT_EQ(0, encodeOnce("h264_vaapi", packet));
    Decoder decoder;
    ASSERT_EQ(0, decoder.open("h264", true));
    Bytes truncated(packet.begin(), packet.begin() + static_cast<ptrdiff_t>(packet.size() / 2));
    Bytes picture;
    AVPixelFormat format;
    EXPECT_LT(decoder.decode(truncated, format, picture), 0);
    EXPECT_EQ(0, decoder.decode(packet, format, picture));
    EXPECT_TRUE(picture == makePicture(64, 48, 0));
}
