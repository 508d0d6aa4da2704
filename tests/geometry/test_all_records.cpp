#include "support/records/zyr_record_list.h"
#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/geometry/zyr_complex.h"
#include "zyr_common/geometry/zyr_ext_box.h"
#include "zyr_common/geometry/zyr_ext_dimension.h"
#include "zyr_common/geometry/zyr_ext_position.h"
#include "zyr_common/geometry/zyr_ext_rect.h"
#include "zyr_common/geometry/zyr_matrix.h"
#include "zyr_common/geometry/zyr_rational.h"
#include "zyr_common/geometry/zyr_scalar.h"

namespace zyr {

class AllRecords : public testing::TestWithParam<test::RecordKind> {};

TEST_P(AllRecords, ReachEachFieldByItsPath) {
    test::expectPathsReachFields(GetParam());
}

TEST_P(AllRecords, CompareEachField) {
    test::expectEqualitySeesEachField(GetParam());
}

TEST_P(AllRecords, CopyAndClearEachField) {
    test::expectCopyAndClear(GetParam());
}

TEST_P(AllRecords, ReadBackWhatTheyWriteAsText) {
    test::expectReadsBackWhatItWrites(GetParam(), test::RecordingSerializer::c_text);
}

TEST_P(AllRecords, ReadBackWhatTheyWriteAsBinary) {
    test::expectReadsBackWhatItWrites(GetParam(), test::RecordingSerializer::c_binary);
}

TEST_P(AllRecords, DeclareTheirKeysInOrder) {
    test::expectDeclaresEachKeyInOrder(GetParam());
}

/// "ExtRect{int32}" as the name of a test: "ExtRect_int32".
static std::string getTestName(const testing::TestParamInfo<test::RecordKind>& p_info) {
    std::string name = p_info.param.m_name;
    name[name.find('{')] = '_';
    name.pop_back();
    return name;
}

INSTANTIATE_TEST_SUITE_P(Geometry, AllRecords, testing::ValuesIn(test::describeGeometryRecords()), &getTestName);

/// The fields of a record's own level must be 1, 2 and so on, as the constructor took them.
template <class R> static void expectCounting(const R& p_record, int p_count) {
    int expected = 1;
    zyr_forEachField<R>([&](const auto& p_field) {
        EXPECT_EQ(static_cast<int>(p_record.*p_field.m_member), expected++) << R::c_typeName << " " << p_field.m_key;
    });
    EXPECT_EQ(expected, p_count + 1) << R::c_typeName;
}

TEST(RecordConstructors, TakeTheFieldsInOrder) {
    expectCounting(Rational<int64_t>(1, 2), 2);
    expectCounting(Complex<double>(1, 2), 2);
    expectCounting(Scalar<uint32_t>(1), 1);
    expectCounting(Vector2<uint64_t>(1, 2), 2);
    expectCounting(Vector3<int32_t>(1, 2, 3), 3);
    expectCounting(Vector4<float>(1, 2, 3, 4), 4);
    expectCounting(RectSize<int32_t>(1, 2), 2);
    expectCounting(Rect<int64_t>(1, 2, 3, 4), 4);
    expectCounting(BoxSize<double>(1, 2, 3), 3);
    expectCounting(Box<float>(1, 2, 3, 4, 5, 6), 6);
    expectCounting(ExtPositionX<float>(1, PositionXAnchorEnum(2)), 2);
    expectCounting(ExtPositionY<double>(1, PositionYAnchorEnum(2)), 2);
    expectCounting(ExtPositionZ<float>(1, PositionZAnchorEnum(2)), 2);
    expectCounting(ExtDimensionWidth<float>(1, SizeWidthAnchorEnum(2)), 2);
    expectCounting(ExtDimensionHeight<double>(1, SizeHeightAnchorEnum(2)), 2);
    expectCounting(ExtDimensionDepth<float>(1, SizeDepthAnchorEnum(2)), 2);
    expectCounting(ExtVector2<int32_t>({7, 8}, PositionXAnchorEnum(1), PositionYAnchorEnum(2)), 2);
    expectCounting(ExtVector3<float>({7, 8, 9}, PositionXAnchorEnum(1), PositionYAnchorEnum(2), PositionZAnchorEnum(3)),
                   3);
}

TEST(RecordNamesOf, Templates) {
    EXPECT_EQ(Rational<int64_t>::getRecordName(), "Rational{int64}");
    EXPECT_EQ(Scalar<uint32_t>::getRecordName(), "Scalar{uint32}");
    EXPECT_EQ(Vector2<uint64_t>::getRecordName(), "Vector2{uint64}");
    EXPECT_EQ(Vector4<double>::getRecordName(), "Vector4{double}");
    EXPECT_EQ(Matrix3x3<float>::getRecordName(), "Matrix3x3{float}");
    EXPECT_EQ(Matrix4x4<double>::getRecordName(), "Matrix4x4{double}");
    EXPECT_EQ(ExtRect<int32_t>::getRecordName(), "ExtRect{int32}");
    EXPECT_EQ(ExtRect<int32_t>().getClassName(), "ExtRect{int32}");
    EXPECT_EQ(ExtPositionX<float>::getRecordName(), "ExtPositionX{float}");
}

TEST(RecordKeys, FollowTheTables) {
    auto keysOf = [](auto p_record) {
        std::vector<std::string> keys;
        test::collectKeys<decltype(p_record)>(keys);
        return keys;
    };
    typedef std::vector<std::string> Keys;
    EXPECT_EQ(keysOf(Rational<int32_t>()), (Keys{"n", "d"}));
    EXPECT_EQ(keysOf(Complex<float>()), (Keys{"r", "i"}));
    EXPECT_EQ(keysOf(Scalar<float>()), (Keys{"v"}));
    EXPECT_EQ(keysOf(Vector4<float>()), (Keys{"x", "y", "z", "w"}));
    EXPECT_EQ(keysOf(Matrix3x3<float>()), (Keys{"values"}));
    EXPECT_EQ(keysOf(Matrix4x4<float>()), (Keys{"values"}));
    EXPECT_EQ(keysOf(RectSize<float>()), (Keys{"width", "height"}));
    EXPECT_EQ(keysOf(Rect<float>()), (Keys{"x", "y", "width", "height"}));
    EXPECT_EQ(keysOf(BoxSize<float>()), (Keys{"width", "height", "depth"}));
    EXPECT_EQ(keysOf(Box<float>()), (Keys{"x", "y", "z", "width", "height", "depth"}));
    EXPECT_EQ(keysOf(ExtPositionX<float>()), (Keys{"x", "xAnchor"}));
    EXPECT_EQ(keysOf(ExtPositionY<float>()), (Keys{"y", "yAnchor"}));
    EXPECT_EQ(keysOf(ExtPositionZ<float>()), (Keys{"z", "zAnchor"}));
    EXPECT_EQ(keysOf(ExtDimensionWidth<float>()), (Keys{"width", "widthAnchor"}));
    EXPECT_EQ(keysOf(ExtDimensionHeight<float>()), (Keys{"height", "heightAnchor"}));
    EXPECT_EQ(keysOf(ExtDimensionDepth<float>()), (Keys{"depth", "depthAnchor"}));
    EXPECT_EQ(keysOf(ExtVector2<float>()), (Keys{"x", "y", "xAnchor", "yAnchor"}));
    EXPECT_EQ(keysOf(ExtVector3<float>()), (Keys{"x", "y", "z", "xAnchor", "yAnchor", "zAnchor"}));
    EXPECT_EQ(keysOf(ExtRect<float>()),
              (Keys{"x", "y", "width", "height", "xAnchor", "yAnchor", "widthAnchor", "heightAnchor", "minWidth",
                    "maxWidth", "minHeight", "maxHeight", "x", "y", "xAnchor", "yAnchor"}));
    EXPECT_EQ(keysOf(ExtBox<float>()),
              (Keys{"x",        "y",        "z",         "width",       "height",       "depth",
                    "xAnchor",  "yAnchor",  "zAnchor",   "widthAnchor", "heightAnchor", "depthAnchor",
                    "minWidth", "maxWidth", "minHeight", "maxHeight",   "minDepth",     "maxDepth",
                    "x",        "y",        "z",         "xAnchor",     "yAnchor",      "zAnchor"}));
}

TEST(RecordPaths, ReachAWholeRecordInsideAnother) {
    ExtRect<float> record;
    VariableReference* reference = record.getVariableReferenceByPath("origin");
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->getType(), ZYR_VARIABLE_EXT_VECTOR2_FLOAT);
    EXPECT_EQ(reference->changeValueExtVector2Float(
                  ExtVector2<float>(Vector2<float>(3, 4), ZYR_POSITION_X_CENTER, ZYR_POSITION_Y_BOTTOM)),
              1);
    EXPECT_EQ(record.origin.y, 4);
    EXPECT_EQ(record.origin.yAnchor, ZYR_POSITION_Y_BOTTOM);
    reference->release();
}

