// The parts of report pages: series that don't grow, worst frames, pictures as text, and plots.
#include "host/report/zyr_page_plot.h"
#include "host/report/zyr_page_text.h"
#include "host/report/zyr_run_series.h"
#include "host/report/zyr_worst_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace zyr::host {

namespace {

using testing::HasSubstr;
using testing::Not;

SeriesPoint pointOf(uint64_t p_frame) {
    SeriesPoint point;
    point.m_frame = p_frame;
    point.m_seconds = double(p_frame);
    point.m_width = 16;
    point.m_height = uint32_t(p_frame);
    point.m_keys = p_frame % 2;
    point.m_bytes = 10;
    point.m_encode = double(p_frame);
    point.m_decode = 1;
    point.m_psnr = 100.0 - double(p_frame);
    point.m_similarity = std::nan("");
    return point;
}

void offer(WorstFrames& p_worst, uint64_t p_frame, double p_psnr) {
    const uint8_t source[8] = {10, 20, 30, 255, 10, 20, 30, 255};
    const uint8_t result[8] = {30, 20, 14, 255, 30, 20, 10, 255};
    p_worst.add(p_frame, p_psnr, 0.5, FramePixels{source, 8}, FramePixels{result, 8}, 2, 1);
}

std::vector<uint64_t> numbersOf(const WorstFrames& p_worst) {
    std::vector<uint64_t> numbers;
    for (const WorstFrame& frame : p_worst.getFrames()) {
        numbers.push_back(frame.m_frame);
    }
    return numbers;
}

} // namespace

TEST(RunSeries, KeepsEveryFrameOfAShortRun) {
    RunSeries series;
    for (uint64_t i = 0; i < RunSeries::MOST_POINTS; i++) {
        series.add(pointOf(i));
    }
    EXPECT_EQ(series.getPoints().size(), RunSeries::MOST_POINTS);
    EXPECT_EQ(series.getStride(), 1u);
    EXPECT_EQ(series.getPoints().back().m_frame, RunSeries::MOST_POINTS - 1);
}

TEST(RunSeries, PutsNeighboursTogetherWhenThereAreTooMany) {
    RunSeries series;
    for (uint64_t i = 0; i <= RunSeries::MOST_POINTS; i++) {
        series.add(pointOf(i));
    }
    EXPECT_EQ(series.getStride(), 2u);
    ASSERT_EQ(series.getPoints().size(), RunSeries::MOST_POINTS / 2 + 1);
    const SeriesPoint& point = series.getPoints()[3];
    EXPECT_EQ(point.m_frame, 6u);
    EXPECT_EQ(point.m_frames, 2u);
    EXPECT_EQ(point.m_seconds, 6);
    EXPECT_EQ(point.m_height, 7u);
    EXPECT_EQ(point.m_keys, 1u);
    EXPECT_EQ(point.m_bytes, 20u);
    EXPECT_EQ(point.m_encode, 7);
    EXPECT_EQ(point.m_psnr, 93);
    EXPECT_TRUE(std::isnan(point.m_similarity));
    EXPECT_EQ(series.getPoints().back().m_frames, 1u);
}

TEST(RunSeries, CountsEveryFrameOfALongRun) {
    RunSeries series;
    const uint64_t count = RunSeries::MOST_POINTS * 9 + 5;
    for (uint64_t i = 0; i < count; i++) {
        series.add(pointOf(i));
    }
    uint64_t frames = 0;
    for (const SeriesPoint& point : series.getPoints()) {
        EXPECT_EQ(point.m_frame, frames);
        frames += point.m_frames;
    }
    EXPECT_EQ(frames, count);
    EXPECT_LE(series.getPoints().size(), RunSeries::MOST_POINTS);
}

TEST(WorstFrames, KeepsTheWorstFirst) {
    WorstFrames worst;
    worst.setCount(2);
    offer(worst, 0, 30);
    offer(worst, 20, 20);
    offer(worst, 40, 25);
    offer(worst, 60, 40);
    EXPECT_EQ(numbersOf(worst), (std::vector<uint64_t>{20, 40}));
}

TEST(WorstFrames, KeepsOneOfEachTenFrames) {
    WorstFrames worst;
    worst.setCount(3);
    offer(worst, 5, 30);
    offer(worst, 6, 20);
    offer(worst, 9, 25);
    EXPECT_EQ(numbersOf(worst), (std::vector<uint64_t>{6}));
    offer(worst, 10, 28);
    EXPECT_EQ(numbersOf(worst), (std::vector<uint64_t>{6, 10}));
}

TEST(WorstFrames, KeepsNoneUnlessAskedAndNeverAnEqualOne) {
    WorstFrames worst;
    offer(worst, 5, 30);
    EXPECT_TRUE(worst.getFrames().empty());
    worst.setCount(3);
    offer(worst, 5, INFINITY);
    offer(worst, 5, std::nan(""));
    EXPECT_TRUE(worst.getFrames().empty());
}

