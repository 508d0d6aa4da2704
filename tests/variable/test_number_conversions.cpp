#include "support/log_capture.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <cmath>
#include <cstring>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace zyr {

namespace {

/// One line of tests/data/variable/conversions.txt.
struct ConversionCase {
    std::string m_line;
    std::string m_source;
    std::string m_value;
    std::string m_expected[11];
};

std::vector<ConversionCase> loadCases() {
    std::vector<ConversionCase> cases;
    std::ifstream file(ZYR_TEST_DATA "/variable/conversions.txt");
    std::string line;
    while (std::getline(file, line)) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        ConversionCase one;
        one.m_line = line;
        std::istringstream words(line);
        words >> one.m_source >> one.m_value;
        for (std::string& word : one.m_expected) {
            words >> word;
        }
        cases.push_back(one);
    }
    return cases;
}

bool_t change(VariableReference* p_reference, const std::string& p_source, const std::string& p_value) {
    int64_t number = strtoll(p_value.c_str(), nullptr, 10);
    double real = strtod(p_value.c_str(), nullptr);
    const std::map<std::string, std::function<bool_t()>> calls = {
        {"Bool", [&] { return p_reference->changeValueBool(static_cast<bool_t>(number)); }},
        {"Int8", [&] { return p_reference->changeValueInt8(static_cast<int8_t>(number)); }},
        {"UInt8", [&] { return p_reference->changeValueUInt8(static_cast<uint8_t>(number)); }},
        {"Int16", [&] { return p_reference->changeValueInt16(static_cast<int16_t>(number)); }},
        {"UInt16", [&] { return p_reference->changeValueUInt16(static_cast<uint16_t>(number)); }},
        {"Int32", [&] { return p_reference->changeValueInt32(static_cast<int32_t>(number)); }},
        {"UInt32", [&] { return p_reference->changeValueUInt32(static_cast<uint32_t>(number)); }},
        {"Int64", [&] { return p_reference->changeValueInt64(number); }},
        {"UInt64", [&] { return p_reference->changeValueUInt64(strtoull(p_value.c_str(), nullptr, 10)); }},
        {"Float", [&] { return p_reference->changeValueFloat(static_cast<float>(real)); }},
        {"Double", [&] { return p_reference->changeValueDouble(real); }},
    };
    return calls.at(p_source)();
}

/// A field that stands at an odd address, with bytes around it that must stay.
struct Field {
    unsigned char m_bytes[16];

    Field() { memset(m_bytes, 0xA5, sizeof(m_bytes)); }
    void* getAddress() { return m_bytes + 3; }
    template <typename T> T get() const {
        T value;
        memcpy(&value, m_bytes + 3, sizeof(value));
        return value;
    }
    bool isUntouchedAround(size_t p_size) const {
        for (size_t i = 0; i < sizeof(m_bytes); ++i) {
            if ((i < 3 || i >= 3 + p_size) && m_bytes[i] != 0xA5) {
                return false;
            }
        }
        return true;
    }
};

template <typename T>
void expectField(const ConversionCase& p_case, VariableTypeEnum p_type, const std::string& p_expected) {
    SCOPED_TRACE(p_case.m_line + " -> " + std::to_string(p_type));
    Field field;
    VariableReference* reference = new VariableReference(p_type, field.getAddress());
    EXPECT_EQ(change(reference, p_case.m_source, p_case.m_value), 1);
    reference->release();
    T value = field.get<T>();
    if constexpr (std::is_floating_point_v<T>) {
        T expected = static_cast<T>(strtod(p_expected.c_str(), nullptr));
        if (std::isnan(expected)) {
            EXPECT_TRUE(std::isnan(value));
        } else {
            EXPECT_EQ(value, expected);
            EXPECT_EQ(std::signbit(value), std::signbit(expected));
        }
    } else {
        std::ostringstream text;
        text << +value;
        EXPECT_EQ(text.str(), p_expected);
    }
    EXPECT_TRUE(field.isUntouchedAround(sizeof(T)));
}

} // namespace

TEST(NumberConversions, FollowTheTable) {
    std::vector<ConversionCase> cases = loadCases();
    ASSERT_GE(cases.size(), 120u);
    for (const ConversionCase& one : cases) {
        const std::string* expected = one.m_expected;
        expectField<bool_t>(one, ZYR_VARIABLE_BOOL, expected[0]);
        expectField<int8_t>(one, ZYR_VARIABLE_INT8, expected[1]);
        expectField<uint8_t>(one, ZYR_VARIABLE_UINT8, expected[2]);
        expectField<int16_t>(one, ZYR_VARIABLE_INT16, expected[3]);
        expectField<uint16_t>(one, ZYR_VARIABLE_UINT16, expected[4]);
        expectField<int32_t>(one, ZYR_VARIABLE_INT32, expected[5]);
        expectField<int32_t>(one, ZYR_VARIABLE_ENUM, expected[5]);
        expectField<uint32_t>(one, ZYR_VARIABLE_UINT32, expected[6]);
        expectField<int64_t>(one, ZYR_VARIABLE_INT64, expected[7]);
        expectField<uint64_t>(one, ZYR_VARIABLE_UINT64, expected[8]);
        expectField<float>(one, ZYR_VARIABLE_FLOAT, expected[9]);
        expectField<double>(one, ZYR_VARIABLE_DOUBLE, expected[10]);
    }
}

TEST(NumberConversions, CoverEverySourceType) {
    std::map<std::string, int> sources;
    for (const ConversionCase& one : loadCases()) {
        ++sources[one.m_source];
    }
    EXPECT_EQ(sources.size(), 11u);
}

TEST(NumberConversions, RefuseEveryOtherTargetWithTheirOwnName) {
    const std::pair<const char*, const char*> names[] = {
        {"Bool", "bool_t"},     {"Int8", "int8_t"},   {"UInt8", "uint8_t"},   {"Int16", "int16_t"},
        {"UInt16", "uint16_t"}, {"Int32", "int32_t"}, {"UInt32", "uint32_t"}, {"Int64", "int64_t"},
        {"UInt64", "uint64_t"}, {"Float", "float"},   {"Double", "double"},
    };
    for (auto [source, name] : names) {
        for (uint32_t type = 0; type < 84; ++type) {
            if ((type >= 1 && type <= 11) || type == 81) {
                continue;
            }
            Field field;
            VariableReference* reference = new VariableReference(VariableTypeEnum(type), field.getAddress());
            LogCapture capture;
            EXPECT_EQ(change(reference, source, "1"), 0);
            ASSERT_EQ(capture.getLines().size(), 1u);
            CapturedLine line = capture.getLines()[0];
            EXPECT_EQ(line.module, "common");
            EXPECT_FALSE(line.echo);
            EXPECT_EQ(line.level, 2);
            EXPECT_EQ(line.message, std::string("Unable to convert ") + name +
                                        " to type:" + zyr_getVariableTypeString(VariableTypeEnum(type)));
            EXPECT_EQ(line.function,
                      std::string("virtual bool_t zyr::VariableReference::changeValue") + source + "(" + name + ")");
            EXPECT_TRUE(field.isUntouchedAround(0));
            reference->release();
        }
    }
}

} // namespace zyr
