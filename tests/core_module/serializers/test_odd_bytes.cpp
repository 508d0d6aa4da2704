// Numbers and bytes of the binary formats that are not what the reader of a field expects: refused with a line, and
// what was there before stays.
#include "core_module/serializers/serializer_test.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

class OddBytes : public SerializerTest {
protected:
    void expectLine(const char* p_line) const { EXPECT_THAT(m_application->getMessages(), testing::Contains(p_line)); }

    /// A raw payload: the record "top" with these fields, of fewer than 128 bytes.
    static std::string makeRaw(const std::string& p_fields) {
        return std::string("\x01\x0B\x03top") + static_cast<char>(p_fields.size()) + p_fields;
    }

    uint32_t m_cache = 0;
};

TEST_F(OddBytes, PassBetweenKindsWithoutLossOnly) {
    const auto fill = [](ISerializer* p_serializer) {
        p_serializer->writeFloat("five", 5, 0, 0);
        p_serializer->writeFloat("half", 0.5F, 0, 0);
        p_serializer->writeDouble("tenth", 0.1, 0, 0);
        p_serializer->writeDouble("huge", 0x1p64, 0, 0);
        p_serializer->writeUInt64("large", 0x20000000000001, 0, 0, nullptr);
        p_serializer->writeInt64("least", INT64_MIN, 0, 0, nullptr);
        p_serializer->writeUInt32("two", 2, 0, 0, nullptr);
    };
    for (const char* prefix : {"Raw", "Zbf"}) {
        read(prefix, write(prefix, fill), [&](IDeserializer* p_deserializer) {
            int32_t number = 1;
            uint64_t large = 1;
            float single = 1;
            double real = 1;
            bool_t flag = 0;
            EXPECT_TRUE(p_deserializer->readInt32("five", m_cache, number, nullptr));
            EXPECT_EQ(number, 5);
            EXPECT_FALSE(p_deserializer->readInt32("half", m_cache, number, nullptr));
            EXPECT_FALSE(p_deserializer->readFloat("tenth", m_cache, single, nullptr));
            EXPECT_FALSE(p_deserializer->readUInt64("huge", m_cache, large, nullptr));
            EXPECT_FALSE(p_deserializer->readDouble("large", m_cache, real, nullptr));
            EXPECT_FALSE(p_deserializer->readBool("two", m_cache, flag, 0));
            EXPECT_FALSE(p_deserializer->readUInt64("least", m_cache, large, nullptr));
            EXPECT_EQ(number, 5);
            EXPECT_EQ(single, 1.0F);
            EXPECT_EQ(large, 1U);
            EXPECT_EQ(real, 1.0);
            EXPECT_FALSE(flag);
            EXPECT_TRUE(p_deserializer->readDouble("least", m_cache, real, nullptr));
            EXPECT_EQ(real, -0x1p63);
        });
        expectLine("Unable to read tenth: it is stored as a double");
        expectLine("Unable to read half: it is stored as a float");
        expectLine("Unable to read large: it is stored as a uint64");
    }
}

TEST_F(OddBytes, BeyondTheirKindAreRefused) {
    const std::string large("\x80\x80\x80\x80\x20", 5); // 2^33
    const std::string fields = std::string("\x02\x01i") + large + "\x03\x01u" + large +
                               std::string("\x01\x01"
                                           "b\x02",
                                           4);
    read("Raw", makeRaw(fields), [&](IDeserializer* p_deserializer) {
        int32_t number = 1;
        uint32_t positive = 2;
        bool_t flag = 0;
        EXPECT_FALSE(p_deserializer->readInt32("i", m_cache, number, nullptr));
        EXPECT_FALSE(p_deserializer->readUInt32("u", m_cache, positive, nullptr));
        EXPECT_FALSE(p_deserializer->readBool("b", m_cache, flag, 0));
        EXPECT_EQ(number, 1);
        EXPECT_EQ(positive, 2U);
        EXPECT_FALSE(flag);
    });
    expectLine("Unable to read i: it is stored as an int32");
    expectLine("Unable to read u: it is stored as a uint32");
    expectLine("Unable to read b: it is stored as a bool");
}

TEST_F(OddBytes, OfNumbersAboveSixtyFourBitsAreRefused) {
    const std::string nine(9, '\xFF');
    for (const auto& [number, isRight] :
         {std::pair{nine + "\x01", true}, std::pair{nine + "\x02", false}, std::pair{nine + "\xFF\x01", false}}) {
        read("Raw", makeRaw("\x05\x01n" + number), [&, isRight = isRight](IDeserializer* p_deserializer) {
            uint64_t value = 1;
            EXPECT_EQ(p_deserializer->readUInt64("n", m_cache, value, nullptr) != 0, isRight);
            EXPECT_EQ(value, isRight ? UINT64_MAX : 1);
        });
    }
}

