#include "host/live/zyr_demo_screen.h"

#include "host/live/zyr_screen_connection.h"
#include "host/zyr_run_error.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace zyr::host {

namespace {

constexpr int START_MILLIS = 20'000;
constexpr int PAINTS_A_SECOND = 20;
constexpr uint32_t FILM_WIDTH = 256;
constexpr uint32_t FILM_HEIGHT = 128;
constexpr uint32_t BACKGROUND = 0x203040;
constexpr uint32_t COLORS[] = {0xE05A47, 0x4FA3D9, 0x6FBF73, 0xF2C14E};

/// Starts the server, which tells the number of its display on the given end of a pipe.
pid_t launch(uint32_t p_width, uint32_t p_height, int p_pipe) {
    const std::string number = std::to_string(p_pipe);
    const std::string size = std::to_string(p_width) + "x" + std::to_string(p_height) + "x24";
    const char* const arguments[] = {"Xvfb",       "-displayfd", number.c_str(), "-screen", "0",
                                     size.c_str(), "-noreset",   "-nolisten",    "tcp",     nullptr};
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        fcntl(p_pipe, F_SETFD, 0);
        const int nowhere = open("/dev/null", O_RDWR);
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        setpgid(0, 0); // The terminal's interruption is for us; we end the server ourselves.
        execvp(arguments[0], const_cast<char* const*>(arguments));
        _exit(127);
    }
    return child;
}

/// Draws with the plainest means there are.
class Brush {
public:
    explicit Brush(const ScreenConnection& p_connection)
        : m_connection(p_connection), m_context(xcb_generate_id(p_connection.get())) {
        xcb_connection_t* c = p_connection.get();
        const xcb_font_t font = xcb_generate_id(c);
        xcb_open_font(c, font, 5, "fixed");
        const uint32_t values[] = {0, BACKGROUND, font};
        xcb_create_gc(c, m_context, p_connection.getRoot(), XCB_GC_FOREGROUND | XCB_GC_BACKGROUND | XCB_GC_FONT,
                      values);
        xcb_close_font(c, font);
    }

    void fill(int p_x, int p_y, uint32_t p_width, uint32_t p_height, uint32_t p_color) const {
        const xcb_rectangle_t area{int16_t(p_x), int16_t(p_y), uint16_t(p_width), uint16_t(p_height)};
        xcb_change_gc(m_connection.get(), m_context, XCB_GC_FOREGROUND, &p_color);
        xcb_poly_fill_rectangle(m_connection.get(), m_connection.getRoot(), m_context, 1, &area);
    }

    void draw(int p_x, int p_y, uint32_t p_width, const std::vector<uint32_t>& p_pixels) const {
        xcb_put_image(m_connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_connection.getRoot(), m_context,
                      uint16_t(p_width), uint16_t(p_pixels.size() / p_width), int16_t(p_x), int16_t(p_y), 0,
                      m_connection.getScreen().root_depth, uint32_t(p_pixels.size() * 4),
                      reinterpret_cast<const uint8_t*>(p_pixels.data()));
    }

    void write(int p_x, int p_y, const std::string& p_text) const {
        const uint32_t white = 0xFFFFFF;
        xcb_change_gc(m_connection.get(), m_context, XCB_GC_FOREGROUND, &white);
        xcb_image_text_8(m_connection.get(), uint8_t(p_text.size()), m_connection.getRoot(), m_context, int16_t(p_x),
                         int16_t(p_y), p_text.c_str());
    }

private:
    const ScreenConnection& m_connection;
    xcb_gcontext_t m_context;
};