TEST(RecordPaths, GoThroughSeveralLevels) {
    ExtBox<double> record;
    VariableReference* reference = record.getVariableReferenceByPath("origin.z");
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->getPointer(), &record.origin.z);
    reference->release();
    EXPECT_EQ(record.getVariableReferenceByPath("origin.z.z"), nullptr);
    EXPECT_EQ(record.getVariableReferenceByPath("origin..z"), nullptr);
    EXPECT_EQ(record.getVariableReferenceByPath("a..b"), nullptr);
}

TEST(RecordPaths, AreMadeOfWholeWords) {
    ExtBox<double> record;
    for (const char* path : {"", ".", ".origin", "orig", "origins", "originz", "origin:z", "origins.z", "orig.z",
                             "origin.zz", "origin.z "}) {
        EXPECT_EQ(record.getVariableReferenceByPath(path), nullptr) << path;
    }
}

TEST(RecordDefaults, FollowTheTables) {
    EXPECT_EQ(ExtDimensionWidth<float>().widthAnchor, 8);
    EXPECT_EQ(ExtDimensionHeight<double>().heightAnchor, 8);
    EXPECT_EQ(ExtDimensionDepth<float>().depthAnchor, 8);
    EXPECT_EQ(ExtDimensionWidth<float>().width, 0);
    EXPECT_EQ(ExtPositionX<float>().xAnchor, 0);
    EXPECT_EQ(ExtRect<int32_t>().minWidth, 0);
    EXPECT_EQ(ExtRect<int32_t>().maxWidth, 65536);
    EXPECT_EQ(ExtRect<int64_t>().maxHeight, 65536);
    EXPECT_EQ(ExtRect<float>().maxWidth, 65536);
    EXPECT_EQ(ExtRect<double>().maxHeight, 65536);
    EXPECT_EQ(ExtRect<double>().widthAnchor, 0);
    EXPECT_EQ(ExtBox<float>().maxWidth, 65535);
    EXPECT_EQ(ExtBox<float>().maxHeight, 65535);
    EXPECT_EQ(ExtBox<double>().maxDepth, 65535);
    EXPECT_EQ(ExtBox<double>().minDepth, 0);
    Matrix4x4<float> matrix;
    for (uint32_t i = 0; i < 16; ++i) {
        EXPECT_EQ(matrix.getValue(i), i % 5 == 0 ? 1 : 0);
    }
}

