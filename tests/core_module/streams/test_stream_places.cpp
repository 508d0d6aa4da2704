// Places in streams of each kind, and what they give without anything behind them.
#include "core_module/core_module_test.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/streams/zyr_file_stream.h"
#include "zyr_common/streams/zyr_memory_stream.h"

namespace zyr {
namespace {

class StreamPlaces : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_directory.writeFile("a", "12345");
        m_data.pushBackRange("12345", 5);
    }
    std::string path(const std::string& p_name) const { return m_directory.getPath() + p_name; }

    template <class Stream> static void expectClosed(Stream& p_stream) {
        EXPECT_EQ(p_stream.tell(), -1);
        EXPECT_FALSE(p_stream.seek(0, SEEK_SET));
        EXPECT_FALSE(p_stream.isSeekAvailable());
    }
    /// Of a stream over five bytes.
    template <class Stream> static void expectPlaces(Stream& p_stream) {
        EXPECT_TRUE(p_stream.isSeekAvailable());
        EXPECT_TRUE(p_stream.seek(3, SEEK_SET));
        EXPECT_EQ(p_stream.tell(), 3);
        EXPECT_TRUE(p_stream.seek(-1, SEEK_CUR));
        EXPECT_EQ(p_stream.tell(), 2);
        EXPECT_TRUE(p_stream.seek(-1, SEEK_END));
        EXPECT_EQ(p_stream.tell(), 4);
        EXPECT_FALSE(p_stream.seek(-1, SEEK_SET));
        EXPECT_EQ(p_stream.tell(), 4);
    }
    /// Closed, with places once it is open, and closed again when it is cleared.
    template <class Interface, class Open> static void expectLife(Open p_open) {
        const auto stream = Ref<Interface>::adopt(zyr_createObject<Interface>());
        expectClosed(*stream);
        ASSERT_TRUE(p_open(*stream));
        expectPlaces(*stream);
        stream->clear();
        expectClosed(*stream);
    }

    TemporaryDirectory m_directory;
    Array<unsigned char> m_data;
};

TEST_F(StreamPlaces, OfFiles) {
    expectLife<IInputStreamFile>([&](IInputStreamFile& p_stream) { return p_stream.open(path("a").c_str()); });
    expectLife<IIOStreamFile>([&](IIOStreamFile& p_stream) { return p_stream.open(path("a").c_str(), 0); });
    expectLife<IOutputStreamFile>([&](IOutputStreamFile& p_stream) {
        return p_stream.open(path("b").c_str()) && p_stream.writeBytes("12345", 5) == 5 && p_stream.flush();
    });
}

TEST_F(StreamPlaces, OfMemory) {
    expectLife<IInputStreamMemory>([&](IInputStreamMemory& p_stream) { return p_stream.open(&m_data); });
    expectLife<IIOStreamMemory>([&](IIOStreamMemory& p_stream) { return p_stream.open(&m_data) && p_stream.flush(); });
    expectLife<IOutputStreamMemory>([&](IOutputStreamMemory& p_stream) {
        return p_stream.open(&m_data) && p_stream.writeBytes("12345", 5) == 5 && p_stream.flush();
    });
}

TEST_F(StreamPlaces, OfStreamsOverTheSameFileAreOne) {
    const auto file = Ref<IFileStream>::adopt(zyr_createObject<IFileStream>());
    const auto input = Ref<IInputStreamFile>::adopt(zyr_createObject<IInputStreamFile>());
    const auto output = Ref<IOutputStreamFile>::adopt(zyr_createObject<IOutputStreamFile>());
    const auto both = Ref<IIOStreamFile>::adopt(zyr_createObject<IIOStreamFile>());
    ASSERT_TRUE(file->open(path("a").c_str(), ZYR_ACCESS_READ_WRITE, 0));
    input->setFileStream(file.get());
    output->setFileStream(file.get());
    both->setFileStream(file.get());
    EXPECT_EQ(file->getRefCount(), 3U);
    String text;
    EXPECT_EQ(input->readString(text, 2), 2U);
    EXPECT_EQ(text, "12");
    EXPECT_EQ(output->tell(), 2);
    EXPECT_TRUE(output->writeString("x"));
    EXPECT_EQ(both->tell(), 3);
    EXPECT_TRUE(both->writeString("yz"));
    EXPECT_TRUE(file->seek(0, SEEK_SET));
    EXPECT_EQ(file->readString(text, 5), 5U);
    EXPECT_EQ(text, "12xyz");
}

