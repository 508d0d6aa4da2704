// Many fields in one call: the bytes and values are those of the operations, and what a call doesn't do it leaves to
// them.
#include "core_module/serializers/serializer_test.h"
#include "support/zyr_recording_serializer.h"
#include "support/zyr_stub_object.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/serialization/zyr_serializer_reserved.h"

#include <limits>

namespace zyr {
namespace {

constexpr const char* BINARY_FORMATS[] = {"Raw", "Zbf"};
constexpr size_t NUM_OF_ROWS = 11;

/// A value of each kind, none of them aligned.
#pragma pack(push, 1)
struct Values {
    bool_t m_bool = 7;
    int32_t m_int32 = -70000;
    uint32_t m_uint32 = UINT32_MAX;
    int64_t m_int64 = INT64_MIN;
    uint64_t m_uint64 = UINT64_MAX;
    float m_float = -0.0F;
    double m_double = std::numeric_limits<double>::denorm_min();
    String m_string = "text";
    GUID_t m_guid = GUID_t_fromString("00112233-4455-6677-8899-aabbccddeeff");
    uint32_t m_enum = 300;
    uint8_t m_enum8 = 200;

    void locate(void** p_places) {
        void* const places[NUM_OF_ROWS] = {&m_bool,   &m_int32,  &m_uint32, &m_int64, &m_uint64, &m_float,
                                           &m_double, &m_string, &m_guid,   &m_enum,  &m_enum8};
        std::copy(std::begin(places), std::end(places), p_places);
    }
};
#pragma pack(pop)

std::string getKey(size_t p_row) {
    return "field" + std::to_string(p_row);
}

class FieldRows : public SerializerTest {
protected:
    FieldRows() {
        for (size_t i = 0; i < NUM_OF_ROWS; i++) {
            m_rows[i].m_key = getKey(i);
            m_rows[i].m_kind = static_cast<FieldRowKindEnum>(i + 1);
        }
        m_values.locate(m_places);
    }
    size_t writeRows(ISerializer* p_serializer) const {
        return zyr_findReserved(p_serializer)->writeFields(m_rows, m_places, NUM_OF_ROWS);
    }
    /// The first p_count fields by their operations.
    void writeOneByOne(ISerializer* p_serializer, size_t p_count = NUM_OF_ROWS) const {
        const Values values = m_values;
        const String* keys[NUM_OF_ROWS];
        for (size_t i = 0; i < NUM_OF_ROWS; i++) {
            keys[i] = &m_rows[i].m_key;
        }
        const std::function<bool_t()> writes[NUM_OF_ROWS] = {
            [&] { return p_serializer->writeBool(*keys[0], values.m_bool, 1, 0); },
            [&] { return p_serializer->writeInt32(*keys[1], values.m_int32, 0, 1, nullptr); },
            [&] { return p_serializer->writeUInt32(*keys[2], values.m_uint32, 0, 1, nullptr); },
            [&] { return p_serializer->writeInt64(*keys[3], values.m_int64, 0, 1, nullptr); },
            [&] { return p_serializer->writeUInt64(*keys[4], values.m_uint64, 0, 1, nullptr); },
            [&] { return p_serializer->writeFloat(*keys[5], values.m_float, 1, 0); },
            [&] { return p_serializer->writeDouble(*keys[6], values.m_double, 1, 0); },
            [&] { return p_serializer->writeString(*keys[7], values.m_string, 1, 0); },
            [&] { return p_serializer->writeString(*keys[8], String::newFromGUID(values.m_guid), 1, 0); },
            [&] { return p_serializer->writeEnum(*keys[9], values.m_enum, 0, 1, nullptr); },
            [&] { return p_serializer->writeEnum(*keys[10], values.m_enum8, 0, 1, nullptr); }};
        for (size_t i = 0; i < p_count; i++) {
            EXPECT_TRUE(writes[i]());
        }
    }
    /// Two groups with the same fields. A field is declared where it is first written, by its operation.
    std::string writeTwice(const char* p_format, bool p_rows) const {
        return write(p_format, [&](ISerializer* p_serializer) {
            writeOneByOne(p_serializer);
            EXPECT_TRUE(p_serializer->beginArray("items", 3, ZYR_ARRAY_OF_RECORDS));
            for (uint32_t i = 0; i < 3; i++) {
                EXPECT_TRUE(p_serializer->beginArrayElement(i, "Values"));
                if (p_rows && i > 0) {
                    EXPECT_EQ(writeRows(p_serializer), NUM_OF_ROWS);
                } else {
                    writeOneByOne(p_serializer);
                }
                EXPECT_TRUE(p_serializer->endArrayElement());
            }
            EXPECT_TRUE(p_serializer->endArray());
        });
    }
    void expectSameBytes() const {
        for (const char* format : BINARY_FORMATS) {
            SCOPED_TRACE(format);
            EXPECT_EQ(writeTwice(format, true), writeTwice(format, false));
        }
    }
    std::string writeFields(const char* p_format) const {
        return write(p_format, [&](ISerializer* p_serializer) { writeOneByOne(p_serializer); });
    }
    /// Reads rows of the fields into new values and gives how many.
    size_t readRows(const char* p_format, const std::string& p_bytes, Values& p_values) {
        size_t count = 0;
        read(p_format, p_bytes, [&](IDeserializer* p_deserializer) {
            void* places[NUM_OF_ROWS];
            p_values.locate(places);
            count = zyr_findReserved(p_deserializer)->readFields(m_rows, places, NUM_OF_ROWS);
        });
        return count;
    }
    static Values makeEmpty() {
        Values values;
        values.m_bool = 0;
        values.m_int32 = 0;
        values.m_uint32 = 0;
        values.m_int64 = 0;
        values.m_uint64 = 0;
        values.m_float = 1;
        values.m_double = 0;
        values.m_string.clear();
        values.m_guid = GUID_t();
        values.m_enum = 0;
        values.m_enum8 = 0;
        return values;
    }

