#include "core_module/core_module_test.h"
#include "support/zyr_failing_import.h"
#include "zyr_common/streams/zyr_file_stream.h"
#include "zyr_common/streams/zyr_memory_stream.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace zyr {
namespace {

class StreamTest : public CoreModuleUpTest {
protected:
    std::string path(const std::string& p_name) const { return m_directory.getPath() + p_name; }
    static std::string text(const String& p_text) { return std::string(p_text.getData(), p_text.getLengthInBytes()); }

    TemporaryDirectory m_directory;
};

TEST_F(StreamTest, FilesAreWrittenAndReadBack) {
    IOutputStreamFile* output = zyr_createObject<IOutputStreamFile>();
    ASSERT_TRUE(output->open(path("a").c_str()));
    EXPECT_TRUE(output->isSeekAvailable());
    EXPECT_TRUE(output->writeLine("one") && output->writeString("two\r\n\r\nthree"));
    EXPECT_EQ(output->tell(), 16);
    EXPECT_TRUE(output->flush());
    output->release();
    EXPECT_EQ(TemporaryDirectory::readFile(path("a")), "one\ntwo\r\n\r\nthree");

    IInputStreamFile* input = zyr_createObject<IInputStreamFile>();
    String line;
    ASSERT_TRUE(input->open(path("a").c_str()));
    EXPECT_EQ(input->getFileSize(), 16U);
    for (const char* expected : {"one", "two", "", "three"}) {
        EXPECT_TRUE(input->readLine(line));
        EXPECT_EQ(text(line), expected);
    }
    EXPECT_FALSE(input->readLine(line));
    EXPECT_TRUE(input->seek(-5, SEEK_END));
    EXPECT_EQ(input->readString(line, 100), 5U);
    EXPECT_EQ(text(line), "three");
    EXPECT_TRUE(input->seek(4, SEEK_SET));
    EXPECT_EQ(input->tell(), 4);
    EXPECT_EQ(input->readString(line, 3), 3U);
    EXPECT_EQ(text(line), "two");
    EXPECT_TRUE(input->seek(-3, SEEK_CUR));
    EXPECT_EQ(input->tell(), 4);
    input->release();
}

TEST_F(StreamTest, FilesOfMoreThanFourGigabytesHavePlacesBehindThem) {
    IFileStream* stream = zyr_createObject<IFileStream>();
    const int64_t far = int64_t(5) << 30;
    char character = 0;
    ASSERT_TRUE(stream->open(path("large").c_str(), ZYR_ACCESS_READ_WRITE, 1));
    EXPECT_TRUE(stream->seek(far, SEEK_SET));
    EXPECT_EQ(stream->writeBytes("x", 1), 1U);
    EXPECT_EQ(stream->getSize(), static_cast<uint64_t>(far) + 1);
    EXPECT_EQ(stream->tell(), far + 1);
    EXPECT_TRUE(stream->seek(-1, SEEK_CUR));
    EXPECT_EQ(stream->readBytes(&character, 1), 1U);
    EXPECT_EQ(character, 'x');
    EXPECT_EQ(stream->readBytes(&character, 1), 0U);
    EXPECT_TRUE(stream->close());
    stream->release();
}

TEST_F(StreamTest, ReadingAndWritingShareOnePlace) {
    IIOStreamFile* stream = zyr_createObject<IIOStreamFile>();
    m_directory.writeFile("a", "abcdef");
    String part;
    ASSERT_TRUE(stream->open(path("a").c_str(), 0));
    EXPECT_EQ(stream->readString(part, 2), 2U);
    EXPECT_EQ(stream->writeBytes("XY", 2), 2U);
    EXPECT_EQ(stream->readString(part, 9), 2U);
    EXPECT_EQ(text(part), "ef");
    EXPECT_EQ(stream->getInputStream(), nullptr);
    EXPECT_TRUE(stream->flush());
    EXPECT_EQ(TemporaryDirectory::readFile(path("a")), "abXYef");
    EXPECT_TRUE(stream->open(path("a").c_str(), 1));
    EXPECT_EQ(TemporaryDirectory::readFile(path("a")), "");
    stream->release();
}

TEST_F(StreamTest, APipeIsReadInPiecesAndCannotSeek) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    std::thread writer([this] {
        const int file = ::open(path("pipe").c_str(), O_WRONLY);
        for (int i = 0; i < 1000; i++) {
            EXPECT_EQ(::write(file, "0123456789", 10), 10);
        }
        ::close(file);
    });
    IInputStreamFile* input = zyr_createObject<IInputStreamFile>();
    String part;
    EXPECT_TRUE(input->open(path("pipe").c_str()));
    EXPECT_FALSE(input->isSeekAvailable());
    EXPECT_FALSE(input->seek(0, SEEK_SET));
    EXPECT_EQ(input->tell(), -1);
    EXPECT_EQ(input->readString(part, 9999), 9999U);
    EXPECT_EQ(input->readString(part, 10), 1U);
    EXPECT_EQ(text(part), "9");
    writer.join();
    input->release();
}

