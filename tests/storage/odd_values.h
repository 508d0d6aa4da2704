/// A record with a field of every kind that formats know, and values at the edges.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/geometry/zyr_anchors.h"
#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr::test {

#pragma pack(push, 1)
class OddValues : public Record<OddValues> {
    using Level = Record<OddValues>;

public:
    bool_t m_flag;
    int32_t m_smallest32, m_largest32;
    uint32_t m_unsigned32;
    int64_t m_smallest64, m_largest64;
    uint64_t m_unsigned64;
    float m_float;
    double m_double;
    PositionXAnchorEnum m_word;
    String m_empty, m_guid, m_marked, m_bytes, m_controls, m_markup, m_wide, m_long;
    Array<float> m_floats;
    Array<double> m_doubles;
    Array<uint32_t> m_numbers;
    Array<PositionXAnchorEnum> m_words;
    Array<String> m_texts;
    Array<Vector2<int32_t>> m_records, m_none;
    String* m_shared;
    String* m_nothing;

    OddValues() : m_shared(nullptr), m_nothing(nullptr) { init_This(); }
    ~OddValues() { releaseShared(); }
    OddValues(const OddValues&) = delete;
    OddValues& operator=(const OddValues&) = delete;

    void fillOddly();

    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

    static constexpr const char* c_typeName = "OddValues";
    static constexpr auto fields() {
        using O = OddValues;
        return zyr_fields(
            zyr_field("flag", &O::m_flag), zyr_field("smallest32", &O::m_smallest32),
            zyr_field("largest32", &O::m_largest32), zyr_field("unsigned32", &O::m_unsigned32),
            zyr_field("smallest64", &O::m_smallest64), zyr_field("largest64", &O::m_largest64),
            zyr_field("unsigned64", &O::m_unsigned64), zyr_field("float", &O::m_float),
            zyr_field("double", &O::m_double), zyr_field("word", &O::m_word), zyr_field("empty", &O::m_empty),
            zyr_field("guid", &O::m_guid), zyr_field("_marked", &O::m_marked), zyr_field("by tes", &O::m_bytes),
            zyr_field("controls", &O::m_controls), zyr_field("markup", &O::m_markup),
            zyr_field("wide\xC3\xA9_41", &O::m_wide), zyr_field("long", &O::m_long).asElement(),
            zyr_field("floats", &O::m_floats), zyr_field("doubles", &O::m_doubles), zyr_field("numbers", &O::m_numbers),
            zyr_field("words", &O::m_words), zyr_field("texts", &O::m_texts), zyr_field("records", &O::m_records),
            zyr_field("none", &O::m_none));
    }
    /// The shared texts are streamed by hand.
    static constexpr size_t c_unlistedSize = 2 * sizeof(String*);

private:
    void releaseShared();
};
#pragma pack(pop)

} // namespace zyr::test