/// Each field is damaged where it is read, and where it is skipped on the way to another one.
TEST_F(OddBytes, ThatEndInsideOfAFieldAreRefused) {
    const std::vector<std::string> values = {
        std::string("\x01\x80", 2),      std::string("\x06\0\0\0", 4),        std::string("\x07\0\0\0\0\0\0\0", 8),
        std::string("\x08\0\x01", 3),    std::string("\x08\x05x", 3),         std::string("\x09\x80", 2),
        std::string("\x09\x01\x09x", 4), std::string("\x0B\x02x", 3),         std::string("\x0C\x80", 2),
        std::string("\x0C\x02k", 3),     std::string("\x0C\x02k\x01\x05", 5), std::string("\x0D\x09", 2),
        std::string("\x0E\x02\x01", 3),  std::string("\x0F\x01\0\0", 4),      std::string("\x10\x01\0\0\0\0", 6),
        std::string("\x11\x01\0\0", 4),  std::string("\x12\x02\x01", 3),      std::string("\x0E\x01\x80", 3),
        std::string("\x12\x01\x80", 3)};
    for (const std::string& value : values) {
        const std::string bytes = makeRaw(value.substr(0, 1) +
                                          "\x01"
                                          "a" +
                                          value.substr(1));
        const auto expectFailure = [&](const char* p_name, auto p_read) {
            read("Raw", bytes, [&](IDeserializer* p_deserializer) {
                EXPECT_FALSE(p_read(p_deserializer, p_name)) << "kind " << int(value[0]) << " at " << p_name;
            });
        };
        expectFailure("b", [&](IDeserializer* p_deserializer, const char* p_name) {
            bool_t flag = 0;
            return p_deserializer->readBool(p_name, m_cache, flag, 0);
        });
        expectFailure("a", [&](IDeserializer* p_deserializer, const char* p_name) {
            bool_t flag = 0;
            bool_t found = 0;
            float single = 0;
            double real = 0;
            String text;
            String* shared = nullptr;
            Array<String> texts;
            Array<float> singles;
            Array<double> reals;
            Array<uint32_t> numbers;
            switch (value[0]) {
            case 1:
                return p_deserializer->readBool(p_name, m_cache, flag, 0);
            case 6:
                return p_deserializer->readFloat(p_name, m_cache, single, nullptr);
            case 7:
                return p_deserializer->readDouble(p_name, m_cache, real, nullptr);
            case 8:
                return p_deserializer->readString(p_name, m_cache, text, nullptr);
            case 9:
                return p_deserializer->readStringRef(p_name, m_cache, shared, 0);
            case 11:
                return p_deserializer->enterGroup(p_name, found);
            case 12:
                return p_deserializer->enterObject(p_name, found);
            case 13:
                return p_deserializer->enterArray(p_name, found, 0);
            case 14:
                return p_deserializer->readStringArray(p_name, m_cache, texts, 0);
            case 15:
                return p_deserializer->readFloatArray(p_name, m_cache, singles, 0);
            case 16:
                return p_deserializer->readDoubleArray(p_name, m_cache, reals, 0);
            case 17:
                return p_deserializer->readUInt32Array(p_name, m_cache, numbers, 0);
            default:
                return p_deserializer->readEnumArray(p_name, m_cache, numbers, nullptr);
            }
        });
    }
}

TEST_F(OddBytes, OfAnUnknownKindAreRefused) {
    for (const char* head : {"\x13\x01"
                             "a\x01",
                             "\x02\x7F"}) {
        read("Raw", makeRaw(head), [&](IDeserializer* p_deserializer) {
            int32_t number = 4;
            EXPECT_FALSE(p_deserializer->readInt32("a", m_cache, number, nullptr));
            EXPECT_FALSE(p_deserializer->readInt32("b", m_cache, number, nullptr));
            EXPECT_EQ(number, 4);
        });
    }
}

