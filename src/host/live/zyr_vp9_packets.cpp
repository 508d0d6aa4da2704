#include "host/live/zyr_vp9_packets.h"

#include <algorithm>

namespace zyr::host {

namespace {

// A frame begins with its mark (two bits), its profile (two), and whether it shows an older frame, is no key frame, is
// shown, and guards against losses.
constexpr uint8_t MARK_AND_KIND = 0xCC;
constexpr uint8_t KEY_FRAME = 0x80;
constexpr uint8_t PROFILE = 0x30;
constexpr uint8_t SHOWN = 0x02;
// Behind the frames of a packet that holds several stands their index: this byte, their sizes, and the byte again. Its
// low bits tell how many there are, and of how many bytes each size is, both less one.
constexpr uint8_t INDEX_MASK = 0xE0;
constexpr uint8_t INDEX = 0xC0;
constexpr uint8_t TWO_FRAMES = 1;
constexpr unsigned SIZE_BYTES = 4;

bool isSingle(const uint8_t* p_data, size_t p_size) {
    return p_size > 0 && (p_data[p_size - 1] & INDEX_MASK) != INDEX;
}

} // namespace

bool isVp9Key(const uint8_t* p_data, size_t p_size) {
    return p_size > 0 && (p_data[0] & MARK_AND_KIND) == KEY_FRAME;
}

bool putBehindHiddenKey(const std::vector<uint8_t>& p_key, Array<uint8_t>& p_packet) {
    const size_t keySize = p_key.size();
    const size_t size = p_packet.getSize();
    if (!isVp9Key(p_key.data(), keySize) || !isSingle(p_key.data(), keySize) || (p_key[0] & PROFILE) != 0 ||
        (p_key[0] & SHOWN) == 0 || !isSingle(p_packet.getData(), size) || keySize > UINT32_MAX || size > UINT32_MAX) {
        return false;
    }
    if (!p_packet.resize(keySize + size + 2 + 2 * SIZE_BYTES)) {
        return false;
    }
    uint8_t* const bytes = p_packet.getData();
    std::copy_backward(bytes, bytes + size, bytes + keySize + size);
    std::copy(p_key.begin(), p_key.end(), bytes);
    bytes[0] = uint8_t(bytes[0] & ~SHOWN);
    uint8_t* end = bytes + keySize + size;
    const auto mark = uint8_t(INDEX | (SIZE_BYTES - 1) << 3 | TWO_FRAMES);
    *end++ = mark;
    for (const size_t each : {keySize, size}) {
        for (unsigned i = 0; i < SIZE_BYTES; i++) {
            *end++ = uint8_t(each >> (8 * i));
        }
    }
    *end = mark;
    return true;
}

} // namespace zyr::host
