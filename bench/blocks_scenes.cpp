#include "blocks_scenes.h"

#include "host/zyr_video_source.h"

#include <cstring>

namespace zyr::bench {

using namespace zyr_test;

namespace {

constexpr int WIDTH = 1280;
constexpr int HEIGHT = 720;
constexpr uint32_t GREEN = 0xFF40D040;
constexpr uint32_t DARK = 0xFF101018;

ScreenPainter paintBackground() {
    ScreenPainter screen(WIDTH, HEIGHT, 0xFF2C4A6A);
    screen.drawWindow({40, 30, 700, 560}, "terminal", DARK);
    for (int line = 0; line < 32; line++) {
        screen.writeTerminalText(46, 60 + line * 16, makeLine(uint32_t(line), 84), GREEN, DARK);
    }
    screen.drawWindow({560, 200, 620, 440}, "document", 0xFFFFFFFF);
    for (int line = 0; line < 24; line++) {
        screen.writeSmoothText(576, 236 + line * 16, makeLine(uint32_t(100 + line), 58), 0xFF101010);
    }
    screen.drawPhotograph({1000, 480, 160, 120}, 5);
    return screen;
}

Scene paintTyping(uint32_t p_numOfFrames) {
    Scene scene{"typing", {}};
    ScreenPainter screen = paintBackground();
    const std::string text = makeLine(9, 60) + makeLine(10, 60);
    for (uint32_t i = 0; i < p_numOfFrames; i++) {
        const int x = 46 + int(i % 60) * 8;
        screen.writeTerminalText(x, 188, text.substr(i % text.size(), 1), GREEN, DARK);
        screen.fill({x + 8, 188, 8, 16}, GREEN);
        scene.m_frames.push_back(screen);
    }
    return scene;
}

Scene paintMovingWindow(uint32_t p_numOfFrames) {
    Scene scene{"moving window", {}};
    const ScreenPainter background = paintBackground();
    ScreenPainter window(420, 300);
    window.drawWindow({0, 0, 420, 300}, "moved", 0xFFF0F0F0);
    for (int line = 0; line < 15; line++) {
        window.writeSmoothText(8, 30 + line * 17, makeLine(uint32_t(300 + line), 40), 0xFF202060);
    }
    for (uint32_t i = 0; i < p_numOfFrames; i++) {
        ScreenPainter screen = background;
        screen.copy(window, {0, 0, 420, 300}, 60 + int(i) * 11, 50 + int(i) * 7 % 300);
        scene.m_frames.push_back(screen);
    }
    return scene;
}

Scene paintScrolling(uint32_t p_numOfFrames) {
    Scene scene{"scrolling text", {}};
    ScreenPainter screen(WIDTH, HEIGHT, DARK);
    for (int line = 0; line < HEIGHT / 16; line++) {
        screen.writeTerminalText(0, line * 16, makeLine(uint32_t(line), WIDTH / 8), GREEN, DARK);
    }
    for (uint32_t i = 0; i < p_numOfFrames; i++) {
        screen.move({0, 16, WIDTH, HEIGHT - 16}, 0, 0);
        screen.writeTerminalText(0, HEIGHT - 16, makeLine(1000 + i, WIDTH / 8), GREEN, DARK);
        scene.m_frames.push_back(screen);
    }
    return scene;
}

Scene paintAllRedrawn(uint32_t p_numOfFrames) {
    Scene scene{"all redrawn", {}};
    for (uint32_t i = 0; i < p_numOfFrames; i++) {
        ScreenPainter screen(WIDTH, HEIGHT, DARK);
        for (int line = 0; line < HEIGHT / 16; line++) {
            const uint32_t color =
                0xFF404040 | (i * 37 + uint32_t(line) * 11) % 190 << 8 | (uint32_t(line) * 29 % 190) << 16;
            screen.writeTerminalText(int(i * 5 % 8), line * 16, makeLine(i * 64 + uint32_t(line), WIDTH / 8), color,
                                     DARK);
        }
        scene.m_frames.push_back(screen);
    }
    return scene;
}

} // namespace

std::vector<Scene> paintScreenScenes(uint32_t p_numOfFrames) {
    return {paintTyping(p_numOfFrames), paintMovingWindow(p_numOfFrames), paintScrolling(p_numOfFrames),
            paintAllRedrawn(p_numOfFrames)};
}

Scene paintPhotograph() {
    ScreenPainter screen(WIDTH, HEIGHT);
    screen.drawPhotograph({0, 0, WIDTH, HEIGHT}, 77);
    return {"photograph", {screen}};
}

Scene readClip(const std::string& p_path, uint32_t p_numOfFrames) {
    Scene scene{"clip", {}};
    const std::unique_ptr<host::VideoSource> source = host::openVideoSource(p_path);
    host::Picture picture;
    while (scene.m_frames.size() < p_numOfFrames && source->read(picture)) {
        ScreenPainter screen(picture.m_width, picture.m_height);
        for (uint32_t y = 0; y < picture.m_height; y++) {
            for (uint32_t x = 0; x < picture.m_width; x++) {
                uint32_t pixel;
                memcpy(&pixel, picture.m_pixels.data() + size_t(y) * picture.m_pitch + size_t(x) * 4, 4);
                screen.set(int(x), int(y), pixel | 0xFF000000);
            }
        }
        scene.m_frames.push_back(screen);
    }
    return scene;
}

} // namespace zyr::bench