    FieldRow m_rows[NUM_OF_ROWS];
    Values m_values;
    void* m_places[NUM_OF_ROWS];
};

TEST_F(FieldRows, HaveTheBytesOfTheOperations) {
    expectSameBytes();
}

TEST_F(FieldRows, HaveTheBytesOfTheOperationsForTextsOfAllLengths) {
    for (const size_t length : {0, 1, 15, 16, 17, 35, 36, 37, 63, 64, 65, 127, 128, 5000, 300000}) {
        SCOPED_TRACE(length);
        m_values.m_string = std::string(length, 'x');
        expectSameBytes();
    }
    m_values.m_string = "00112233-4455-6677-8899-aabbccddeeff";
    expectSameBytes();
    m_values.m_string = "00112233-4455-6677-8899-AABBCCDDEEFF";
    expectSameBytes();
}

TEST_F(FieldRows, HaveTheBytesOfTheOperationsUnderKeysOfAllLengths) {
    for (const size_t length : {1, 16, 17, 63, 64}) {
        SCOPED_TRACE(length);
        m_rows[3].m_key = std::string(length, 'k');
        expectSameBytes();
    }
}

TEST_F(FieldRows, OfALongKeyGoThroughItsOperation) {
    m_rows[3].m_key = std::string(65, 'k');
    write("Raw", [&](ISerializer* p_serializer) { EXPECT_EQ(writeRows(p_serializer), 3U); });
}

TEST_F(FieldRows, ThatWereNotDeclaredGoThroughTheirOperations) {
    write("Zbf", [&](ISerializer* p_serializer) {
        EXPECT_EQ(writeRows(p_serializer), 0U);
        writeOneByOne(p_serializer, 5);
        EXPECT_EQ(writeRows(p_serializer), 0U);
    });
}

TEST_F(FieldRows, OfAKindThatIsNotKnownGoThroughTheirOperations) {
    for (const uint32_t kind : {uint32_t(0), uint32_t(12), UINT32_MAX}) {
        const std::string bytes = writeFields("Raw");
        m_rows[4].m_kind = static_cast<FieldRowKindEnum>(kind);
        write("Raw", [&](ISerializer* p_serializer) { EXPECT_EQ(writeRows(p_serializer), 4U); });
        Values values;
        EXPECT_EQ(readRows("Raw", bytes, values), 4U);
    }
}

TEST_F(FieldRows, AreReadAsTheyWereWritten) {
    for (const char* format : BINARY_FORMATS) {
        SCOPED_TRACE(format);
        Values values = makeEmpty();
        EXPECT_EQ(readRows(format, writeFields(format), values), NUM_OF_ROWS);
        EXPECT_EQ(values.m_bool, 1);
        // The numbers, which lie side by side.
        EXPECT_EQ(memcmp(&values.m_int32, &m_values.m_int32, 4 + 4 + 8 + 8 + 4 + 8), 0);
        EXPECT_EQ(values.m_string, m_values.m_string);
        EXPECT_EQ(memcmp(&values.m_guid, &m_values.m_guid, 16 + 4 + 1), 0);
    }
}

TEST_F(FieldRows, AreReadUpToOneThatIsNotNext) {
    for (const char* format : BINARY_FORMATS) {
        SCOPED_TRACE(format);
        const std::string bytes = writeFields(format);
        m_rows[6].m_key = "other";
        Values values = makeEmpty();
        EXPECT_EQ(readRows(format, bytes, values), 6U);
        m_rows[6].m_key = getKey(6);
        m_rows[2].m_kind = ZYR_FIELD_ROW_UINT64;
        EXPECT_EQ(readRows(format, bytes, values), 2U);
        m_rows[2].m_kind = ZYR_FIELD_ROW_UINT32;
    }
}

TEST_F(FieldRows, ThatAreRefusedLeaveTheirValue) {
    m_rows[9].m_kind = ZYR_FIELD_ROW_ENUM8; // It is stored as 300.
    m_values.m_string = "no GUID at all, though as long as one";
    for (const char* format : BINARY_FORMATS) {
        SCOPED_TRACE(format);
        Values values = makeEmpty();
        values.m_enum = 5;
        EXPECT_EQ(readRows(format, writeFields(format), values), 9U);
        EXPECT_EQ(uint32_t(values.m_enum), 5U);
        m_rows[7].m_kind = ZYR_FIELD_ROW_GUID;
        EXPECT_EQ(readRows(format, writeFields(format), values), 7U);
        m_rows[7].m_kind = ZYR_FIELD_ROW_STRING;
    }
}

TEST_F(FieldRows, AreLeftToTheOperationsOfAnOuterLayer) {
    test::StubObject<IObject> layer;
    for (const char* format : BINARY_FORMATS) {
        const std::string bytes = write(format, [&](ISerializer* p_serializer) {
            writeOneByOne(p_serializer);
            p_serializer->setTLIObject(&layer);
            EXPECT_EQ(writeRows(p_serializer), 0U);
            p_serializer->setTLIObject(nullptr);
        });
        read(format, bytes, [&](IDeserializer* p_deserializer) {
            p_deserializer->setTLIObject(&layer);
            EXPECT_EQ(zyr_findReserved(p_deserializer)->readFields(m_rows, m_places, NUM_OF_ROWS), 0U);
            p_deserializer->setTLIObject(nullptr);
        });
    }
}

/// As those of modules that were built before there were rows.
class PlainReserved : public ILevelReserved {
public:
    void init_This() override {}
    void release_This() override {}
    void copy_Backwards(const IObject*) override {}
    bool_t readSerialized_Backwards(IDeserializer*) override { return 1; }
    bool_t writeSerialized_Backwards(ISerializer*, bool_t, bool_t, bool_t&) override { return 1; }
};

class OlderSerializer : public test::RecordingSerializer {
public:
    OlderSerializer() : RecordingSerializer(RecordingSerializer::c_binary) {}
    ILevelReserved* getSerializerReserved() const override { return &m_reserved; }

