// Every record of the library through every format.
#include "core_module/serializers/serializer_test.h"
#include "support/zyr_record_walk.h"
#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/geometry/zyr_complex.h"
#include "zyr_common/geometry/zyr_ext_box.h"
#include "zyr_common/geometry/zyr_ext_rect.h"
#include "zyr_common/geometry/zyr_matrix.h"
#include "zyr_common/geometry/zyr_rational.h"
#include "zyr_common/geometry/zyr_scalar.h"
#include "zyr_common/references/zyr_object_references.h"
#include "zyr_common/references/zyr_resource_id.h"
#include "zyr_common/storage/zyr_file_format_header.h"

namespace zyr {
namespace {

template <class... R> std::vector<test::RecordKind> describeAll() {
    return {test::describeRecord<R>()...};
}

std::vector<test::RecordKind> describeRecords() {
    return describeAll<Rational<int64_t>, Complex<double>, Scalar<int32_t>, Scalar<uint32_t>, Scalar<int64_t>,
                       Scalar<uint64_t>, Scalar<float>, Scalar<double>, Vector2<uint64_t>, Vector3<int32_t>,
                       Vector4<float>, Matrix3x3<float>, Matrix4x4<double>, RectSize<int64_t>, Rect<int32_t>,
                       BoxSize<float>, Box<double>, ExtVector2<int32_t>, ExtVector3<double>, ExtRect<float>,
                       ExtRect<int64_t>, ExtBox<double>, ColorRGB<float>, ColorRGBA<double>, ColorRGBAStop<float>,
                       RankGUIDPair, GUIDDigestPair, ResourceID, NamedResourceID, FileFormatHeader, XmlFormatHeader>();
}

class EachRecord : public SerializerTest, public testing::WithParamInterface<test::RecordKind> {};

TEST_P(EachRecord, ReadsBackWhatItWritesInEachFormat) {
    const test::RecordKind& kind = GetParam();
    for (const char* format : c_formatPrefixes) {
        SCOPED_TRACE(format);
        void* source = kind.m_create();
        void* target = kind.m_create();
        for (size_t i = 0; i < kind.m_leaves.size(); i++) {
            kind.m_leaves[i].m_kind->m_makeDifferent(kind.m_leaves[i].at(source), static_cast<uint32_t>(i));
        }
        const std::string bytes = write(format, [&](ISerializer* p_serializer) {
            bool_t result = 0;
            EXPECT_TRUE(kind.m_write(source, p_serializer, 0, result));
            EXPECT_TRUE(result);
        });
        read(format, bytes, [&](IDeserializer* p_deserializer) { EXPECT_TRUE(kind.m_read(target, p_deserializer)); });
        for (const test::RecordLeaf& leaf : kind.m_leaves) {
            EXPECT_TRUE(leaf.m_kind->m_isSame(leaf.at(source), leaf.at(target))) << leaf.m_path << " in " << bytes;
        }
        kind.m_destroy(source);
        kind.m_destroy(target);
    }
}

TEST_P(EachRecord, HasTheSameValuesWithItsStructureDeclared) {
    const test::RecordKind& kind = GetParam();
    void* source = kind.m_create();
    void* target = kind.m_create();
    bool_t result = 0;
    bool_t found = 0;
    kind.m_leaves[0].m_kind->m_makeDifferent(kind.m_leaves[0].at(source), 3);
    ISerializer* serializer = static_cast<ISerializer*>(zyr_createObjectFromName("ZbfSerializer"));
    ASSERT_TRUE(serializer->initialize() && serializer->hasHeaderSection() && serializer->beginHeader());
    ASSERT_TRUE(serializer->beginHeaderStructure(kind.m_name.c_str()));
    ASSERT_TRUE(kind.m_write(source, serializer, 1, result));
    ASSERT_TRUE(serializer->endHeaderStructure());
    ASSERT_TRUE(serializer->writeHeaderField("top", ZYR_HEADER_FIELD_RECORD, 0, kind.m_name.c_str()));
    ASSERT_TRUE(serializer->endHeader());
    ASSERT_TRUE(serializer->beginStructure("top", 0));
    ASSERT_TRUE(kind.m_write(source, serializer, 0, result));
    ASSERT_TRUE(serializer->endStructure());
    IDeserializer* deserializer = static_cast<IDeserializer*>(zyr_createObjectFromName("ZbfDeserializer"));
    ASSERT_TRUE(deserializer->initialize(serializer->getData(), serializer->getDataSize()));
    ASSERT_TRUE(deserializer->enterGroup("top", found) && found);
    EXPECT_TRUE(kind.m_read(target, deserializer));
    for (const test::RecordLeaf& leaf : kind.m_leaves) {
        EXPECT_TRUE(leaf.m_kind->m_isSame(leaf.at(source), leaf.at(target))) << leaf.m_path;
    }
    deserializer->release();
    serializer->release();
    kind.m_destroy(source);
    kind.m_destroy(target);
}

std::string getTestName(const testing::TestParamInfo<test::RecordKind>& p_info) {
    std::string name = p_info.param.m_name;
    for (char& character : name) {
        character = isalnum(static_cast<unsigned char>(character)) ? character : '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Formats, EachRecord, testing::ValuesIn(describeRecords()), &getTestName);

} // namespace
} // namespace zyr
