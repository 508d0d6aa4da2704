#include "support/binary_layout.h"
#include "support/zyr_invariant.h"
#include "support/zyr_record_walk.h"
#include "support/zyr_recording_serializer.h"
#include "zyr_common/variable/zyr_variable_descriptor.h"

namespace zyr {
namespace {

using test::Calls;
using test::RecordingDeserializer;
using test::RecordingSerializer;

std::vector<std::string> pathsOf(const VariableDescriptor& p_descriptor) {
    std::vector<std::string> paths;
    for (const String& path : p_descriptor.getPropagationPaths()) {
        paths.push_back(path.getData());
    }
    return paths;
}

/// A descriptor with something in each member.
struct FilledDescriptor : VariableDescriptor {
    FilledDescriptor() : VariableDescriptor(ZYR_VARIABLE_FLOAT, ZYR_VARIABLE_CATEGORY_SCALAR, 1) {
        setName("opacity");
        pushBackPropagationPath("a.b");
        pushBackPropagationPath("c");
    }
};

} // namespace

TEST(VariableDescriptor, KeepsTheOrderOfItsOperations) {
    size_t slot = 2;
    EXPECT_EQ(getSlot(&VariableDescriptor::clone), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::addRef), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::release), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::clear), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::readSerialized), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::writeSerialized), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::getName), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::setName), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::getType), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::getTypeSize), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::getCategory), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::getPropagationPaths), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::isTemporary), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::setTemporary), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::pushBackPropagationPath), slot++);
    EXPECT_EQ(getSlot(&VariableDescriptor::clearPropagationPaths), slot++);
    EXPECT_EQ(slot, 18u);
}

TEST(VariableDescriptor, HoldsItsMembersSideBySide) {
    FilledDescriptor descriptor;
    const char* start = reinterpret_cast<const char*>(static_cast<VariableDescriptor*>(&descriptor));
    EXPECT_EQ(sizeof(VariableDescriptor), 193u);
    EXPECT_EQ(reinterpret_cast<const char*>(&descriptor.getName()), start + 24);
    EXPECT_EQ(readAt<uint32_t>(start, 136), 10u);
    EXPECT_EQ(readAt<uint32_t>(start, 140), 2u);
    EXPECT_EQ(readAt<bool_t>(start, 144), 1);
    EXPECT_EQ(reinterpret_cast<const char*>(&descriptor.getPropagationPaths()), start + 145);
}

TEST(VariableDescriptor, StartsEmpty) {
    VariableDescriptor descriptor;
    EXPECT_EQ(descriptor.getName(), "");
    EXPECT_EQ(descriptor.getType(), ZYR_VARIABLE_NONE);
    EXPECT_EQ(descriptor.getTypeSize(), 0u);
    EXPECT_EQ(descriptor.getCategory(), ZYR_VARIABLE_CATEGORY_UNKNOWN);
    EXPECT_EQ(descriptor.isTemporary(), 0);
    EXPECT_TRUE(descriptor.getPropagationPaths().isEmpty());
    EXPECT_EQ(descriptor.getClassName(), "VariableDescriptor");
}

TEST(VariableDescriptor, TakesItsMembersFromTheConstructor) {
    VariableDescriptor descriptor(ZYR_VARIABLE_RECT_DOUBLE, ZYR_VARIABLE_CATEGORY_RECT, 1);
    EXPECT_EQ(descriptor.getName(), "");
    EXPECT_EQ(descriptor.getType(), ZYR_VARIABLE_RECT_DOUBLE);
    EXPECT_EQ(descriptor.getTypeSize(), 32u);
    EXPECT_EQ(descriptor.getCategory(), ZYR_VARIABLE_CATEGORY_RECT);
    EXPECT_EQ(descriptor.isTemporary(), 1);
    descriptor.setTemporary(0);
    EXPECT_EQ(descriptor.isTemporary(), 0);
}

TEST(VariableDescriptor, OfNoTypeEndsTheProcess) {
    ZYR_EXPECT_INVARIANT(VariableDescriptor(ZYR_VARIABLE_NONE, ZYR_VARIABLE_CATEGORY_BOOL, 0),
                         "ERROR: assert.p_type != ZYR_VARIABLE_NONE.");
}

TEST(VariableDescriptor, KeepsPathsInOrderAndTwice) {
    VariableDescriptor descriptor;
    descriptor.pushBackPropagationPath("b");
    descriptor.pushBackPropagationPath("a");
    descriptor.pushBackPropagationPath("b");
    EXPECT_EQ(pathsOf(descriptor), (std::vector<std::string>{"b", "a", "b"}));
    descriptor.clearPropagationPaths();
    EXPECT_TRUE(descriptor.getPropagationPaths().isEmpty());
}

TEST(VariableDescriptor, ClearsToADescriptorWithoutType) {
    FilledDescriptor descriptor;
    descriptor.clear();
    EXPECT_EQ(descriptor.getType(), ZYR_VARIABLE_NONE);
    EXPECT_EQ(descriptor.getName(), "");
    EXPECT_EQ(descriptor.getCategory(), ZYR_VARIABLE_CATEGORY_UNKNOWN);
    EXPECT_EQ(descriptor.isTemporary(), 0);
    EXPECT_TRUE(descriptor.getPropagationPaths().isEmpty());
}

