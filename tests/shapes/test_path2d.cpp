#include "support/binary_layout.h"
#include "support/zyr_invariant.h"
#include "support/zyr_logged_application.h"
#include "support/zyr_record_walk.h"
#include "zyr_common/geometry/zyr_path2d.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/zyr_common_initialize.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace zyr {
namespace {

typedef ExtVector2<double> Point;
typedef Path2D<double> Path;

Point at(double p_x, double p_y, int p_anchor = 0) {
    return {{p_x, p_y}, PositionXAnchorEnum(p_anchor), PositionYAnchorEnum(p_anchor)};
}

/// One command of each class.
void addAll(Path& p_path) {
    p_path.moveTo(at(1, 2));
    p_path.lineTo(at(3, 4, 5));
    p_path.curveTo(at(5, 6), at(7, 8), at(9, 10));
    p_path.smooth(at(11, 12), at(13, 14));
    p_path.quadCurveTo(at(15, 16), at(17, 18));
    p_path.quadSmooth(at(19, 20));
    p_path.arc({21, 22}, 23, 1, 0, at(24, 25));
    p_path.close();
}

std::vector<uint32_t> idsOf(const Path& p_path) {
    std::vector<uint32_t> ids;
    for (const Path2DCommand<double>* command : p_path.getCommands()) {
        ids.push_back(command->getID());
    }
    return ids;
}

template <class Command> const Command& commandAt(const Path& p_path, size_t p_index) {
    auto it = p_path.getCommands().beginConst();
    for (size_t i = 0; i < p_index; ++i) {
        ++it;
    }
    return static_cast<const Command&>(**it);
}

TEST(Path2D, IsAnEmptyShapeAtFirst) {
    const Path path;
    EXPECT_EQ(path.getID(), 9u);
    EXPECT_EQ(path.getClassName(), "Path2D{double}");
    EXPECT_EQ(path.width, 0);
    EXPECT_EQ(path.height, 0);
    EXPECT_TRUE(path.getCommands().isEmpty());
    const Path placed(at(1, 2, 3), 40, 50);
    EXPECT_EQ(placed.origin, at(1, 2, 3));
    EXPECT_EQ(placed.width, 40);
    EXPECT_EQ(placed.height, 50);
}

TEST(Path2D, AppendsOneCommandForEachCall) {
    Path path;
    addAll(path);
    EXPECT_EQ(idsOf(path), (std::vector<uint32_t>{1, 2, 3, 4, 5, 6, 7, 255}));
    EXPECT_EQ(commandAt<MoveToPath2DCommand<double>>(path, 0).position, at(1, 2));
    EXPECT_EQ(commandAt<LineToPath2DCommand<double>>(path, 1).position, at(3, 4, 5));
    const auto& curve = commandAt<CurveToPath2DCommand<double>>(path, 2);
    EXPECT_EQ(curve.p1, at(5, 6));
    EXPECT_EQ(curve.p2, at(7, 8));
    EXPECT_EQ(curve.p3, at(9, 10));
    const auto& smooth = commandAt<SmoothPath2DCommand<double>>(path, 3);
    EXPECT_EQ(smooth.p2, at(11, 12));
    EXPECT_EQ(smooth.p3, at(13, 14));
    const auto& quad = commandAt<QuadCurveToPath2DCommand<double>>(path, 4);
    EXPECT_EQ(quad.p1, at(15, 16));
    EXPECT_EQ(quad.p2, at(17, 18));
    EXPECT_EQ(commandAt<QuadSmoothPath2DCommand<double>>(path, 5).p2, at(19, 20));
    const auto& arc = commandAt<ArcPath2DCommand<double>>(path, 6);
    EXPECT_EQ(arc.radius, Vector2<double>(21, 22));
    EXPECT_EQ(arc.rotation, 23);
    EXPECT_EQ(arc.largeArc, 1);
    EXPECT_EQ(arc.clockwise, 0);
    EXPECT_EQ(arc.endArc, at(24, 25));
}

TEST(Path2D, OwnsItsCommands) {
    Path path;
    addAll(path);
    Path2DCommand<double>* command = path.getCommands().frontConst();
    command->addRef();
    path.eraseCommands();
    EXPECT_TRUE(path.getCommands().isEmpty());
    EXPECT_EQ(command->getID(), 1u); // still held here
    command->release();
}

TEST(Path2D, CopiesItsCommandsDeeply) {
    Path path(at(1, 2), 3, 4);
    addAll(path);
    const Path copy(path);
    Path assigned;
    assigned.close();
    assigned = path;
    Path* clone = path.clone();
    EXPECT_EQ(copy, path);
    EXPECT_EQ(assigned, path);
    EXPECT_EQ(*clone, path);
    EXPECT_NE(copy.getCommands().frontConst(), path.getCommands().frontConst());
    path.eraseCommands();
    EXPECT_EQ(idsOf(copy).size(), 8u);
    EXPECT_EQ(idsOf(assigned).size(), 8u);
    clone->release();
    assigned = *&assigned;
    EXPECT_EQ(assigned, copy);
}

TEST(Path2D, ComparesEachCommand) {
    Path left;
    addAll(left);
    for (size_t i = 0; i < 8; ++i) {
        SCOPED_TRACE(i);
        Path right;
        addAll(right);
        EXPECT_TRUE(left == right);
        Path2DCommand<double>& command = const_cast<Path2DCommand<double>&>(commandAt<Path2DCommand<double>>(right, i));
        command.clear();
        EXPECT_EQ(left == right, i == 7); // the last has no fields
    }
    Path shorter;
    EXPECT_FALSE(left == shorter);
    EXPECT_FALSE(shorter == left);
    Path other;
    other.lineTo(at(1, 2));
    shorter.moveTo(at(1, 2));
    EXPECT_FALSE(other == shorter);
}

TEST(Path2D, ClearsAllLevels) {
    Path path(at(1, 2), 3, 4);
    addAll(path);
    static_cast<Shape2D<double>*>(&path)->clear();
    EXPECT_EQ(path, Path());
}

TEST(Path2D, FindsItsNumbersByPath) {
    Path path;
    VariableReference* reference = path.getVariableReferenceByPath("width");
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->getPointer(), &path.width);
    reference->release();
    EXPECT_EQ(path.getVariableReferenceByPath("commands"), nullptr);
    reference = path.getVariableReferenceByPath("origin.x");
    ASSERT_NE(reference, nullptr);
    reference->release();
}

