#include "storage/odd_values.h"

#include "zyr_common/serialization/zyr_record_walker.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace zyr {

template class RecordWalker<test::OddValues>;

namespace test {

namespace {

template <typename T> void setItems(Array<T>& p_array, std::initializer_list<T> p_items) {
    p_array.clear();
    for (const T& item : p_items) {
        p_array.pushBack(item);
    }
}

template <typename T> void fillReals(Array<T>& p_array) {
    using Limits = std::numeric_limits<T>;
    setItems<T>(p_array, {T(0), -T(0), T(1), T(-1.5), T(0.1), T(1) / 3, Limits::max(), Limits::lowest(), Limits::min(),
                          Limits::denorm_min(), Limits::epsilon(), Limits::infinity(), -Limits::infinity(), T(16777217),
                          T(1e21), T(123456789), T(5e-7)});
}

} // namespace

void OddValues::releaseShared() {
    for (String** text : {&m_shared, &m_nothing}) {
        if (*text != nullptr) {
            (*text)->release();
        }
        *text = nullptr;
    }
}

void OddValues::fillOddly() {
    const uint64_t unusual = 0xFFF8000000001234;
    double unusualNumber = 0;
    memcpy(&unusualNumber, &unusual, sizeof(unusual));
    m_flag = 1;
    m_smallest32 = INT32_MIN;
    m_largest32 = INT32_MAX;
    m_unsigned32 = UINT32_MAX;
    m_smallest64 = INT64_MIN;
    m_largest64 = INT64_MAX;
    m_unsigned64 = UINT64_MAX;
    m_float = std::numeric_limits<float>::quiet_NaN();
    m_double = unusualNumber;
    m_word = ZYR_POSITION_X_CENTER;
    m_guid = "999bc88e-a780-4b21-a85c-eef13c553370";
    m_marked = "\\bytes:00";
    m_bytes = "\xFF\xC3\x28 not UTF-8";
    m_controls = " \t\r\n\x01\x1F\x7F ";
    m_markup = "<a b=\"c\">&amp;]]> 'd' \\ / {}</a>";
    m_wide = "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80";
    m_long = std::string(300, 'x').c_str();
    fillReals(m_floats);
    fillReals(m_doubles);
    setItems<uint32_t>(m_numbers, {0, 1, 127, 128, UINT32_MAX});
    setItems(m_words, {ZYR_POSITION_X_RIGHT, ZYR_POSITION_X_LEFT});
    setItems<String>(m_texts, {"", "one", "two words", "999bc88e-a780-4b21-a85c-eef13c553370", "\n", "\xFE"});
    setItems<Vector2<int32_t>>(m_records, {Vector2<int32_t>(1, -2), Vector2<int32_t>(), Vector2<int32_t>(-64, 64)});
    releaseShared();
    m_shared = new String("shared");
}

bool_t OddValues::readSerialized_This(IDeserializer* p_deserializer) {
    static uint32_t caches[2] = {};
    releaseShared();
    return Level::readSerialized_This(p_deserializer) &&
           p_deserializer->readStringRef("shared", caches[0], m_shared, 0) &&
           p_deserializer->readStringRef("nothing", caches[1], m_nothing, 0);
}

bool_t OddValues::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                       bool_t& p_result) {
    if (!Level::writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result)) {
        return 0;
    }
    if (p_headerPass) {
        return p_serializer->declareStringRef("shared", m_shared, p_result) &&
               p_serializer->declareStringRef("nothing", m_nothing, p_result);
    }
    if (p_firstPass || p_serializer->isBinaryFormat()) {
        p_result = p_serializer->writeStringRef("shared", m_shared, 1, 0) &&
                   p_serializer->writeStringRef("nothing", m_nothing, 1, 0);
    }
    return p_result;
}

} // namespace test
} // namespace zyr
