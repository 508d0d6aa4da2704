// What a serializer and a deserializer are asked for when a whole object is written and read, call by call.
#include "core_module/core_module_test.h"
#include "support/log_capture.h"
#include "support/zyr_recording_serializer.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/serialization/zyr_single_objects.h"
#include "zyr_common/storage/zyr_file_format_header.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

using test::Calls;
using test::RecordingSerializer;
using test::SerializedNode;

class NamedSerializer : public RecordingSerializer {
public:
    NamedSerializer(Kind p_kind, const char* p_name) : RecordingSerializer(p_kind) { m_className = p_name; }
};

class NamedDeserializer : public test::RecordingDeserializer {
public:
    NamedDeserializer(const SerializedNode& p_root, const char* p_name) : RecordingDeserializer(p_root) {
        m_className = p_name;
    }
    const String& getClassName() const override { return m_className; }

private:
    String m_className;
};

/// Has the number "n", and tells what is done to it.
class Number : public test::StubObject<IObject> {
public:
    Number() { m_className = "Number"; }
    ~Number() override { setCompressionInfo(nullptr); }

    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override {
        return p_result = p_headerPass ? p_serializer->declareInt32("n", 7, p_result)
                                       : p_serializer->writeInt32("n", 7, 0, 1, nullptr);
    }
    String* getDeferredFile() const override { return m_file.isEmpty() ? nullptr : const_cast<String*>(&m_file); }
    void setDeferredFile(const String& p_file) override {
        m_changes.push_back(std::string("file ") + p_file.getData());
        m_file = String(p_file);
    }
    bool_t isDeferredFileReadOnly() const override { return m_readOnly; }
    ICompressionInfo* getCompressionInfo(bool_t p_addReference) const override {
        if (m_info != nullptr && p_addReference) {
            m_info->addRef();
        }
        return m_info;
    }
    void setCompressionInfo(ICompressionInfo* p_info) override {
        m_changes.emplace_back(p_info != nullptr ? "info" : "no info");
        if (p_info != nullptr) {
            p_info->addRef();
        }
        if (m_info != nullptr) {
            m_info->release();
        }
        m_info = p_info;
    }

    String m_file;
    bool_t m_readOnly = 0;
    ICompressionInfo* m_info = nullptr;
    Calls m_changes;
};

class StreamCalls : public CoreModuleUpTest {
protected:
    static bool_t write(ISerializer* p_serializer, IObject* p_object) {
        FileFormatHeader header;
        header.m_format = "word";
        return p_serializer->writeHeaderAndObjectToFile(header, p_object);
    }
    /// The calls that begin or end something.
    static Calls getFrame(const RecordingSerializer& p_serializer) {
        Calls frame;
        for (const std::string& call : p_serializer.m_calls) {
            if (call.find("declare") != 0 && (call.find("write") != 0 || call.find("writeHeaderField") == 0)) {
                frame.push_back(call);
            }
        }
        return frame;
    }

    Number m_number;
};

TEST_F(StreamCalls, DeclareTheHeaderAndTheClassInFrontOfBoth) {
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    EXPECT_TRUE(write(&serializer, &m_number));
    EXPECT_EQ(serializer.m_calls, (Calls{"beginHeader",
                                         "beginHeaderStructure FileFormatHeader",
                                         "declareString format",
                                         "declareUInt32 version",
                                         "declareString info",
                                         "endHeaderStructure",
                                         "writeHeaderField fileHeader FFFFFFFE 0 FileFormatHeader",
                                         "beginHeaderStructure Number",
                                         "declareInt32 n",
                                         "endHeaderStructure",
                                         "writeHeaderField fileObject FFFFFFFF 0 ",
                                         "endHeader",
                                         "beginStructure fileHeader 0",
                                         "writeString format 'word' attribute",
                                         "writeUInt32 version 100 attribute",
                                         "writeString info '' element",
                                         "endStructure",
                                         "beginObject fileObject Number 00000000-0000-0000-0000-000000000000",
                                         "writeInt32 n 7 attribute",
                                         "endObject"}));
}

TEST_F(StreamCalls, BeginXmlWithItsDeclaration) {
    RecordingSerializer serializer(RecordingSerializer::c_text);
    EXPECT_TRUE(write(&serializer, &m_number));
    EXPECT_EQ(
        serializer.m_calls,
        (Calls{"beginStructure xml 1", "writeString version '1.0' attribute", "writeString encoding 'utf-8' attribute",
               "endStructure", "beginStructure fileHeader 0", "writeString format 'word' attribute",
               "writeUInt32 version 100 attribute", "writeString info '' element", "endStructure",
               "beginObject fileObject Number 00000000-0000-0000-0000-000000000000", "writeInt32 n 7 attribute",
               "endObject"}));
}

TEST_F(StreamCalls, EndWithTheFirstThatFails) {
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    serializer.m_failures = {"declareInt32 n"};
    EXPECT_FALSE(write(&serializer, &m_number));
    EXPECT_EQ(serializer.m_calls.back(), "declareInt32 n");
    EXPECT_FALSE(write(&serializer, nullptr));
    EXPECT_EQ(serializer.m_calls.back(), "declareInt32 n");
}