TEST_F(StreamTest, APipeForBothKeepsWhatWasReadAhead) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    IIOStreamFile* stream = zyr_createObject<IIOStreamFile>();
    String line;
    ASSERT_TRUE(stream->open(path("pipe").c_str(), 0));
    EXPECT_TRUE(stream->writeString("one\ntwo\n"));
    EXPECT_TRUE(stream->readLine(line));
    EXPECT_EQ(text(line), "one");
    ASSERT_TRUE(stream->writeLine("three") && stream->flush());
    for (const char* expected : {"two", "three"}) {
        EXPECT_TRUE(stream->readLine(line));
        EXPECT_EQ(text(line), expected);
    }
    stream->release();
}

TEST_F(StreamTest, InterruptedCallsAreMadeAgain) {
    IFileStream* stream = zyr_createObject<IFileStream>();
    char bytes[3] = {};
    {
        const test::FailingImport interrupted("zyr_core.so", "open", -1, EINTR);
        ASSERT_TRUE(stream->open(path("a").c_str(), ZYR_ACCESS_READ_WRITE, 1));
        EXPECT_TRUE(interrupted.hasFailed());
    }
    EXPECT_EQ(stream->writeBytes("abc", 3), 3U);
    {
        const test::FailingImport interrupted("zyr_core.so", "write", -1, EINTR);
        EXPECT_TRUE(stream->flush());
        EXPECT_TRUE(interrupted.hasFailed());
    }
    EXPECT_TRUE(stream->seek(0, SEEK_SET));
    {
        const test::FailingImport interrupted("zyr_core.so", "read", -1, EINTR);
        EXPECT_EQ(stream->readBytes(bytes, 3), 3U);
        EXPECT_TRUE(interrupted.hasFailed());
    }
    EXPECT_EQ(memcmp(bytes, "abc", 3), 0);
    stream->release();
}

TEST_F(StreamTest, AFullDiskIsToldByFlushAndByClose) {
    IFileStream* stream = zyr_createObject<IFileStream>();
    ASSERT_TRUE(stream->open("/dev/full", ZYR_ACCESS_WRITE, 0));
    EXPECT_EQ(stream->writeBytes("x", 1), 1U);
    EXPECT_FALSE(stream->flush());
    EXPECT_FALSE(stream->flush());
    EXPECT_EQ(stream->writeBytes("x", 1), 0U);
    EXPECT_FALSE(stream->close());
    EXPECT_TRUE(stream->close());
    ASSERT_TRUE(stream->open("/dev/full", ZYR_ACCESS_WRITE, 0));
    const std::string block(200000, 'x');
    EXPECT_EQ(stream->writeBytes(block.data(), block.size()), 0U);
    EXPECT_FALSE(stream->close());
    stream->release();
}

