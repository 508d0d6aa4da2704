#include "formats_records.h"

#include "zyr_common/serialization/zyr_record_walker.h"

template class zyr::RecordWalker<zyr::bench::StoredPosition>;
template class zyr::RecordWalker<zyr::bench::StoredRecord>;

namespace zyr::bench {

namespace {

/// The same numbers on every machine.
class Numbers {
public:
    uint64_t next() {
        m_state = m_state * 6364136223846793005 + 1442695040888963407;
        return m_state >> 24;
    }
    double nextReal() { return static_cast<double>(next()) / 1099511627776.0; }

private:
    uint64_t m_state = 4711;
};

using RecordsIO = RecordFieldIO<Array<StoredRecord>>;

template <typename T> uint64_t getBits(const T& p_value) {
    uint64_t bits = 0;
    memcpy(&bits, &p_value, sizeof(p_value));
    return bits;
}

template <typename R> uint64_t sumNumbers(const R& p_record) {
    return p_record.id + static_cast<uint64_t>(p_record.number) * 3 + p_record.count * 5ULL +
           static_cast<uint64_t>(p_record.offset) * 7 + p_record.flags * 11ULL + p_record.enabled * 13ULL +
           p_record.visible * 17ULL + p_record.weather * 19ULL + p_record.state * 23ULL +
           getBits<float>(p_record.ratio) + getBits<double>(p_record.weight) + getBits<double>(p_record.longitude) +
           getBits<double>(p_record.latitude) + getBits<float>(p_record.position.x) +
           getBits<float>(p_record.position.y) + getBits<float>(p_record.position.z);
}

void addBytes(uint64_t& p_sum, const void* p_data, size_t p_size) {
    const uint8_t* bytes = static_cast<const uint8_t*>(p_data);
    for (size_t i = 0; i < p_size; i++) {
        p_sum = p_sum * 31 + bytes[i];
    }
}

} // namespace

std::vector<PlainRecord> makePlainRecords(size_t p_count) {
    Numbers numbers;
    std::vector<PlainRecord> records(p_count);
    for (size_t i = 0; i < p_count; i++) {
        PlainRecord& record = records[i];
        const std::string text = std::to_string(i);
        record.id = numbers.next();
        record.number = static_cast<int32_t>(i) - 500;
        record.count = static_cast<uint32_t>(i % 1000);
        record.offset = -static_cast<int64_t>(numbers.next() % 100000000);
        record.flags = static_cast<uint32_t>(numbers.next());
        record.enabled = i % 2 == 0;
        record.visible = i % 3 == 0;
        record.weather = static_cast<WeatherEnum>(i % 4);
        record.state = static_cast<StateEnum>(i % 3);
        record.ratio = static_cast<float>(i % 64) / 64;
        record.weight = static_cast<double>(numbers.next() % 100000) / 100;
        record.longitude = numbers.nextReal() * 360 - 180;
        record.latitude = numbers.nextReal() * 180 - 90;
        record.name = "record" + text;
        record.title = "The title of the record " + text;
        record.note = "A longer text about the record " + text + " that goes on for a while, as notes of people do.";
        for (uint8_t& byte : record.identity) {
            byte = static_cast<uint8_t>(numbers.next());
        }
        record.position = {static_cast<float>(i % 100), static_cast<float>(i % 10) / 4, -2.5F};
        record.tags = {"first", "tag " + text};
        record.samples = {1, 0.5, static_cast<double>(i), numbers.nextReal()};
    }
    return records;
}

uint64_t getSum(const PlainRecord& p_record) {
    uint64_t sum = sumNumbers(p_record);
    for (const std::string* text : {&p_record.name, &p_record.title, &p_record.note}) {
        addBytes(sum, text->data(), text->size());
    }
    addBytes(sum, p_record.identity.data(), p_record.identity.size());
    for (const std::string& tag : p_record.tags) {
        addBytes(sum, tag.data(), tag.size());
    }
    addBytes(sum, p_record.samples.data(), p_record.samples.size() * sizeof(double));
    return sum;
}

uint64_t getSum(const StoredRecord& p_record) {
    uint64_t sum = sumNumbers(p_record);
    for (const String* text : {&p_record.name, &p_record.title, &p_record.note}) {
        addBytes(sum, text->getData(), text->getLengthInBytes());
    }
    addBytes(sum, p_record.identity.m_data, sizeof(p_record.identity.m_data));
    for (const String& tag : p_record.tags) {
        addBytes(sum, tag.getData(), tag.getLengthInBytes());
    }
    addBytes(sum, p_record.samples.getData(), p_record.samples.getSize() * sizeof(double));
    return sum;
}

void copyRecord(StoredRecord& p_record, const PlainRecord& p_plain) {
    p_record.id = p_plain.id;
    p_record.number = p_plain.number;
    p_record.count = p_plain.count;
    p_record.offset = p_plain.offset;
    p_record.flags = p_plain.flags;
    p_record.enabled = p_plain.enabled;
    p_record.visible = p_plain.visible;
    p_record.weather = p_plain.weather;
    p_record.state = p_plain.state;
    p_record.ratio = p_plain.ratio;
    p_record.weight = p_plain.weight;
    p_record.longitude = p_plain.longitude;
    p_record.latitude = p_plain.latitude;
    p_record.name = p_plain.name.c_str();
    p_record.title = p_plain.title.c_str();
    p_record.note = p_plain.note.c_str();
    memcpy(p_record.identity.m_data, p_plain.identity.data(), p_plain.identity.size());
    p_record.position.x = p_plain.position.x;
    p_record.position.y = p_plain.position.y;
    p_record.position.z = p_plain.position.z;
    p_record.tags.clear();
    for (const std::string& tag : p_plain.tags) {
        p_record.tags.pushBack(tag.c_str());
    }
    p_record.samples.clear();
    p_record.samples.pushBackRange(p_plain.samples.data(), p_plain.samples.size());
}

std::string formatIdentity(const std::array<uint8_t, 16>& p_identity) {
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    text.reserve(36);
    for (size_t i = 0; i < p_identity.size(); i++) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            text += '-';
        }
        text += DIGITS[p_identity[i] >> 4];
        text += DIGITS[p_identity[i] & 15];
    }
    return text;
}

void parseIdentity(std::array<uint8_t, 16>& p_identity, const char* p_text) {
    GUID_t guid;
    guid.fromString(p_text);
    memcpy(p_identity.data(), guid.m_data, p_identity.size());
}

bool_t RecordList::readSerialized(IDeserializer* p_deserializer) {
    static uint32_t cache = 0;
    return RecordsIO::read(p_deserializer, "records", cache, m_records, nullptr);
}

bool_t RecordList::writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
    p_result = p_headerPass ? RecordsIO::declare(p_serializer, "records", m_records, p_result)
                            : RecordsIO::write(p_serializer, "records", m_records, 0, nullptr);
    return p_result;
}

} // namespace zyr::bench