TEST_F(StreamCalls, ShowAStandInWithoutTouchingTheObject) {
    const std::string guid = "a03b5026-7714-4049-a21b-f4d78362fd25";
    for (const bool_t readOnly : {0, 1}) {
        m_number.m_file = "number.word";
        m_number.m_readOnly = readOnly;
        RecordingSerializer serializer(RecordingSerializer::c_binary);
        serializer.setWritingDeferredFiles(readOnly);
        EXPECT_TRUE(write(&serializer, &m_number));
        EXPECT_THAT(getFrame(serializer), testing::IsSupersetOf({"beginHeaderStructure DeferredFileObject",
                                                                 "writeHeaderField fileObject FFFFFFFF 0 "}));
        EXPECT_EQ(serializer.m_calls.end()[-4], "beginObject fileObject DeferredFileObject " + guid);
        EXPECT_EQ(serializer.m_calls.end()[-3], "writeString filePath 'number.word' attribute");
        EXPECT_EQ(serializer.m_calls.end()[-2],
                  std::string("writeBool readOnly ") + (readOnly ? "1" : "0") + " attribute");
        EXPECT_EQ(serializer.m_calls.end()[-1], "endObject");
    }
    EXPECT_EQ(m_number.m_changes, Calls());
}

TEST_F(StreamCalls, GiveTheObjectItsFileBackWhereItCannotBeSaved) {
    m_number.m_file = "number.word";
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    serializer.setWritingDeferredFiles(1);
    EXPECT_FALSE(write(&serializer, &m_number)); // No format has this word.
    EXPECT_EQ(serializer.m_calls.back(), "endObject");
    EXPECT_EQ(m_number.m_changes, (Calls{"file ", "file number.word"}));
}

TEST_F(StreamCalls, GiveTheObjectItsCompressionBackWhetherItWorksOrNot) {
    const auto info = Ref<ICompressionInfo>::adopt(zyr_createObject<IZipCompressionInfo>());
    for (const char* name : {"RawSerializer", "OtherSerializer"}) {
        m_number.setCompressionInfo(info.get());
        m_number.m_changes.clear();
        NamedSerializer serializer(RecordingSerializer::c_text, name);
        const bool isKnown = *name == 'R';
        EXPECT_EQ(serializer.writeSingleObject<IObject>("number", &m_number) != 0, isKnown);
        EXPECT_EQ(m_number.m_changes, (Calls{"no info", "info"}));
        EXPECT_EQ(info->getDecompressSize() != 0, isKnown);
        EXPECT_EQ(serializer.m_calls.size() != 0, isKnown);
        m_number.setCompressionInfo(nullptr);
        EXPECT_EQ(info->getRefCount(), 0u);
        info->setDecompressSize(0);
    }
}

TEST_F(StreamCalls, DeclareTheStandInOfACompressedObject) {
    const auto info = Ref<ICompressionInfo>::adopt(zyr_createObject<IZipCompressionInfo>());
    m_number.setCompressionInfo(info.get());
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_TRUE(serializer.writeHeaderSingleObject<IObject>("number", &m_number, result));
    EXPECT_TRUE(result);
    EXPECT_EQ(serializer.m_calls.front(), "beginHeaderStructure CompressedObject");
    EXPECT_THAT(getFrame(serializer), testing::Contains("beginHeaderStructure ZipCompressionInfo"));
    EXPECT_EQ(serializer.m_calls.back(), "writeHeaderField number FFFFFFFF 0 ");
    EXPECT_EQ(m_number.m_changes, Calls{"info"});
    EXPECT_EQ(info->getRefCount(), 1u);
}

TEST_F(StreamCalls, ReadTheHeaderGroupByGroup) {
    RecordingSerializer text(RecordingSerializer::c_text);
    RecordingSerializer binary(RecordingSerializer::c_binary);
    ASSERT_TRUE(write(&text, &m_number) && write(&binary, &m_number));
    const auto read = [](const SerializedNode& p_root, const char* p_name, bool p_isDone, bool p_isFound) {
        FileFormatHeader header;
        bool_t found = !p_isFound;
        NamedDeserializer deserializer(p_root, p_name);
        EXPECT_EQ(deserializer.readHeaderFromFile(found, header), p_isDone);
        EXPECT_EQ(found, p_isFound);
        EXPECT_EQ(header.m_format, p_isFound ? "word" : "");
        return deserializer.m_calls;
    };
    EXPECT_EQ(
        read(text.m_root, "XmlDeserializer", true, true),
        (Calls{"enterGroup xml", "readString version", "readString encoding", "leaveGroup", "enterGroup fileHeader",
               "readString format", "readUInt32 version", "readString info", "leaveGroup"}));
    EXPECT_EQ(
        read(text.m_root, "JsonDeserializer", true, true),
        (Calls{"enterGroup fileHeader", "readString format", "readUInt32 version", "readString info", "leaveGroup"}));
    EXPECT_EQ(read(SerializedNode(), "RawDeserializer", true, false), Calls{"enterGroup fileHeader"});
    const LogCapture capture;
    EXPECT_EQ(read(binary.m_root, "XmlDeserializer", false, false), Calls{"enterGroup xml"});
    ASSERT_EQ(capture.getLines().size(), 1u);
    EXPECT_EQ(capture.getLines()[0].message, "Xml header not found, non standard xml format");
}

TEST_F(StreamCalls, LeaveAnObjectOfAnUnknownClass) {
    RecordingSerializer written(RecordingSerializer::c_text);
    ASSERT_TRUE(written.writeSingleObject<IObject>("number", &m_number));
    NamedDeserializer deserializer(written.m_root, "RawDeserializer");
    bool_t found = 1;
    IObject* object = &m_number;
    EXPECT_TRUE(deserializer.readSingleObject<IObject>("number", found, &object, ""));
    EXPECT_FALSE(found);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(deserializer.m_calls, (Calls{"enterObject number", "leaveObject"}));
}

} // namespace
} // namespace zyr
