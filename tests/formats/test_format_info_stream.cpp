#include "core_module/formats/zyr_lz4_compression_info_level.h"
#include "core_module/formats/zyr_zip_compression_info_level.h"
#include "support/zyr_recording_serializer.h"
#include "zyr_common/implementation/zyr_native_format_info_level.h"

#include <gtest/gtest.h>

namespace zyr {
namespace {

using test::Calls;
using test::RecordingDeserializer;
using test::RecordingSerializer;

class FormatInfoStream : public testing::Test {
protected:
    FormatInfoStream() {
        const unsigned char bytes[] = {1, 2, 3, 4, 5};
        m_info->setFormatName("jpg");
        m_info->setAccessType(ZYR_NATIVE_FORMAT_ACCESS_MEMORY);
        m_info->setFilePath("a.jpg");
        m_info->setReadOnly(1);
        m_info->getMutableOriginalFile()->pushBackRange(bytes, sizeof(bytes));
    }
    ~FormatInfoStream() override { m_info->release(); }

    NativeFormatInfo* m_info = new NativeFormatInfo;
};

TEST_F(FormatInfoStream, BinaryFormatSeesEachFieldOnceFromTheBaseLevelOn) {
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_TRUE(m_info->writeSerialized(&serializer, 0, result));
    EXPECT_TRUE(result);
    EXPECT_EQ(serializer.m_calls,
              (Calls{"writeString formatName 'jpg' attribute", "writeEnum accessType 1=MEMORY attribute",
                     "writeString filePath 'a.jpg' attribute", "writeBool readOnly 1 attribute",
                     "writeUInt32Array originalFile [5,67305985,5] element"}));
}

TEST_F(FormatInfoStream, TextFormatSeesAttributesThenElements) {
    RecordingSerializer serializer(RecordingSerializer::c_text);
    bool_t result = 0;
    EXPECT_TRUE(m_info->writeSerialized(&serializer, 0, result));
    EXPECT_EQ(serializer.m_calls,
              (Calls{"writeString formatName 'jpg' attribute", "writeEnum accessType 1=MEMORY attribute",
                     "writeString filePath 'a.jpg' attribute", "writeBool readOnly 1 attribute",
                     "writeUInt32Array originalFile [5,67305985,5] element"}));
}

TEST_F(FormatInfoStream, HeaderPassDeclaresEachField) {
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_TRUE(m_info->writeSerialized(&serializer, 1, result));
    EXPECT_EQ(serializer.m_calls, (Calls{"declareString formatName", "declareEnum accessType", "declareString filePath",
                                         "declareBool readOnly", "declareUInt32Array originalFile"}));
}

TEST_F(FormatInfoStream, ReadsBackWhatWasWritten) {
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_TRUE(m_info->writeSerialized(&serializer, 0, result));
    RecordingDeserializer deserializer(serializer.m_root);
    NativeFormatInfo* copy = new NativeFormatInfo;
    EXPECT_TRUE(copy->readSerialized(&deserializer));
    EXPECT_EQ(copy->getFormatName(), "jpg");
    EXPECT_EQ(copy->getAccessType(), ZYR_NATIVE_FORMAT_ACCESS_MEMORY);
    EXPECT_EQ(copy->getFilePath(), "a.jpg");
    EXPECT_TRUE(copy->isReadOnly());
    ASSERT_EQ(copy->getOriginalFile()->getSize(), 5u);
    EXPECT_EQ(copy->getOriginalFile()->getData()[0], 1);
    EXPECT_EQ(copy->getOriginalFile()->getData()[4], 5);
    copy->release();
}

TEST_F(FormatInfoStream, FailureStopsTheWriteAndIsTold) {
    RecordingSerializer serializer(RecordingSerializer::c_text);
    serializer.m_failures.insert("writeString filePath");
    bool_t result = 1;
    EXPECT_FALSE(m_info->writeSerialized(&serializer, 0, result));
    EXPECT_FALSE(result);
    EXPECT_EQ(serializer.m_calls.size(), 3u);
}

TEST_F(FormatInfoStream, FailureStopsTheRead) {
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_TRUE(m_info->writeSerialized(&serializer, 0, result));
    RecordingDeserializer deserializer(serializer.m_root);
    deserializer.m_failures.insert("readString formatName");
    NativeFormatInfo* copy = new NativeFormatInfo;
    EXPECT_FALSE(copy->readSerialized(&deserializer));
    EXPECT_EQ(copy->getAccessType(), ZYR_NATIVE_FORMAT_ACCESS_NONE);
    copy->release();
}

TEST_F(FormatInfoStream, StoredCountBeyondTheStoredBytesIsRefused) {
    test::SerializedNode root;
    root.m_values["originalFile"] = std::vector<uint32_t>{5, 1};
    RecordingDeserializer deserializer(root);
    NativeFormatInfo* copy = new NativeFormatInfo;
    EXPECT_FALSE(copy->readSerialized(&deserializer));
    EXPECT_TRUE(copy->getOriginalFile()->isEmpty());
    copy->release();
}

TEST_F(FormatInfoStream, MissingKeysKeepTheDefaults) {
    const test::SerializedNode root;
    RecordingDeserializer deserializer(root);
    Lz4CompressionInfo* info = new Lz4CompressionInfo;
    EXPECT_TRUE(info->readSerialized(&deserializer));
    EXPECT_EQ(info->getFormatName(), "lz4");
    EXPECT_EQ(info->getAcceleration(), 1u);
    info->release();
}

} // namespace
} // namespace zyr
