#include "host/report/zyr_data_png.h"

#include <png.h>

namespace zyr::host {

std::string toBase64(const uint8_t* p_data, size_t p_size) {
    static constexpr char DIGITS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((p_size + 2) / 3 * 4);
    for (size_t i = 0; i < p_size; i += 3) {
        const size_t left = p_size - i;
        const uint32_t group = uint32_t(p_data[i]) << 16 | (left > 1 ? uint32_t(p_data[i + 1]) << 8 : 0) |
                               (left > 2 ? uint32_t(p_data[i + 2]) : 0);
        text += DIGITS[group >> 18];
        text += DIGITS[group >> 12 & 63];
        text += left > 1 ? DIGITS[group >> 6 & 63] : '=';
        text += left > 2 ? DIGITS[group & 63] : '=';
    }
    return text;
}

std::string makeDataPng(const Thumbnail& p_picture) {
    if (p_picture.m_pixels.empty()) {
        return {};
    }
    std::vector<uint8_t> colors;
    colors.reserve(p_picture.m_pixels.size() / 4 * 3);
    for (size_t i = 0; i + 3 < p_picture.m_pixels.size(); i += 4) {
        colors.insert(colors.end(), {p_picture.m_pixels[i], p_picture.m_pixels[i + 1], p_picture.m_pixels[i + 2]});
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = p_picture.m_width;
    image.height = p_picture.m_height;
    image.format = PNG_FORMAT_BGR;
    png_alloc_size_t size = 0;
    std::vector<uint8_t> file(PNG_IMAGE_PNG_SIZE_MAX(image));
    size = file.size();
    if (png_image_write_to_memory(&image, file.data(), &size, 0, colors.data(), 0, nullptr) == 0) {
        return {};
    }
    return "data:image/png;base64," + toBase64(file.data(), size);
}

} // namespace zyr::host
