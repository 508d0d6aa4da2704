// Streams of the host, which extend the facades: texts and lines go through their bytes.
#include "core_module/core_module_test.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/streams/zyr_file_stream.h"
#include "zyr_common/streams/zyr_memory_stream.h"

namespace zyr {
namespace {

using ExtendedStreams = CoreModuleUpTest;

/// Gives the bytes of a text and takes those that are written.
template <class Facade> class Bytes : public Facade {
public:
    explicit Bytes(std::string p_source = "") : m_source(std::move(p_source)) { this->initObjectInterface(); }

protected:
    uint64_t take(void* p_data, uint64_t p_size) {
        const uint64_t size = std::min<uint64_t>(p_size, m_source.size() - m_place);
        memcpy(p_data, m_source.data() + m_place, size);
        m_place += size;
        return size;
    }
    uint64_t put(const void* p_data, uint64_t p_size) {
        m_written.append(static_cast<const char*>(p_data), p_size);
        return p_size;
    }

public:
    std::string m_written;

private:
    std::string m_source;
    size_t m_place = 0;
};

class HostInput : public Bytes<WInputStream> {
public:
    using Bytes::Bytes;
    uint64_t readBytes(void* p_data, uint64_t p_size) override { return take(p_data, p_size); }
};

class HostOutput : public Bytes<WOutputStream> {
public:
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override { return put(p_data, p_size); }
};

template <class Facade> class HostBoth : public Bytes<Facade> {
public:
    using Bytes<Facade>::Bytes;
    uint64_t readBytes(void* p_data, uint64_t p_size) override { return this->take(p_data, p_size); }
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override { return this->put(p_data, p_size); }
};

template <class Stream> void expectTexts() {
    const auto stream = Ref<Stream>::adopt(new Stream("one two"));
    String text;
    EXPECT_EQ(stream->readString(text, 3), 3U);
    EXPECT_EQ(text, "one");
    EXPECT_TRUE(stream->writeString("ab"));
    EXPECT_EQ(stream->m_written, "ab");
}

TEST_F(ExtendedStreams, ReadTextsAndLinesFromTheirBytes) {
    const auto input = Ref<HostInput>::adopt(new HostInput("first\r\nsecond\nthird"));
    String text;
    EXPECT_TRUE(input->readLine(text));
    EXPECT_EQ(text, "first");
    EXPECT_EQ(input->readString(text, 3), 3U);
    EXPECT_EQ(text, "sec");
    EXPECT_TRUE(input->readLine(text));
    EXPECT_EQ(text, "ond");
    EXPECT_TRUE(input->readLine(text));
    EXPECT_EQ(text, "third");
    EXPECT_FALSE(input->readLine(text));
}

TEST_F(ExtendedStreams, WriteTextsAndLinesAsTheirBytes) {
    const auto output = Ref<HostOutput>::adopt(new HostOutput);
    EXPECT_TRUE(output->writeString("a"));
    EXPECT_TRUE(output->writeLine("b"));
    EXPECT_EQ(output->m_written, "ab\n");
}

TEST_F(ExtendedStreams, OfBothDirectionsUseTheirBytes) {
    expectTexts<HostBoth<WIOStream>>();
    const auto stream = Ref<HostBoth<WIOStream>>::adopt(new HostBoth<WIOStream>("line\n"));
    String line;
    EXPECT_TRUE(stream->readLine(line));
    EXPECT_EQ(line, "line");
    EXPECT_TRUE(stream->writeLine("x"));
    EXPECT_EQ(stream->m_written, "x\n");
}

TEST_F(ExtendedStreams, OverFilesAndMemoryUseTheirBytes) {
    expectTexts<HostBoth<WFileStream>>();
    expectTexts<HostBoth<WMemoryStream>>();
}

TEST_F(ExtendedStreams, AreReadThroughAJoinedStream) {
    const auto input = Ref<HostInput>::adopt(new HostInput("in\nrest"));
    const auto output = Ref<HostOutput>::adopt(new HostOutput);
    const auto join = Ref<IIOStreamJoin>::adopt(zyr_createObject<IIOStreamJoin>());
    join->setInputOutputStreams(input.get(), output.get());
    String text;
    EXPECT_TRUE(join->readLine(text));
    EXPECT_EQ(text, "in");
    EXPECT_EQ(join->readString(text, 9), 4U);
    EXPECT_EQ(text, "rest");
    EXPECT_TRUE(join->writeLine("out"));
    EXPECT_EQ(output->m_written, "out\n");
}

TEST_F(ExtendedStreams, AnswerForThemselvesUnderAnObjectOfAnotherKind) {
    Array<unsigned char> bytes;
    bytes.pushBackRange("text", 4);
    const auto input = Ref<IInputStreamMemory>::adopt(zyr_createObject<IInputStreamMemory>());
    const auto other = Ref<IObject>::adopt(zyr_createObject<IObject>());
    input->setTLIObject(other.get());
    ASSERT_TRUE(input->open(&bytes));
    String text;
    EXPECT_EQ(input->readString(text, 9), 4U);
    EXPECT_EQ(text, "text");
}

} // namespace
} // namespace zyr