TEST(WorstFrames, HoldsSourceResultAndTheDistanceEightTimesAsStrong) {
    WorstFrames worst;
    worst.setCount(1);
    offer(worst, 0, 30);
    ASSERT_EQ(worst.getFrames().size(), 1u);
    const WorstFrame& frame = worst.getFrames()[0];
    EXPECT_EQ(frame.m_source.m_pixels, (std::vector<uint8_t>{10, 20, 30, 255, 10, 20, 30, 255}));
    EXPECT_EQ(frame.m_result.m_pixels, (std::vector<uint8_t>{14, 20, 30, 255, 10, 20, 30, 255}));
    EXPECT_EQ(frame.m_difference.m_pixels, (std::vector<uint8_t>{32, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(WorstFrames, MakesWidePicturesSmaller) {
    WorstFrames worst;
    worst.setCount(1);
    const std::vector<uint8_t> pixels(1280 * 3 * 4, 7);
    worst.add(0, 30, 0.5, FramePixels{pixels.data(), 1280 * 4}, FramePixels{pixels.data(), 1280 * 4}, 1280, 3);
    ASSERT_EQ(worst.getFrames().size(), 1u);
    EXPECT_EQ(worst.getFrames()[0].m_width, 1280u);
    EXPECT_EQ(worst.getFrames()[0].m_source.m_width, 640u);
    EXPECT_EQ(worst.getFrames()[0].m_source.m_height, 1u);
    EXPECT_EQ(worst.getFrames()[0].m_source.m_pixels.size(), 640u * 4);
}

TEST(DataPng, WritesBase64WithPadding) {
    const uint8_t bytes[] = {'M', 'a', 'n', 0xFF};
    EXPECT_EQ(toBase64(bytes, 0), "");
    EXPECT_EQ(toBase64(bytes, 1), "TQ==");
    EXPECT_EQ(toBase64(bytes, 2), "TWE=");
    EXPECT_EQ(toBase64(bytes, 3), "TWFu");
    EXPECT_EQ(toBase64(bytes, 4), "TWFu/w==");
}

TEST(DataPng, BeginsAsAPng) {
    EXPECT_EQ(makeDataPng(Thumbnail{}), "");
    EXPECT_THAT(makeDataPng(Thumbnail{1, 1, {1, 2, 3, 4}}), testing::StartsWith("data:image/png;base64,iVBORw0KGgo"));
}

TEST(PageText, MasksWhatAPageWouldTakeForATag) {
    EXPECT_EQ(escapeForPage("<a href=\"x\">&\n\xff"), "&lt;a href=&quot;x&quot;&gt;&amp;??");
}

TEST(PageText, WritesNumbersAsTablesAndAxesHaveThem) {
    EXPECT_EQ(fixedText(1.25, 1), "1.2");
    EXPECT_EQ(fixedText(std::nan(""), 1), "-");
    EXPECT_EQ(fixedText(INFINITY, 1), "no difference");
    EXPECT_EQ(shortText(9999), "9999");
    EXPECT_EQ(shortText(12000), "12k");
    EXPECT_EQ(shortText(-2500000), "-2.5M");
    EXPECT_EQ(shortText(0.05), "0.05");
}

TEST(PagePlot, BreaksALineWhereThereIsNoValue) {
    const std::string svg = drawLines({"T", "u"}, {{{0, 1}, {1, 2}, {2, std::nan("")}, {3, INFINITY}, {4, 1}}}, {});
    EXPECT_THAT(svg, HasSubstr("class=\"line c0\" d=\"M64.0 196.0h0L270.0 16.0M888.0 196.0h0\""));
}

TEST(PagePlot, DrawsNothingWithoutValues) {
    EXPECT_EQ(drawLines({"T", "u"}, {{{0, std::nan("")}}, {}}, {}), "");
    EXPECT_EQ(drawHistogram({"T", "u"}, {{{INFINITY, 1}}}), "");
}

TEST(PagePlot, MarksKeyFramesAndChangesOfSize) {
    const std::string svg = drawLines({"T", ""}, {{{0, 1}, {10, 2}}}, {{0, ""}, {10, "640x<"}});
    EXPECT_THAT(svg, HasSubstr("<path class=\"key\" d=\"M64.0 196.0v7\"/>"));
    EXPECT_THAT(svg,
                HasSubstr("<path class=\"change\" d=\"M888.0 16.0V196.0\"/><text x=\"888.0\" y=\"12.0\">640x&lt;"));
}

TEST(PagePlot, DrawsRunsThatStayAtOneValue) {
    EXPECT_THAT(drawLines({"T", ""}, {{{0, 5}}}, {}), HasSubstr("d=\"M476.0 106.0h0\""));
    EXPECT_THAT(drawLines({"T", ""}, {{{0, 5}}}, {}), Not(HasSubstr("nan")));
}

TEST(PagePlot, HasAnEndWhateverTheNumbers) {
    const double large = 1e300;
    const double widest = std::numeric_limits<double>::max();
    const double least = std::numeric_limits<double>::denorm_min();
    const double none = std::nan("");
    for (const PlotLine& line :
         {PlotLine{{0, large}, {1, std::nextafter(large, widest)}}, PlotLine{{1e17, 1}, {1e17 + 16, 2}},
          PlotLine{{0, -widest}, {1, widest}}, PlotLine{{0, 0}, {1, least}}, PlotLine{{none, 1}, {none, 2}}}) {
        const std::string lines = drawLines({"title", ""}, {line}, {{none, ""}});
        const std::string bars = drawHistogram({"title", ""}, {line});
        EXPECT_THAT(lines, testing::EndsWith("</svg></div></figure>\n"));
        for (const std::string& svg : {lines, bars}) {
            EXPECT_LT(svg.size(), 8000u);
            EXPECT_THAT(svg, Not(HasSubstr("M-"))) << "every place is a number";
            EXPECT_THAT(svg, Not(HasSubstr("\"-\"")));
        }
    }
}

TEST(PagePlot, CountsFramesInTheBarsOfEachRun) {
    const std::string svg = drawHistogram({"T", ""}, {{{0, 2}, {24, 1}}, {{24, 3}}});
    EXPECT_THAT(svg, HasSubstr("class=\"bar c0\" x=\"64.0\""));
    EXPECT_THAT(svg, HasSubstr("<title>0 to 1: 2 frames</title>"));
    EXPECT_THAT(svg, HasSubstr("<title>23 to 24: 1 frames</title>"));
    EXPECT_THAT(svg, HasSubstr("<title>23 to 24: 3 frames</title>"));
}

} // namespace zyr::host
