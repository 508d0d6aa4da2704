// Stored streams, which every later version decodes to the same pixels. A file holds packets, each behind its size in
// four bytes; beside it stands the SHA-1 of each picture in R, G, B, A. ZYR_WRITE_GOLDEN=DIRECTORY writes them anew.

#include "blocks_stream.h"

#include "plugin_blocks/zyr_blocks_header.h"
#include "zyr_common/digest/zyr_sha1.h"

#include <fstream>
#include <iterator>
#include <sstream>

using namespace zyr;
using namespace zyr::blocks;
using namespace zyr_test;

namespace {

struct Golden {
    const char* name;
    CompressionTypeEnum compression;
    uint8_t bound;
    bool isOld; ///< Of version 1, which no encoder gives any more.
};

constexpr Golden GOLDEN[] = {
    {"rle", ZYR_COMPRESSION_RLE, 0, true},          {"lz4", ZYR_COMPRESSION_LZ4, 0, true},
    {"zip", ZYR_COMPRESSION_ZIP, 0, true},          {"lz4-bound", ZYR_COMPRESSION_LZ4, 6, true},
    {"zip-bound", ZYR_COMPRESSION_ZIP, 3, true},    {"rle-2", ZYR_COMPRESSION_RLE, 0, false},
    {"lz4-2", ZYR_COMPRESSION_LZ4, 0, false},       {"zip-2", ZYR_COMPRESSION_ZIP, 0, false},
    {"lz4-2-bound", ZYR_COMPRESSION_LZ4, 6, false}, {"zip-2-bound", ZYR_COMPRESSION_ZIP, 3, false}};

/// What happens in a stored stream: all kinds of blocks, moves and another size.
std::vector<ScreenPainter> paintFrames() {
    std::vector<ScreenPainter> frames;
    ScreenPainter screen(150, 275, 0xFF101018);
    screen.drawWindow({60, 20, 80, 90}, "golden", 0xFFFFFFFF);
    screen.writeSmoothText(66, 50, "smooth text", 0xFF202020);
    screen.drawPhotograph({66, 70, 60, 38}, 4);
    screen.drawNoise({0, 230, 64, 16}, 8, 60);
    screen.move({0, 230, 48, 16}, 64, 246);
    screen.drawGradient({0, 258, 150, 17}, 0xFF203060, 0xFFE0A020, true);
    for (int line = 0; line < 12; line++) {
        screen.writeTerminalText(0, line * 16, makeLine(uint32_t(line), 7), 0xFF40D040, 0xFF101018);
    }
    frames.push_back(screen);
    frames.push_back(screen);
    screen.writeTerminalText(8, 200, "a", 0xFF40D040, 0xFF101018);
    frames.push_back(screen);
    screen.move({0, 16, 150, 259}, 0, 0);
    frames.push_back(screen);
    const ScreenPainter before = screen;
    screen.fill({60, 4, 80, 90}, 0xFF304050);
    screen.copy(before, {60, 4, 80, 90}, 47, 41);
    frames.push_back(screen);
    Dice dice(3);
    for (int i = 0; i < 4; i++) {
        changeScreen(screen, dice);
        frames.push_back(screen);
    }
    frames.push_back(paintDesktop(33, 47, 6));
    return frames;
}

std::string digestOf(const Surface& p_surface) {
    std::vector<uint8_t> bytes;
    for (uint32_t y = 0; y < p_surface.getHeight(); y++) {
        const uint8_t* row = reinterpret_cast<const uint8_t*>(p_surface.getPixel(0, y));
        bytes.insert(bytes.end(), row, row + size_t(p_surface.getWidth()) * 4);
    }
    unsigned char digest[20];
    zyr_sha1(bytes.data(), bytes.size(), digest);
    std::string text;
    for (const unsigned char byte : digest) {
        char word[3];
        snprintf(word, sizeof(word), "%02x", byte);
        text += word;
    }
    return text;
}

struct Stored {
    std::vector<std::vector<uint8_t>> packets;
    std::vector<std::string> digests;
};

Stored load(const Golden& p_golden) {
    Stored stored;
    const std::string path = std::string(ZYR_TEST_DATA "/blocks/") + p_golden.name;
    std::ifstream file(path + ".blocks", std::ios::binary);
    const std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    for (size_t at = 0; at + 4 <= bytes.size();) {
        uint32_t size;
        memcpy(&size, bytes.data() + at, 4);
        at += 4;
        stored.packets.emplace_back(bytes.begin() + ptrdiff_t(at), bytes.begin() + ptrdiff_t(at + size));
        at += size;
    }
    std::ifstream digests(path + ".sha1");
    for (std::string line; std::getline(digests, line);) {
        stored.digests.push_back(line);
    }
    return stored;
}

void store(const Golden& p_golden, const std::string& p_directory) {
    BlocksStream stream(p_golden.compression);
    stream.m_bound = p_golden.bound;
    std::ofstream file(p_directory + "/" + p_golden.name + ".blocks", std::ios::binary);
    std::ofstream digests(p_directory + "/" + p_golden.name + ".sha1");
    for (const ScreenPainter& frame : paintFrames()) {
        ASSERT_LE(stream.send(frame), int(p_golden.bound));
        const uint32_t size = uint32_t(stream.m_packet.size());
        file.write(reinterpret_cast<const char*>(&size), 4);
        file.write(reinterpret_cast<const char*>(stream.m_packet.data()), size);
        digests << digestOf(stream.m_decoder.getSurface()) << "\n";
    }
}

class BlocksGolden : public testing::TestWithParam<Golden> {};

INSTANTIATE_TEST_SUITE_P(EachStream, BlocksGolden, testing::ValuesIn(GOLDEN), [](const auto& p_info) {
    std::string name = p_info.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST_P(BlocksGolden, stored_stream_is_decoded_to_the_same_pixels) {
    if (const char* directory = getenv("ZYR_WRITE_GOLDEN"); directory != nullptr && !GetParam().isOld) {
        store(GetParam(), directory);
    }
    const Stored stored = load(GetParam());
    const std::vector<ScreenPainter> frames = paintFrames();
    ASSERT_EQ(frames.size(), stored.packets.size());
    ASSERT_EQ(frames.size(), stored.digests.size());
    PictureDecoder decoder;
    for (size_t i = 0; i < frames.size(); i++) {
        ASSERT_STREQ(nullptr, decoder.decode(stored.packets[i].data(), stored.packets[i].size(), frames[i].getWidth(),
                                             frames[i].getHeight()));
        EXPECT_EQ(stored.digests[i], digestOf(decoder.getSurface())) << i;
        EXPECT_LE(findLargestDifference(frames[i], decoder.getSurface()), int(GetParam().bound)) << i;
    }
}

const char* decodeHex(PictureDecoder& p_decoder, const std::string& p_text) {
    std::vector<uint8_t> packet;
    for (size_t i = 0; i < p_text.size(); i += 2) {
        packet.push_back(uint8_t(std::stoul(p_text.substr(i, 2), nullptr, 16)));
    }
    ByteReader reader(packet.data(), packet.size());
    PacketHeader header = {};
    readHeader(reader, header);
    return p_decoder.decode(packet.data(), packet.size(), header.width, header.height);
}

TEST(BlocksGoldenOnce, packets_at_the_edges_are_taken_and_refused_as_by_the_other_decoders) {
    std::ifstream file(ZYR_TEST_DATA "/blocks/edges.txt");
    uint32_t count = 0;
    for (std::string line; std::getline(file, line); count++) {
        std::istringstream words(line);
        std::string name;
        std::string verdict;
        words >> name >> verdict;
        PictureDecoder decoder;
        const char* error = nullptr;
        for (std::string packet; words >> packet;) {
            ASSERT_STREQ(nullptr, error) << name;
            error = decodeHex(decoder, packet);
        }
        EXPECT_EQ(verdict, error != nullptr ? "refused" : digestOf(decoder.getSurface())) << name;
    }
    EXPECT_LT(70u, count);
}

TEST(BlocksGoldenOnce, encoder_gives_the_stored_bytes_again) {
    // Those of RLE, which are no other library's.
    const Stored stored = load({"rle-2", ZYR_COMPRESSION_RLE, 0, false});
    BlocksStream stream(ZYR_COMPRESSION_RLE);
    const std::vector<ScreenPainter> frames = paintFrames();
    ASSERT_EQ(frames.size(), stored.packets.size());
    for (size_t i = 0; i < frames.size(); i++) {
        EXPECT_EQ(stored.packets[i], stream.encode(frames[i])) << i;
    }
}

} // namespace
