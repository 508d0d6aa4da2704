// Paints a scene at 30 pictures a second on the display of the environment, never quite on the beat:
//
//     live_paint SCENE                          waits for lines "go SECONDS", and ends each with "rest TIME HASH
//     FRAMES";
//                                               a press of the button is shown at once
//     live_paint SCENE compare (FRAME FILE)...  paints again, and tells how like each kept picture is to the painted
//     one
#include "live_painter.h"

#include <cinttypes>
#include <cmath>
#include <cstdlib>
#include <poll.h>
#include <unistd.h>

namespace {

using namespace zyr::bench;

constexpr uint64_t INTERVAL = 1'000'000 / 30;

/// The structural similarity of brightness, over windows of 8x8 pixels below the strips.
double findLikeness(const std::vector<uint8_t>& p_one, const std::vector<uint8_t>& p_other) {
    const auto luma = [](const uint8_t* p_pixel) {
        return 0.114 * p_pixel[0] + 0.587 * p_pixel[1] + 0.299 * p_pixel[2];
    };
    double total = 0;
    size_t windows = 0;
    for (int top = STRIP_HEIGHT; top + 8 <= HEIGHT; top += 4) {
        for (int left = 0; left + 8 <= WIDTH; left += 4) {
            double a = 0, b = 0, aa = 0, bb = 0, ab = 0;
            for (int y = top; y < top + 8; y++) {
                for (int x = left; x < left + 8; x++) {
                    const size_t at = (size_t(y) * WIDTH + size_t(x)) * 4;
                    const double one = luma(&p_one[at]), other = luma(&p_other[at]);
                    a += one, b += other, aa += one * one, bb += other * other, ab += one * other;
                }
            }
            a /= 64, b /= 64;
            const double varianceA = aa / 64 - a * a, varianceB = bb / 64 - b * b, common = ab / 64 - a * b;
            constexpr double C1 = 6.5025, C2 = 58.5225;
            total += (2 * a * b + C1) * (2 * common + C2) / ((a * a + b * b + C1) * (varianceA + varianceB + C2));
            windows++;
        }
    }
    return total / double(windows);
}

int compare(LivePainter& p_painter, int p_count, char** p_pairs) {
    uint32_t next = 0;
    for (int i = 0; i + 1 < p_count; i += 2) {
        const auto frame = uint32_t(strtoul(p_pairs[i], nullptr, 10));
        for (; next <= frame; next++) {
            p_painter.paint(next);
            p_painter.finish();
        }
        std::vector<uint8_t> kept(size_t(WIDTH) * HEIGHT * 4);
        FILE* const file = fopen(p_pairs[i + 1], "rb");
        if (file == nullptr || fread(kept.data(), 1, kept.size(), file) != kept.size()) {
            fprintf(stderr, "live_paint: cannot read %s\n", p_pairs[i + 1]);
            return EXIT_FAILURE;
        }
        fclose(file);
        printf("%u %.5f\n", frame, findLikeness(p_painter.grab(), kept));
    }
    return EXIT_SUCCESS;
}

class Beat {
public:
    explicit Beat(LivePainter& p_painter) : m_painter(p_painter) {
        p_painter.paint(m_frame++);
        p_painter.paintClicks(0);
        p_painter.finish();
    }

    /// Paints when it is time, and gives how many microseconds are left until then.
    uint64_t paint() {
        const uint64_t now = getWallTime();
        if (now >= m_next) {
            m_painter.paint(m_frame++);
            m_paintTime = getWallTime();
            m_beat = std::max(m_beat + INTERVAL, now > INTERVAL ? now - INTERVAL : 0);
            // A painter on the very beat would run with or against the beats of those who capture.
            m_next = m_beat + uint64_t(rand()) % (INTERVAL / 2);
        }
        return m_next > now ? m_next - now : 0;
    }

    void begin() { m_beat = m_next = getWallTime(); }
    uint64_t getPaintTime() const { return m_paintTime; }
    uint32_t getFrame() const { return m_frame; }

private:
    LivePainter& m_painter;
    uint32_t m_frame = 0;
    uint64_t m_beat = 0;
    uint64_t m_next = 0;
    uint64_t m_paintTime = 0;
};

int serve(LivePainter& p_painter) {
    Beat beat(p_painter);
    uint64_t end = 0;
    uint32_t clicks = 0;
    puts("ready");
    fflush(stdout);
    for (;;) {
        int wait = -1;
        if (getWallTime() < end) {
            wait = int(beat.paint() / 1000);
        } else if (end != 0) {
            end = 0;
            p_painter.finish();
            const std::vector<uint8_t> pixels = p_painter.grab();
            printf("rest %" PRIu64 " %016" PRIx64 " %u\n", beat.getPaintTime(),
                   hashPicture(pixels.data(), WIDTH * 4, false), beat.getFrame());
            fflush(stdout);
        }
        pollfd waits[] = {{STDIN_FILENO, POLLIN, 0}, {p_painter.getDescriptor(), POLLIN, 0}};
        poll(waits, 2, wait);
        if (p_painter.takeClick()) {
            p_painter.paintClicks(++clicks);
        }
        if ((waits[0].revents & (POLLIN | POLLHUP)) != 0) {
            char line[64] = "";
            if (fgets(line, sizeof(line), stdin) == nullptr) {
                return EXIT_SUCCESS;
            }
            const double seconds = strncmp(line, "go ", 3) == 0 ? strtod(line + 3, nullptr) : 0;
            end = seconds > 0 ? getWallTime() + uint64_t(seconds * 1e6) : end;
            beat.begin();
        }
    }
}

} // namespace

int main(int p_count, char** p_arguments) {
    if (p_count < 2) {
        fputs("usage: live_paint SCENE [compare (FRAME FILE)...]\n", stderr);
        return 2;
    }
    LivePainter painter(p_arguments[1]);
    setvbuf(stdin, nullptr, _IONBF, 0);
    return p_count > 2 ? compare(painter, p_count - 3, p_arguments + 3) : serve(painter);
}
