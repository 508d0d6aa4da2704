#include "formats_peers.h"

#include <msgpack.hpp>

MSGPACK_ADD_ENUM(zyr::bench::WeatherEnum)
MSGPACK_ADD_ENUM(zyr::bench::StateEnum)

namespace zyr::bench {

namespace {

struct PackedPosition : PlainPosition {
    MSGPACK_DEFINE_MAP(x, y, z)
};

/// With names, as a reader of another age needs them.
struct PackedRecord {
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
    PackedPosition position;
    std::vector<std::string> tags;
    std::vector<double> samples;

    MSGPACK_DEFINE_MAP(id, number, count, offset, flags, enabled, visible, weather, state, ratio, weight, longitude,
                       latitude, name, title, note, identity, position, tags, samples)
};

PlainRecord unpackRecord(const PackedRecord& p_packed) {
    return {p_packed.id,      p_packed.number,    p_packed.count,    p_packed.offset, p_packed.flags,
            p_packed.enabled, p_packed.visible,   p_packed.weather,  p_packed.state,  p_packed.ratio,
            p_packed.weight,  p_packed.longitude, p_packed.latitude, p_packed.name,   p_packed.title,
            p_packed.note,    p_packed.identity,  p_packed.position, p_packed.tags,   p_packed.samples};
}

PackedRecord packRecord(const PlainRecord& p_record) {
    PackedRecord packed = {
        p_record.id,       p_record.number,  p_record.count, p_record.offset, p_record.flags,    p_record.enabled,
        p_record.visible,  p_record.weather, p_record.state, p_record.ratio,  p_record.weight,   p_record.longitude,
        p_record.latitude, p_record.name,    p_record.title, p_record.note,   p_record.identity, {},
        p_record.tags,     p_record.samples};
    static_cast<PlainPosition&>(packed.position) = p_record.position;
    return packed;
}

class MsgpackSide : public FormatSide {
public:
    explicit MsgpackSide(const PlainRecords& p_records) {
        for (const PlainRecord& record : p_records) {
            m_records.push_back(packRecord(record));
        }
    }
    void dropSaved() override { m_buffer = msgpack::sbuffer(); }
    void save() override { msgpack::pack(m_buffer, m_records); }
    size_t getSize() const override { return m_buffer.size(); }
    void load() override {
        const msgpack::object_handle handle = msgpack::unpack(m_buffer.data(), m_buffer.size());
        handle.get().convert(m_loaded);
    }
    uint64_t getLoadedSum() const override {
        uint64_t sum = 0;
        for (const PackedRecord& record : m_loaded) {
            sum += getSum(unpackRecord(record));
        }
        return sum;
    }
    void dropLoaded() override { m_loaded = std::vector<PackedRecord>(); }

private:
    std::vector<PackedRecord> m_records;
    msgpack::sbuffer m_buffer;
    std::vector<PackedRecord> m_loaded;
};

} // namespace

std::unique_ptr<FormatSide> makeMsgpack(const PlainRecords& p_records) {
    return std::make_unique<MsgpackSide>(p_records);
}

} // namespace zyr::bench