TEST(VariableDescriptor, InitLeavesThePathsAndReleaseLeavesTheNumbers) {
    FilledDescriptor descriptor;
    descriptor.init_This();
    EXPECT_EQ(descriptor.getName(), "");
    EXPECT_EQ(descriptor.getType(), ZYR_VARIABLE_NONE);
    EXPECT_EQ(pathsOf(descriptor), (std::vector<std::string>{"a.b", "c"}));
    FilledDescriptor other;
    other.release_This();
    EXPECT_EQ(other.getName(), "");
    EXPECT_TRUE(other.getPropagationPaths().isEmpty());
    EXPECT_EQ(other.getType(), ZYR_VARIABLE_FLOAT);
    EXPECT_EQ(other.isTemporary(), 1);
}

TEST(VariableDescriptor, CopiesAllMembersAndReplacesThePaths) {
    FilledDescriptor source;
    source.addRef();
    VariableDescriptor* copy = source.clone();
    EXPECT_TRUE(*copy == source);
    EXPECT_EQ(pathsOf(*copy), pathsOf(source));
    copy->release();
    VariableDescriptor target;
    target.pushBackPropagationPath("before");
    target.copy_This(source);
    EXPECT_EQ(pathsOf(target), (std::vector<std::string>{"a.b", "c"}));
    EXPECT_EQ(target.getName(), "opacity");
    EXPECT_EQ(target.getType(), ZYR_VARIABLE_FLOAT);
    EXPECT_EQ(target.getCategory(), ZYR_VARIABLE_CATEGORY_SCALAR);
    EXPECT_EQ(target.isTemporary(), 1);
}

TEST(VariableDescriptor, WritesThePathsInTheSecondPassAndTheCategoryWithoutTheMark) {
    FilledDescriptor descriptor;
    const Calls expected = {"writeString name 'opacity' attribute", "writeEnum type 10=FLOAT attribute",
                            "writeEnum category 2=SCALAR element", "writeBool temporary 1 attribute",
                            "writeStringArray propagationPaths [a.b,c] element"};
    for (RecordingSerializer::Kind kind : {RecordingSerializer::c_text, RecordingSerializer::c_binary}) {
        RecordingSerializer serializer(kind);
        bool_t result = 0;
        EXPECT_EQ(descriptor.writeSerialized(&serializer, 0, result), 1);
        EXPECT_EQ(result, 1);
        EXPECT_EQ(serializer.m_calls, expected);
    }
    bool_t result = 0;
    RecordingSerializer first(RecordingSerializer::c_text);
    EXPECT_EQ(descriptor.writeSerialized_This(&first, 1, 0, result), 1);
    EXPECT_EQ(first.m_calls, Calls(expected.begin(), expected.begin() + 4));
    RecordingSerializer second(RecordingSerializer::c_text);
    EXPECT_EQ(descriptor.writeSerialized_This(&second, 0, 0, result), 1);
    EXPECT_EQ(second.m_calls, Calls(expected.begin() + 4, expected.end()));
}

TEST(VariableDescriptor, DeclaresEachKey) {
    FilledDescriptor descriptor;
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_EQ(descriptor.writeSerialized(&serializer, 1, result), 1);
    EXPECT_EQ(serializer.m_calls, (Calls{"declareString name", "declareEnum type", "declareEnum category",
                                         "declareStringArray propagationPaths"}));
}

TEST(VariableDescriptor, ReadsItsKeysInOrderAndReplacesThePaths) {
    FilledDescriptor stored;
    RecordingSerializer serializer(RecordingSerializer::c_text);
    bool_t result = 0;
    stored.writeSerialized(&serializer, 0, result);
    RecordingDeserializer deserializer(serializer.m_root);
    VariableDescriptor descriptor;
    descriptor.pushBackPropagationPath("before");
    EXPECT_EQ(descriptor.readSerialized(&deserializer), 1);
    EXPECT_EQ(deserializer.m_calls, (Calls{"readString name", "readEnum type", "readEnum category",
                                           "readBool temporary", "readStringArray propagationPaths"}));
    EXPECT_TRUE(descriptor == stored);
}

TEST(VariableDescriptor, KeepsWhatItsStreamLacks) {
    FilledDescriptor descriptor;
    RecordingDeserializer deserializer{test::SerializedNode()};
    EXPECT_EQ(descriptor.readSerialized(&deserializer), 1);
    EXPECT_TRUE(descriptor == FilledDescriptor());
}

TEST(VariableDescriptor, StopsAtTheFirstFailure) {
    FilledDescriptor descriptor;
    const std::pair<const char*, size_t> keys[] = {{"String name", 1},
                                                   {"Enum type", 2},
                                                   {"Enum category", 3},
                                                   {"Bool temporary", 4},
                                                   {"StringArray propagationPaths", 5}};
    for (auto [key, calls] : keys) {
        RecordingSerializer serializer(RecordingSerializer::c_text);
        serializer.m_failures = {std::string("write") + key};
        bool_t result = 1;
        EXPECT_EQ(descriptor.writeSerialized(&serializer, 0, result), 0);
        EXPECT_EQ(result, 0);
        EXPECT_EQ(serializer.m_calls.size(), calls);
        RecordingDeserializer deserializer{test::SerializedNode()};
        deserializer.m_failures = {std::string("read") + key};
        EXPECT_EQ(descriptor.readSerialized(&deserializer), 0);
        EXPECT_EQ(deserializer.m_calls.size(), calls);
    }
}

TEST(VariableDescriptor, HoldsWhatAllRecordsHold) {
    test::walkRecord<VariableDescriptor>();
}

} // namespace zyr