TEST_F(StreamTest, WhatCannotBeOpenedLeavesTheStreamClosed) {
    IFileStream* stream = zyr_createObject<IFileStream>();
    char character = 0;
    EXPECT_FALSE(stream->open(path("missing").c_str(), ZYR_ACCESS_READ, 0));
    EXPECT_FALSE(stream->open(m_directory.getPath().c_str(), ZYR_ACCESS_READ, 0));
    EXPECT_FALSE(stream->open(path("x").c_str(), ZYR_ACCESS_NONE, 0));
    EXPECT_EQ(stream->getAccess(), ZYR_ACCESS_NONE);
    EXPECT_EQ(stream->readBytes(&character, 1), 0U);
    EXPECT_EQ(stream->writeBytes("x", 1), 0U);
    EXPECT_EQ(stream->tell(), -1);
    EXPECT_FALSE(stream->seek(0, SEEK_SET));
    EXPECT_FALSE(stream->flush());
    EXPECT_EQ(stream->getSize(), 0U);
    m_directory.writeFile("a", "abc");
    ASSERT_TRUE(stream->open(path("a").c_str(), ZYR_ACCESS_READ, 1));
    EXPECT_EQ(stream->getSize(), 3U);
    EXPECT_EQ(stream->writeBytes("x", 1), 0U);
    stream->release();
}

TEST_F(StreamTest, MemoryGrowsByTheRulesOfItsArray) {
    IMemoryStream* stream = zyr_createObject<IMemoryStream>();
    Array<unsigned char> data;
    String part;
    ASSERT_TRUE(stream->open(&data, ZYR_ACCESS_READ_WRITE));
    EXPECT_TRUE(stream->writeString("abcdef"));
    EXPECT_EQ(data.getSize(), 6U);
    EXPECT_FALSE(stream->seek(7, SEEK_SET));
    EXPECT_FALSE(stream->seek(-1, SEEK_SET));
    EXPECT_FALSE(stream->seek(INT64_MAX, SEEK_END));
    EXPECT_TRUE(stream->seek(-2, SEEK_END));
    EXPECT_TRUE(stream->writeString("XYZ"));
    EXPECT_EQ(stream->tell(), 7);
    EXPECT_TRUE(stream->seek(0, SEEK_SET));
    EXPECT_EQ(stream->readString(part, 100), 7U);
    EXPECT_EQ(text(part), "abcdXYZ");
    unsigned char fixed[4] = {};
    Array<unsigned char> bound;
    bound.bindFixedSizeData(fixed, sizeof(fixed));
    ASSERT_TRUE(stream->open(&bound, ZYR_ACCESS_WRITE));
    EXPECT_EQ(stream->writeBytes("12345", 5), 4U);
    EXPECT_EQ(stream->writeBytes("6", 1), 0U);
    EXPECT_EQ(memcmp(fixed, "1234", 4), 0);
    EXPECT_EQ(stream->readBytes(fixed, 1), 0U);
    EXPECT_FALSE(stream->open(nullptr, ZYR_ACCESS_READ));
    EXPECT_EQ(stream->getAccess(), ZYR_ACCESS_NONE);
    stream->release();
}

TEST_F(StreamTest, ThereAreThreeOriginsToSeekFrom) {
    Array<unsigned char> data;
    data.pushBackRange("abc", 3);
    m_directory.writeFile("a", "abc");
    IFileStream* file = zyr_createObject<IFileStream>();
    IMemoryStream* memory = zyr_createObject<IMemoryStream>();
    ASSERT_TRUE(file->open(path("a").c_str(), ZYR_ACCESS_READ, 0) && memory->open(&data, ZYR_ACCESS_READ));
    for (int origin : {SEEK_SET - 1, SEEK_END + 1, SEEK_END + 2}) {
        EXPECT_FALSE(file->seek(1, origin)) << origin;
        EXPECT_FALSE(memory->seek(1, origin)) << origin;
    }
    EXPECT_EQ(file->tell(), 0);
    EXPECT_EQ(memory->tell(), 0);
    file->release();
    memory->release();
}

TEST_F(StreamTest, NoBytesNeedNoMemory) {
    Array<unsigned char> data;
    data.pushBackRange("abc", 3);
    m_directory.writeFile("a", "abc");
    IFileStream* file = zyr_createObject<IFileStream>();
    IMemoryStream* memory = zyr_createObject<IMemoryStream>();
    ASSERT_TRUE(file->open(path("a").c_str(), ZYR_ACCESS_READ_WRITE, 0));
    ASSERT_TRUE(memory->open(&data, ZYR_ACCESS_READ_WRITE));
    EXPECT_EQ(file->readBytes(nullptr, 0) + file->writeBytes(nullptr, 0), 0U);
    EXPECT_EQ(memory->readBytes(nullptr, 0) + memory->writeBytes(nullptr, 0), 0U);
    EXPECT_EQ(file->tell(), 0);
    EXPECT_EQ(memory->tell(), 0);
    file->release();
    memory->release();
}

