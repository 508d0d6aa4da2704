// The parts of "stream" by themselves.

#include "host/zyr_encoder_options.h"
#include "host/zyr_file_progress.h"
#include "host/zyr_frame_log.h"
#include "host/zyr_likeness.h"
#include "host/zyr_run_error.h"
#include "host/zyr_stage_pipeline.h"
#include "host/zyr_stage_times.h"
#include "host/zyr_stream_progress.h"
#include "support/zyr_temporary_directory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace zyr::host {

namespace {

PlanePicture makePlanes(uint32_t p_width, uint32_t p_height, uint32_t p_step) {
    PlanePicture picture;
    picture.resize(p_width, p_height);
    for (int i = 0; i < PlanePicture::NUM_OF_PLANES; i++) {
        for (uint32_t y = 0; y < picture.getHeight(i); y++) {
            for (uint32_t x = 0; x < picture.getWidth(i); x++) {
                picture.getPlane(i)[y * picture.getPitch(i) + x] = uint8_t(x * p_step + y * 3);
            }
        }
    }
    return picture;
}

/// What is written to the standard error, which is a terminal meanwhile.
template <typename Code> std::string writeToTerminal(Code p_code) {
    const int reader = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_EQ(grantpt(reader), 0);
    EXPECT_EQ(unlockpt(reader), 0);
    const char* name = ptsname(reader);
    const int terminal = name != nullptr ? open(name, O_RDWR | O_NOCTTY | O_CLOEXEC) : -1;
    const int before = dup(STDERR_FILENO);
    if (reader < 0 || terminal < 0 || dup2(terminal, STDERR_FILENO) < 0) {
        ADD_FAILURE() << "no terminal: " << strerror(errno);
        return "";
    }
    p_code();
    fputc('#', stderr);
    dup2(before, STDERR_FILENO);
    std::string text;
    for (char c = 0; read(reader, &c, 1) == 1 && c != '#';) {
        text += c;
    }
    for (const int file : {before, terminal, reader}) {
        close(file);
    }
    return text;
}

} // namespace

TEST(StreamProgress, IsCutOffAtTheMarginOfTheTerminal) {
    const std::string text = writeToTerminal([] { StreamProgress(true, 100).show(5); });
    EXPECT_TRUE(text.starts_with("\r\033[K\033[?7lframe 5/100, ")) << text;
    EXPECT_TRUE(text.ends_with(" fps\033[?7h\r\033[K")) << text;
}

TEST(FileProgress, IsCutOffAtTheMarginOfTheTerminal) {
    const std::string text = writeToTerminal([] {
        FileProgress progress(true, "packing", 2, 100000000);
        progress.tell("writing the pack");
    });
    EXPECT_EQ(text, "\r\033[K\033[?7lwriting the pack\033[?7h\r\033[K");
}

TEST(StageTimes, GivePercentilesWithinTheWidthOfAClass) {
    StageTimes times;
    EXPECT_EQ(times.getPercentile(50), 0.0);
    for (uint64_t i = 1; i <= 100; i++) {
        times.add(i * 1000000);
    }
    EXPECT_NEAR(times.getPercentile(50), 50.0, 0.4);
    EXPECT_NEAR(times.getPercentile(95), 95.0, 0.8);
    EXPECT_EQ(times.getPercentile(100), 100.0);
    EXPECT_DOUBLE_EQ(times.getTotal(), 5.05);
}

TEST(StageTimes, KeepTheShortestAndTheLongestTimes) {
    StageTimes times;
    times.add(0);
    EXPECT_EQ(times.getPercentile(99), 0.0);
    times.add(UINT64_MAX);
    EXPECT_EQ(times.getPercentile(100), double(UINT64_MAX) / 1e6);
}

