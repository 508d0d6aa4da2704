#include "support/log_capture.h"
#include "support/zyr_stub_object.h"
#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/variable/zyr_variable_reference.h"
#include "zyr_common/variable/zyr_variable_value.h"

#include <gtest/gtest.h>

namespace zyr {

namespace {

struct Reference {
    Reference(VariableTypeEnum p_type, void* p_field) : m_reference(new VariableReference(p_type, p_field)) {}
    ~Reference() { m_reference->release(); }
    VariableReference* operator->() { return m_reference; }

    VariableReference* m_reference;
};

class CountingObject : public test::StubObject<IObject> {
public:
    explicit CountingObject(int& p_alive) : m_alive(p_alive) { ++m_alive; }
    ~CountingObject() override { --m_alive; }
    IObject* clone() const override {
        ++m_clones;
        return new CountingObject(m_alive);
    }

    mutable int m_clones = 0;
    int& m_alive;
};

std::string getOnlyMessage(const LogCapture& p_capture) {
    return p_capture.getLines().size() == 1 ? p_capture.getLines()[0].message : "";
}

} // namespace

TEST(TextConversions, AssignToAText) {
    String field("before");
    Reference reference(ZYR_VARIABLE_STRING, &field);
    EXPECT_EQ(reference->changeValueString("after"), 1);
    EXPECT_EQ(field, "after");
}

TEST(TextConversions, NeverConvert) {
    for (uint32_t type = 0; type < 84; ++type) {
        if (type == ZYR_VARIABLE_STRING) {
            continue;
        }
        uint64_t field = 5;
        Reference reference(VariableTypeEnum(type), &field);
        LogCapture capture;
        EXPECT_EQ(reference->changeValueString("1"), 0);
        EXPECT_EQ(getOnlyMessage(capture),
                  std::string("Unable to convert String to type:") + zyr_getVariableTypeString(VariableTypeEnum(type)));
        EXPECT_EQ(field, 5u);
    }
}

TEST(ColourConversions, BetweenColoursWithoutAlphaConvertEachChannel) {
    ColorRGB<double> field;
    Reference reference(ZYR_VARIABLE_COLOR_RGB_DOUBLE, &field);
    EXPECT_EQ(reference->changeValueColorRGBFloat(ColorRGB<float>(0.1f, 0.5f, 1)), 1);
    EXPECT_EQ(field.r, static_cast<double>(0.1f));
    EXPECT_EQ(field.g, 0.5);
    EXPECT_EQ(field.b, 1.0);
    ColorRGB<float> narrow;
    Reference narrowReference(ZYR_VARIABLE_COLOR_RGB_FLOAT, &narrow);
    EXPECT_EQ(narrowReference->changeValueColorRGBDouble(ColorRGB<double>(0.1, 2, -3)), 1);
    EXPECT_EQ(narrow.r, 0.1f);
    EXPECT_EQ(narrow.b, -3.0f);
}

TEST(ColourConversions, SetAlphaToOneWhereTheSourceHasNone) {
    ColorRGBA<float> field;
    Reference reference(ZYR_VARIABLE_COLOR_RGBA_FLOAT, &field);
    EXPECT_EQ(reference->changeValueColorRGBFloat(ColorRGB<float>(1, 2, 3)), 1);
    EXPECT_EQ(field, (ColorRGBA<float>(1, 2, 3, 1)));
    EXPECT_EQ(reference->changeValueColorRGBDouble(ColorRGB<double>(4, 5, 6)), 1);
    EXPECT_EQ(field, (ColorRGBA<float>(4, 5, 6, 1)));
    ColorRGBA<double> wide;
    Reference wideReference(ZYR_VARIABLE_COLOR_RGBA_DOUBLE, &wide);
    EXPECT_EQ(wideReference->changeValueColorRGBFloat(ColorRGB<float>(1, 2, 3)), 1);
    EXPECT_EQ(wide, (ColorRGBA<double>(1, 2, 3, 1)));
    EXPECT_EQ(wideReference->changeValueColorRGBDouble(ColorRGB<double>(0.1, 2, 3)), 1);
    EXPECT_EQ(wide, (ColorRGBA<double>(0.1, 2, 3, 1)));
}

TEST(ColourConversions, DropAlphaWhereTheTargetHasNone) {
    ColorRGB<float> field;
    Reference reference(ZYR_VARIABLE_COLOR_RGB_FLOAT, &field);
    EXPECT_EQ(reference->changeValueColorRGBAFloat(ColorRGBA<float>(1, 2, 3, 4)), 1);
    EXPECT_EQ(field, (ColorRGB<float>(1, 2, 3)));
    EXPECT_EQ(reference->changeValueColorRGBADouble(ColorRGBA<double>(5, 6, 7, 8)), 1);
    EXPECT_EQ(field, (ColorRGB<float>(5, 6, 7)));
    ColorRGB<double> wide;
    Reference wideReference(ZYR_VARIABLE_COLOR_RGB_DOUBLE, &wide);
    EXPECT_EQ(wideReference->changeValueColorRGBAFloat(ColorRGBA<float>(1, 2, 3, 4)), 1);
    EXPECT_EQ(wide, (ColorRGB<double>(1, 2, 3)));
    EXPECT_EQ(wideReference->changeValueColorRGBADouble(ColorRGBA<double>(0.1, 6, 7, 8)), 1);
    EXPECT_EQ(wide, (ColorRGB<double>(0.1, 6, 7)));
}

TEST(ColourConversions, BetweenColoursWithAlphaKeepAlpha) {
    ColorRGBA<double> field;
    Reference reference(ZYR_VARIABLE_COLOR_RGBA_DOUBLE, &field);
    EXPECT_EQ(reference->changeValueColorRGBAFloat(ColorRGBA<float>(1, 2, 3, 0.25f)), 1);
    EXPECT_EQ(field, (ColorRGBA<double>(1, 2, 3, 0.25)));
    EXPECT_EQ(reference->changeValueColorRGBADouble(ColorRGBA<double>(1, 2, 3, 0.1)), 1);
    EXPECT_EQ(field.a, 0.1);
    ColorRGBA<float> narrow;
    Reference narrowReference(ZYR_VARIABLE_COLOR_RGBA_FLOAT, &narrow);
    EXPECT_EQ(narrowReference->changeValueColorRGBADouble(ColorRGBA<double>(1, 2, 3, 0.1)), 1);
    EXPECT_EQ(narrow.a, 0.1f);
    EXPECT_EQ(narrowReference->changeValueColorRGBAFloat(ColorRGBA<float>(1, 2, 3, 4)), 1);
    EXPECT_EQ(narrow.a, 4.0f);
}

TEST(ColourConversions, RefuseEverythingElse) {
    const std::pair<const char*, bool_t (*)(VariableReference*)> sources[] = {
        {"ColorRGB<float>", [](VariableReference* p_r) { return p_r->changeValueColorRGBFloat(ColorRGB<float>()); }},
        {"ColorRGB<double>", [](VariableReference* p_r) { return p_r->changeValueColorRGBDouble(ColorRGB<double>()); }},
        {"ColorRGBA<float>", [](VariableReference* p_r) { return p_r->changeValueColorRGBAFloat(ColorRGBA<float>()); }},
        {"ColorRGBA<double>",
         [](VariableReference* p_r) { return p_r->changeValueColorRGBADouble(ColorRGBA<double>()); }},
    };
    for (auto [name, change] : sources) {
        for (uint32_t type = 0; type < 84; ++type) {
            if (type >= 71 && type <= 74) {
                continue;
            }
            uint64_t field[8] = {5};
            Reference reference(VariableTypeEnum(type), field);
            LogCapture capture;
            EXPECT_EQ(change(reference.m_reference), 0);
            EXPECT_EQ(getOnlyMessage(capture), std::string("Unable to convert ") + name +
                                                   " to type:" + zyr_getVariableTypeString(VariableTypeEnum(type)));
            EXPECT_EQ(field[0], 5u);
        }
    }
}

TEST(ReferenceConversions, AStringReferenceHoldsACountedString) {
    String* field = nullptr;
    String* string = new String("held");
    Reference reference(ZYR_VARIABLE_STRING_REFERENCE, &field);
    LogCapture capture;
    EXPECT_EQ(reference->changeValueStringReference(string), 1);
    EXPECT_EQ(field, string);
    string->release();
    EXPECT_EQ(*field, "held");
    EXPECT_EQ(reference->changeValueStringReference(nullptr), 1);
    EXPECT_EQ(field, nullptr);
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(ReferenceConversions, AStringReferenceOfAnotherTypeLogsAndWritesAnyway) {
    alignas(8) String* field = nullptr;
    String* string = new String("held");
    Reference reference(ZYR_VARIABLE_UINT64, &field);
    LogCapture capture;
    EXPECT_EQ(reference->changeValueStringReference(string), 1);
    EXPECT_EQ(getOnlyMessage(capture), "Unable to convert String * to type:uint64_t");
    EXPECT_EQ(field, string);
    field->release();
    field->release();
}

TEST(ReferenceConversions, AnObjectReferenceTakesAReference) {
    int alive = 0;
    IObject* field = nullptr;
    CountingObject* object = new CountingObject(alive);
    Reference reference(ZYR_VARIABLE_OBJECT_REFERENCE, &field);
    LogCapture capture;
    EXPECT_EQ(reference->changeValueObjectReference(object, 0), 1);
    EXPECT_EQ(field, object);
    EXPECT_EQ(object->getRefCount(), 1u);
    EXPECT_EQ(object->m_clones, 0);
    EXPECT_EQ(reference->changeValueObjectReference(nullptr, 0), 1);
    EXPECT_EQ(field, nullptr);
    EXPECT_EQ(object->getRefCount(), 0u);
    object->release();
    EXPECT_EQ(alive, 0);
    EXPECT_TRUE(capture.getLines().empty());
}

TEST(ReferenceConversions, AnObjectReferenceCanTakeAClone) {
    int alive = 0;
    IObject* field = nullptr;
    CountingObject* object = new CountingObject(alive);
    Reference reference(ZYR_VARIABLE_OBJECT_REFERENCE, &field);
    EXPECT_EQ(reference->changeValueObjectReference(object, 1), 1);
    EXPECT_NE(field, object);
    EXPECT_EQ(object->m_clones, 1);
    EXPECT_EQ(object->getRefCount(), 0u);
    EXPECT_EQ(alive, 2);
    EXPECT_EQ(reference->changeValueObjectReference(nullptr, 1), 1);
    EXPECT_EQ(alive, 1);
    object->release();
}

TEST(ReferenceConversions, AnObjectReferenceOfAnotherTypeLogsAndWritesAnyway) {
    int alive = 0;
    IObject* field = nullptr;
    CountingObject* object = new CountingObject(alive);
    for (uint32_t type : {0u, 6u, 75u, 77u, 81u}) {
        Reference reference(VariableTypeEnum(type), &field);
        LogCapture capture;
        EXPECT_EQ(reference->changeValueObjectReference(object, 0), 1);
        EXPECT_EQ(getOnlyMessage(capture), std::string("Unable to convert IObject * to type:") +
                                               zyr_getVariableTypeString(VariableTypeEnum(type)));
        EXPECT_EQ(field, object);
    }
    field->release();
    object->release();
    EXPECT_EQ(alive, 0);
}

TEST(ReferenceConversions, TakeWhatTheFieldAloneHolds) {
    int alive = 0;
    IObject* object = new CountingObject(alive);
    String* string = new String("held");
    Reference objectReference(ZYR_VARIABLE_OBJECT_REFERENCE, &object);
    Reference stringReference(ZYR_VARIABLE_STRING_REFERENCE, &string);
    EXPECT_EQ(objectReference->changeValueObjectReference(object, 0), 1);
    EXPECT_EQ(object->getRefCount(), 0u);
    EXPECT_EQ(objectReference->changeValueObjectReference(object, 1), 1);
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(stringReference->changeValueStringReference(string), 1);
    EXPECT_EQ(*string, "held");
    object->release();
    string->release();
}

TEST(ReferenceConversions, RowsBehindTheNamedOnesPrintAsUnknown) {
    int32_t field = 0;
    Reference reference(ZYR_VARIABLE_OBJECT_REFERENCE, &field);
    LogCapture capture;
    EXPECT_EQ(reference->changeValueInt32(1), 0);
    EXPECT_EQ(getOnlyMessage(capture), "Unable to convert int32_t to type:Unknown");
}

TEST(VariableReference, ATruthValueIsPassedOnAsZeroOrOneWhateverByteItHolds) {
    uint8_t byte = 9;
    Reference(ZYR_VARIABLE_UINT8, &byte)->changeValueBool(5);
    EXPECT_EQ(byte, 1);
    Reference(ZYR_VARIABLE_BOOL, &byte)->changeValueBool(200);
    EXPECT_EQ(byte, 1);
    double real = 9;
    Reference(ZYR_VARIABLE_DOUBLE, &real)->changeValueBool(255);
    EXPECT_EQ(real, 1.0);
    int64_t number = 9;
    VariableValue truth(ZYR_VARIABLE_BOOL);
    truth.setValueBool(200);
    EXPECT_TRUE(zyr_applyVariableValue(&truth, new VariableReference(ZYR_VARIABLE_INT64, &number)));
    EXPECT_EQ(number, 1);
    truth.setValueBool(0);
    EXPECT_TRUE(zyr_applyVariableValue(&truth, new VariableReference(ZYR_VARIABLE_INT64, &number)));
    EXPECT_EQ(number, 0);
}

} // namespace zyr
