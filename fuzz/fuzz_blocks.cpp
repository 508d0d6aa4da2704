// Packets of blocks: whatever they hold, the decoder stays inside its picture, and decodes a key frame next. The data
// is taken as packets behind each other, each behind its size in two bytes.
#include "zyr_fuzz.h"

#include "plugin_blocks/zyr_blocks_header.h"
#include "plugin_blocks/zyr_blocks_picture_decoder.h"
#include "plugin_blocks/zyr_blocks_picture_encoder.h"

#include <memory>
#include <vector>

using namespace zyr;
using namespace zyr::blocks;

namespace {

constexpr uint32_t SIDE = 40;
constexpr uint32_t MOST_PIXELS = 1 << 18;

std::vector<uint8_t> makeKeyFrame() {
    std::vector<uint32_t> pixels(SIDE * SIDE);
    for (uint32_t i = 0; i < SIDE * SIDE; i++) {
        pixels[i] = i * 0x01020305u >> i % 9;
    }
    const std::unique_ptr<PictureEncoder> encoder = std::make_unique<PictureEncoder>();
    Array<uint8_t> packet;
    encoder->encode({reinterpret_cast<const uint8_t*>(pixels.data()), SIDE * 4, SIDE, SIDE}, nullptr,
                    ZYR_COMPRESSION_LZ4, 0, packet);
    return std::vector<uint8_t>(packet.getData(), packet.getData() + packet.getSize());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    zyr_fuzz::getFramework(true);
    static const std::vector<uint8_t> key = makeKeyFrame();
    PictureDecoder decoder;
    decoder.setNumOfThreads(1);
    decoder.decode(key.data(), key.size(), SIDE, SIDE);
    while (p_size > 2) {
        size_t size = p_data[0] | size_t{p_data[1]} << 8;
        p_data += 2;
        p_size -= 2;
        size = size < p_size ? size : p_size;
        ByteReader reader(p_data, size);
        PacketHeader header;
        const bool isSmall = readHeader(reader, header) == nullptr && header.width * header.height <= MOST_PIXELS;
        decoder.decode(p_data, size, isSmall ? header.width : SIDE, isSmall ? header.height : SIDE);
        p_data += size;
        p_size -= size;
    }
    zyr_fuzz::require(decoder.decode(key.data(), key.size(), SIDE, SIDE) == nullptr, "a key frame is decoded");
    return 0;
}
