#include "formats_peers.h"

#include <nlohmann/json.hpp>

namespace zyr::bench {

namespace {

NLOHMANN_JSON_SERIALIZE_ENUM(
    WeatherEnum, {{WEATHER_CALM, "CALM"}, {WEATHER_WIND, "WIND"}, {WEATHER_RAIN, "RAIN"}, {WEATHER_STORM, "STORM"}})
NLOHMANN_JSON_SERIALIZE_ENUM(StateEnum, {{STATE_NEW, "NEW"}, {STATE_RUNNING, "RUNNING"}, {STATE_DONE, "DONE"}})

} // namespace

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(PlainPosition, x, y, z)

static void to_json(nlohmann::json& p_json, const PlainRecord& p_record) {
    p_json = {{"id", p_record.id},
              {"number", p_record.number},
              {"count", p_record.count},
              {"offset", p_record.offset},
              {"flags", p_record.flags},
              {"enabled", p_record.enabled},
              {"visible", p_record.visible},
              {"weather", p_record.weather},
              {"state", p_record.state},
              {"ratio", p_record.ratio},
              {"weight", p_record.weight},
              {"longitude", p_record.longitude},
              {"latitude", p_record.latitude},
              {"name", p_record.name},
              {"title", p_record.title},
              {"note", p_record.note},
              {"identity", formatIdentity(p_record.identity)},
              {"position", p_record.position},
              {"tags", p_record.tags},
              {"samples", p_record.samples}};
}

static void from_json(const nlohmann::json& p_json, PlainRecord& p_record) {
    p_json.at("id").get_to(p_record.id);
    p_json.at("number").get_to(p_record.number);
    p_json.at("count").get_to(p_record.count);
    p_json.at("offset").get_to(p_record.offset);
    p_json.at("flags").get_to(p_record.flags);
    p_json.at("enabled").get_to(p_record.enabled);
    p_json.at("visible").get_to(p_record.visible);
    p_json.at("weather").get_to(p_record.weather);
    p_json.at("state").get_to(p_record.state);
    p_json.at("ratio").get_to(p_record.ratio);
    p_json.at("weight").get_to(p_record.weight);
    p_json.at("longitude").get_to(p_record.longitude);
    p_json.at("latitude").get_to(p_record.latitude);
    p_json.at("name").get_to(p_record.name);
    p_json.at("title").get_to(p_record.title);
    p_json.at("note").get_to(p_record.note);
    parseIdentity(p_record.identity, p_json.at("identity").get_ref<const std::string&>().c_str());
    p_json.at("position").get_to(p_record.position);
    p_json.at("tags").get_to(p_record.tags);
    p_json.at("samples").get_to(p_record.samples);
}

namespace {

class NlohmannSide : public PlainSide {
public:
    using PlainSide::PlainSide;
    void save() override { m_text = nlohmann::json(m_records).dump(); }
    void load() override { nlohmann::json::parse(m_text).get_to(m_loaded); }
};

} // namespace

std::unique_ptr<FormatSide> makeNlohmann(const PlainRecords& p_records) {
    return std::make_unique<NlohmannSide>(p_records);
}

} // namespace zyr::bench
