// Lossless blocks beside other ways to code a screen: Tight as libvncserver codes the same rectangles, VP9 tuned for
// screens, and for whole frames PNG and QOI. Bytes are means of a frame behind the first one, times medians on one
// core. Arguments: a number of frames, and a folder where the packets are left for bench/blocks_decode.mjs.

#include "blocks_peers.h"
#include "blocks_scenes.h"
#include "plugin_blocks/zyr_blocks_picture_decoder.h"
#include "plugin_blocks/zyr_blocks_picture_encoder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

using namespace zyr;
using namespace zyr::bench;
using zyr_test::Area;
using zyr_test::ScreenPainter;

namespace {

double getThreadTime() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

double getMedian(std::vector<double> p_values) {
    if (p_values.empty()) {
        return 0;
    }
    std::sort(p_values.begin(), p_values.end());
    return p_values[p_values.size() / 2];
}

struct Run {
    size_t m_keyBytes = 0;
    double m_bytes = 0; ///< of a frame behind the first
    double m_keyEncode = 0;
    double m_keyDecode = 0;
    std::vector<double> m_encode;
    std::vector<double> m_decode;
    blocks::EncodeTimes m_times = {};
    blocks::BlockCounts m_counts = {};
    std::vector<std::vector<Area>> m_changed; ///< of each frame, in whole blocks
};

/// The marked blocks, joined along rows and then down.
std::vector<Area> joinBlocks(const blocks::PictureEncoder& p_encoder, uint32_t p_width, uint32_t p_height) {
    const int columns = int(p_encoder.getHBlocks());
    const int rows = int(p_encoder.getVBlocks());
    std::vector<uint8_t> marks(p_encoder.getMarks().getData(), p_encoder.getMarks().getData() + columns * rows);
    std::vector<Area> areas;
    for (int row = 0; row < rows; row++) {
        for (int column = 0; column < columns; column++) {
            int width = 0;
            while (column + width < columns && marks[size_t(row * columns + column + width)] != 0) {
                width++;
            }
            int height = width != 0;
            while (width != 0 && row + height < rows &&
                   std::all_of(&marks[size_t((row + height) * columns + column)],
                               &marks[size_t((row + height) * columns + column)] + width,
                               [](uint8_t p_mark) { return p_mark != 0; })) {
                height++;
            }
            for (int i = 0; i < height; i++) {
                std::fill_n(&marks[size_t((row + i) * columns + column)], width, uint8_t(0));
            }
            if (width != 0) {
                areas.push_back({column * 16, row * 16, std::min(width * 16, int(p_width) - column * 16),
                                 std::min(height * 16, int(p_height) - row * 16)});
            }
        }
    }
    return areas;
}

/// Each packet behind its size in four bytes.
void keepPacket(const std::string& p_path, const Array<uint8_t>& p_packet, bool p_isFirst) {
    std::ofstream file(p_path, p_isFirst ? std::ios::binary : std::ios::binary | std::ios::app);
    const uint32_t size = uint32_t(p_packet.getSize());
    file.write(reinterpret_cast<const char*>(&size), 4);
    file.write(reinterpret_cast<const char*>(p_packet.getData()), size);
}

Run runBlocks(const Scene& p_scene, CompressionTypeEnum p_compression, const std::string& p_packetPath = "") {
    Run run;
    const std::unique_ptr<blocks::PictureEncoder> encoder = std::make_unique<blocks::PictureEncoder>();
    blocks::PictureDecoder decoder;
    encoder->setNumOfThreads(1);
    decoder.setNumOfThreads(1);
    Array<uint8_t> packet;
    packet.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
    // The second turn finds all memory in place.
    for (int turn = 0; turn < 2; turn++) {
        run = Run();
        encoder->forget();
        for (const ScreenPainter& frame : p_scene.m_frames) {
            const uint32_t width = frame.getWidth();
            const uint32_t height = frame.getHeight();
            double start = getThreadTime();
            encoder->encode({frame.getBytes(), size_t(width) * 4, width, height}, nullptr, p_compression, 0, packet);
            const double encode = getThreadTime() - start;
            start = getThreadTime();
            const char* error = decoder.decode(packet.getData(), packet.getSize(), width, height);
            const double decode = getThreadTime() - start;
            if (error != nullptr) {
                printf("%s: %s\n", p_scene.m_name.c_str(), error);
                exit(1);
            }
            run.m_changed.push_back(joinBlocks(*encoder, width, height));
            if (!p_packetPath.empty() && turn == 1) {
                keepPacket(p_packetPath, packet, &frame == &p_scene.m_frames.front());
            }
            const blocks::EncodeTimes& times = encoder->getTimes();
            if (run.m_keyBytes == 0) {
                run.m_keyBytes = packet.getSize();
                run.m_keyEncode = encode;
                run.m_keyDecode = decode;
                if (p_scene.m_frames.size() > 1) {
                    continue;
                }
            }
            run.m_bytes += double(packet.getSize()) / double(std::max<size_t>(p_scene.m_frames.size() - 1, 1));
            run.m_encode.push_back(encode);
            run.m_decode.push_back(decode);
            run.m_times.compare += times.compare;
            run.m_times.moves += times.moves;
            run.m_times.code += times.code - times.compress;
            run.m_times.compress += times.compress;
            const blocks::BlockCounts counts = encoder->getCounts();
            for (uint32_t kind = 0; kind < blocks::KIND_COUNT; kind++) {
                run.m_counts.kinds[kind] += counts.kinds[kind];
            }
            run.m_counts.parts += counts.parts;
            run.m_counts.moved += counts.moved / 256;
        }
    }
    return run;
}

struct PeerRun {
    double m_bytes = 0;
    double m_time = 0;
};

PeerRun runPeer(StreamPeer* p_peer, const Scene& p_scene, const Run& p_run) {
    PeerRun run;
    if (p_peer == nullptr) {
        return run;
    }
    std::vector<double> times;
    for (size_t i = 0; i < p_scene.m_frames.size(); i++) {
        const double start = getProcessTime();
        const size_t bytes = p_peer->code(p_scene.m_frames[i], p_run.m_changed[i]);
        if (i != 0) {
            times.push_back(getProcessTime() - start);
            run.m_bytes += double(bytes) / double(p_scene.m_frames.size() - 1);
        }
    }
    run.m_time = getMedian(times);
    return run;
}

/// What Tight takes when its server is told that the text was scrolled, and codes the new line alone.
void showToldScroll(const Scene& p_scene, const Run& p_run) {
    constexpr double COPY = 16; // bytes of the rectangle that is copied
    const ScreenPainter& first = p_scene.m_frames[0];
    Run told;
    told.m_changed.assign(p_scene.m_frames.size(), {{0, int(first.getHeight()) - 16, int(first.getWidth()), 16}});
    const PeerRun tight = runPeer(createTight(first.getWidth(), first.getHeight()).get(), p_scene, told);
    if (tight.m_bytes != 0) {
        printf("%-15s Tight, when told of the scroll, takes %.0f: lz4 is %.2f of it\n", p_scene.m_name.c_str(),
               tight.m_bytes + COPY, p_run.m_bytes / (tight.m_bytes + COPY));
    }
}

void showShares(const Scene& p_scene, const Run& p_run) {
    static const char* const NAMES[] = {"fill",        "palette 2", "palette 4", "palette 16",
                                        "palette 256", "predicted", "copy",      "raw"};
    double sum = 0;
    for (const uint32_t count : p_run.m_counts.kinds) {
        sum += count;
    }
    printf("%-15s", p_scene.m_name.c_str());
    for (uint32_t kind = 0; kind < blocks::KIND_COUNT; kind++) {
        if (p_run.m_counts.kinds[kind] != 0) {
            printf(" %s %.0f %%,", NAMES[kind], 100.0 * p_run.m_counts.kinds[kind] / sum);
        }
    }
    const double time =
        double(p_run.m_times.compare + p_run.m_times.moves + p_run.m_times.code + p_run.m_times.compress);
    printf(" in parts %.0f %%, moved %u blocks; compare %.0f %%, moves %.0f %%, code %.0f %%, compress %.0f %% of the "
           "time\n",
           sum != 0 ? 100.0 * p_run.m_counts.parts / sum : 0, p_run.m_counts.moved,
           100.0 * double(p_run.m_times.compare) / time, 100.0 * double(p_run.m_times.moves) / time,
           100.0 * double(p_run.m_times.code) / time, 100.0 * double(p_run.m_times.compress) / time);
}

} // namespace