TEST_F(OddBytes, OfTheZbfTableAreRefused) {
    const std::string head("\x01\x09\0\0\0\0\0\0\0", 9);
    // One structure without a name: the number of its fields, these, and the number of classes.
    EXPECT_TRUE(canInitialize("Zbf", head + std::string("\x01\x01\x01\x02"
                                                        "a\x0B\x00\x00",
                                                        8)));
    EXPECT_FALSE(canInitialize("Zbf", head + std::string("\x01\x01\x01\x02"
                                                         "a\x0B\x01\x00",
                                                         8))); // no such structure
    EXPECT_FALSE(canInitialize("Zbf", head + std::string("\x01\x01\x01\x02"
                                                         "a\x13\x00\x00",
                                                         8))); // no such kind
    EXPECT_FALSE(canInitialize("Zbf", head + std::string("\x01\x01\x01\x00"
                                                         "a\x01\x00\x00",
                                                         8))); // a name of a GUID
    EXPECT_FALSE(canInitialize("Zbf", head + std::string("\x01\x01\x01\x09"
                                                         "a\x01\x00\x00",
                                                         8))); // a name too long
    EXPECT_FALSE(canInitialize("Zbf", head + std::string("\x01\x09\x01\x02"
                                                         "a\x01\x00\x00",
                                                         8))); // a name too long
    EXPECT_FALSE(canInitialize("Zbf", head + std::string("\x01\x01\x7F\x02"
                                                         "a\x01\x00\x00",
                                                         8))); // fields missing
    EXPECT_FALSE(canInitialize("Zbf", head + std::string("\x01\x01\x01\x02"
                                                         "a\x01\x00\x00",
                                                         8))); // something follows
    EXPECT_TRUE(canInitialize("Zbf", head + std::string("\x01\x01\x00\x01\x00\x01", 6)));
    EXPECT_FALSE(canInitialize("Zbf", head + std::string("\x01\x01\x00\x01\x01\x01", 6))); // a class without structure
    EXPECT_FALSE(canInitialize("Zbf", head + std::string("\x01\x01\x00\x01\x00\x05", 6))); // its GUID too long
    EXPECT_FALSE(canInitialize("Zbf", head + std::string("\x02\x01\x00\x01\x00\x00\x01", 7))); // the second one ends
}

TEST_F(OddBytes, ThatEndInsideOfAnArrayAreRefused) {
    for (const char* elements : {"\x02", "\x02\x02R\x01", "\x02\x02R\x05"}) {
        const std::string array = elements;
        read("Raw",
             makeRaw("\x0D\x01"
                     "a" +
                     std::string(1, static_cast<char>(array.size())) + array),
             [&](IDeserializer* p_deserializer) {
                 bool_t found = 0;
                 String type;
                 if (p_deserializer->enterArray("a", found, 0)) {
                     EXPECT_FALSE(p_deserializer->enterArrayElement(1, type));
                 }
                 EXPECT_TRUE(type.isEmpty());
             });
    }
}

TEST_F(OddBytes, ThatEndInsideOfANumberOfAnotherKindAreRefused) {
    for (const std::string& field : {std::string("\x02\x01"
                                                 "a\x80",
                                                 4),
                                     std::string("\x05\x01"
                                                 "a\x80",
                                                 4),
                                     std::string("\x06\x01"
                                                 "a\0",
                                                 4),
                                     std::string("\x07\x01"
                                                 "a\0\0",
                                                 5)}) {
        read("Raw", makeRaw(field), [&](IDeserializer* p_deserializer) {
            uint32_t number = 4;
            EXPECT_FALSE(p_deserializer->readUInt32("a", m_cache, number, nullptr)) << int(field[0]);
            EXPECT_EQ(number, 4U);
        });
    }
}

TEST_F(OddBytes, OfAnElementWhoseTypeIsNotInTheTableAreRefused) {
    const std::string whole = write("Zbf", [](ISerializer* p_serializer) {
        p_serializer->beginArray("a", 1, ZYR_ARRAY_OF_RECORDS);
        p_serializer->beginArrayElement(0, "R");
        p_serializer->endArrayElement();
        p_serializer->endArray();
    });
    // Behind the version and the place of the table: top and its size, "a" and its size, the count, the type.
    const size_t place = whole.find("\x01\x03", 9);
    ASSERT_NE(place, std::string::npos);
    for (const int type : {3, 0x7F}) {
        std::string bytes = whole;
        bytes[place + 1] = static_cast<char>(type);
        read("Zbf", bytes, [&](IDeserializer* p_deserializer) {
            bool_t found = 0;
            String name("kept");
            ASSERT_TRUE(p_deserializer->enterArray("a", found, 0));
            ASSERT_TRUE(found);
            ASSERT_EQ(p_deserializer->getArraySize(), 1U);
            EXPECT_EQ(p_deserializer->enterArrayElement(0, name) != 0, type == 3);
            EXPECT_EQ(name, type == 3 ? "R" : "kept");
        });
    }
}

TEST_F(OddBytes, ThatEndInFrontOfTheClassOfASkippedObjectAreRefused) {
    std::string bytes = write("Zbf", [](ISerializer* p_serializer) { p_serializer->writeNullObject("o"); });
    ASSERT_EQ(bytes.substr(9, 4), std::string("\0\x02\0\0", 4)); // top of two bytes: the field and no class
    bytes[10] = 1;
    read("Zbf", bytes, [&](IDeserializer* p_deserializer) {
        bool_t flag = 1;
        EXPECT_FALSE(p_deserializer->readBool("x", m_cache, flag, 0));
        EXPECT_TRUE(flag);
    });
}

} // namespace
} // namespace zyr
