#include "blocks_peers.h"

#include "host/zyr_ffmpeg_handles.h"
#include "host/zyr_video_source.h"

#include <array>
#include <cstring>
#include <libyuv.h>
#include <png.h>
#include <sys/resource.h>

extern "C" {
#include <libavutil/opt.h>
}

namespace zyr::bench {

using zyr_test::Area;
using zyr_test::ScreenPainter;

double getProcessTime() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

size_t codeAsPng(const ScreenPainter& p_picture, int p_level) {
    png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(writer);
    size_t size = 0;
    png_set_write_fn(
        writer, &size,
        [](png_structp p_png, png_bytep, size_t p_count) { *static_cast<size_t*>(png_get_io_ptr(p_png)) += p_count; },
        [](png_structp) {});
    png_set_IHDR(writer, info, p_picture.getWidth(), p_picture.getHeight(), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(writer, p_level);
    png_write_info(writer, info);
    png_set_bgr(writer);
    png_set_filler(writer, 0, PNG_FILLER_AFTER);
    for (uint32_t y = 0; y < p_picture.getHeight(); y++) {
        png_write_row(writer, p_picture.getBytes() + size_t(y) * p_picture.getWidth() * 4);
    }
    png_write_end(writer, info);
    png_destroy_write_struct(&writer, &info);
    return size;
}

size_t codeAsQoi(const ScreenPainter& p_picture) {
    // Only the bytes are counted: a head of 14, an end of 8, and what each pixel takes.
    size_t size = 14 + 8;
    std::array<uint32_t, 64> seen{};
    uint32_t last = 0xFF000000;
    uint32_t run = 0;
    for (const uint32_t color : p_picture.getPixels()) {
        const uint32_t pixel = color | 0xFF000000;
        if (pixel == last) {
            if (++run == 62) {
                size++;
                run = 0;
            }
            continue;
        }
        if (run != 0) {
            size++;
            run = 0;
        }
        const uint32_t red = pixel >> 16 & 255;
        const uint32_t green = pixel >> 8 & 255;
        const uint32_t blue = pixel & 255;
        uint32_t& place = seen[(red * 3 + green * 5 + blue * 7 + 255 * 11) % 64];
        const int dr = int8_t(red - (last >> 16 & 255));
        const int dg = int8_t(green - (last >> 8 & 255));
        const int db = int8_t(blue - (last & 255));
        const bool isNear = dr >= -2 && dr <= 1 && dg >= -2 && dg <= 1 && db >= -2 && db <= 1;
        const bool isClose = dg >= -32 && dg <= 31 && dr - dg >= -8 && dr - dg <= 7 && db - dg >= -8 && db - dg <= 7;
        size += place == pixel || isNear ? 1 : (isClose ? 2 : 4);
        place = pixel;
        last = pixel;
    }
    return size + (run != 0);
}

namespace {

class Vp9Peer : public StreamPeer {
public:
    Vp9Peer(uint32_t p_width, uint32_t p_height) {
        const AVCodec* codec = avcodec_find_encoder_by_name("libvpx-vp9");
        m_context = avcodec_alloc_context3(codec);
        m_context->width = int(p_width + 1) & ~1;
        m_context->height = int(p_height + 1) & ~1;
        m_context->pix_fmt = AV_PIX_FMT_YUV420P;
        m_context->time_base = {1, 30};
        AVDictionary* options = nullptr;
        av_dict_parse_string(&options,
                             "crf=29,b=0,deadline=realtime,speed=9,tune-content=screen,row-mt=1,tile-columns=2,"
                             "threads=2,lag-in-frames=0",
                             "=", ",", 0);
        if (avcodec_open2(m_context, codec, &options) < 0) {
            throw host::RunError("cannot open libvpx-vp9");
        }
        av_dict_free(&options);
        m_frame = av_frame_alloc();
        m_frame->format = AV_PIX_FMT_YUV420P;
        m_frame->width = m_context->width;
        m_frame->height = m_context->height;
        av_frame_get_buffer(m_frame, 0);
        m_packet = av_packet_alloc();
    }
    ~Vp9Peer() override {
        av_packet_free(&m_packet);
        av_frame_free(&m_frame);
        avcodec_free_context(&m_context);
    }

    size_t code(const ScreenPainter& p_picture, const std::vector<Area>&) override {
        av_frame_make_writable(m_frame);
        libyuv::ARGBToI420(p_picture.getBytes(), int(p_picture.getWidth()) * 4, m_frame->data[0], m_frame->linesize[0],
                           m_frame->data[1], m_frame->linesize[1], m_frame->data[2], m_frame->linesize[2],
                           int(p_picture.getWidth()), int(p_picture.getHeight()));
        m_frame->pts = m_count++;
        avcodec_send_frame(m_context, m_frame);
        size_t size = 0;
        while (avcodec_receive_packet(m_context, m_packet) >= 0) {
            size += size_t(m_packet->size);
            av_packet_unref(m_packet);
        }
        return size;
    }

private:
    AVCodecContext* m_context = nullptr;
    AVFrame* m_frame = nullptr;
    AVPacket* m_packet = nullptr;
    int64_t m_count = 0;
};

} // namespace

std::unique_ptr<StreamPeer> createVp9(uint32_t p_width, uint32_t p_height) {
    return std::make_unique<Vp9Peer>(p_width, p_height);
}

} // namespace zyr::bench