TEST(StagePipeline, KeepsTheOrderThroughAllStages) {
    constexpr size_t SLOTS = 3;
    StagePipeline pipeline(SLOTS);
    int values[SLOTS] = {};
    int next = 0;
    std::vector<int> out;
    pipeline.addStage([&](size_t p_slot) {
        values[p_slot] = next;
        return next++ < 500;
    });
    pipeline.addStage([&](size_t p_slot) { return (values[p_slot] *= 2) >= 0; });
    pipeline.addStage([&](size_t p_slot) {
        out.push_back(values[p_slot]);
        return true;
    });
    pipeline.run([] {});
    ASSERT_EQ(out.size(), 500u);
    for (int i = 0; i < 500; i++) {
        EXPECT_EQ(out[size_t(i)], 2 * i);
    }
}

TEST(StagePipeline, NeverHasMoreItemsThanSlots) {
    std::atomic<int> inside{0};
    std::atomic<int> most{0};
    int read = 0;
    StagePipeline pipeline(2);
    pipeline.addStage([&](size_t) {
        most = std::max<int>(most, ++inside);
        return read++ < 200;
    });
    pipeline.addStage([&](size_t) { return true; });
    pipeline.addStage([&](size_t) { return --inside >= 0; });
    pipeline.run([] {});
    EXPECT_LE(most, 2);
}

TEST(StagePipeline, AStageThatThrowsEndsTheRunAndTheStagesBehindFinish) {
    int read = 0;
    int passed = 0;
    int written = 0;
    StagePipeline pipeline(4);
    pipeline.addStage([&](size_t) { return ++read > 0; });
    pipeline.addStage([&](size_t) {
        if (passed == 10) {
            throw RunError("the eleventh");
        }
        passed++;
        return true;
    });
    pipeline.addStage([&](size_t) { return ++written > 0; });
    EXPECT_THROW(pipeline.run([] {}), RunError);
    EXPECT_EQ(passed, 10);
    EXPECT_EQ(written, 10);
}

TEST(Likeness, OfEqualPicturesIsInfiniteAndOne) {
    LikenessMeter meter;
    const PlanePicture picture = makePlanes(33, 17, 5);
    const Likeness likeness = meter.comparePlanes(picture, picture);
    EXPECT_TRUE(std::isinf(likeness.getPsnr()));
    EXPECT_EQ(likeness.m_allSsim, 1.0);
}

TEST(Likeness, WeighsThePlanesByTheirSamples) {
    PlanePicture source = makePlanes(32, 32, 1);
    PlanePicture result = makePlanes(32, 32, 1);
    result.getPlane(1)[0] = uint8_t(result.getPlane(1)[0] + 16);
    const Likeness likeness = LikenessMeter().comparePlanes(source, result);
    EXPECT_EQ(likeness.m_error[0], 0.0);
    EXPECT_EQ(likeness.m_error[1], 1.0);
    EXPECT_DOUBLE_EQ(likeness.m_allError, 256.0 / 1536.0);
    EXPECT_DOUBLE_EQ(likeness.getPsnr(), 10 * std::log10(255.0 * 255.0 * 6.0));
}

TEST(Likeness, OfPicturesWithoutAWindowHasNoSimilarity) {
    const PlanePicture picture = makePlanes(7, 7, 1);
    EXPECT_TRUE(std::isnan(LikenessMeter().comparePlanes(picture, picture).m_allSsim));
}

TEST(Likeness, ComparesBothOrdersOfBytes) {
    std::vector<uint8_t> source(16 * 16 * 4);
    std::vector<uint8_t> result(source.size());
    for (size_t i = 0; i < source.size(); i += 4) {
        source[i] = result[i + 2] = uint8_t(i);
        source[i + 1] = result[i + 1] = uint8_t(i / 4);
        source[i + 2] = uint8_t(i / 128);
        result[i] = uint8_t(source[i + 2] + 2);
    }
    const Likeness likeness = LikenessMeter().comparePixels(source.data(), 64, result.data(), 64, 16, 16);
    EXPECT_EQ(likeness.m_error[0], 4.0);
    EXPECT_EQ(likeness.m_error[1], 0.0);
    EXPECT_EQ(likeness.m_error[2], 0.0);
}

