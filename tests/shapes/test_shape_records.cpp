#include "support/binary_layout.h"
#include "support/records/zyr_record_list.h"
#include "zyr_common/geometry/zyr_polygon_hull.h"
#include "zyr_common/geometry/zyr_spline2d.h"
#include "zyr_common/geometry/zyr_swept_shapes.h"

namespace zyr {

namespace {

/// "Tube{float}" as the name of a test: "Tube_float".
std::string getTestName(const testing::TestParamInfo<test::RecordKind>& p_info) {
    std::string name = p_info.param.m_name;
    name[name.find('{')] = '_';
    name.pop_back();
    return name;
}

} // namespace

class ShapeRecords : public testing::TestWithParam<test::RecordKind> {};

TEST_P(ShapeRecords, ReachEachFieldByItsPath) {
    test::expectPathsReachFields(GetParam());
}

TEST_P(ShapeRecords, CompareEachField) {
    test::expectEqualitySeesEachField(GetParam());
}

TEST_P(ShapeRecords, CopyAndClearEachField) {
    test::expectCopyAndClear(GetParam());
}

TEST_P(ShapeRecords, ReadBackWhatTheyWriteAsText) {
    test::expectReadsBackWhatItWrites(GetParam(), test::RecordingSerializer::c_text);
}

TEST_P(ShapeRecords, ReadBackWhatTheyWriteAsBinary) {
    test::expectReadsBackWhatItWrites(GetParam(), test::RecordingSerializer::c_binary);
}

INSTANTIATE_TEST_SUITE_P(Shapes, ShapeRecords, testing::ValuesIn(test::describeShapeRecords()), getTestName);

typedef std::vector<std::string> Keys;

/// The keys of all levels in the order in which they are stored; a record inside as one key.
template <class R> static void collect(Keys& p_keys) {
    if constexpr (RecordLevel<typename R::RecordBase>) {
        collect<typename R::RecordBase>(p_keys);
    }
    zyr_forEachField<R>([&](const auto& p_field) { p_keys.push_back(p_field.m_key); });
}

template <class R> static Keys keysOf() {
    Keys keys;
    collect<R>(keys);
    return keys;
}

TEST(ShapeKeys, FollowTheTables) {
    EXPECT_EQ(keysOf<Shape2D<float>>(), (Keys{"origin"}));
    EXPECT_EQ(keysOf<RoundedRectangle<float>>(), (Keys{"origin", "width", "height", "fillet", "filletRadius"}));
    EXPECT_EQ(keysOf<Circle<float>>(), (Keys{"origin", "radius"}));
    EXPECT_EQ(keysOf<Ellipse<float>>(), (Keys{"origin", "axis"}));
    EXPECT_EQ(keysOf<Arc<float>>(), (Keys{"origin", "axis", "startAngle", "endAngle", "closed"}));
    EXPECT_EQ(keysOf<Polygon2D<float>>(), (Keys{"origin", "width", "height", "points"}));
    EXPECT_EQ(keysOf<Spline2D<float>>(), (Keys{"origin", "width", "height", "type", "points", "closed"}));
    EXPECT_EQ(keysOf<ExtSpline2D<float>>(), keysOf<Spline2D<float>>());
    EXPECT_EQ(keysOf<Graph2D<float>>(),
              (Keys{"origin", "width", "height", "minRange", "maxRange", "interpolation", "values"}));
    EXPECT_EQ(keysOf<PolygonHull2D<float>>(), (Keys{"origin", "points", "triangles", "quads", "contours"}));
    EXPECT_EQ(keysOf<PolyPoint2D<float>>(), (Keys{"index", "normal"}));
    EXPECT_EQ(keysOf<PolyEdge2D<float>>(), (Keys{"indices", "normal"}));
    EXPECT_EQ(keysOf<PolyQuad2D<float>>(), (Keys{"indices"}));
    EXPECT_EQ(keysOf<PolyTriangle3D<float>>(), (Keys{"indices", "normal"}));
    EXPECT_EQ(keysOf<Contour2D<float>>(), (Keys{"points", "edges", "area", "clockwise", "hole", "containerIndex"}));
    EXPECT_EQ(keysOf<Transform2D<float>>(), (Keys{"baseMatrix", "position", "rotation", "scale", "skew"}));
    EXPECT_EQ(keysOf<Transform3D<float>>(), keysOf<Transform2D<float>>());
    EXPECT_EQ(keysOf<ShapeTransform3D<float>>(),
              (Keys{"position", "offset", "eulerRotation", "slerpRotation", "scale", "postScale", "skew", "postSkew"}));
    EXPECT_EQ(keysOf<Orientation3D<float>>(), (Keys{"at", "up"}));
}

TEST(ShapeKeys, OfSolidsFollowTheTables) {
    const Keys slice = {"slice", "sliceFrom", "sliceTo"};
    const Keys plainEnds = {"sliceStartCap", "sliceEndCap"};
    const Keys filletedEnds = {"sliceStartCap", "sliceStartFillet", "sliceStartFilletRadius",
                               "sliceEndCap",   "sliceEndFillet",   "sliceEndFilletRadius"};
    const Keys caps = {"upperCap", "upperFillet", "upperFilletRadius", "lowerCap", "lowerFillet", "lowerFilletRadius"};
    auto join = [](std::initializer_list<Keys> p_parts) {
        Keys keys = {"origin"};
        for (const Keys& part : p_parts) {
            keys.insert(keys.end(), part.begin(), part.end());
        }
        return keys;
    };
    EXPECT_EQ(keysOf<Spline3D<float>>(), (Keys{"origin", "type", "points", "closed"}));
    EXPECT_EQ(keysOf<RoundedCuboid<float>>(), (Keys{"origin", "width", "height", "depth", "fillet", "filletRadius"}));
    EXPECT_EQ(keysOf<Sphere<float>>(), join({{"radius"}, slice, plainEnds}));
    EXPECT_EQ(keysOf<Torus<float>>(), join({{"ringRadius", "tubeRadius"}, slice, filletedEnds}));
    EXPECT_EQ(keysOf<Capsule<float>>(),
              join({{"radius", "height", "upperCap", "upperFillet", "lowerCap", "lowerFillet"}, slice, plainEnds}));
    EXPECT_EQ(keysOf<Cylinder<float>>(), join({{"radius", "height"}, caps, slice, plainEnds}));
    EXPECT_EQ(keysOf<Cone<float>>(), join({{"upperRadius", "lowerRadius", "height"}, caps, slice, plainEnds}));
    EXPECT_EQ(keysOf<Tube<float>>(), join({{"innerRadius", "outerRadius", "height"}, caps, slice, filletedEnds}));
    EXPECT_EQ(keysOf<Extrusion<float>>(),
              (Keys{"origin", "startCap", "startFillet", "startFilletRadius", "startFilletType", "endCap", "endFillet",
                    "endFilletRadius", "endFilletType", "startTransform", "endTransform"}));
    EXPECT_EQ(
        keysOf<Lathe<float>>(),
        join({slice,
              {"sliceStartCap", "sliceStartFillet", "sliceStartFilletRadius", "sliceStartFilletType", "sliceEndCap",
               "sliceEndFillet", "sliceEndFilletRadius", "sliceEndFilletType", "startTransform", "endTransform"}}));
    EXPECT_EQ(keysOf<PolygonHull3D<float>>(), (Keys{"origin", "points", "triangles", "quads"}));
}

TEST(ShapeStreaming, WritesTheBasesLevelFirst) {
    RoundedRectangle<float> shape(ExtVector2<float>({1, 2}, ZYR_POSITION_X_CENTER, ZYR_POSITION_Y_TOP), 3, 4, 1, 5);
    test::RecordingSerializer serializer(test::RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_EQ(static_cast<Shape2D<float>*>(&shape)->writeSerialized(&serializer, 0, result), 1);
    EXPECT_EQ(serializer.m_calls,
              (test::Calls{"beginStructure origin 0", "writeFloat x 1 attribute", "writeFloat y 2 attribute",
                           "writeEnum xAnchor 2=CENTER attribute", "writeEnum yAnchor 0=TOP attribute", "endStructure",
                           "writeFloat width 3 attribute", "writeFloat height 4 attribute",
                           "writeBool fillet 1 attribute", "writeFloat filletRadius 5 attribute"}));
}

TEST(ShapeStreaming, WritesAttributesBeforeElementsIntoText) {
    Spline2D<double> shape;
    shape.points.pushBack({1, 2});
    test::RecordingSerializer serializer(test::RecordingSerializer::c_text);
    bool_t result = 0;
    ASSERT_EQ(shape.writeSerialized(&serializer, 0, result), 1);
    EXPECT_EQ(serializer.m_calls,
              (test::Calls{"writeDouble width 0 attribute", "writeDouble height 0 attribute",
                           "writeEnum type 4=BEZIER_CUBIC attribute", "writeBool closed 0 attribute",
                           "beginStructure origin 0", "writeDouble x 0 attribute", "writeDouble y 0 attribute",
                           "writeEnum xAnchor 0=LEFT attribute", "writeEnum yAnchor 0=TOP attribute", "endStructure",
                           "beginArray points 1 254", "beginArrayElement 0 Vector2{double}",
                           "writeDouble x 1 attribute", "writeDouble y 2 attribute", "endArrayElement", "endArray"}));
}

TEST(ShapeStreaming, ReadsThroughTheBaseOfAShape) {
    Cone<double> cone;
    cone.upperRadius = 12;
    cone.sliceEndCap = 0;
    cone.origin.z = 5;
    test::RecordingSerializer serializer(test::RecordingSerializer::c_text);
    bool_t result = 0;
    ASSERT_EQ(cone.writeSerialized(&serializer, 0, result), 1);
    Cone<double> read;
    test::RecordingDeserializer deserializer(serializer.m_root);
    ASSERT_EQ(static_cast<Shape3D<double>*>(&read)->readSerialized(&deserializer), 1);
    EXPECT_EQ(read, cone);
}

TEST(ShapePaths, GoThroughTheBaseAndInnerRecords) {
    Extrusion<float> shape;
    VariableReference* reference =
        static_cast<Shape3D<float>*>(&shape)->getVariableReferenceByPath("endTransform.postScale.y");
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->getPointer(), &shape.endTransform.postScale.y);
    reference->release();
    EXPECT_EQ(shape.getVariableReferenceByPath("endTransform"), nullptr);
    EXPECT_EQ(shape.getVariableReferenceByPath("points"), nullptr);
    EXPECT_EQ(Polygon2D<float>().getVariableReferenceByPath("points"), nullptr);
}

TEST(ShapeSlots, AreThoseOfSeparatelyBuiltModules) {
    EXPECT_EQ(getSlot(&Shape2D<float>::clone), 2u);
    EXPECT_EQ(getSlot(&Shape2D<float>::addRef), 3u);
    EXPECT_EQ(getSlot(&Shape2D<float>::release), 4u);
    EXPECT_EQ(getSlot(&Shape2D<float>::clear), 5u);
    EXPECT_EQ(getSlot(&Shape2D<float>::getClassName), 6u);
    EXPECT_EQ(getSlot(&Shape2D<float>::getID), 7u);
    EXPECT_EQ(getSlot(&Shape2D<float>::getVariableReferenceByPath), 8u);
    EXPECT_EQ(getSlot(&Shape2D<float>::readSerialized), 9u);
    EXPECT_EQ(getSlot(&Shape2D<float>::writeSerialized), 10u);
    EXPECT_EQ(getSlot(&Shape3D<double>::clear), 5u);
    EXPECT_EQ(getSlot(&Shape3D<double>::writeSerialized), 10u);
    EXPECT_EQ(getSlot(&Cuboid<float>::extractBoundingBox), 11u);
    EXPECT_EQ(getSlot(&Tube<float>::extractBoundingBox), 11u);
    EXPECT_EQ(getSlot(&PolygonHull3D<float>::extractBoundingBox), 11u);
}

TEST(ShapeSizes, AreThoseOfSeparatelyBuiltModules) {
    EXPECT_EQ(sizeof(Shape2D<float>), 34u);
    EXPECT_EQ(sizeof(Shape2D<double>), 42u);
    EXPECT_EQ(sizeof(RoundedRectangle<float>), 47u);
    EXPECT_EQ(sizeof(Arc<double>), 75u);
    EXPECT_EQ(sizeof(Spline2D<float>), 108u);
    EXPECT_EQ(sizeof(Graph2D<float>), 123u);
    EXPECT_EQ(sizeof(PolyEdge2D<float>), 16u);
    EXPECT_EQ(sizeof(PolyQuad3D<double>), 40u);
    EXPECT_EQ(sizeof(Contour2D<float>), 162u);
    EXPECT_EQ(sizeof(PolygonHull2D<float>), 290u);
    EXPECT_EQ(sizeof(Shape3D<float>), 39u);
    EXPECT_EQ(sizeof(Shape3D<double>), 51u);
    EXPECT_EQ(sizeof(Tube<float>), 84u);
    EXPECT_EQ(sizeof(Transform2D<float>), 64u);
    EXPECT_EQ(sizeof(Transform3D<double>), 224u);
    EXPECT_EQ(sizeof(ShapeTransform3D<float>), 96u);
    EXPECT_EQ(sizeof(Extrusion<float>), 245u);
}

} // namespace zyr
