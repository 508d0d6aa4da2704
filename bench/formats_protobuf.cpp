#include "formats_peers.h"
#include "formats_record.pb.h"

namespace zyr::bench {

namespace {

void fill(zyr_bench::Record& p_message, const PlainRecord& p_record) {
    p_message.set_id(p_record.id);
    p_message.set_number(p_record.number);
    p_message.set_count(p_record.count);
    p_message.set_offset(p_record.offset);
    p_message.set_flags(p_record.flags);
    p_message.set_enabled(p_record.enabled);
    p_message.set_visible(p_record.visible);
    p_message.set_weather(static_cast<zyr_bench::Weather>(p_record.weather));
    p_message.set_state(static_cast<zyr_bench::State>(p_record.state));
    p_message.set_ratio(p_record.ratio);
    p_message.set_weight(p_record.weight);
    p_message.set_longitude(p_record.longitude);
    p_message.set_latitude(p_record.latitude);
    p_message.set_name(p_record.name);
    p_message.set_title(p_record.title);
    p_message.set_note(p_record.note);
    p_message.set_identity(p_record.identity.data(), p_record.identity.size());
    p_message.mutable_position()->set_x(p_record.position.x);
    p_message.mutable_position()->set_y(p_record.position.y);
    p_message.mutable_position()->set_z(p_record.position.z);
    for (const std::string& tag : p_record.tags) {
        p_message.add_tags(tag);
    }
    for (const double sample : p_record.samples) {
        p_message.add_samples(sample);
    }
}

template <typename Records> uint64_t getSumOf(const Records& p_records) {
    uint64_t sum = 0;
    for (const zyr_bench::Record& message : p_records) {
        PlainRecord record;
        record.id = message.id();
        record.number = message.number();
        record.count = message.count();
        record.offset = message.offset();
        record.flags = message.flags();
        record.enabled = message.enabled();
        record.visible = message.visible();
        record.weather = static_cast<WeatherEnum>(message.weather());
        record.state = static_cast<StateEnum>(message.state());
        record.ratio = message.ratio();
        record.weight = message.weight();
        record.longitude = message.longitude();
        record.latitude = message.latitude();
        record.name = message.name();
        record.title = message.title();
        record.note = message.note();
        memcpy(record.identity.data(), message.identity().data(), record.identity.size());
        record.position = {message.position().x(), message.position().y(), message.position().z()};
        record.tags.assign(message.tags().begin(), message.tags().end());
        record.samples.assign(message.samples().begin(), message.samples().end());
        sum += getSum(record);
    }
    return sum;
}

template <class Message> class ProtobufSide : public FormatSide {
public:
    void dropSaved() override { m_text = std::string(); }
    void save() override { m_message.SerializeToString(&m_text); }
    size_t getSize() const override { return m_text.size(); }
    void load() override {
        m_loaded = std::make_unique<Message>();
        if (!m_loaded->ParseFromString(m_text)) {
            abort();
        }
    }
    uint64_t getLoadedSum() const override {
        uint64_t sum = 0;
        if constexpr (requires(Message & p_message) { p_message.records(); }) {
            sum = getSumOf(m_loaded->records());
        } else {
            for (const auto& branch : m_loaded->branches()) {
                sum += getSumOf(branch.records());
            }
        }
        return sum;
    }
    void dropLoaded() override { m_loaded.reset(); }

    Message m_message;

private:
    std::string m_text;
    std::unique_ptr<Message> m_loaded;
};

} // namespace

std::unique_ptr<FormatSide> makeProtobuf(const PlainRecords& p_records) {
    auto side = std::make_unique<ProtobufSide<zyr_bench::Table>>();
    for (const PlainRecord& record : p_records) {
        fill(*side->m_message.add_records(), record);
    }
    return side;
}

std::unique_ptr<FormatSide> makeProtobufTree(const PlainRecords& p_records, size_t p_numOfLeaves) {
    auto side = std::make_unique<ProtobufSide<zyr_bench::Tree>>();
    zyr_bench::Branch* branch = nullptr;
    for (size_t i = 0; i < p_records.size(); i++) {
        if (i % p_numOfLeaves == 0) {
            branch = side->m_message.add_branches();
        }
        fill(*branch->add_records(), p_records[i]);
    }
    return side;
}

} // namespace zyr::bench
