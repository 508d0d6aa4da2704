/// The records that bench_formats stores: 20 fields of all kinds, as this library's record and as the plain structure
/// that the peers fill and read. Both hold the same values.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/serialization/zyr_serializer.h"
#include "zyr_common/text/zyr_string.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zyr::bench {

enum WeatherEnum : uint32_t { WEATHER_CALM = 0, WEATHER_WIND = 1, WEATHER_RAIN = 2, WEATHER_STORM = 3 };
enum StateEnum : uint32_t { STATE_NEW = 0, STATE_RUNNING = 1, STATE_DONE = 2 };

/// The words of the two, for all sides.
inline constexpr const char* c_weatherWords[] = {"CALM", "WIND", "RAIN", "STORM"};
inline constexpr const char* c_stateWords[] = {"NEW", "RUNNING", "DONE"};

struct PlainPosition {
    float x = 0;
    float y = 0;
    float z = 0;
};

struct PlainRecord {
    uint64_t id = 0;
    int32_t number = 0;
    uint32_t count = 0;
    int64_t offset = 0;
    uint32_t flags = 0;
    bool enabled = false;
    bool visible = false;
    WeatherEnum weather = WEATHER_CALM;
    StateEnum state = STATE_NEW;
    float ratio = 0;
    double weight = 0;
    double longitude = 0;
    double latitude = 0;
    std::string name;
    std::string title;
    std::string note;
    std::array<uint8_t, 16> identity = {};
    PlainPosition position;
    std::vector<std::string> tags;
    std::vector<double> samples;
};

/// Some records, the same at each call.
std::vector<PlainRecord> makePlainRecords(size_t p_count);
/// A number made of what a record holds, so that a peer's records can be compared with ours.
uint64_t getSum(const PlainRecord& p_record);

/// The text form of an identity, and back.
std::string formatIdentity(const std::array<uint8_t, 16>& p_identity);
void parseIdentity(std::array<uint8_t, 16>& p_identity, const char* p_text);

/// The number of a word; 0 for one that isn't there.
template <typename E, size_t N> E findWord(const char* const (&p_words)[N], const char* p_word, size_t p_length) {
    for (size_t i = 0; i < N; i++) {
        if (p_length == strlen(p_words[i]) && memcmp(p_word, p_words[i], p_length) == 0) {
            return static_cast<E>(i);
        }
    }
    return E();
}

#pragma pack(push, 1)

class StoredPosition : public Record<StoredPosition> {
public:
    float x = 0;
    float y = 0;
    float z = 0;

    static constexpr const char* c_typeName = "BenchPosition";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("x", &StoredPosition::x), zyr_field("y", &StoredPosition::y),
                          zyr_field("z", &StoredPosition::z));
    }
};

class StoredRecord : public Record<StoredRecord> {
public:
    uint64_t id = 0;
    int32_t number = 0;
    uint32_t count = 0;
    int64_t offset = 0;
    uint32_t flags = 0;
    bool_t enabled = 0;
    bool_t visible = 0;
    WeatherEnum weather = WEATHER_CALM;
    StateEnum state = STATE_NEW;
    float ratio = 0;
    double weight = 0;
    double longitude = 0;
    double latitude = 0;
    String name;
    String title;
    String note;
    GUID_t identity;
    StoredPosition position;
    Array<String> tags;
    Array<double> samples;

    static constexpr const char* c_typeName = "BenchRecord";
    static constexpr auto fields() {
        using R = StoredRecord;
        return zyr_fields(
            zyr_field("id", &R::id), zyr_field("number", &R::number), zyr_field("count", &R::count),
            zyr_field("offset", &R::offset), zyr_field("flags", &R::flags), zyr_field("enabled", &R::enabled),
            zyr_field("visible", &R::visible), zyr_field("weather", &R::weather), zyr_field("state", &R::state),
            zyr_field("ratio", &R::ratio), zyr_field("weight", &R::weight), zyr_field("longitude", &R::longitude),
            zyr_field("latitude", &R::latitude), zyr_field("name", &R::name), zyr_field("title", &R::title),
            zyr_field("note", &R::note).asElement(), zyr_field("identity", &R::identity),
            zyr_field("position", &R::position), zyr_field("tags", &R::tags), zyr_field("samples", &R::samples));
    }
};

#pragma pack(pop)

void copyRecord(StoredRecord& p_record, const PlainRecord& p_plain);
uint64_t getSum(const StoredRecord& p_record);

/// An object with an array of records.
class RecordList : public ObjectClass<RecordList, WObject> {
public:
    static constexpr const char* c_className = "BenchRecordList";
    static constexpr const char* c_classGUIDText = "70000000-0000-4000-8000-0000000000b1";

    RecordList() { initObjectInterface(); }
    ~RecordList() override { release_This(); }

    bool_t readSerialized(IDeserializer* p_deserializer) override;
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override;

    void init_This() {}
    void release_This() { m_records.clear(); }
    void copy_This(const RecordList* p_src) { m_records = p_src->m_records; }

    Array<StoredRecord> m_records;
};

/// An object that is one record.
class RecordObject : public ObjectClass<RecordObject, WObject> {
public:
    static constexpr const char* c_className = "BenchRecordObject";
    static constexpr const char* c_classGUIDText = "70000000-0000-4000-8000-0000000000b2";

    RecordObject() { initObjectInterface(); }
    ~RecordObject() override { release_This(); }

    bool_t readSerialized(IDeserializer* p_deserializer) override { return m_record.readSerialized(p_deserializer); }
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override {
        return m_record.writeSerialized(p_serializer, p_headerPass, p_result);
    }

    void init_This() { m_record.init_This(); }
    void release_This() {}
    void copy_This(const RecordObject* p_src) { m_record.copy_Backwards(p_src->m_record); }

    StoredRecord m_record;
};

} // namespace zyr::bench

namespace zyr {

template <> struct EnumerationTable<bench::WeatherEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, bench::c_weatherWords[0]},
                                                     {1, bench::c_weatherWords[1]},
                                                     {2, bench::c_weatherWords[2]},
                                                     {3, bench::c_weatherWords[3]}};
};
template <> struct EnumerationTable<bench::StateEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {0, bench::c_stateWords[0]}, {1, bench::c_stateWords[1]}, {2, bench::c_stateWords[2]}};
};

} // namespace zyr