/// A picture of a film, with the grain that cameras make.
std::vector<uint32_t> makeFilm(unsigned p_step) {
    std::vector<uint32_t> pixels(size_t(FILM_WIDTH) * FILM_HEIGHT);
    uint32_t grain = p_step;
    for (uint32_t i = 0; i < pixels.size(); i++) {
        const uint32_t x = i % FILM_WIDTH;
        const uint32_t y = i / FILM_WIDTH;
        grain = grain * 1664525u + 1013904223u;
        const uint32_t ring = (x * x + y * y) / 256 + p_step * 3;
        const uint32_t red = (ring & 127) + (grain >> 28);
        const uint32_t green = ((x + p_step * 2) & 255) / 2 + (grain >> 24 & 15);
        const uint32_t blue = ((y * 2 + p_step) & 255) / 2 + (grain >> 20 & 15);
        pixels[i] = red << 16 | green << 8 | blue;
    }
    return pixels;
}

/// Where something is that goes to and fro.
int swing(unsigned p_step, int p_range) {
    const int place = p_range > 0 ? int(p_step % unsigned(2 * p_range)) : 0;
    return place < p_range ? place : 2 * p_range - place;
}

} // namespace

DemoScreen::DemoScreen(uint32_t p_width, uint32_t p_height, bool p_isPainted) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw RunError("cannot make a pipe");
    }
    m_server = launch(p_width, p_height, ends[1]);
    close(ends[1]);
    char number[16] = "";
    size_t size = 0;
    pollfd wait{ends[0], POLLIN, 0};
    while (size + 1 < sizeof(number) && strchr(number, '\n') == nullptr && poll(&wait, 1, START_MILLIS) > 0) {
        const ssize_t count = read(ends[0], number + size, sizeof(number) - 1 - size);
        if (count <= 0) {
            break;
        }
        size += size_t(count);
    }
    close(ends[0]);
    if (strchr(number, '\n') == nullptr) {
        kill(m_server, SIGKILL);
        waitpid(m_server, nullptr, 0);
        throw RunError("cannot start Xvfb, which --demo needs (Debian's package xvfb)");
    }
    m_display = ":" + std::string(number, strcspn(number, "\n"));
    if (p_isPainted) {
        m_painter = std::thread([this] { paint(); });
    }
}

DemoScreen::~DemoScreen() {
    m_stopping = true;
    if (m_painter.joinable()) {
        m_painter.join();
    }
    kill(m_server, SIGTERM);
    waitpid(m_server, nullptr, 0);
}

void DemoScreen::paint() {
    try {
        const ScreenConnection connection(m_display);
        const Brush brush(connection);
        for (unsigned step = 0; !m_stopping && connection.isAlive(); step++) {
            // The root of a screen that was enlarged is painted, too.
            const ReplyHandle<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(
                connection.get(), xcb_get_geometry(connection.get(), connection.getRoot()), nullptr));
            if (!size) {
                return;
            }
            if (step == 0) {
                brush.fill(0, 0, size->width, size->height, BACKGROUND);
            }
            for (unsigned i = 0; i < std::size(COLORS); i++) {
                const int y = int(size->height) * int(i + 1) / 6;
                const auto side = uint32_t(size->height / 8);
                const int range = std::max(1, int(size->width) - int(side));
                brush.fill(swing((step - 1) * (i + 2) * 2, range), y, side, side, BACKGROUND);
                brush.fill(swing(step * (i + 2) * 2, range), y, side, side, COLORS[i]);
            }
            // Below the rectangles, where there is room for it.
            if (size->width > FILM_WIDTH + 16 && uint32_t(size->height) * 5 / 24 >= FILM_HEIGHT + 16) {
                brush.draw(size->width - int(FILM_WIDTH) - 16, size->height - int(FILM_HEIGHT) - 16, FILM_WIDTH,
                           makeFilm(step));
            }
            const time_t now = time(nullptr);
            tm local{};
            char text[64];
            strftime(text, sizeof(text), "zyr-host serve --demo   %F %T", localtime_r(&now, &local));
            brush.write(16, 24, text);
            connection.flush();
            std::this_thread::sleep_for(std::chrono::milliseconds(1000 / PAINTS_A_SECOND));
        }
    } catch (const RunError&) {
        // The server has gone already; whoever shows the screen tells that.
    }
}

} // namespace zyr::host
