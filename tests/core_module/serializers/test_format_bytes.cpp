// The formats to the byte: what is written here is in files.
#include "core_module/serializers/serializer_test.h"

namespace zyr {
namespace {

class FormatBytes : public SerializerTest {
protected:
    static void fill(ISerializer* p_serializer) {
        const float numbers[] = {1, 0.5F, -2, 3};
        const String texts[] = {"a", "b & c"};
        EXPECT_TRUE(p_serializer->writeUInt32("n", 300, 0, 1, nullptr));
        EXPECT_TRUE(p_serializer->writeInt32("i", -2, 0, 1, nullptr));
        EXPECT_TRUE(p_serializer->writeBool("b", 1, 1, 0));
        EXPECT_TRUE(p_serializer->writeString("g", "999bc88e-a780-4b21-a85c-eef13c553370", 1, 0));
        EXPECT_TRUE(p_serializer->writeString("t", "x<y", 0, 0));
        EXPECT_TRUE(p_serializer->beginObject("o", "K", "id") && p_serializer->writeBool("b", 0, 1, 0) &&
                    p_serializer->endObject());
        EXPECT_TRUE(p_serializer->writeNullObject("z"));
        EXPECT_TRUE(p_serializer->writeFloatArray("f", 4, numbers, 0, 2));
        EXPECT_TRUE(p_serializer->writeStringArray("l", 2, texts, 0, 0));
        EXPECT_TRUE(p_serializer->beginArray("a", 2, ZYR_ARRAY_OF_RECORDS));
        for (uint32_t i = 0; i < 2; i++) {
            EXPECT_TRUE(p_serializer->beginArrayElement(i, "R") && p_serializer->writeUInt32("n", i, 0, 1, nullptr) &&
                        p_serializer->endArrayElement());
        }
        EXPECT_TRUE(p_serializer->endArray());
    }
    static std::string hex(const std::string& p_bytes) {
        std::string text;
        char digits[3];
        for (const char byte : p_bytes) {
            snprintf(digits, sizeof(digits), "%02x", static_cast<unsigned char>(byte));
            text += digits;
        }
        return text;
    }
};

TEST_F(FormatBytes, OfJson) {
    EXPECT_EQ(write("Json", &fill), R"({
  "top": {
    "n": 300,
    "i": -2,
    "b": true,
    "g": "999bc88e-a780-4b21-a85c-eef13c553370",
    "t": "x<y",
    "o": {
      "_class": "K",
      "_guid": "id",
      "b": false
    },
    "z": null,
    "f": [1, 0.5,
    -2, 3],
    "l": [
      "a",
      "b & c"
    ],
    "a": [
      {
        "_type": "R",
        "n": 0
      },
      {
        "n": 1
      }
    ]
  }
}
)");
}

TEST_F(FormatBytes, OfXml) {
    EXPECT_EQ(write("Xml", &fill), R"(<zyr>
  <top n="300" i="-2" b="true" g="999bc88e-a780-4b21-a85c-eef13c553370">
    <t>x&lt;y</t>
    <o _class="K" _guid="id" b="false"/>
    <z _null="true"/>
    <f>1 0.5
      -2 3</f>
    <l>
      <item>a</item>
      <item>b &amp; c</item>
    </l>
    <a>
      <item _type="R" n="0"/>
      <item n="1"/>
    </a>
  </top>
</zyr>
)");
}

TEST_F(FormatBytes, OfRaw) {
    EXPECT_EQ(hex(write("Raw", &fill)), "01"                                       // version
                                        "0b03746f7073"                             // record "top" of 115 bytes
                                        "03016eac02"                               // uint32 "n"
                                        "02016903"                                 // int32 "i"
                                        "01016201"                                 // bool "b"
                                        "08016700999bc88ea7804b21a85ceef13c553370" // text "g", a GUID
                                        "08017404783c79"                           // text "t"
                                        "0c016f024b0369648480800001016200"         // object "o" of class "K", 4 bytes
                                        "0c017a0101"                               // null object "z"
                                        "0f0166040000803f0000003f000000c000004040" // floats "f"
                                        "0e016c02026106622026"
                                        "2063"             // texts "l"
                                        "0d01618f80800002" // array "a" of 15 bytes, 2 elements
                                        "02520403016e00"   // element of type "R", 4 bytes
                                        "02520403016e01");
}

TEST_F(FormatBytes, OfZbf) {
    EXPECT_EQ(hex(write("Zbf", &fill)), "015d00000000000000" // version, place of the table
                                        "0052"               // field 0 of 82 bytes
                                        "00ac02"
                                        "0103"
                                        "0201"                                 // n, i, b
                                        "0300999bc88ea7804b21a85ceef13c553370" // g
                                        "0404783c79"                           // t
                                        "0501828080000000"                     // o of class 1, 2 bytes
                                        "0600"                                 // z, null
                                        "07040000803f0000003f000000c000004040" // f
                                        "080202610662202620"
                                        "63" // l
                                        "098980800002"
                                        "04020000"
                                        "04020001" // a: elements of structure 4
                                        "04"       // four structures
                                        "0101"
                                        "04746f700b01" // the outermost: record "top"
                                        "010a"
                                        "026e03"
                                        "026902"
                                        "026201"
                                        "026708"
                                        "027408"
                                        "026f0c"
                                        "027a0c"
                                        "02660f"
                                        "026c0e"
                                        "02610d"       // that of "top"
                                        "024b01026201" // "K"
                                        "025201026e03" // "R"
                                        "010203"
                                        "6964"); // one class: structure 2, "id"
}

} // namespace
} // namespace zyr
