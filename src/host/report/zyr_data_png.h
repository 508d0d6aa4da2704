/// Pictures as text that stands inside of a page.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

/// A small picture, B,G,R,A without gaps between the rows.
struct Thumbnail {
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    std::vector<uint8_t> m_pixels;
};

/// The picture as "data:image/png;base64,...", without its alpha. Empty when there is none.
std::string makeDataPng(const Thumbnail& p_picture);

/// Base64 with padding.
std::string toBase64(const uint8_t* p_data, size_t p_size);

} // namespace zyr::host
