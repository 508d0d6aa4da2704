#include "picture_module/picture_module_test.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/geometry/zyr_rect.h"

#include <climits>
#include <string>

namespace zyr {

namespace {

/// The marks as rows of text.
std::string show(const IDiffmap& p_diffmap) {
    std::string text;
    for (uint32_t i = 0; i < p_diffmap.getNumOfBlocks(); ++i) {
        text += i != 0 && i % p_diffmap.getHBlocks() == 0 ? "|" : "";
        text += p_diffmap.getData()[i] == 0 ? "." : std::to_string(p_diffmap.getData()[i]);
    }
    return text;
}

std::string show(const Array<Rect<int>>& p_rects) {
    std::string text;
    for (const Rect<int>& rect : p_rects) {
        text += std::to_string(rect.x) + "," + std::to_string(rect.y) + " " + std::to_string(rect.width) + "x" +
                std::to_string(rect.height) + ";";
    }
    return text;
}

} // namespace

TEST_F(PictureUpTest, DiffmapDividesThePictureIntoBlocks) {
    Held<IDiffmap> diffmap = make<IDiffmap>();
    EXPECT_EQ(diffmap->getData(), nullptr);
    EXPECT_TRUE(diffmap->isEmpty());
    ASSERT_TRUE(diffmap->init(33, 16, 16, 8, 0));
    EXPECT_EQ(diffmap->getImageWidth(), 33u);
    EXPECT_EQ(diffmap->getImageHeight(), 16u);
    EXPECT_EQ(diffmap->getBlockWidth(), 16u);
    EXPECT_EQ(diffmap->getBlockHeight(), 8u);
    EXPECT_EQ(diffmap->getHBlocks(), 3u);
    EXPECT_EQ(diffmap->getVBlocks(), 2u);
    EXPECT_EQ(diffmap->getNumOfBlocks(), 6u);
    EXPECT_EQ(diffmap->getSize(), 6u);
    EXPECT_TRUE(diffmap->isEmpty());
    EXPECT_TRUE(diffmap->clearValue(7));
    EXPECT_EQ(show(*diffmap), "777|777");
    EXPECT_FALSE(diffmap->isEmpty());
    for (const auto& [width, height, blockWidth, blockHeight] : {std::array<uint32_t, 4>{0, 1, 1, 1},
                                                                 {1, 0, 1, 1},
                                                                 {1, 1, 0, 1},
                                                                 {1, 1, 1, 0},
                                                                 {0xFFFFFFFF, 0xFFFFFFFF, 1, 1},
                                                                 {0x40000000, 0x40000000, 1, 1}}) {
        EXPECT_FALSE(diffmap->init(width, height, blockWidth, blockHeight, 0));
    }
    EXPECT_EQ(show(*diffmap), "777|777");
}

TEST_F(PictureUpTest, DiffmapRectangleMarksEveryBlockThatItTouches) {
    Held<IDiffmap> diffmap = make<IDiffmap>();
    ASSERT_TRUE(diffmap->init(40, 30, 10, 10, 0));
    EXPECT_TRUE(diffmap->drawSingleRect(Rect<int>(9, 10, 2, 10), 1));
    EXPECT_EQ(show(*diffmap), "....|11..|....");
    EXPECT_TRUE(diffmap->drawSingleRect(Rect<int>(10, 19, 10, 2), 2));
    EXPECT_EQ(show(*diffmap), "....|12..|.2..");
    EXPECT_TRUE(diffmap->drawSingleRect(Rect<int>(-100, -100, 101, 101), 3));
    EXPECT_EQ(show(*diffmap), "3...|12..|.2..");
    EXPECT_TRUE(diffmap->drawSingleRect(Rect<int>(39, 29, INT_MAX, INT_MAX), 4));
    EXPECT_EQ(show(*diffmap), "3...|12..|.2.4");
    EXPECT_TRUE(diffmap->drawSingleRect(Rect<int>(40, 0, 5, 5), 5));
    EXPECT_TRUE(diffmap->drawSingleRect(Rect<int>(5, 5, 0, 0), 5));
    EXPECT_TRUE(diffmap->drawSingleRect(Rect<int>(INT_MIN, 0, 5, 5), 5));
    EXPECT_FALSE(diffmap->drawSingleRect(Rect<int>(5, 5, -1, 5), 5));
    EXPECT_EQ(show(*diffmap), "3...|12..|.2.4");
    Array<Rect<int>> rects;
    rects.pushBack(Rect<int>(0, 0, 1, 1));
    rects.pushBack(Rect<int>(30, 20, 1, 1));
    EXPECT_TRUE(diffmap->drawMultipleRects(rects, 0));
    EXPECT_EQ(show(*diffmap), "....|12..|.2..");
    rects.pushBack(Rect<int>(0, 0, -1, 1));
    EXPECT_FALSE(diffmap->drawMultipleRects(rects, 9));
    EXPECT_EQ(show(*diffmap), "....|12..|.2..");
}

TEST_F(PictureUpTest, DiffmapGivesRectanglesThatCoverTheChangesOnce) {
    Held<IDiffmap> diffmap = make<IDiffmap>();
    ASSERT_TRUE(diffmap->init(35, 25, 10, 10, 0));
    diffmap->drawSingleRect(Rect<int>(0, 0, 20, 20), 1);
    diffmap->drawSingleRect(Rect<int>(30, 10, 1, 10), 1);
    diffmap->drawSingleRect(Rect<int>(0, 20, 35, 5), 1);
    EXPECT_EQ(show(*diffmap), "11..|11.1|1111");
    Array<Rect<int>> rects;
    rects.pushBack(Rect<int>(1, 2, 3, 4));
    EXPECT_TRUE(diffmap->convertIntoRects(rects, 1));
    EXPECT_EQ(show(rects), "0,0 20x25;30,10 5x15;20,20 10x5;");
    EXPECT_TRUE(diffmap->convertIntoRects(rects, 0));
    EXPECT_EQ(rects.getSize(), 9u);
    EXPECT_EQ(show(*diffmap), "11..|11.1|1111");
    diffmap->clearValue(0);
    EXPECT_TRUE(diffmap->convertIntoRects(rects, 1));
    EXPECT_TRUE(rects.isEmpty());
    Held<IDiffmap> empty = make<IDiffmap>();
    EXPECT_FALSE(empty->convertIntoRects(rects, 1));
}

TEST_F(PictureUpTest, DiffmapsAreMerged) {
    Held<IDiffmap> first = make<IDiffmap>();
    Held<IDiffmap> second = make<IDiffmap>();
    ASSERT_TRUE(first->init(40, 20, 10, 10, 0));
    ASSERT_TRUE(second->init(40, 20, 10, 10, 0));
    first->drawSingleRect(Rect<int>(0, 0, 1, 1), 1);
    second->drawSingleRect(Rect<int>(30, 10, 1, 1), 1);
    EXPECT_TRUE(first->drawDiffmap(second.get(), 5));
    EXPECT_EQ(show(*first), "1...|...5");
    EXPECT_TRUE(first->drawDiffmap(first.get(), 2));
    EXPECT_EQ(show(*first), "2...|...2");
    ASSERT_TRUE(second->init(40, 20, 20, 10, 0));
    EXPECT_FALSE(first->drawDiffmap(second.get(), 1));
    EXPECT_FALSE(first->drawDiffmap(nullptr, 1));
}

TEST_F(PictureUpTest, DiffmapConvertsToOtherBlockSizes) {
    Held<IDiffmap> fine = make<IDiffmap>();
    Held<IDiffmap> coarse = make<IDiffmap>();
    ASSERT_TRUE(fine->init(40, 20, 10, 10, 0));
    ASSERT_TRUE(coarse->init(40, 20, 15, 20, 9));
    fine->drawSingleRect(Rect<int>(10, 0, 1, 1), 1);
    EXPECT_TRUE(fine->convert(coarse.get(), 0));
    EXPECT_EQ(show(*coarse), "11.");
    EXPECT_TRUE(coarse->convert(fine.get(), 1));
    EXPECT_EQ(show(*fine), "111.|111.");
    ASSERT_TRUE(coarse->init(41, 20, 15, 20, 9));
    EXPECT_FALSE(fine->convert(coarse.get(), 0));
    EXPECT_EQ(show(*coarse), "999");
}

TEST_F(PictureUpTest, DiffmapKeepsItsMarksOverAChangeOfSize) {
    Held<IDiffmap> diffmap = make<IDiffmap>();
    EXPECT_FALSE(diffmap->changeSize(10, 10));
    EXPECT_TRUE(diffmap->setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0));
    EXPECT_FALSE(diffmap->setAllocationModel(0, 0));
    EXPECT_FALSE(diffmap->setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, ZYR_ALLOC_STEP_DOUBLE));
    ASSERT_TRUE(diffmap->init(30, 20, 10, 10, 1));
    EXPECT_TRUE(diffmap->changeSize(41, 11));
    EXPECT_EQ(show(*diffmap), "111..|111..");
    EXPECT_TRUE(diffmap->changeSize(20, 30));
    EXPECT_EQ(show(*diffmap), "11|11|..");
    EXPECT_FALSE(diffmap->changeSize(0, 30));
    EXPECT_EQ(show(*diffmap), "11|11|..");
}

