#include "support/zyr_stub_object.h"
#include "variable/held_rows.h"
#include "zyr_common/variable/zyr_variable_factories.h"

namespace zyr {
namespace {

using test::forEachHeldRow;
using test::makeSample;

} // namespace

TEST(VariableFactories, MakeANamedValueOfEachType) {
    size_t made = 0;
    forEachHeldRow([&]<class Row>(Row) {
        if constexpr (Row::c_row != ZYR_VARIABLE_BOOL) {
            VariableValue* value =
                zyr_createVariableValue<typename Row::Type>("name", makeSample<typename Row::Type>());
            EXPECT_EQ(value->getType(), Row::c_row);
            EXPECT_EQ(value->getName(), "name");
            EXPECT_TRUE(Row::get(*value) == makeSample<typename Row::Type>());
            value->release();
            ++made;
        }
    });
    EXPECT_EQ(made, 67u);
}

TEST(VariableFactories, MakeANamedDescriptorOfEachType) {
    forEachHeldRow([]<class Row>(Row) {
        if constexpr (Row::c_row != ZYR_VARIABLE_BOOL) {
            VariableDescriptor* descriptor =
                zyr_createVariableDescriptor<typename Row::Type>("name", ZYR_VARIABLE_CATEGORY_BOX, 1);
            EXPECT_EQ(descriptor->getType(), Row::c_row);
            EXPECT_EQ(descriptor->getTypeSize(), c_variableTypeRows[Row::c_row].m_size);
            EXPECT_EQ(descriptor->getName(), "name");
            EXPECT_EQ(descriptor->getCategory(), ZYR_VARIABLE_CATEGORY_BOX);
            EXPECT_EQ(descriptor->isTemporary(), 1);
            EXPECT_TRUE(descriptor->getPropagationPaths().isEmpty());
            descriptor->release();
        }
    });
}

TEST(VariableFactories, MakeTruthValues) {
    VariableValue* value = zyr_createBooleanVariableValue("name", 1);
    EXPECT_EQ(value->getType(), ZYR_VARIABLE_BOOL);
    EXPECT_EQ(value->getName(), "name");
    EXPECT_EQ(value->getValueBool(), 1);
    value->release();
    VariableDescriptor* descriptor = zyr_createBooleanVariableDescriptor("name", ZYR_VARIABLE_CATEGORY_BOOL, 0);
    EXPECT_EQ(descriptor->getType(), ZYR_VARIABLE_BOOL);
    EXPECT_EQ(descriptor->getTypeSize(), 1u);
    EXPECT_EQ(descriptor->getName(), "name");
    EXPECT_EQ(descriptor->getCategory(), ZYR_VARIABLE_CATEGORY_BOOL);
    EXPECT_EQ(descriptor->isTemporary(), 0);
    descriptor->release();
}

TEST(VariableFactories, MakeANumberOfAnUnsignedByte) {
    VariableValue* value = zyr_createVariableValue<bool_t>("name", 1);
    EXPECT_EQ(value->getType(), ZYR_VARIABLE_UINT8);
    value->release();
}

TEST(VariableFactories, DescribeAScalarOfFourBytes) {
    VariableDescriptor* descriptor = zyr_createVariableDescriptor<float>("x", ZYR_VARIABLE_CATEGORY_SCALAR, false);
    EXPECT_EQ(descriptor->getTypeSize(), 4u);
    descriptor->release();
}

TEST(VariableFactories, TakeAReferenceOfTheValuesOwn) {
    test::StubObject<IObject>* object = new test::StubObject<IObject>;
    VariableValue* value = zyr_createVariableValue<IObject*>("object", object);
    EXPECT_EQ(object->getRefCount(), 1u);
    EXPECT_EQ(value->getValueObjectRef(), object);
    value->release();
    EXPECT_EQ(object->getRefCount(), 0u);
    object->release();
    String* string = new String("held");
    VariableValue* text = zyr_createVariableValue<String*>("text", string);
    string->release();
    EXPECT_EQ(*text->getValueStringRef(), "held");
    text->release();
    VariableValue* empty = zyr_createVariableValue<String*>("text", nullptr);
    EXPECT_EQ(empty->getValueStringRef(), nullptr);
    empty->release();
}

} // namespace zyr
