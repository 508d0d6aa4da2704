#include "host/zyr_video_source.h"

#include "host/zyr_input_file.h"
#include "host/zyr_stored_stream.h"

#include <charconv>

namespace zyr::host {

namespace {

constexpr uint32_t MAX_SIDE = 16384;

/// A picture with everything an encoder finds hard in small doses: a gradient, moving bars, sharp text-like
/// squares and a little noise that is the same in every run.
class GeneratedSource : public VideoSource {
public:
    GeneratedSource(uint32_t p_width, uint32_t p_height, int p_rate, uint64_t p_count)
        : m_width(p_width), m_height(p_height), m_rate(p_rate), m_count(p_count) {}

    bool read(PictureBuffer& p_picture) override {
        if (m_index == m_count) {
            return false;
        }
        p_picture.resize(m_width, m_height);
        p_picture.m_timestamp = int64_t(m_index);
        p_picture.m_duration = 1;
        const uint32_t time = static_cast<uint32_t>(m_index++);
        uint32_t noise = 0x9E3779B9u;
        for (uint32_t y = 0; y < m_height; y++) {
            uint8_t* row = p_picture.getPixels() + size_t(y) * p_picture.m_pitch;
            for (uint32_t x = 0; x < m_width; x++) {
                noise = noise * 1664525u + 1013904223u;
                const bool glyph = ((x + 2 * time) / 8 % 3 == 0) && (y / 6 % 4 == 1) && y > m_height / 2;
                const bool bar = (x + 5 * time) / 32 % 8 == 0;
                row[4 * x + 0] = glyph ? 240 : static_cast<uint8_t>(x * 255 / m_width);
                row[4 * x + 1] = glyph ? 240 : static_cast<uint8_t>((y * 255 / m_height) ^ (bar ? 0x40 : 0));
                row[4 * x + 2] = glyph ? 240 : static_cast<uint8_t>(time * 3 + (noise >> 29));
                row[4 * x + 3] = 255;
            }
        }
        return true;
    }

    Fraction getRate() const override { return Fraction{m_rate, 1}; }
    uint64_t getExpectedCount() const override { return m_count; }
    std::string describe() const override {
        return "generated picture " + std::to_string(m_width) + "x" + std::to_string(m_height);
    }

private:
    uint32_t m_width;
    uint32_t m_height;
    int m_rate;
    uint64_t m_count;
    uint64_t m_index = 0;
};

template <typename T> bool parseNumber(const std::string& p_text, T& p_value) {
    const char* end = p_text.data() + p_text.size();
    const auto [stop, error] = std::from_chars(p_text.data(), end, p_value);
    return error == std::errc() && stop == end;
}

std::unique_ptr<VideoSource> openGenerated(const std::string& p_input) {
    std::string text = p_input.substr(p_input.find(':') + 1);
    uint64_t count = 120;
    int rate = 30;
    bool good = true;
    if (const size_t colon = text.find(':'); colon != std::string::npos) {
        good = parseNumber(text.substr(colon + 1), count) && count > 0;
        text.resize(colon);
    }
    if (const size_t at = text.find('@'); at != std::string::npos) {
        good = good && parseNumber(text.substr(at + 1), rate) && rate > 0 && rate <= 1000;
        text.resize(at);
    }
    uint32_t width = 0;
    uint32_t height = 0;
    if (!good || !parseSize(text, width, height)) {
        throw RunError("'" + p_input + "' is not of the form generate:WIDTHxHEIGHT[@RATE][:COUNT]");
    }
    return std::make_unique<GeneratedSource>(width, height, rate, count);
}

} // namespace

void Picture::resize(uint32_t p_width, uint32_t p_height) {
    m_width = p_width;
    m_height = p_height;
    // Rows start at multiples of 64 bytes and one spare row follows, since scalers write in whole vectors.
    m_pitch = (p_width * 4 + 63) & ~63u;
    m_pixels.resize(size_t(m_pitch) * (p_height + 1));
}

bool parseSize(const std::string& p_text, uint32_t& p_width, uint32_t& p_height) {
    const size_t cross = p_text.find('x');
    uint32_t width = 0;
    uint32_t height = 0;
    if (cross == std::string::npos || !parseNumber(p_text.substr(0, cross), width) ||
        !parseNumber(p_text.substr(cross + 1), height) || width == 0 || height == 0 || width > MAX_SIDE ||
        height > MAX_SIDE) {
        return false;
    }
    p_width = width;
    p_height = height;
    return true;
}

std::unique_ptr<VideoSource> openVideoSource(const std::string& p_input, std::unique_ptr<InputFile>& p_stored) {
    if (p_input.rfind("generate:", 0) == 0) {
        return openGenerated(p_input);
    }
    if (p_input != "-" && p_input.find('%') != std::string::npos) {
        return openVideoFile(p_input, nullptr);
    }
    auto file = std::make_unique<InputFile>(p_input);
    if (isStoredStream(*file)) {
        p_stored = std::move(file);
        return nullptr;
    }
    return openVideoFile(p_input, std::move(file));
}

std::unique_ptr<VideoSource> openVideoSource(const std::string& p_input) {
    std::unique_ptr<InputFile> stored;
    std::unique_ptr<VideoSource> source = openVideoSource(p_input, stored);
    if (!source) {
        throw RunError("'" + p_input + "' is a stored stream, which needs a decoder");
    }
    return source;
}

} // namespace zyr::host