TEST(Path2DCommands, HoldWhatAllRecordsHold) {
    test::walkRecord<Path2DCommand<float>>();
    test::walkRecord<MoveToPath2DCommand<float>>();
    test::walkRecord<LineToPath2DCommand<double>>();
    test::walkRecord<CurveToPath2DCommand<float>>();
    test::walkRecord<SmoothPath2DCommand<double>>();
    test::walkRecord<QuadCurveToPath2DCommand<float>>();
    test::walkRecord<QuadSmoothPath2DCommand<double>>();
    test::walkRecord<ArcPath2DCommand<float>>();
    test::walkRecord<ArcPath2DCommand<double>>();
    test::walkRecord<ClosePath2DCommand<double>>();
}

TEST(Path2DCommands, CloneToTheirOwnClass) {
    const ArcPath2DCommand<double> arc({1, 2}, 3, 1, 1, at(4, 5));
    const Path2DCommand<double>* command = &arc;
    Path2DCommand<double>* clone = command->clone();
    EXPECT_EQ(clone->getID(), 7u);
    EXPECT_EQ(clone->getClassName(), "ArcPath2DCommand{double}");
    EXPECT_EQ(static_cast<ArcPath2DCommand<double>&>(*clone), arc);
    clone->release();
}

TEST(Path2DSlots, AreThoseOfSeparatelyBuiltModules) {
    EXPECT_EQ(getSlot(&Path2DCommand<float>::clone), 2u);
    EXPECT_EQ(getSlot(&Path2DCommand<float>::clear), 5u);
    EXPECT_EQ(getSlot(&Path2DCommand<float>::getClassName), 6u);
    EXPECT_EQ(getSlot(&Path2DCommand<float>::getID), 7u);
    EXPECT_EQ(getSlot(&Path2DCommand<float>::getVariableReferenceByPath), 8u);
    EXPECT_EQ(getSlot(&Path2DCommand<float>::readSerialized), 9u);
    EXPECT_EQ(getSlot(&Path2DCommand<float>::writeSerialized), 10u);
    EXPECT_EQ(getSlot(&Path::getCommands), 11u);
    EXPECT_EQ(getSlot(&Path::eraseCommands), 12u);
    EXPECT_EQ(getSlot(&Path::moveTo), 13u);
    EXPECT_EQ(getSlot(&Path::lineTo), 14u);
    EXPECT_EQ(getSlot(&Path::curveTo), 15u);
    EXPECT_EQ(getSlot(&Path::smooth), 16u);
    EXPECT_EQ(getSlot(&Path::quadCurveTo), 17u);
    EXPECT_EQ(getSlot(&Path::quadSmooth), 18u);
    EXPECT_EQ(getSlot(&Path::arc), 19u);
    EXPECT_EQ(getSlot(&Path::close), 20u);
    EXPECT_EQ(getSlot(&Path::pushBackSVGPath), 21u);
    EXPECT_EQ(sizeof(Path2D<float>), 90u);
    EXPECT_EQ(sizeof(Path2DCommand<float>), 24u);
    EXPECT_EQ(sizeof(ArcPath2DCommand<float>), 48u);
}