TEST(StructuralSimilarity, IsTheSameForWidthsBelowAndAboveAVector) {
    // A pattern of period four repeats its windows, so that the mean does not depend on the width.
    for (const uint32_t width : {8u, 12u, 20u, 24u, 68u, 100u}) {
        std::vector<uint8_t> first(width * 8);
        std::vector<uint8_t> second(width * 8);
        for (uint32_t i = 0; i < width * 8; i++) {
            first[i] = uint8_t(40 * (i % width % 4) + 7 * (i / width % 4));
            second[i] = uint8_t(first[i] ^ (i % 4));
        }
        const double value = StructuralSimilarity().compare(first.data(), width, second.data(), width, width, 8);
        EXPECT_NEAR(value, 0.9994017, 0.0000001) << width;
    }
}

TEST(EncoderOptions, ReplaceAddAndRemove) {
    EncoderOptions options("crf=32,deadline=realtime,threads=8");
    options.add(EncoderOptions("threads=2,g=30"));
    options.remove("deadline");
    EXPECT_EQ(options.toText(), "crf=32,threads=2,g=30");
    EXPECT_TRUE(isSteeredByCrf(options));
    EXPECT_FALSE(isSteeredByCrf(EncoderOptions("strict=unofficial")));
}

TEST(EncoderOptions, AreWellFormedOrNot) {
    EXPECT_TRUE(EncoderOptions::isWellFormed("a=b"));
    EXPECT_TRUE(EncoderOptions::isWellFormed("a=b,c=1/25"));
    for (const char* text : {"", "a", "a=", "=b", "a=b,", ",a=b", "a=b,,c=d", "a=b,c"}) {
        EXPECT_FALSE(EncoderOptions::isWellFormed(text)) << text;
    }
}

TEST(EncoderOptions, TheRateFactorFollowsTheQuality) {
    EXPECT_EQ(crfOfQuality(0), 50);
    EXPECT_EQ(crfOfQuality(59), 29);
    EXPECT_EQ(crfOfQuality(60), 29);
    EXPECT_EQ(crfOfQuality(100), 15);
}

TEST(EncoderOptions, NameTheNearestRateOfTheBitstream) {
    EXPECT_EQ(getRateOptions("mpeg1video", 25, 1).toText(), "time_base=1/25");
    EXPECT_EQ(getRateOptions("mpeg1video", 30000, 1001).toText(), "time_base=1001/30000");
    EXPECT_EQ(getRateOptions("mpeg1video", 12, 1).toText(), "time_base=1001/24000");
    EXPECT_EQ(getRateOptions("libvpx-vp9", 25, 1).toText(), "");
}

TEST(FrameLog, WritesCsvAndJsonLines) {
    const TemporaryDirectory directory;
    const FrameRecord record{3, 0.12, true, 77, 60, 1, 2, 3, 4, INFINITY, NAN};
    for (const char* name : {"a.csv", "a.jsonl"}) {
        FrameLog log(directory.getPath() + name);
        log.write(record);
        log.close();
    }
    EXPECT_EQ(TemporaryDirectory::readFile(directory.getPath() + "a.csv"),
              "frame,time_s,key,bytes,quality,read_ms,encode_ms,decode_ms,compare_ms,psnr_db,ssim\n"
              "3,0.120000,1,77,60,1.000000,2.000000,3.000000,4.000000,inf,\n");
    EXPECT_EQ(
        TemporaryDirectory::readFile(directory.getPath() + "a.jsonl"),
        "{\"frame\":3,\"time_s\":0.120000,\"key\":true,\"bytes\":77,\"quality\":60,\"read_ms\":1.000000,"
        "\"encode_ms\":2.000000,\"decode_ms\":3.000000,\"compare_ms\":4.000000,\"psnr_db\":null,\"ssim\":null}\n");
}

} // namespace zyr::host
