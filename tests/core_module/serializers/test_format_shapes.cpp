// Values at their limits, and what becomes of fields that are missing, unknown, moved or of another type.
#include "core_module/serializers/serializer_test.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace zyr {
namespace {

template <typename T> uint64_t bitsOf(T p_value) {
    uint64_t bits = 0;
    memcpy(&bits, &p_value, sizeof(p_value));
    return bits;
}

bool_t convertFruit(String& p_text, uint32_t& p_number, bool_t p_textToNumber) {
    if (p_textToNumber) {
        if (p_text != "apple") {
            return 0;
        }
        p_number = 7;
        return 1;
    }
    if (p_number != 7) {
        return 0;
    }
    p_text = "apple";
    return 1;
}

uint32_t g_cache = 0;

TEST_P(EachFormat, KeepsIntegersAtTheirLimits) {
    const std::string bytes = write([](ISerializer* p_serializer) {
        EXPECT_TRUE(p_serializer->writeInt32("a", INT32_MIN, 0, 1, nullptr));
        EXPECT_TRUE(p_serializer->writeInt64("b", INT64_MIN, 0, 1, nullptr));
        EXPECT_TRUE(p_serializer->writeInt64("c", INT64_MAX, 0, 1, nullptr));
        EXPECT_TRUE(p_serializer->writeUInt32("d", UINT32_MAX, 0, 1, nullptr));
        EXPECT_TRUE(p_serializer->writeUInt64("e", UINT64_MAX, 0, 1, nullptr));
    });
    read(bytes, [](IDeserializer* p_deserializer) {
        int32_t a = 0;
        int64_t b = 0;
        int64_t c = 0;
        uint32_t d = 0;
        uint64_t e = 0;
        EXPECT_TRUE(p_deserializer->readInt32("a", g_cache, a, nullptr));
        EXPECT_TRUE(p_deserializer->readInt64("b", g_cache, b, nullptr));
        EXPECT_TRUE(p_deserializer->readInt64("c", g_cache, c, nullptr));
        EXPECT_TRUE(p_deserializer->readUInt32("d", g_cache, d, nullptr));
        EXPECT_TRUE(p_deserializer->readUInt64("e", g_cache, e, nullptr));
        EXPECT_EQ(a, INT32_MIN);
        EXPECT_EQ(b, INT64_MIN);
        EXPECT_EQ(c, INT64_MAX);
        EXPECT_EQ(d, UINT32_MAX);
        EXPECT_EQ(e, UINT64_MAX);
    });
}

TEST_P(EachFormat, KeepsTheBitsOfRealNumbers) {
    const std::vector<double> numbers = {0.0,
                                         -0.0,
                                         0.1,
                                         -1234.5,
                                         1e300,
                                         5e-324,
                                         1.0 / 3,
                                         2.0 / 3,
                                         -2.0 / 3,
                                         0.00005,
                                         9007199254740993.0,
                                         std::numeric_limits<double>::infinity(),
                                         -std::numeric_limits<double>::infinity(),
                                         std::numeric_limits<double>::quiet_NaN(),
                                         std::nan("12345")};
    const std::string bytes = write([&](ISerializer* p_serializer) {
        for (size_t i = 0; i < numbers.size(); i++) {
            const String name(("d" + std::to_string(i)).c_str());
            EXPECT_TRUE(p_serializer->writeDouble(name, numbers[i], 1, 0));
            EXPECT_TRUE(p_serializer->writeFloat(name + "f", static_cast<float>(numbers[i]), 1, 0));
        }
        EXPECT_TRUE(p_serializer->writeDoubleArray("all", static_cast<uint32_t>(numbers.size()), numbers.data(), 0, 3));
    });
    read(bytes, [&](IDeserializer* p_deserializer) {
        Array<double> all;
        EXPECT_TRUE(p_deserializer->readDoubleArray("all", g_cache, all, 0));
        ASSERT_EQ(all.getSize(), numbers.size());
        for (size_t i = 0; i < numbers.size(); i++) {
            const String name(("d" + std::to_string(i)).c_str());
            double number = 42;
            float single = 42;
            EXPECT_TRUE(p_deserializer->readDouble(name, g_cache, number, nullptr));
            EXPECT_TRUE(p_deserializer->readFloat(name + "f", g_cache, single, nullptr));
            EXPECT_EQ(bitsOf(number), bitsOf(numbers[i])) << numbers[i];
            EXPECT_EQ(bitsOf(single), bitsOf(static_cast<float>(numbers[i]))) << numbers[i];
            EXPECT_EQ(bitsOf(all[i]), bitsOf(numbers[i]));
        }
    });
}

TEST_P(EachFormat, KeepsTextsOfAnyBytes) {
    const std::vector<std::string> texts = {"",
                                            "plain",
                                            "\"quoted\" & <tagged> 'and' more",
                                            " blanks at both ends ",
                                            "tab\tline\nreturn\rboth\r\n",
                                            "gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80",
                                            "not \xFF UTF-8",
                                            std::string("with \0 zero", 11),
                                            "\x01\x1F control",
                                            "\xEF\xBF\xBE",
                                            "\\bytes:00",
                                            "\\ back",
                                            "]]> <!-- --> <?x?> &amp;",
                                            "999bc88e-a780-4b21-a85c-eef13c553370",
                                            "999BC88E-a780-4b21-a85c-eef13c553370",
                                            std::string(5000, 'x')};
    const std::string bytes = write([&](ISerializer* p_serializer) {
        std::vector<String> items;
        for (size_t i = 0; i < texts.size(); i++) {
            items.emplace_back(texts[i]);
            const String name(("t" + std::to_string(i)).c_str());
            EXPECT_TRUE(p_serializer->writeString(name, items.back(), 1, 0));
        }
        for (size_t i = 0; i < texts.size(); i++) {
            EXPECT_TRUE(p_serializer->writeString(("e" + std::to_string(i)).c_str(), items[i], 0, 0));
        }
        EXPECT_TRUE(p_serializer->writeStringArray("all", static_cast<uint32_t>(items.size()), items.data(), 0, 0));
    });
    read(bytes, [&](IDeserializer* p_deserializer) {
        Array<String> all;
        EXPECT_TRUE(p_deserializer->readStringArray("all", g_cache, all, 0));
        ASSERT_EQ(all.getSize(), texts.size());
        for (size_t i = 0; i < texts.size(); i++) {
            String text("other");
            EXPECT_TRUE(p_deserializer->readString(("t" + std::to_string(i)).c_str(), g_cache, text, nullptr));
            EXPECT_EQ(std::string(text.getData(), text.getLengthInBytes()), texts[i]);
            EXPECT_TRUE(p_deserializer->readString(("e" + std::to_string(i)).c_str(), g_cache, text, nullptr));
            EXPECT_EQ(std::string(text.getData(), text.getLengthInBytes()), texts[i]);
            EXPECT_EQ(std::string(all[i].getData(), all[i].getLengthInBytes()), texts[i]);
        }
    });
}

TEST_P(EachFormat, TellsNullTextsFromEmptyOnes) {
    const String text("some");
    const std::string bytes = write([&](ISerializer* p_serializer) {
        EXPECT_TRUE(p_serializer->writeStringRef("a", &text, 0, 0));
        EXPECT_TRUE(p_serializer->writeStringRef("b", nullptr, 0, 0));
        EXPECT_TRUE(p_serializer->writeStringRef("c", &String::getConstEmpty(), 0, 0));
    });
    read(bytes, [](IDeserializer* p_deserializer) {
        String* a = nullptr;
        String* b = reinterpret_cast<String*>(1);
        String* c = nullptr;
        EXPECT_TRUE(p_deserializer->readStringRef("a", g_cache, a, 0));
        EXPECT_TRUE(p_deserializer->readStringRef("b", g_cache, b, 0));
        EXPECT_TRUE(p_deserializer->readStringRef("c", g_cache, c, 0));
        ASSERT_NE(a, nullptr);
        EXPECT_EQ(*a, "some");
        EXPECT_EQ(b, nullptr);
        ASSERT_NE(c, nullptr);
        EXPECT_TRUE(c->isEmpty());
        a->release();
        c->release();
    });
}

TEST_P(EachFormat, KeepsNamesOfAnyCharacters) {
    const std::vector<std::string> names = {"_class", "_", "_5f",        "a_5f", "9 lives", "a b",  "x:y",
                                            "\"",     "<", "gr\xC3\xBC", "item", "__",      "a.b-c"};
    const std::string bytes = write([&](ISerializer* p_serializer) {
        for (size_t i = 0; i < names.size(); i++) {
            EXPECT_TRUE(p_serializer->writeUInt32(names[i].c_str(), static_cast<uint32_t>(i), 0, 1, nullptr));
        }
    });
    read(bytes, [&](IDeserializer* p_deserializer) {
        for (size_t i = names.size(); i-- > 0;) {
            uint32_t value = 99;
            EXPECT_TRUE(p_deserializer->readUInt32(names[i].c_str(), g_cache, value, nullptr));
            EXPECT_EQ(value, i) << names[i] << " in " << bytes;
        }
    });
}

TEST_P(EachFormat, LeavesMissingFieldsAndSkipsUnknownOnes) {
    const float numbers[] = {1, 2, 3};
    const std::string bytes = write([&](ISerializer* p_serializer) {
        EXPECT_TRUE(p_serializer->writeUInt32("old", 1, 0, 1, nullptr));
        EXPECT_TRUE(p_serializer->beginStructure("group", 0) && p_serializer->writeBool("x", 1, 1, 0) &&
                    p_serializer->endStructure());
        EXPECT_TRUE(p_serializer->beginObject("object", "Unknown", "") && p_serializer->writeBool("x", 1, 1, 0) &&
                    p_serializer->endObject());
        EXPECT_TRUE(p_serializer->writeNullObject("nothing"));
        EXPECT_TRUE(p_serializer->writeFloatArray("numbers", 3, numbers, 0, 0));
        EXPECT_TRUE(p_serializer->beginArray("array", 1, ZYR_ARRAY_OF_RECORDS) &&
                    p_serializer->beginArrayElement(0, "R") && p_serializer->endArrayElement() &&
                    p_serializer->endArray());
        EXPECT_TRUE(p_serializer->writeUInt32("kept", 5, 0, 0, nullptr));
    });
    read(bytes, [](IDeserializer* p_deserializer) {
        uint32_t kept = 0;
        uint32_t added = 77;
        String text("default");
        bool_t found = 1;
        EXPECT_TRUE(p_deserializer->readUInt32("added", g_cache, added, nullptr));
        EXPECT_TRUE(p_deserializer->readString("text", g_cache, text, nullptr));
        EXPECT_TRUE(p_deserializer->enterGroup("missing", found));
        EXPECT_FALSE(found);
        EXPECT_TRUE(p_deserializer->enterObject("nothing", found));
        EXPECT_FALSE(found);
        EXPECT_TRUE(p_deserializer->readUInt32("kept", g_cache, kept, nullptr));
        EXPECT_EQ(kept, 5U);
        EXPECT_EQ(added, 77U);
        EXPECT_EQ(text, "default");
    });
}

TEST_P(EachFormat, ReadsFieldsInAnyOrder) {
    const std::string bytes = write([](ISerializer* p_serializer) {
        for (uint32_t i = 0; i < 10; i++) {
            EXPECT_TRUE(p_serializer->writeUInt32(("f" + std::to_string(i)).c_str(), i, 0, 1, nullptr));
        }
    });
    read(bytes, [](IDeserializer* p_deserializer) {
        for (uint32_t i : {3U, 9U, 0U, 1U, 8U, 2U, 7U, 4U, 6U, 5U, 5U}) {
            uint32_t value = 99;
            EXPECT_TRUE(p_deserializer->readUInt32(("f" + std::to_string(i)).c_str(), g_cache, value, nullptr));
            EXPECT_EQ(value, i);
        }
    });
}

TEST_P(EachFormat, ConvertsNumbersOnlyWithoutLoss) {
    const std::string bytes = write([](ISerializer* p_serializer) {
        EXPECT_TRUE(p_serializer->writeInt32("small", -5, 0, 1, nullptr));
        EXPECT_TRUE(p_serializer->writeInt64("large", 5000000000, 0, 1, nullptr));
        EXPECT_TRUE(p_serializer->writeDouble("half", 0.5, 1, 0));
        EXPECT_TRUE(p_serializer->writeString("text", "word", 1, 0));
    });
    read(bytes, [](IDeserializer* p_deserializer) {
        int64_t wide = 0;
        int32_t narrow = 1;
        uint32_t positive = 2;
        float single = 0;
        EXPECT_TRUE(p_deserializer->readInt64("small", g_cache, wide, nullptr));
        EXPECT_EQ(wide, -5);
        EXPECT_TRUE(p_deserializer->readFloat("small", g_cache, single, nullptr));
        EXPECT_EQ(single, -5.0F);
        EXPECT_TRUE(p_deserializer->readFloat("half", g_cache, single, nullptr));
        EXPECT_EQ(single, 0.5F);
        EXPECT_FALSE(p_deserializer->readUInt32("small", g_cache, positive, nullptr));
        EXPECT_FALSE(p_deserializer->readInt32("large", g_cache, narrow, nullptr));
        EXPECT_FALSE(p_deserializer->readInt32("half", g_cache, narrow, nullptr));
        EXPECT_FALSE(p_deserializer->readInt32("text", g_cache, narrow, nullptr));
        EXPECT_EQ(positive, 2U);
        EXPECT_EQ(narrow, 1);
    });
}

TEST_P(EachFormat, RefusesAFieldOfAnotherShape) {
    const std::string bytes = write([](ISerializer* p_serializer) {
        EXPECT_TRUE(p_serializer->beginStructure("group", 0) && p_serializer->beginStructure("inner", 0) &&
                    p_serializer->endStructure() && p_serializer->endStructure());
    });
    read(bytes, [](IDeserializer* p_deserializer) {
        String text("kept");
        uint32_t number = 3;
        EXPECT_FALSE(p_deserializer->readString("group", g_cache, text, nullptr));
        EXPECT_FALSE(p_deserializer->readUInt32("group", g_cache, number, nullptr));
        EXPECT_EQ(text, "kept");
        EXPECT_EQ(number, 3U);
    });
}

TEST_P(EachFormat, ShowsEnumerationsAsWordsInTextOnly) {
    const uint32_t items[] = {7, 8};
    const std::string bytes = write([&](ISerializer* p_serializer) {
        EXPECT_TRUE(p_serializer->writeEnum("fruit", 7, 0, 1, &convertFruit));
        EXPECT_TRUE(p_serializer->writeEnum("other", 8, 0, 1, &convertFruit));
        EXPECT_TRUE(p_serializer->writeEnumArray("all", 2, items, 0, &convertFruit));
        EXPECT_TRUE(p_serializer->writeString("word", "pear", 0, 0));
    });
    EXPECT_EQ(bytes.find("apple") != std::string::npos, isText());
    read(bytes, [](IDeserializer* p_deserializer) {
        uint32_t fruit = 0;
        uint32_t other = 0;
        uint32_t word = 3;
        Array<uint32_t> all;
        EXPECT_TRUE(p_deserializer->readEnum("fruit", g_cache, fruit, &convertFruit));
        EXPECT_TRUE(p_deserializer->readEnum("other", g_cache, other, &convertFruit));
        EXPECT_TRUE(p_deserializer->readEnumArray("all", g_cache, all, &convertFruit));
        EXPECT_FALSE(p_deserializer->readEnum("word", g_cache, word, &convertFruit));
        EXPECT_EQ(fruit, 7U);
        EXPECT_EQ(other, 8U);
        EXPECT_EQ(word, 3U);
        ASSERT_EQ(all.getSize(), 2U);
        EXPECT_EQ(all[0], 7U);
        EXPECT_EQ(all[1], 8U);
    });
}

TEST_P(EachFormat, KeepsTheTypesOfElementsAndNullOnes) {
    const char* const types[] = {"A", "A", "", "B", "A"};
    const std::string bytes = write([&](ISerializer* p_serializer) {
        EXPECT_TRUE(p_serializer->beginArray("array", 5, ZYR_ARRAY_OF_RECORDS));
        for (uint32_t i = 0; i < 5; i++) {
            EXPECT_TRUE(p_serializer->beginArrayElement(i, types[i]));
            if (types[i][0] != 0) {
                EXPECT_TRUE(p_serializer->writeUInt32("n", i, 0, 1, nullptr));
                // An array inside must not change the type of the elements that follow.
                EXPECT_TRUE(p_serializer->beginArray("inner", 1, ZYR_ARRAY_OF_RECORDS) &&
                            p_serializer->beginArrayElement(0, "B") && p_serializer->endArrayElement() &&
                            p_serializer->endArray());
            }
            EXPECT_TRUE(p_serializer->endArrayElement());
        }
        EXPECT_TRUE(p_serializer->endArray());
    });
    read(bytes, [&](IDeserializer* p_deserializer) {
        bool_t found = 0;
        EXPECT_TRUE(p_deserializer->enterArray("array", found, 0));
        ASSERT_TRUE(found);
        EXPECT_EQ(p_deserializer->getArraySize(), 5U);
        for (uint32_t i : {0U, 1U, 2U, 3U, 4U, 1U, 3U}) {
            String type("?");
            uint32_t number = i;
            EXPECT_TRUE(p_deserializer->enterArrayElement(i, type));
            EXPECT_EQ(type, types[i]) << i << " in " << bytes;
            EXPECT_TRUE(p_deserializer->readUInt32("n", g_cache, number, nullptr));
            EXPECT_EQ(number, i);
            EXPECT_TRUE(p_deserializer->leaveArrayElement());
        }
        String type;
        EXPECT_FALSE(p_deserializer->enterArrayElement(5, type));
        EXPECT_TRUE(p_deserializer->leaveArray(ZYR_HEADER_FIELD_RECORD));
    });
}

TEST_P(EachFormat, WritesTheSameBytesEachTime) {
    const auto fill = [](ISerializer* p_serializer) {
        EXPECT_TRUE(p_serializer->writeUInt32("n", 300, 0, 1, nullptr));
        EXPECT_TRUE(p_serializer->writeString("s", "text", 0, 0));
    };
    EXPECT_EQ(write(fill), write(fill));
}

TEST_P(EachFormat, EndsAtALimitOfDepth) {
    ISerializer* serializer =
        static_cast<ISerializer*>(zyr_createObjectFromName((std::string(GetParam()) + "Serializer").c_str()));
    ASSERT_TRUE(serializer->initialize());
    uint32_t depth = 0;
    while (depth < 5000 && serializer->beginStructure("deeper", 0)) {
        depth++;
    }
    EXPECT_GE(depth, 1000U);
    EXPECT_LT(depth, 1100U);
    serializer->release();
}

INSTANTIATE_TEST_SUITE_P(Formats, EachFormat, testing::ValuesIn(c_formatPrefixes));

} // namespace
} // namespace zyr
