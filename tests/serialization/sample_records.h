/// Records that between them use every kind of field.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_set.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

enum SampleColourEnum : uint32_t { ZYR_SAMPLE_NONE = 0, ZYR_SAMPLE_RED = 1, ZYR_SAMPLE_BLUE = 7 };
template <> struct EnumerationTable<SampleColourEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "NONE"}, {1, "RED"}, {7, "BLUE"}};
};

enum SampleSideEnum : uint8_t { ZYR_SAMPLE_LEFT = 0, ZYR_SAMPLE_RIGHT = 200 };
template <> struct EnumerationTable<SampleSideEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "LEFT"}, {200, "RIGHT"}};
};

/// Shows one value as a word: 0xFFFFFFFE is "NONE".
bool_t convertSampleId(String& p_text, uint32_t& p_number, bool_t p_textToNumber);

#pragma pack(push, 1)

template <typename T> class SamplePoint : public Record<SamplePoint<T>> {
public:
    T x;
    T y;

    SamplePoint() { this->init_This(); }
    SamplePoint(T p_x, T p_y) : x(p_x), y(p_y) {}

    static constexpr const char* c_typeName = "SamplePoint";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("x", &SamplePoint::x), zyr_field("y", &SamplePoint::y).withDefault(3));
    }
};

/// A level above a point.
class SampleMark : public Record<SampleMark, SamplePoint<float>> {
public:
    SampleSideEnum side;

    SampleMark() { this->init_This(); }

    static constexpr const char* c_typeName = "SampleMark";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("side", &SampleMark::side).withDefault(ZYR_SAMPLE_RIGHT));
    }
};

class SampleRecord : public Record<SampleRecord> {
public:
    bool_t flag;
    int32_t small;
    uint32_t id;
    int64_t large;
    uint64_t huge;
    float ratio;
    double exact;
    SampleColourEnum colour;
    SampleSideEnum side;
    String name;
    String text;
    GUID_t guid;
    SampleMark mark;
    float matrix[9];
    Array<double> doubles;
    Array<uint32_t> numbers;
    Array<String> words;
    Array<SampleColourEnum> colours;
    HashSet<SampleColourEnum> order;
    Array<SampleMark> marks;

    SampleRecord() { init_This(); }

    static constexpr const char* c_typeName = "SampleRecord";
    static constexpr auto fields() {
        return zyr_fields(
            zyr_field("flag", &SampleRecord::flag).withDefault(1), zyr_field("small", &SampleRecord::small),
            zyr_field("id", &SampleRecord::id).withDefault(0xFFFFFFFE).withConverter(&convertSampleId),
            zyr_field("large", &SampleRecord::large), zyr_field("huge", &SampleRecord::huge),
            zyr_field("ratio", &SampleRecord::ratio).withDefault(0.5f), zyr_field("exact", &SampleRecord::exact),
            zyr_field("colour", &SampleRecord::colour).withDefault(ZYR_SAMPLE_BLUE),
            zyr_field("side", &SampleRecord::side), zyr_field("name", &SampleRecord::name),
            zyr_field("text", &SampleRecord::text).asElement(), zyr_field("guid", &SampleRecord::guid),
            zyr_field("mark", &SampleRecord::mark), zyr_field("matrix", &SampleRecord::matrix),
            zyr_field("doubles", &SampleRecord::doubles), zyr_field("numbers", &SampleRecord::numbers),
            zyr_field("words", &SampleRecord::words), zyr_field("colours", &SampleRecord::colours),
            zyr_field("order", &SampleRecord::order), zyr_field("marks", &SampleRecord::marks));
    }
};

/// A counted class with virtual operations, as the codec records are.
class SampleCounted : public Record<SampleCounted, RefCountedData> {
public:
    String name;
    uint64_t adapter;

    SampleCounted() { init_This(); }
    SampleCounted(const SampleCounted& p_src) : SampleCounted() { copy_Backwards(p_src); }
    SampleCounted& operator=(const SampleCounted& p_src) {
        copy_Backwards(p_src);
        return *this;
    }

    virtual bool_t readSerialized(IDeserializer* p_deserializer);
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result);

    static constexpr const char* c_typeName = "SampleCounted";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("name", &SampleCounted::name), zyr_field("adapter", &SampleCounted::adapter));
    }
};

/// A counted class above another, with a member outside the list.
class SampleNamed : public Record<SampleNamed, SampleCounted> {
public:
    int32_t rank;
    void* held = nullptr;

    SampleNamed() { init_This(); }

    static constexpr const char* c_typeName = "SampleNamed";
    static constexpr size_t c_unlistedSize = sizeof(void*);
    static constexpr auto fields() { return zyr_fields(zyr_field("rank", &SampleNamed::rank)); }
};

#pragma pack(pop)

} // namespace zyr