    mutable PlainReserved m_reserved;
};

/// Forwards to a serializer, and sees what passes.
class WatchingSerializer : public test::RecordingSerializer {
public:
    explicit WatchingSerializer(ISerializer* p_watched)
        : RecordingSerializer(RecordingSerializer::c_binary), m_watched(p_watched) {}
    IObject* findInterfaceObjectByClassGUID(const GUID_t& p_classGUID) const override {
        return m_watched->findInterfaceObjectByClassGUID(p_classGUID);
    }
    ILevelReserved* getSerializerReserved() const override { return m_watched->getSerializerReserved(); }

    ISerializer* m_watched;
};

TEST_F(FieldRows, AreNotOfferedByWhatWatchesASerializer) {
    for (const char* format : BINARY_FORMATS) {
        write(format, [](ISerializer* p_serializer) {
            EXPECT_NE(zyr_findReserved(p_serializer), nullptr);
            const WatchingSerializer watching(p_serializer);
            EXPECT_EQ(zyr_findReserved(&watching), nullptr);
        });
    }
}

/// Its reserved object is nothing that can be looked at.
class OpaqueSerializer : public test::RecordingSerializer {
public:
    OpaqueSerializer() : RecordingSerializer(RecordingSerializer::c_binary) {}
    ILevelReserved* getSerializerReserved() const override { return reinterpret_cast<ILevelReserved*>(uintptr_t{16}); }
};

TEST_F(FieldRows, DoNotTouchReservedObjectsOfOthers) {
    const OpaqueSerializer opaque;
    EXPECT_EQ(zyr_findReserved(&opaque), nullptr);
}

TEST_F(FieldRows, AreNotOfferedByOtherSerializers) {
    const test::RecordingSerializer recording(test::RecordingSerializer::c_binary);
    const OlderSerializer older;
    for (int i = 0; i < 2; i++) { // What was found out is kept.
        EXPECT_EQ(zyr_findReserved(&recording), nullptr);
        EXPECT_EQ(zyr_findReserved(&older), nullptr);
    }
}

TEST_F(FieldRows, AreAskedForByAnIdentifierThatNeverChanges) {
    EXPECT_EQ(zyr_getFieldRowsGUID(), GUID_t_fromString("3a2d5049-bdcf-4a17-ac0e-6da93e3060e4"));
}

} // namespace
} // namespace zyr