/// Where a member stands in a record; these derive from each other, so offsetof is not for them.
template <class R, class M> static ptrdiff_t getOffset(M R::*p_member) {
    R record;
    return reinterpret_cast<char*>(&(record.*p_member)) - reinterpret_cast<char*>(&record);
}

TEST(RecordSizes, AreThoseOfSeparatelyBuiltModules) {
    EXPECT_EQ(sizeof(ExtPositionX<float>), 5u);
    EXPECT_EQ(sizeof(ExtDimensionDepth<double>), 9u);
    EXPECT_EQ(sizeof(ExtVector3<double>), 27u);
    EXPECT_EQ(sizeof(ExtRect<int32_t>), 46u);
    EXPECT_EQ(sizeof(ExtRect<int64_t>), 86u);
    EXPECT_EQ(sizeof(ExtBox<float>), 69u);
    EXPECT_EQ(sizeof(ExtBox<double>), 129u);
    EXPECT_EQ(getOffset(&ExtRect<float>::xAnchor), 16);
    EXPECT_EQ(getOffset(&ExtRect<float>::minWidth), 20);
    EXPECT_EQ(getOffset(&ExtRect<float>::origin), 36);
    EXPECT_EQ(getOffset(&ExtBox<float>::minWidth), 30);
    EXPECT_EQ(getOffset(&ExtBox<float>::origin), 54);
}

TEST(MatrixStreaming, WritesItsValuesInRowsOfItsSize) {
    Matrix3x3<float> small;
    Matrix4x4<double> large;
    test::RecordingSerializer serializer(test::RecordingSerializer::c_text);
    bool_t result = 0;
    EXPECT_EQ(small.writeSerialized(&serializer, 0, result), 1);
    EXPECT_EQ(large.writeSerialized(&serializer, 0, result), 1);
    EXPECT_EQ(serializer.m_calls,
              (test::Calls{"writeFloatArray values [1,0,0,0,1,0,0,0,1] rows of 3 element",
                           "writeDoubleArray values [1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1] rows of 4 element"}));
}

} // namespace zyr
