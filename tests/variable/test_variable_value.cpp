#include "support/log_capture.h"
#include "support/zyr_invariant.h"
#include "support/zyr_stub_object.h"
#include "variable/held_rows.h"
#include "zyr_common/variable/zyr_variable_reference.h"

namespace zyr {
namespace {

using test::c_isPointer;
using test::c_isRecord;
using test::forEachHeldRow;
using test::makeSample;
using test::setSample;

const uint32_t EMPTY_TYPES[] = {13, 15, 19, 20, 21, 22, 25, 26, 27, 28, 79, 80, 82, 500};

/// Changes a reference's target to a value and forgets the reference.
bool_t copyTo(VariableValue& p_value, VariableTypeEnum p_type, void* p_target) {
    VariableReference* reference = new VariableReference(p_type, p_target);
    bool_t done = p_value.copyValueToVariableReference(reference);
    reference->release();
    return done;
}

} // namespace

TEST(VariableValue, OfNoTypeEndsTheProcess) {
    ZYR_EXPECT_INVARIANT(VariableValue value(ZYR_VARIABLE_NONE), "ERROR: assert.p_type != ZYR_VARIABLE_NONE.");
}

TEST(VariableValue, IsNamedAfterItsClass) {
    EXPECT_EQ(VariableValue().getClassName(), "VariableValue");
}

TEST(VariableValue, HoldsNothingWithoutAType) {
    LogCapture capture;
    VariableValue value;
    uint64_t target = 5;
    EXPECT_EQ(value.getType(), ZYR_VARIABLE_NONE);
    EXPECT_EQ(value.getValueSize(), 0u);
    EXPECT_EQ(value.copyValueToData(&target), 0u);
    EXPECT_EQ(value.getVariableReference(), nullptr);
    EXPECT_EQ(value.createVariableReference(), nullptr);
    EXPECT_EQ(copyTo(value, ZYR_VARIABLE_UINT64, &target), 0);
    value.clear();
    VariableValue* copy = value.clone();
    EXPECT_EQ(copy->getType(), ZYR_VARIABLE_NONE);
    copy->release();
    EXPECT_EQ(target, 5u);
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(VariableValue, HoldsNothingOfTheTypesWithoutAKey) {
    LogCapture capture;
    for (uint32_t type : EMPTY_TYPES) {
        SCOPED_TRACE(type);
        VariableValue value(static_cast<VariableTypeEnum>(type));
        uint64_t target = 5;
        EXPECT_EQ(value.getValueSize(), 0u);
        EXPECT_EQ(value.copyValueToData(&target), 0u);
        EXPECT_EQ(value.getVariableReference(), nullptr);
        EXPECT_EQ(value.createVariableReference(), nullptr);
        EXPECT_EQ(copyTo(value, ZYR_VARIABLE_UINT64, &target), 0);
        VariableValue* copy = value.clone();
        EXPECT_EQ(copy->getType(), type);
        copy->release();
        value.clear();
        EXPECT_EQ(target, 5u);
    }
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(VariableValue, ReportsTheSizeOfTheTable) {
    for (uint32_t type = 1; type < 90; ++type) {
        VariableValue value(static_cast<VariableTypeEnum>(type));
        EXPECT_EQ(value.getValueSize(), type < 82 ? c_variableTypeRows[type].m_size : 0u) << type;
    }
    EXPECT_EQ(VariableValue(ZYR_VARIABLE_STRING).getValueSize(), 0u);
    EXPECT_EQ(VariableValue(ZYR_VARIABLE_EXT_RECT_FLOAT).getValueSize(), 46u);
    EXPECT_EQ(VariableValue(ZYR_VARIABLE_GUID_OBJECT_REFERENCE).getValueSize(), 33u);
    EXPECT_EQ(VariableValue(ZYR_VARIABLE_STRING_REFERENCE).getValueSize(), 0u);
    EXPECT_EQ(VariableValue(ZYR_VARIABLE_ENUM).getValueSize(), 4u);
}

TEST(VariableValue, CopiesItsBytesAndNoMore) {
    forEachHeldRow([]<class Row>(Row) {
        VariableValue value(Row::c_row);
        setSample<Row>(value);
        unsigned char bytes[160];
        memset(bytes, 0xA5, sizeof(bytes));
        size_t expected = Row::c_row == ZYR_VARIABLE_STRING || c_isPointer<Row> ? 0 : sizeof(typename Row::Type);
        EXPECT_EQ(value.copyValueToData(bytes), expected);
        if constexpr (c_isRecord<Row>) {
            EXPECT_EQ(memcmp(bytes, static_cast<void*>(Row::getMutable(value)), expected), 0);
        } else {
            auto held = Row::get(value);
            EXPECT_EQ(memcmp(bytes, &held, expected), 0);
        }
        for (size_t i = expected; i < sizeof(bytes); ++i) {
            ASSERT_EQ(bytes[i], 0xA5);
        }
    });
    EXPECT_EQ(VariableValue(ZYR_VARIABLE_STRING).copyValueToData(nullptr), 0u);
}

TEST(VariableValue, CopiesTheBytesOfAnEnumeration) {
    VariableValue value(ZYR_VARIABLE_ENUM);
    value.setValueInt32(-2);
    int32_t number = 0;
    EXPECT_EQ(value.copyValueToData(&number), 4u);
    EXPECT_EQ(number, -2);
}

TEST(VariableValue, WritesItselfIntoAFieldOfItsType) {
    forEachHeldRow([]<class Row>(Row) {
        LogCapture capture;
        VariableValue value(Row::c_row);
        setSample<Row>(value);
        typename Row::Type field = typename Row::Type();
        bool_t expected = Row::c_row != ZYR_VARIABLE_GUID_OBJECT_REFERENCE;
        EXPECT_EQ(copyTo(value, Row::c_row, &field), expected);
        EXPECT_EQ(field == makeSample<typename Row::Type>(), expected != 0);
        EXPECT_TRUE(capture.getLines().empty());
        if constexpr (c_isPointer<Row>) {
            field->release();
        }
    });
}

TEST(VariableValue, WritesNothingThroughNull) {
    LogCapture capture;
    for (uint32_t type = 1; type < 84; ++type) {
        VariableValue value(static_cast<VariableTypeEnum>(type));
        EXPECT_EQ(value.copyValueToVariableReference(nullptr), 0);
    }
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(VariableValue, ConvertsNumbersOnTheWayIntoAField) {
    VariableValue value(ZYR_VARIABLE_DOUBLE);
    value.setValueDouble(300.7);
    uint8_t field = 0;
    EXPECT_EQ(copyTo(value, ZYR_VARIABLE_UINT8, &field), 1);
    EXPECT_EQ(field, 44);
    VariableValue enumeration(ZYR_VARIABLE_ENUM);
    enumeration.setValueInt32(-3);
    double wide = 0;
    EXPECT_EQ(copyTo(enumeration, ZYR_VARIABLE_DOUBLE, &wide), 1);
    EXPECT_EQ(wide, -3.0);
}

TEST(VariableValue, ConvertsColoursOnTheWayIntoAField) {
    VariableValue value(ZYR_VARIABLE_COLOR_RGB_FLOAT);
    value.setValueColorRGBFloat(ColorRGB<float>(1, 0.5f, 0.25f));
    ColorRGBA<double> field;
    EXPECT_EQ(copyTo(value, ZYR_VARIABLE_COLOR_RGBA_DOUBLE, &field), 1);
    EXPECT_EQ(field, (ColorRGBA<double>(1, 0.5, 0.25, 1)));
    VariableValue back(ZYR_VARIABLE_COLOR_RGBA_DOUBLE);
    back.setValueColorRGBADouble(field);
    ColorRGB<float> narrow;
    EXPECT_EQ(copyTo(back, ZYR_VARIABLE_COLOR_RGB_FLOAT, &narrow), 1);
    EXPECT_EQ(narrow, (ColorRGB<float>(1, 0.5f, 0.25f)));
}

TEST(VariableValue, LeavesAFieldOfATypeThatDoesNotFit) {
    VariableValue value(ZYR_VARIABLE_VECTOR2_FLOAT);
    Vector2<double> field(1, 2);
    LogCapture capture;
    EXPECT_EQ(copyTo(value, ZYR_VARIABLE_VECTOR2_DOUBLE, &field), 0);
    EXPECT_EQ(field, (Vector2<double>(1, 2)));
    ASSERT_EQ(capture.getLines().size(), 1u);
    EXPECT_EQ(capture.getLines()[0].message, "Unable to convert Vector2<float> to type:Vector2<double>");
}

TEST(VariableValue, SharesAnObjectWithAFieldAndDoesNotCloneIt) {
    test::StubObject<IObject>* object = new test::StubObject<IObject>;
    IObject* field = nullptr;
    {
        VariableValue value(ZYR_VARIABLE_OBJECT_REFERENCE);
        value.setValueObjectRef(object);
        EXPECT_EQ(copyTo(value, ZYR_VARIABLE_OBJECT_REFERENCE, &field), 1);
        EXPECT_EQ(object->getRefCount(), 2u);
    }
    EXPECT_EQ(field, object);
    EXPECT_EQ(object->getRefCount(), 1u);
    field->release();
    object->release();
}

TEST(VariableValue, IsReferredToByItsContent) {
    forEachHeldRow([]<class Row>(Row) {
        VariableValue value(Row::c_row);
        for (VariableReference* reference : {value.getVariableReference(), value.createVariableReference()}) {
            ASSERT_NE(reference, nullptr);
            EXPECT_EQ(reference->getType(), Row::c_row);
            if constexpr (c_isRecord<Row>) {
                EXPECT_EQ(reference->getPointer(), static_cast<void*>(Row::getMutable(value)));
            } else {
                typename Row::Type sample = makeSample<typename Row::Type>();
                memcpy(reference->getPointer(), &sample, sizeof(sample));
                EXPECT_TRUE(Row::get(value) == sample);
                memset(reference->getPointer(), 0, sizeof(sample));
            }
            reference->release();
        }
        EXPECT_EQ(value.getVariableReferenceByPath("x"), nullptr);
        EXPECT_EQ(value.getVariableReferenceByPath(""), nullptr);
    });
}

TEST(VariableValue, IsWrittenThroughItsReference) {
    VariableValue value(ZYR_VARIABLE_ENUM);
    VariableReference* reference = value.createVariableReference();
    EXPECT_EQ(reference->getType(), ZYR_VARIABLE_ENUM);
    EXPECT_EQ(reference->changeValueDouble(-7.9), 1);
    reference->release();
    EXPECT_EQ(value.getValueInt32(), -7);
}

TEST(VariableValue, ClonesNameAndContent) {
    forEachHeldRow([]<class Row>(Row) {
        LogCapture capture;
        VariableValue value(Row::c_row);
        value.setName("name");
        value.setBorrowedObject(0);
        setSample<Row>(value);
        value.addRef();
        VariableValue* copy = value.clone();
        EXPECT_EQ(copy->getType(), Row::c_row);
        EXPECT_EQ(copy->getName(), "name");
        EXPECT_EQ(copy->isBorrowedObject(), 1);
        EXPECT_TRUE(Row::get(*copy) == makeSample<typename Row::Type>());
        if constexpr (c_isRecord<Row>) {
            EXPECT_NE(Row::getMutable(*copy), Row::getMutable(value));
        }
        copy->release();
        EXPECT_TRUE(Row::get(value) == makeSample<typename Row::Type>());
        EXPECT_TRUE(capture.getLines().empty());
    });
}

TEST(VariableValue, SharesCountedPointersWithItsClone) {
    test::StubObject<IObject>* object = new test::StubObject<IObject>;
    VariableValue* value = new VariableValue(ZYR_VARIABLE_OBJECT_REFERENCE);
    value->setValueObjectRef(object);
    VariableValue* copy = value->clone();
    EXPECT_EQ(object->getRefCount(), 2u);
    value->release();
    EXPECT_EQ(object->getRefCount(), 1u);
    EXPECT_EQ(copy->getValueObjectRef(), object);
    copy->release();
    EXPECT_EQ(object->getRefCount(), 0u);
    object->release();
}

TEST(VariableValue, CopiesThroughTheAccessorsOfTheSourcesType) {
    VariableValue source(ZYR_VARIABLE_FLOAT);
    source.setName("source");
    source.setValueFloat(2.5f);
    VariableValue value(ZYR_VARIABLE_DOUBLE);
    value.setValueDouble(1.5);
    LogCapture capture;
    value.copy_This(source);
    EXPECT_EQ(value.getType(), ZYR_VARIABLE_DOUBLE);
    EXPECT_EQ(value.getValueDouble(), 1.5);
    EXPECT_EQ(value.getName(), "source");
    ASSERT_EQ(capture.getLines().size(), 1u);
    EXPECT_EQ(capture.getLines()[0].message, "Value is not a float");
    EXPECT_EQ(capture.getLines()[0].function, "virtual void zyr::VariableValue::setValueFloat(float)");
}

TEST(VariableValue, CopiesByVirtualAccessors) {
    struct Doubling : VariableValue {
        Doubling() : VariableValue(ZYR_VARIABLE_FLOAT) {}
        float getValueFloat() const override { return 2 * VariableValue::getValueFloat(); }
        void setValueFloat(float p_value) override { VariableValue::setValueFloat(p_value + 1); }
    };
    Doubling source;
    Doubling value;
    source.setValueFloat(4);
    value.copy_This(source);
    EXPECT_EQ(value.VariableValue::getValueFloat(), 11.0f);
}

TEST(VariableValue, CopiesBetweenTypesThatShareTheirAccessors) {
    LogCapture capture;
    VariableValue truth(ZYR_VARIABLE_BOOL);
    VariableValue byte(ZYR_VARIABLE_UINT8);
    truth.setValueBool(1);
    byte.copy_This(truth);
    EXPECT_EQ(byte.getValueUInt8(), 1);
    VariableValue enumeration(ZYR_VARIABLE_ENUM);
    VariableValue number(ZYR_VARIABLE_INT32);
    enumeration.setValueInt32(9);
    number.copy_This(enumeration);
    EXPECT_EQ(number.getValueInt32(), 9);
    number.setValueInt32(8);
    enumeration.copy_This(number);
    EXPECT_EQ(enumeration.getValueInt32(), 8);
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(VariableValue, ClearKeepsTheType) {
    forEachHeldRow([]<class Row>(Row) {
        LogCapture capture;
        VariableValue value(Row::c_row);
        value.setName("name");
        setSample<Row>(value);
        value.clear();
        EXPECT_EQ(value.getType(), Row::c_row);
        EXPECT_EQ(value.getName(), "");
        EXPECT_TRUE(Row::get(value) == typename Row::Type());
        EXPECT_TRUE(capture.getLines().empty());
    });
}

TEST(VariableValue, ClearKeepsTheAllocation) {
    VariableValue value(ZYR_VARIABLE_RECT_DOUBLE);
    const Rect<double>* record = &value.getValueRectDouble();
    value.clear();
    EXPECT_EQ(&value.getValueRectDouble(), record);
}

TEST(VariableValue, GivesReferencesBackWhenClearedAndWhenDestroyed) {
    test::StubObject<IObject>* object = new test::StubObject<IObject>;
    {
        VariableValue value(ZYR_VARIABLE_OBJECT_REFERENCE);
        value.setValueObjectRef(object);
        value.clear();
        EXPECT_EQ(object->getRefCount(), 0u);
        EXPECT_EQ(value.getValueObjectRef(), nullptr);
        value.setValueObjectRef(object);
    }
    EXPECT_EQ(object->getRefCount(), 0u);
    object->release();
}

TEST(VariableValue, ReleasingALevelLeavesThePointerForTheInitThatFollows) {
    test::StubObject<IObject>* object = new test::StubObject<IObject>;
    VariableValue value(ZYR_VARIABLE_OBJECT_REFERENCE);
    value.setValueObjectRef(object);
    value.release_This();
    EXPECT_EQ(object->getRefCount(), 0u);
    EXPECT_EQ(value.getValueObjectRef(), object);
    value.init_This();
    EXPECT_EQ(value.getValueObjectRef(), nullptr);
    object->release();
}

TEST(VariableValue, FreesAndAllocatesItsRecordAnew) {
    VariableValue value(ZYR_VARIABLE_VECTOR2_INT64);
    value.setValueVector2Int64(Vector2<int64_t>(3, 4));
    value.freeValueType();
    value.allocateValueType();
    EXPECT_EQ(value.getValueVector2Int64(), Vector2<int64_t>());
    VariableValue number(ZYR_VARIABLE_INT32);
    number.setValueInt32(5);
    number.freeValueType();
    number.allocateValueType();
    EXPECT_EQ(number.getValueInt32(), 5);
}

TEST(VariableValue, LivesByItsCount) {
    VariableValue* value = new VariableValue(ZYR_VARIABLE_STRING);
    EXPECT_EQ(value->addRef(), value);
    value->release();
    value->setValueString("still there");
    EXPECT_EQ(value->getValueString(), "still there");
    value->release();
}

TEST(AppliedValue, IsWrittenAndTheReferenceReleased) {
    VariableValue value(ZYR_VARIABLE_INT32);
    value.setValueInt32(6);
    double field = 0;
    EXPECT_EQ(zyr_applyVariableValue(&value, new VariableReference(ZYR_VARIABLE_DOUBLE, &field)), 1);
    EXPECT_EQ(field, 6.0);
    EXPECT_EQ(zyr_applyVariableValue(nullptr, new VariableReference(ZYR_VARIABLE_DOUBLE, &field)), 0);
    EXPECT_EQ(zyr_applyVariableValue(&value, nullptr), 0);
    EXPECT_EQ(zyr_applyVariableValue(nullptr, nullptr), 0);
    EXPECT_EQ(field, 6.0);
}

} // namespace zyr
