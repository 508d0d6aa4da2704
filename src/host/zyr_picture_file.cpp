#include "host/zyr_picture_file.h"

#include "host/zyr_video_source.h"

#include <libyuv.h>
#include <png.h>

#include <cerrno>
#include <cstring>

namespace zyr::host {

namespace {

bool endsWith(const std::string& p_text, const std::string& p_end) {
    return p_text.size() >= p_end.size() && p_text.compare(p_text.size() - p_end.size(), p_end.size(), p_end) == 0;
}

[[noreturn]] void failWith(const std::string& p_path, int p_error) {
    throw RunError("cannot write '" + p_path + "': " + std::strerror(p_error));
}

struct FileCloser {
    void operator()(FILE* p_file) const { fclose(p_file); }
};

class Y4mFile : public PictureFile {
public:
    Y4mFile(const std::string& p_path, int p_rateNumerator, int p_rateDenominator)
        : m_path(p_path), m_rateNumerator(p_rateNumerator), m_rateDenominator(p_rateDenominator) {}

    void write(const uint8_t* p_pixels, uint32_t p_pitch, uint32_t p_width, uint32_t p_height, uint64_t) override {
        if (!m_file || p_width != m_width || p_height != m_height) {
            begin(p_width, p_height);
        }
        const int width = int(p_width);
        const int height = int(p_height);
        const int half = (width + 1) / 2;
        const size_t luma = size_t(width) * height;
        const size_t chroma = size_t(half) * ((height + 1) / 2);
        m_planes.resize(luma + 2 * chroma);
        // libyuv names pixels as little-endian words, so R,G,B,A in memory is its ABGR.
        libyuv::ABGRToI420(p_pixels, int(p_pitch), m_planes.data(), width, m_planes.data() + luma, half,
                           m_planes.data() + luma + chroma, half, width, height);
        put("FRAME\n", 6);
        put(m_planes.data(), m_planes.size());
    }

    void close() override {
        if (m_file) {
            if (fclose(m_file.release()) != 0) {
                failWith(m_paths.back(), errno);
            }
        }
    }

    std::vector<std::string> getPaths() const override { return m_paths; }

private:
    void begin(uint32_t p_width, uint32_t p_height) {
        close();
        std::string path = m_path;
        if (!m_paths.empty()) {
            path.insert(path.size() - 4, "-" + std::to_string(m_paths.size() + 1));
        }
        m_file.reset(fopen(path.c_str(), "wb"));
        if (!m_file) {
            failWith(path, errno);
        }
        m_paths.push_back(path);
        m_width = p_width;
        m_height = p_height;
        const std::string header = "YUV4MPEG2 W" + std::to_string(p_width) + " H" + std::to_string(p_height) + " F" +
                                   std::to_string(m_rateNumerator) + ":" + std::to_string(m_rateDenominator) +
                                   " Ip A1:1 C420jpeg XCOLORRANGE=LIMITED\n";
        put(header.data(), header.size());
    }

    void put(const void* p_data, size_t p_size) {
        if (fwrite(p_data, 1, p_size, m_file.get()) != p_size || fflush(m_file.get()) != 0) {
            failWith(m_paths.back(), errno);
        }
    }

    std::string m_path;
    std::vector<std::string> m_paths;
    std::vector<uint8_t> m_planes;
    std::unique_ptr<FILE, FileCloser> m_file;
    int m_rateNumerator;
    int m_rateDenominator;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
};

class PngFiles : public PictureFile {
public:
    /// The pattern holds one "%d" or "%0Nd"; anything else was refused before.
    PngFiles(const std::string& p_head, int p_digits, const std::string& p_tail)
        : m_head(p_head), m_tail(p_tail), m_digits(p_digits) {}

    void write(const uint8_t* p_pixels, uint32_t p_pitch, uint32_t p_width, uint32_t p_height,
               uint64_t p_index) override {
        std::string number = std::to_string(p_index);
        if (number.size() < size_t(m_digits)) {
            number.insert(0, size_t(m_digits) - number.size(), '0');
        }
        const std::string path = m_head + number + m_tail;
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        image.width = p_width;
        image.height = p_height;
        image.format = PNG_FORMAT_RGBA;
        image.flags = PNG_IMAGE_FLAG_FAST;
        if (png_image_write_to_file(&image, path.c_str(), 0, p_pixels, png_int_32(p_pitch), nullptr) == 0) {
            throw RunError("cannot write '" + path + "': " + image.message);
        }
        m_paths.push_back(path);
    }

    void close() override {}
    std::vector<std::string> getPaths() const override { return m_paths; }

private:
    std::string m_head;
    std::string m_tail;
    std::vector<std::string> m_paths;
    int m_digits;
};

} // namespace

std::unique_ptr<PictureFile> openPictureFile(const std::string& p_path, int p_rateNumerator, int p_rateDenominator) {
    if (endsWith(p_path, ".y4m") && p_path.size() > 4) {
        return std::make_unique<Y4mFile>(p_path, p_rateNumerator, p_rateDenominator);
    }
    const size_t percent = p_path.find('%');
    if (endsWith(p_path, ".png") && percent != std::string::npos &&
        p_path.find('%', percent + 1) == std::string::npos) {
        size_t end = percent + 1;
        int digits = 0;
        while (end < p_path.size() && p_path[end] >= '0' && p_path[end] <= '9' && digits < 100) {
            digits = digits * 10 + (p_path[end++] - '0');
        }
        if (end < p_path.size() && p_path[end] == 'd' && digits <= 20) {
            return std::make_unique<PngFiles>(p_path.substr(0, percent), digits, p_path.substr(end + 1));
        }
    }
    throw RunError("'" + p_path + "' is neither a .y4m file nor a pattern such as frames/%04d.png");
}

} // namespace zyr::host
