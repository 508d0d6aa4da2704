#include "formats_peers.h"

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace zyr::bench {

namespace {

using PlainWriter = rapidjson::Writer<rapidjson::StringBuffer>;
using IndentingWriter = rapidjson::PrettyWriter<rapidjson::StringBuffer>;
using Value = rapidjson::Value;

/// Keys are literals, so that their lengths are known.
template <class Writer, size_t N> void key(Writer& p_writer, const char (&p_key)[N]) {
    p_writer.Key(p_key, N - 1);
}
template <class Writer> void text(Writer& p_writer, const std::string& p_text) {
    p_writer.String(p_text.data(), static_cast<rapidjson::SizeType>(p_text.size()));
}
void take(std::string& p_text, const Value& p_value) {
    p_text.assign(p_value.GetString(), p_value.GetStringLength());
}

template <class Writer> void write(Writer& p_writer, const PlainRecord& p_record) {
    p_writer.StartObject();
    key(p_writer, "id");
    p_writer.Uint64(p_record.id);
    key(p_writer, "number");
    p_writer.Int(p_record.number);
    key(p_writer, "count");
    p_writer.Uint(p_record.count);
    key(p_writer, "offset");
    p_writer.Int64(p_record.offset);
    key(p_writer, "flags");
    p_writer.Uint(p_record.flags);
    key(p_writer, "enabled");
    p_writer.Bool(p_record.enabled);
    key(p_writer, "visible");
    p_writer.Bool(p_record.visible);
    key(p_writer, "weather");
    p_writer.String(c_weatherWords[p_record.weather]);
    key(p_writer, "state");
    p_writer.String(c_stateWords[p_record.state]);
    key(p_writer, "ratio");
    p_writer.Double(static_cast<double>(p_record.ratio));
    key(p_writer, "weight");
    p_writer.Double(p_record.weight);
    key(p_writer, "longitude");
    p_writer.Double(p_record.longitude);
    key(p_writer, "latitude");
    p_writer.Double(p_record.latitude);
    key(p_writer, "name");
    text(p_writer, p_record.name);
    key(p_writer, "title");
    text(p_writer, p_record.title);
    key(p_writer, "note");
    text(p_writer, p_record.note);
    key(p_writer, "identity");
    text(p_writer, formatIdentity(p_record.identity));
    key(p_writer, "position");
    p_writer.StartObject();
    key(p_writer, "x");
    p_writer.Double(static_cast<double>(p_record.position.x));
    key(p_writer, "y");
    p_writer.Double(static_cast<double>(p_record.position.y));
    key(p_writer, "z");
    p_writer.Double(static_cast<double>(p_record.position.z));
    p_writer.EndObject();
    key(p_writer, "tags");
    p_writer.StartArray();
    for (const std::string& tag : p_record.tags) {
        text(p_writer, tag);
    }
    p_writer.EndArray();
    key(p_writer, "samples");
    p_writer.StartArray();
    for (const double sample : p_record.samples) {
        p_writer.Double(sample);
    }
    p_writer.EndArray();
    p_writer.EndObject();
}

void read(PlainRecord& p_record, const Value& p_value) {
    p_record.id = p_value["id"].GetUint64();
    p_record.number = p_value["number"].GetInt();
    p_record.count = p_value["count"].GetUint();
    p_record.offset = p_value["offset"].GetInt64();
    p_record.flags = p_value["flags"].GetUint();
    p_record.enabled = p_value["enabled"].GetBool();
    p_record.visible = p_value["visible"].GetBool();
    const Value& weather = p_value["weather"];
    p_record.weather = findWord<WeatherEnum>(c_weatherWords, weather.GetString(), weather.GetStringLength());
    const Value& state = p_value["state"];
    p_record.state = findWord<StateEnum>(c_stateWords, state.GetString(), state.GetStringLength());
    p_record.ratio = p_value["ratio"].GetFloat();
    p_record.weight = p_value["weight"].GetDouble();
    p_record.longitude = p_value["longitude"].GetDouble();
    p_record.latitude = p_value["latitude"].GetDouble();
    take(p_record.name, p_value["name"]);
    take(p_record.title, p_value["title"]);
    take(p_record.note, p_value["note"]);
    parseIdentity(p_record.identity, p_value["identity"].GetString());
    const Value& position = p_value["position"];
    p_record.position = {position["x"].GetFloat(), position["y"].GetFloat(), position["z"].GetFloat()};
    const auto tags = p_value["tags"].GetArray();
    p_record.tags.resize(tags.Size());
    for (rapidjson::SizeType i = 0; i < tags.Size(); i++) {
        take(p_record.tags[i], tags[i]);
    }
    const auto samples = p_value["samples"].GetArray();
    p_record.samples.resize(samples.Size());
    for (rapidjson::SizeType i = 0; i < samples.Size(); i++) {
        p_record.samples[i] = samples[i].GetDouble();
    }
}

template <class Writer> class RapidJsonSide : public PlainSide {
public:
    using PlainSide::PlainSide;
    void dropSaved() override { m_buffer = rapidjson::StringBuffer(); }
    void save() override {
        Writer writer(m_buffer);
        if constexpr (std::is_same_v<Writer, IndentingWriter>) {
            writer.SetIndent(' ', 2);
            writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
        }
        writer.StartArray();
        for (const PlainRecord& record : m_records) {
            write(writer, record);
        }
        writer.EndArray();
    }
    size_t getSize() const override { return m_buffer.GetSize(); }
    void load() override {
        rapidjson::Document document;
        // Numbers that read back to the same bits, as ours do.
        document.Parse<rapidjson::kParseFullPrecisionFlag>(m_buffer.GetString(), m_buffer.GetSize());
        m_loaded.resize(document.Size());
        for (rapidjson::SizeType i = 0; i < document.Size(); i++) {
            read(m_loaded[i], document[i]);
        }
    }

private:
    rapidjson::StringBuffer m_buffer;
};

} // namespace

std::unique_ptr<FormatSide> makeRapidJson(const PlainRecords& p_records, bool p_indented) {
    if (p_indented) {
        return std::make_unique<RapidJsonSide<IndentingWriter>>(p_records);
    }
    return std::make_unique<RapidJsonSide<PlainWriter>>(p_records);
}

} // namespace zyr::bench