/// With the allocators of the common library.
class Path2DStream : public testing::Test {
protected:
    Path2DStream() { EXPECT_TRUE(commonInitialize(m_application.getData())); }

    static test::SerializedNode written(Path& p_path) {
        test::RecordingSerializer serializer(test::RecordingSerializer::c_text);
        bool_t result = 0;
        EXPECT_EQ(p_path.writeSerialized(&serializer, 0, result), 1);
        return serializer.m_root;
    }

    static void addElement(test::SerializedNode& p_root, const std::string& p_typeName) {
        auto point = std::make_shared<test::SerializedNode>();
        point->m_values["x"] = 7.0;
        auto element = std::make_shared<test::SerializedNode>();
        element->m_groups["position"] = point;
        p_root.m_arrays["commands"].emplace_back(p_typeName, element);
    }

    static std::vector<uint32_t> idsRead(const test::SerializedNode& p_root) {
        Path path;
        test::RecordingDeserializer deserializer(p_root);
        EXPECT_EQ(path.readSerialized(&deserializer), 1);
        return idsOf(path);
    }

    LoggedApplication m_application;
};

TEST_F(Path2DStream, WritesEveryCommandUnderTheNameOfTheBase) {
    Path path(at(1, 2), 3, 4);
    path.moveTo(at(5, 6));
    path.close();
    test::RecordingSerializer serializer(test::RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_EQ(path.writeSerialized(&serializer, 0, result), 1);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(serializer.m_calls, (test::Calls{"beginStructure origin 0",
                                               "writeDouble x 1 attribute",
                                               "writeDouble y 2 attribute",
                                               "writeEnum xAnchor 0=LEFT attribute",
                                               "writeEnum yAnchor 0=TOP attribute",
                                               "endStructure",
                                               "writeDouble width 3 attribute",
                                               "writeDouble height 4 attribute",
                                               "beginArray commands 2 254",
                                               "beginArrayElement 0 Path2DCommand{double}",
                                               "beginStructure position 0",
                                               "writeDouble x 5 attribute",
                                               "writeDouble y 6 attribute",
                                               "writeEnum xAnchor 0=LEFT attribute",
                                               "writeEnum yAnchor 0=TOP attribute",
                                               "endStructure",
                                               "endArrayElement",
                                               "beginArrayElement 1 Path2DCommand{double}",
                                               "endArrayElement",
                                               "endArray"}));
}

TEST_F(Path2DStream, WritesItsCommandsInTheSecondPassOfAText) {
    Path path;
    path.close();
    test::RecordingSerializer serializer(test::RecordingSerializer::c_text);
    bool_t result = 0;
    ASSERT_EQ(path.writeSerialized(&serializer, 0, result), 1);
    EXPECT_EQ(serializer.m_calls[0], "writeDouble width 0 attribute");
    EXPECT_EQ(serializer.m_calls[1], "writeDouble height 0 attribute");
    EXPECT_EQ(std::count(serializer.m_calls.begin(), serializer.m_calls.end(), "beginArray commands 1 254"), 1);
    EXPECT_EQ(serializer.m_calls.back(), "endArray");
}

TEST_F(Path2DStream, DeclaresAnArrayOfPointersToCommands) {
    Path2D<float> path;
    test::RecordingSerializer serializer(test::RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_EQ(path.writeSerialized(&serializer, 1, result), 1);
    test::Calls last(serializer.m_calls.end() - 5, serializer.m_calls.end());
    EXPECT_EQ(last,
              (test::Calls{"declareFloat width", "declareFloat height", "beginHeaderStructure Path2DCommand{float}",
                           "endHeaderStructure", "writeHeaderField commands FFFFFFFD FFFFFFFE Path2DCommand{float}*"}));
}

TEST_F(Path2DStream, ReadsBackAsManyBaseCommands) {
    Path path(at(1, 2), 3, 4);
    addAll(path);
    Path read;
    test::RecordingDeserializer deserializer(written(path));
    ASSERT_EQ(read.readSerialized(&deserializer), 1);
    EXPECT_EQ(read.origin, at(1, 2));
    EXPECT_EQ(read.width, 3);
    EXPECT_EQ(read.height, 4);
    EXPECT_EQ(idsOf(read), (std::vector<uint32_t>(8, 0)));
}

TEST_F(Path2DStream, ReadsTheClassOfARegisteredName) {
    test::SerializedNode root;
    addElement(root, "LineToPath2DCommand{double}");
    addElement(root, "ClosePath2DCommand{double}");
    Path path;
    test::RecordingDeserializer deserializer(root);
    ASSERT_EQ(path.readSerialized(&deserializer), 1);
    EXPECT_EQ(idsOf(path), (std::vector<uint32_t>{2, 255}));
    EXPECT_EQ(commandAt<LineToPath2DCommand<double>>(path, 0).position.x, 7);
}

TEST_F(Path2DStream, ReadsABaseCommandForAnUnknownName) {
    test::SerializedNode root;
    addElement(root, "Nothing");
    addElement(root, "Nothing{double}");
    EXPECT_EQ(idsRead(root), (std::vector<uint32_t>{0, 0}));
}

TEST_F(Path2DStream, ReadsABaseCommandForTheNameOfTheOtherNumberType) {
    test::SerializedNode root;
    addElement(root, "ArcPath2DCommand{float}");
    EXPECT_EQ(idsRead(root), (std::vector<uint32_t>{0}));
}

/// A record that is no command, and one whose making is counted.
struct Impostor {
    static constexpr const char* c_typeName = "Impostor{double}";
    static inline int s_made = 0;
    Impostor() { s_made++; }
};

TEST_F(Path2DStream, ReadsABaseCommandForTheNameOfAnotherRegisteredRecord) {
    zyr_addUnknownVariableAllocator<Impostor>();
    test::SerializedNode root;
    addElement(root, "Impostor{double}");
    addElement(root, "Path2DCommand{double}");
    EXPECT_EQ(idsRead(root), (std::vector<uint32_t>{0, 0}));
    EXPECT_EQ(Impostor::s_made, 0);
    const auto* const registered = static_cast<Impostor*>(zyr_createUnknownVariableFromName("Impostor{double}"));
    EXPECT_NE(registered, nullptr);
    delete registered;
}

TEST_F(Path2DStream, SkipsNullElements) {
    test::SerializedNode root;
    addElement(root, "");
    addElement(root, "MoveToPath2DCommand{double}");
    addElement(root, "");
    EXPECT_EQ(idsRead(root), (std::vector<uint32_t>{1}));
}

TEST_F(Path2DStream, AppendsToTheCommandsThatAreThere) {
    test::SerializedNode root;
    addElement(root, "MoveToPath2DCommand{double}");
    Path path;
    path.close();
    test::RecordingDeserializer deserializer(root);
    ASSERT_EQ(path.readSerialized(&deserializer), 1);
    EXPECT_EQ(idsOf(path), (std::vector<uint32_t>{255, 1}));
}

TEST_F(Path2DStream, KeepsItsCommandsWithoutTheKey) {
    Path path;
    path.close();
    test::RecordingDeserializer deserializer((test::SerializedNode()));
    ASSERT_EQ(path.readSerialized(&deserializer), 1);
    EXPECT_EQ(idsOf(path), (std::vector<uint32_t>{255}));
}

TEST_F(Path2DStream, AppendsNothingWhenAnElementFails) {
    test::SerializedNode root;
    addElement(root, "MoveToPath2DCommand{double}");
    addElement(root, "MoveToPath2DCommand{double}");
    for (const char* failure : {"enterArrayElement 1", "readDouble x"}) {
        SCOPED_TRACE(failure);
        Path path;
        path.close();
        test::RecordingDeserializer deserializer(root);
        deserializer.m_failures.insert(failure);
        EXPECT_EQ(path.readSerialized(&deserializer), 0);
        EXPECT_EQ(idsOf(path), (std::vector<uint32_t>{255}));
    }
}

TEST_F(Path2DStream, FailsWithItsSerializer) {
    Path path;
    path.moveTo(at(1, 2));
    for (const char* failure :
         {"beginArray commands", "beginArrayElement 0", "writeDouble x 1 attribute", "writeDouble width"}) {
        SCOPED_TRACE(failure);
        test::RecordingSerializer serializer(test::RecordingSerializer::c_binary);
        serializer.m_failures.insert(failure);
        bool_t result = 1;
        EXPECT_EQ(path.writeSerialized(&serializer, 0, result), 0);
        EXPECT_EQ(result, 0);
    }
}

TEST(Path2DDeathTest, ANullCommandIsABrokenInvariant) {
    Path path;
    const_cast<List<Path2DCommand<double>*>&>(path.getCommands()).pushBack(nullptr);
    test::RecordingSerializer serializer(test::RecordingSerializer::c_binary);
    bool_t result = 0;
    ZYR_EXPECT_INVARIANT(path.writeSerialized(&serializer, 0, result), "assert\\(\\*it != NULL\\)");
}

TEST(CommonInitialize, RegistersThePathCommandsInOrder) {
    LoggedApplication application;
    ASSERT_TRUE(commonInitialize(application.getData()));
    std::vector<std::string> names;
    for (const auto& entry : application->m_unknownVariableAllocators) {
        names.push_back(entry.m_first.getData());
    }
    std::vector<std::string> expected;
    for (const char* name :
         {"Path2DCommand", "MoveToPath2DCommand", "LineToPath2DCommand", "CurveToPath2DCommand", "SmoothPath2DCommand",
          "QuadCurveToPath2DCommand", "QuadSmoothPath2DCommand", "ArcPath2DCommand", "ClosePath2DCommand"}) {
        expected.push_back(name + std::string("{float}"));
        expected.push_back(name + std::string("{double}"));
    }
    EXPECT_EQ(names, expected);
}

} // namespace
} // namespace zyr
