#include "host/zyr_picture_file.h"

#include "host/zyr_output_file.h"

#include <png.h>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace zyr::host {

namespace {

bool endsWith(const std::string& p_text, const std::string& p_end) {
    return p_text.size() >= p_end.size() && p_text.compare(p_text.size() - p_end.size(), p_end.size(), p_end) == 0;
}

class Y4mFile : public PictureFile {
public:
    Y4mFile(const std::string& p_path, Fraction p_rate, bool p_fullRange)
        : m_path(p_path), m_rate(p_rate), m_fullRange(p_fullRange) {
        open();
    }

    void write(const ShownPicture& p_picture, uint64_t) override {
        const PlanePicture& planes = *p_picture.m_planes;
        if (planes.getWidth() != m_width || planes.getHeight() != m_height) {
            begin(planes.getWidth(), planes.getHeight());
        }
        m_bytes.assign("FRAME\n");
        for (int i = 0; i < PlanePicture::NUM_OF_PLANES; i++) {
            const char* row = reinterpret_cast<const char*>(planes.getPlane(i));
            for (uint32_t y = 0; y < planes.getHeight(i); y++, row += planes.getPitch(i)) {
                m_bytes.append(row, planes.getWidth(i));
            }
        }
        m_file->write(m_bytes.data(), m_bytes.size());
    }

    void close() override { m_file->close(); }

    std::vector<std::string> getPaths() const override { return m_paths; }

private:
    void open() {
        std::string path = m_path;
        if (!m_paths.empty()) {
            path.insert(path.size() - 4, "-" + std::to_string(m_paths.size() + 1));
        }
        m_file = std::make_unique<OutputFile>(path);
        m_paths.push_back(path);
    }

    void begin(uint32_t p_width, uint32_t p_height) {
        if (m_width != 0) {
            if (m_path == "-") {
                throw RunError("the pictures changed their size, which Y4M on the standard output cannot follow");
            }
            close();
            open();
        }
        m_width = p_width;
        m_height = p_height;
        const std::string header = "YUV4MPEG2 W" + std::to_string(p_width) + " H" + std::to_string(p_height) + " F" +
                                   std::to_string(m_rate.m_numerator) + ":" + std::to_string(m_rate.m_denominator) +
                                   " Ip A1:1 C420jpeg XCOLORRANGE=" + (m_fullRange ? "FULL" : "LIMITED") + "\n";
        m_file->write(header.data(), header.size());
    }

    std::string m_path;
    std::string m_bytes;
    std::vector<std::string> m_paths;
    std::unique_ptr<OutputFile> m_file;
    Fraction m_rate;
    bool m_fullRange;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
};

class PngFiles : public PictureFile {
public:
    /// The pattern holds one "%d" or "%0Nd"; anything else was refused before.
    PngFiles(const std::string& p_head, int p_digits, const std::string& p_tail)
        : m_head(p_head), m_tail(p_tail), m_digits(p_digits) {
        const size_t slash = p_head.rfind('/');
        const std::string directory = slash == std::string::npos ? "." : p_head.substr(0, slash + 1);
        if (access(directory.c_str(), W_OK | X_OK) != 0) {
            throw RunError("cannot write into '" + directory + "': " + std::strerror(errno));
        }
    }

    void write(const ShownPicture& p_picture, uint64_t p_index) override {
        std::string number = std::to_string(p_index);
        if (number.size() < size_t(m_digits)) {
            number.insert(0, size_t(m_digits) - number.size(), '0');
        }
        const std::string path = m_head + number + m_tail;
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        image.width = p_picture.m_width;
        image.height = p_picture.m_height;
        image.format = p_picture.m_blueFirst ? PNG_FORMAT_BGRA : PNG_FORMAT_RGBA;
        image.flags = PNG_IMAGE_FLAG_FAST;
        errno = 0;
        if (png_image_write_to_file(&image, path.c_str(), 0, p_picture.m_pixels, png_int_32(p_picture.m_pitch),
                                    nullptr) == 0) {
            // Of a write that failed the library tells no reason.
            const std::string reason = errno != 0 ? std::strerror(errno) : image.message;
            throw RunError("cannot write '" + path + "': " + reason);
        }
        m_count++;
    }

    void close() override {}
    std::vector<std::string> getPaths() const override {
        const std::string digits = m_digits > 0 ? "%0" + std::to_string(m_digits) + "d" : "%d";
        return m_count > 0 ? std::vector<std::string>{m_head + digits + m_tail} : std::vector<std::string>();
    }

private:
    std::string m_head;
    std::string m_tail;
    int m_digits;
    uint64_t m_count = 0;
};

} // namespace

std::unique_ptr<PictureFile> openPictureFile(const std::string& p_path, Fraction p_rate, bool p_fullRange) {
    if (p_path == "-" || (endsWith(p_path, ".y4m") && p_path.size() > 4)) {
        return std::make_unique<Y4mFile>(p_path, p_rate, p_fullRange);
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
