#include "support/log_capture.h"
#include "support/zyr_stub_object.h"
#include "variable/held_rows.h"

namespace zyr {
namespace {

using test::c_isPointer;
using test::c_isRecord;
using test::forEachHeldRow;
using test::makeSample;
using test::messageType;
using test::serves;
using test::setSample;

/// The one line that was caught, and that it is one of this library's warnings.
std::string onlyMessage(const LogCapture& p_capture) {
    const std::vector<CapturedLine> lines = p_capture.getLines();
    if (lines.size() != 1 || lines[0].module != "common" || lines[0].level != 2 || lines[0].echo) {
        return std::to_string(lines.size()) + " lines";
    }
    return lines[0].message;
}

std::string onlyFunction(const LogCapture& p_capture) {
    return p_capture.getLines().size() == 1 ? p_capture.getLines()[0].function : "";
}

/// A value of the number 1 to 81, and beyond: types that hold nothing too.
struct AnyValue : VariableValue {
    explicit AnyValue(uint32_t p_type) : VariableValue(static_cast<VariableTypeEnum>(p_type)) {}
};

} // namespace

TEST(VariableValueAccessors, StartWithTheDefaultOfTheType) {
    forEachHeldRow([]<class Row>(Row) {
        LogCapture capture;
        VariableValue value(Row::c_row);
        EXPECT_TRUE(Row::get(value) == typename Row::Type());
        EXPECT_EQ(value.getType(), Row::c_row);
        EXPECT_EQ(value.getName(), "");
        EXPECT_EQ(value.isBorrowedObject(), 1);
        EXPECT_TRUE(capture.getLines().empty());
    });
}

TEST(VariableValueAccessors, GiveWhatWasSet) {
    forEachHeldRow([]<class Row>(Row) {
        LogCapture capture;
        VariableValue value(Row::c_row);
        const typename Row::Type sample = makeSample<typename Row::Type>();
        EXPECT_FALSE(Row::get(value) == sample);
        Row::set(value, sample);
        EXPECT_TRUE(Row::get(value) == sample);
        EXPECT_TRUE(capture.getLines().empty());
    });
}

TEST(VariableValueAccessors, GiveTheRecordItself) {
    forEachHeldRow([]<class Row>(Row) {
        if constexpr (c_isRecord<Row>) {
            LogCapture capture;
            VariableValue value(Row::c_row);
            EXPECT_EQ(Row::getMutable(value), &Row::get(value));
            *Row::getMutable(value) = makeSample<typename Row::Type>();
            EXPECT_TRUE(Row::get(value) == makeSample<typename Row::Type>());
            EXPECT_TRUE(capture.getLines().empty());
        }
    });
}

TEST(VariableValueAccessors, LogAndGiveTheDefaultOnEveryOtherType) {
    forEachHeldRow([]<class Row>(Row) {
        for (uint32_t type = 1; type < 84; ++type) {
            SCOPED_TRACE(type);
            if (serves<Row>(type)) {
                continue;
            }
            AnyValue value(type);
            LogCapture capture;
            EXPECT_TRUE(Row::get(value) == typename Row::Type());
            EXPECT_EQ(onlyMessage(capture), "Value is not a " + messageType<Row>());
        }
    });
}

TEST(VariableValueAccessors, LogAndStoreNothingOnEveryOtherType) {
    forEachHeldRow([]<class Row>(Row) {
        for (uint32_t type = 1; type < 84; ++type) {
            SCOPED_TRACE(type);
            if (serves<Row>(type)) {
                continue;
            }
            AnyValue value(type);
            unsigned char before[sizeof(VariableValue)];
            memcpy(before, static_cast<void*>(&value), sizeof(before));
            LogCapture capture;
            setSample<Row>(value);
            EXPECT_EQ(onlyMessage(capture), "Value is not a " + messageType<Row>());
            EXPECT_EQ(memcmp(before, static_cast<void*>(&value), sizeof(before)), 0);
        }
    });
}

TEST(VariableValueAccessors, NameThemselvesInTheLine) {
    forEachHeldRow([]<class Row>(Row) {
        AnyValue other(Row::c_row == ZYR_VARIABLE_DOUBLE ? ZYR_VARIABLE_FLOAT : ZYR_VARIABLE_DOUBLE);
        const std::string suffix = std::string(Row::c_suffix) + "(";
        {
            LogCapture capture;
            Row::get(other);
            EXPECT_NE(onlyFunction(capture).find(" zyr::VariableValue::getValue" + suffix), std::string::npos);
        }
        {
            LogCapture capture;
            setSample<Row>(other);
            EXPECT_EQ(onlyFunction(capture).find("virtual void zyr::VariableValue::setValue" + suffix), 0u);
        }
        if constexpr (c_isRecord<Row>) {
            LogCapture capture;
            Row::getMutable(other);
            EXPECT_NE(onlyFunction(capture).find(" zyr::VariableValue::getMutableValue" + suffix), std::string::npos);
        }
    });
}

TEST(VariableValueAccessors, CarryTheirWholeSignature) {
    AnyValue value(ZYR_VARIABLE_STRING_REFERENCE);
    LogCapture capture;
    value.getValueFloat();
    value.setValueBool(1);
    value.getMutableValueVector2Int32();
    value.setValueRectDouble(Rect<double>());
    value.getValueObjectRef();
    ASSERT_EQ(capture.getLines().size(), 5u);
    EXPECT_EQ(capture.getLines()[0].function, "virtual float zyr::VariableValue::getValueFloat() const");
    EXPECT_EQ(capture.getLines()[1].function, "virtual void zyr::VariableValue::setValueBool(bool_t)");
    EXPECT_EQ(capture.getLines()[2].function,
              "virtual zyr::Vector2<int>& zyr::VariableValue::getMutableValueVector2Int32()");
    EXPECT_EQ(capture.getLines()[3].function,
              "virtual void zyr::VariableValue::setValueRectDouble(const zyr::Rect<double>&)");
    EXPECT_EQ(capture.getLines()[4].function, "virtual zyr::IObject* zyr::VariableValue::getValueObjectRef() const");
}

TEST(VariableValueAccessors, GetFloatOfADoubleLogsAndGivesZero) {
    VariableValue value(ZYR_VARIABLE_DOUBLE);
    value.setValueDouble(2.5);
    LogCapture capture;
    EXPECT_EQ(value.getValueFloat(), 0.0f);
    EXPECT_EQ(onlyMessage(capture), "Value is not a float");
}

TEST(VariableValueAccessors, AFailingMutableGetterGivesOneObjectThatKeepsWhatIsWritten) {
    forEachHeldRow([]<class Row>(Row) {
        if constexpr (c_isRecord<Row>) {
            LogCapture capture;
            AnyValue value(ZYR_VARIABLE_DOUBLE);
            AnyValue other(ZYR_VARIABLE_FLOAT);
            typename Row::Type* first = Row::getMutable(value);
            *first = makeSample<typename Row::Type>();
            EXPECT_EQ(Row::getMutable(other), first);
            EXPECT_TRUE(*Row::getMutable(other) == makeSample<typename Row::Type>());
            EXPECT_NE(&Row::get(value), first);
            EXPECT_EQ(&Row::get(value), &Row::get(other));
            EXPECT_TRUE(Row::get(value) == typename Row::Type());
            *first = typename Row::Type();
            EXPECT_EQ(capture.getLines().front().message, "Value is not a " + messageType<Row>());
        }
    });
}

TEST(VariableValueAccessors, OfTheTruthValueTakeABytesValueToo) {
    VariableValue value(ZYR_VARIABLE_UINT8);
    LogCapture capture;
    value.setValueUInt8(200);
    EXPECT_EQ(value.getValueBool(), 200);
    value.setValueBool(1);
    EXPECT_EQ(value.getValueUInt8(), 1);
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(VariableValueAccessors, OfTheByteRefuseATruthValue) {
    VariableValue value(ZYR_VARIABLE_BOOL);
    LogCapture capture;
    EXPECT_EQ(value.getValueUInt8(), 0);
    EXPECT_EQ(onlyMessage(capture), "Value is not a uint8_t");
}

TEST(VariableValueAccessors, OfInt32TakeAnEnumerationToo) {
    VariableValue value(ZYR_VARIABLE_ENUM);
    LogCapture capture;
    value.setValueInt32(-7);
    EXPECT_EQ(value.getValueInt32(), -7);
    EXPECT_TRUE(capture.getLines().empty());
    EXPECT_EQ(value.getValueUInt32(), 0u);
    EXPECT_EQ(onlyMessage(capture), "Value is not a uint32_t");
}

TEST(VariableValueAccessors, OfAPointerTakeAReferenceAndLeaveTheOneBefore) {
    test::StubObject<IObject>* object = new test::StubObject<IObject>;
    {
        VariableValue value(ZYR_VARIABLE_OBJECT_REFERENCE);
        value.setValueObjectRef(object);
        EXPECT_EQ(object->getRefCount(), 1u);
        value.setValueObjectRef(object);
        EXPECT_EQ(object->getRefCount(), 2u);
        EXPECT_EQ(value.getValueObjectRef(), object);
        EXPECT_EQ(object->getRefCount(), 2u);
        value.setValueObjectRef(nullptr);
        EXPECT_EQ(value.getValueObjectRef(), nullptr);
    }
    EXPECT_EQ(object->getRefCount(), 2u);
    object->release();
    object->release();
    object->release();
}

TEST(VariableValueAccessors, OfAStringReferenceShareTheString) {
    String* string = new String("shared");
    VariableValue value(ZYR_VARIABLE_STRING_REFERENCE);
    value.setValueStringRef(string);
    string->release();
    EXPECT_EQ(*value.getValueStringRef(), "shared");
    value.setValueStringRef(nullptr);
    EXPECT_EQ(value.getValueStringRef(), nullptr);
    string->release(); // The value's own reference, which it has left.
}

TEST(VariableValueAccessors, ChangeTheBorrowedMark) {
    VariableValue value(ZYR_VARIABLE_FLOAT);
    value.setBorrowedObject(0);
    EXPECT_EQ(value.isBorrowedObject(), 0);
    value.clear();
    EXPECT_EQ(value.isBorrowedObject(), 1);
}

} // namespace zyr