int main(int p_count, char** p_arguments) {
    const int wanted = p_count > 1 ? atoi(p_arguments[1]) : 40;
    if (wanted < 2 || p_count > 3) {
        fprintf(stderr, "usage: bench_blocks [FRAMES [FOLDER]]\n"
                        "FRAMES  of each scene, at least 2; 40 without it\n"
                        "FOLDER  where the packets are written, for bench/blocks_decode.mjs\n");
        return 2;
    }
    const uint32_t numOfFrames = uint32_t(wanted);
    const std::string packetFolder = p_count > 2 ? p_arguments[2] : "";
    const auto packetPath = [&](const Scene& p_scene) {
        return packetFolder.empty() ? std::string() : packetFolder + "/" + p_scene.m_name + ".blocks";
    };
    std::vector<Scene> scenes = paintScreenScenes(numOfFrames);
    scenes.push_back(readClip(ZYR_TEST_DATA "/terminals.webm", numOfFrames));
    Scene still{"unchanged", {}};
    still.m_frames.assign(numOfFrames, scenes[0].m_frames[0]);
    scenes.insert(scenes.begin(), still);

    printf("streams: bytes of a frame, and milliseconds on one core\n");
    printf("%-15s %9s %9s %9s %9s %9s | %7s %7s %7s %7s | %s\n", "", "lz4", "rle", "zip", "Tight", "VP9", "enc lz4",
           "enc zip", "dec lz4", "VP9", "ratios");
    std::vector<Run> runs;
    for (const Scene& scene : scenes) {
        const uint32_t width = scene.m_frames[0].getWidth();
        const uint32_t height = scene.m_frames[0].getHeight();
        runs.push_back(runBlocks(scene, ZYR_COMPRESSION_LZ4, packetPath(scene)));
        const Run& lz4 = runs.back();
        const Run rle = runBlocks(scene, ZYR_COMPRESSION_RLE);
        const Run zip = runBlocks(scene, ZYR_COMPRESSION_ZIP);
        const PeerRun tight = runPeer(createTight(width, height).get(), scene, lz4);
        const PeerRun vp9 = runPeer(createVp9(width, height).get(), scene, lz4);
        printf("%-15s %9.0f %9.0f %9.0f %9.0f %9.0f | %7.2f %7.2f %7.2f %7.2f |", scene.m_name.c_str(), lz4.m_bytes,
               rle.m_bytes, zip.m_bytes, tight.m_bytes, vp9.m_bytes, getMedian(lz4.m_encode), getMedian(zip.m_encode),
               getMedian(lz4.m_decode), vp9.m_time);
        printf(" bytes of Tight %.2f (zip %.2f), of VP9 %.2f (zip %.2f); time of VP9 %.2f\n",
               lz4.m_bytes / tight.m_bytes, zip.m_bytes / tight.m_bytes, lz4.m_bytes / vp9.m_bytes,
               zip.m_bytes / vp9.m_bytes, getMedian(lz4.m_encode) / vp9.m_time);
    }
    showToldScroll(scenes[3], runs[3]);
    printf("\nwhole frames: bytes, and ratios of zip (and lz4)\n");
    scenes.push_back(paintPhotograph());
    runs.push_back(runBlocks(scenes.back(), ZYR_COMPRESSION_LZ4));
    for (size_t i = 1; i < scenes.size(); i++) {
        const ScreenPainter& frame = scenes[i].m_frames[0];
        const Run zip = runBlocks({scenes[i].m_name, {frame}}, ZYR_COMPRESSION_ZIP);
        const double png = double(codeAsPng(frame, 3));
        const double qoi = double(codeAsQoi(frame));
        printf(
            "%-15s lz4 %zu, zip %zu, PNG %.0f, QOI %.0f: of PNG %.2f (%.2f), of QOI %.2f (%.2f); lz4 encodes in %.2f, "
            "decodes in %.2f ms\n",
            scenes[i].m_name.c_str(), runs[i].m_keyBytes, zip.m_keyBytes, png, qoi, double(zip.m_keyBytes) / png,
            double(runs[i].m_keyBytes) / png, double(zip.m_keyBytes) / qoi, double(runs[i].m_keyBytes) / qoi,
            runs[i].m_keyEncode, runs[i].m_keyDecode);
    }
    printf("\nkinds of blocks, and where the time goes (lz4)\n");
    for (size_t i = 1; i < scenes.size(); i++) {
        showShares(scenes[i], runs[i]);
    }
    return 0;
}