TEST_F(StreamTest, MemoryTakesWhatItHoldsItself) {
    Array<unsigned char> data;
    IMemoryStream* stream = zyr_createObject<IMemoryStream>();
    ASSERT_TRUE(stream->open(&data, ZYR_ACCESS_READ_WRITE));
    EXPECT_TRUE(stream->writeString(std::string(4096, 'a').c_str()) && stream->writeString("b"));
    for (size_t size = data.getSize(); data.getSize() < 100000; size = data.getSize()) {
        EXPECT_EQ(stream->writeBytes(data.getData(), size), size);
        EXPECT_EQ(data.getSize(), 2 * size);
        EXPECT_EQ(data[2 * size - 1], 'b');
    }
    stream->release();
}

TEST_F(StreamTest, MemoryIsReadToAnotherPlaceInItself) {
    Array<unsigned char> data;
    data.pushBackRange("abcdef", 6);
    IMemoryStream* stream = zyr_createObject<IMemoryStream>();
    ASSERT_TRUE(stream->open(&data, ZYR_ACCESS_READ));
    EXPECT_EQ(stream->readBytes(data.getData() + 2, 4), 4U);
    EXPECT_EQ(memcmp(data.getData(), "ababcd", 6), 0);
    stream->release();
}

TEST_F(StreamTest, MemoryStreamsReadWriteAndEmptyTheirArray) {
    Array<unsigned char> data;
    String line;
    IOutputStreamMemory* output = zyr_createObject<IOutputStreamMemory>();
    ASSERT_TRUE(output->open(&data));
    EXPECT_TRUE(output->writeLine("a") && output->writeLine("b"));
    IInputStreamMemory* input = zyr_createObject<IInputStreamMemory>();
    ASSERT_TRUE(input->open(&data));
    EXPECT_TRUE(input->readLine(line));
    EXPECT_EQ(text(line), "a");
    ASSERT_TRUE(output->open(&data));
    EXPECT_TRUE(data.isEmpty());
    EXPECT_FALSE(input->readLine(line));
    input->release();
    output->release();
}

TEST_F(StreamTest, AJoinedStreamReadsFromOneAndWritesToTheOther) {
    Array<unsigned char> source;
    Array<unsigned char> target;
    source.pushBackRange("in\nmore", 7);
    IInputStreamMemory* input = zyr_createObject<IInputStreamMemory>();
    IOutputStreamMemory* output = zyr_createObject<IOutputStreamMemory>();
    IIOStreamJoin* join = zyr_createObject<IIOStreamJoin>();
    String line;
    EXPECT_FALSE(join->readLine(line));
    EXPECT_EQ(join->writeBytes("x", 1), 0U);
    EXPECT_EQ(join->tell(), -1);
    ASSERT_TRUE(input->open(&source) && output->open(&target));
    join->setInputOutputStreams(input, output);
    EXPECT_EQ(input->getRefCount(), 1U);
    EXPECT_EQ(join->getInputStream(), input);
    EXPECT_EQ(join->getOutputStream(), output);
    EXPECT_TRUE(join->readLine(line));
    EXPECT_EQ(text(line), "in");
    EXPECT_EQ(join->tell(), 3);
    EXPECT_TRUE(join->writeLine("out") && join->flush());
    EXPECT_EQ(target.getSize(), 4U);
    join->release();
    EXPECT_EQ(input->getRefCount(), 0U);
    input->release();
    output->release();
}

TEST_F(StreamTest, AStreamWithNothingBehindItHasNoBytes) {
    IInputStream* input = zyr_createObject<IInputStream>();
    IOutputStream* output = zyr_createObject<IOutputStream>();
    IIOStream* both = zyr_createObject<IIOStream>();
    String line;
    EXPECT_FALSE(input->readLine(line));
    EXPECT_FALSE(output->writeLine("x"));
    EXPECT_FALSE(output->flush());
    EXPECT_FALSE(both->isSeekAvailable());
    EXPECT_EQ(both->getOutputStream(), nullptr);
    input->release();
    output->release();
    both->release();
}

} // namespace
} // namespace zyr