TEST_F(PictureUpTest, DiffmapSliceHasTheRowsOfItsParent) {
    Held<IDiffmap> diffmap = make<IDiffmap>();
    ASSERT_TRUE(diffmap->init(20, 35, 10, 10, 0));
    diffmap->drawSingleRect(Rect<int>(0, 30, 1, 1), 1);
    diffmap->drawSingleRect(Rect<int>(10, 20, 1, 1), 2);
    Held<IDiffmap> slice(diffmap->createSlice(2, 2));
    ASSERT_NE(slice, nullptr);
    EXPECT_EQ(show(*slice), ".2|1.");
    EXPECT_EQ(slice->getImageHeight(), 15u);
    EXPECT_EQ(diffmap->createSlice(0, 0), nullptr);
    EXPECT_EQ(diffmap->createSlice(4, 1), nullptr);
    EXPECT_EQ(diffmap->createSlice(3, 2), nullptr);
    EXPECT_EQ(diffmap->createSlice(1, 0xFFFFFFFF), nullptr);
}

TEST_F(PictureUpTest, DiffmapPrintsItselfToTheLog) {
    getData()->m_logLevel = ZYR_LOG_LEVEL_TRACE;
    Held<IDiffmap> diffmap = make<IDiffmap>();
    ASSERT_TRUE(diffmap->init(30, 20, 10, 10, 0));
    diffmap->drawSingleRect(Rect<int>(10, 10, 1, 1), 1);
    diffmap->printToLog(ZYR_LOG_LEVEL_INFO, 1);
    const std::string log = m_application->getLog();
    EXPECT_NE(log.find("Diffmap of 30x20 pixels in blocks of 10x10: 1 of 6 changed\n"), std::string::npos) << log;
    EXPECT_NE(log.find("- ...\n"), std::string::npos);
    EXPECT_NE(log.find("- .#.\n"), std::string::npos);
}

TEST_F(PictureUpTest, DiffmapCopiesDeeply) {
    Held<IDiffmap> diffmap = make<IDiffmap>();
    ASSERT_TRUE(diffmap->init(30, 20, 10, 10, 3));
    Held<IDiffmap> copy(static_cast<IDiffmap*>(diffmap->clone()));
    diffmap->clear();
    EXPECT_EQ(diffmap->getNumOfBlocks(), 0u);
    EXPECT_EQ(show(*copy), "333|333");
    EXPECT_EQ(copy->getBlockWidth(), 10u);
}

} // namespace zyr
