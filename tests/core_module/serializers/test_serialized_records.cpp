// Every record of the library through every format.
#include "core_module/serializers/serializer_test.h"
#include "support/records/zyr_record_list.h"

namespace zyr {
namespace {

std::vector<test::RecordKind> describeRecords() {
    std::vector<test::RecordKind> kinds;
    for (const auto& list :
         {test::describeGeometryRecords(), test::describeShapeRecords(), test::describeOtherRecords()}) {
        kinds.insert(kinds.end(), list.begin(), list.end());
    }
    return kinds;
}

class EachRecord : public SerializerTest {
protected:
    static void expectReadsBackInEachFormat(const test::RecordKind& p_kind);
    static void expectSameValuesWithStructureDeclared(const test::RecordKind& p_kind);
};

void EachRecord::expectReadsBackInEachFormat(const test::RecordKind& p_kind) {
    for (const char* format : c_formatPrefixes) {
        SCOPED_TRACE(format);
        void* source = p_kind.m_create();
        void* target = p_kind.m_create();
        for (size_t i = 0; i < p_kind.m_leaves.size(); i++) {
            p_kind.m_leaves[i].m_kind->m_makeDifferent(p_kind.m_leaves[i].at(source), static_cast<uint32_t>(i));
        }
        const std::string bytes = write(format, [&](ISerializer* p_serializer) {
            bool_t result = 0;
            EXPECT_TRUE(p_kind.m_write(source, p_serializer, 0, result));
            EXPECT_TRUE(result);
        });
        read(format, bytes, [&](IDeserializer* p_deserializer) { EXPECT_TRUE(p_kind.m_read(target, p_deserializer)); });
        for (const test::RecordLeaf& leaf : p_kind.m_leaves) {
            EXPECT_TRUE(leaf.m_kind->m_isSame(leaf.at(source), leaf.at(target))) << leaf.m_path << " in " << bytes;
        }
        p_kind.m_destroy(source);
        p_kind.m_destroy(target);
    }
}

void EachRecord::expectSameValuesWithStructureDeclared(const test::RecordKind& p_kind) {
    void* source = p_kind.m_create();
    void* target = p_kind.m_create();
    bool_t result = 0;
    bool_t found = 0;
    if (!p_kind.m_leaves.empty()) {
        p_kind.m_leaves[0].m_kind->m_makeDifferent(p_kind.m_leaves[0].at(source), 3);
    }
    ISerializer* serializer = static_cast<ISerializer*>(zyr_createObjectFromName("ZbfSerializer"));
    ASSERT_TRUE(serializer->initialize() && serializer->hasHeaderSection() && serializer->beginHeader());
    ASSERT_TRUE(serializer->beginHeaderStructure(p_kind.m_name.c_str()));
    ASSERT_TRUE(p_kind.m_write(source, serializer, 1, result));
    ASSERT_TRUE(serializer->endHeaderStructure());
    ASSERT_TRUE(serializer->writeHeaderField("top", ZYR_HEADER_FIELD_RECORD, 0, p_kind.m_name.c_str()));
    ASSERT_TRUE(serializer->endHeader());
    ASSERT_TRUE(serializer->beginStructure("top", 0));
    ASSERT_TRUE(p_kind.m_write(source, serializer, 0, result));
    ASSERT_TRUE(serializer->endStructure());
    IDeserializer* deserializer = static_cast<IDeserializer*>(zyr_createObjectFromName("ZbfDeserializer"));
    ASSERT_TRUE(deserializer->initialize(serializer->getData(), serializer->getDataSize()));
    ASSERT_TRUE(deserializer->enterGroup("top", found) && found);
    EXPECT_TRUE(p_kind.m_read(target, deserializer));
    for (const test::RecordLeaf& leaf : p_kind.m_leaves) {
        EXPECT_TRUE(leaf.m_kind->m_isSame(leaf.at(source), leaf.at(target))) << leaf.m_path;
    }
    deserializer->release();
    serializer->release();
    p_kind.m_destroy(source);
    p_kind.m_destroy(target);
}

TEST_F(EachRecord, ReadsBackWhatItWritesInEachFormat) {
    for (const test::RecordKind& kind : describeRecords()) {
        SCOPED_TRACE(kind.m_name);
        expectReadsBackInEachFormat(kind);
    }
}

TEST_F(EachRecord, HasTheSameValuesWithItsStructureDeclared) {
    for (const test::RecordKind& kind : describeRecords()) {
        SCOPED_TRACE(kind.m_name);
        expectSameValuesWithStructureDeclared(kind);
    }
}

} // namespace
} // namespace zyr