TEST_F(StreamPlaces, OfStreamsOverTheSameMemoryAreOne) {
    const auto memory = Ref<IMemoryStream>::adopt(zyr_createObject<IMemoryStream>());
    const auto input = Ref<IInputStreamMemory>::adopt(zyr_createObject<IInputStreamMemory>());
    const auto output = Ref<IOutputStreamMemory>::adopt(zyr_createObject<IOutputStreamMemory>());
    const auto both = Ref<IIOStreamMemory>::adopt(zyr_createObject<IIOStreamMemory>());
    ASSERT_TRUE(memory->open(&m_data, ZYR_ACCESS_READ_WRITE));
    input->setMemoryStream(memory.get());
    output->setMemoryStream(memory.get());
    both->setMemoryStream(memory.get());
    char bytes[2];
    EXPECT_EQ(input->readBytes(bytes, 2), 2U);
    EXPECT_EQ(output->writeBytes("x", 1), 1U);
    EXPECT_EQ(both->tell(), 3);
    EXPECT_EQ(both->writeBytes("yz", 2), 2U);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(m_data.getData()), m_data.getSize()), "12xyz");
    EXPECT_TRUE(both->seek(0, SEEK_SET));
    EXPECT_EQ(both->readBytes(bytes, 2), 2U);
    EXPECT_EQ(std::string(bytes, 2), "12");
}

TEST_F(StreamPlaces, OfAJoinedStreamAreThoseOfItsInput) {
    const auto input = Ref<IInputStreamMemory>::adopt(zyr_createObject<IInputStreamMemory>());
    const auto output = Ref<IOutputStreamMemory>::adopt(zyr_createObject<IOutputStreamMemory>());
    const auto join = Ref<IIOStreamJoin>::adopt(zyr_createObject<IIOStreamJoin>());
    Array<unsigned char> target;
    ASSERT_TRUE(input->open(&m_data) && output->open(&target));
    expectClosed(*join);
    char byte = 0;
    EXPECT_EQ(join->readBytes(&byte, 1), 0U);
    join->setInputOutputStreams(input.get(), output.get());
    EXPECT_EQ(join->readBytes(&byte, 1), 1U);
    EXPECT_EQ(byte, '1');
    EXPECT_EQ(join->writeBytes("xy", 2), 2U);
    expectPlaces(*join);
    EXPECT_EQ(output->tell(), 2);
    // Without an input it has those of its output.
    join->setInputOutputStreams(nullptr, output.get());
    EXPECT_EQ(join->tell(), 2);
    EXPECT_TRUE(join->isSeekAvailable());
    EXPECT_TRUE(join->seek(1, SEEK_SET));
    EXPECT_EQ(output->tell(), 1);
    EXPECT_EQ(join->readBytes(&byte, 1), 0U);
    join->clear();
    EXPECT_EQ(join->getOutputStream(), nullptr);
    EXPECT_EQ(output->getRefCount(), 0U);
}

TEST_F(StreamPlaces, OfStreamsWithNothingBehindThemAreNone) {
    const auto input = Ref<IInputStream>::adopt(zyr_createObject<IInputStream>());
    const auto output = Ref<IOutputStream>::adopt(zyr_createObject<IOutputStream>());
    const auto both = Ref<IIOStream>::adopt(zyr_createObject<IIOStream>());
    expectClosed(*input);
    expectClosed(*output);
    expectClosed(*both);
    char byte = 'b';
    String line("kept");
    EXPECT_EQ(input->readBytes(&byte, 1), 0U);
    EXPECT_EQ(both->readBytes(&byte, 1), 0U);
    EXPECT_EQ(both->writeBytes(&byte, 1), 0U);
    EXPECT_FALSE(both->writeString("x"));
    EXPECT_FALSE(both->writeLine("x"));
    EXPECT_FALSE(both->readLine(line));
    EXPECT_FALSE(both->flush());
    EXPECT_EQ(byte, 'b');
    EXPECT_EQ(both->getInputStream(), nullptr);
}

TEST_F(StreamPlaces, BehindTheEndOfAnArrayThatBecameShorterTakeNothing) {
    const auto stream = Ref<IMemoryStream>::adopt(zyr_createObject<IMemoryStream>());
    EXPECT_EQ(stream->tell(), -1);
    EXPECT_FALSE(stream->seek(0, SEEK_SET));
    EXPECT_EQ(stream->writeBytes("x", 1), 0U);
    ASSERT_TRUE(stream->open(&m_data, ZYR_ACCESS_READ_WRITE));
    EXPECT_TRUE(stream->seek(5, SEEK_SET));
    m_data.resize(2);
    char byte = 'b';
    EXPECT_EQ(stream->readBytes(&byte, 1), 0U);
    EXPECT_EQ(stream->writeBytes("x", 1), 0U);
    EXPECT_EQ(byte, 'b');
    EXPECT_EQ(m_data.getSize(), 2U);
}

} // namespace
} // namespace zyr
