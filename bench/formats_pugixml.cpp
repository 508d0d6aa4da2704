#include "formats_peers.h"

#include <pugixml.hpp>

namespace zyr::bench {

namespace {

void write(pugi::xml_node p_node, const PlainRecord& p_record) {
    p_node.append_attribute("id").set_value(static_cast<unsigned long long>(p_record.id));
    p_node.append_attribute("number").set_value(p_record.number);
    p_node.append_attribute("count").set_value(p_record.count);
    p_node.append_attribute("offset").set_value(static_cast<long long>(p_record.offset));
    p_node.append_attribute("flags").set_value(p_record.flags);
    p_node.append_attribute("enabled").set_value(p_record.enabled);
    p_node.append_attribute("visible").set_value(p_record.visible);
    p_node.append_attribute("weather").set_value(c_weatherWords[p_record.weather]);
    p_node.append_attribute("state").set_value(c_stateWords[p_record.state]);
    p_node.append_attribute("ratio").set_value(p_record.ratio);
    p_node.append_attribute("weight").set_value(p_record.weight);
    p_node.append_attribute("longitude").set_value(p_record.longitude);
    p_node.append_attribute("latitude").set_value(p_record.latitude);
    p_node.append_attribute("name").set_value(p_record.name.c_str());
    p_node.append_attribute("title").set_value(p_record.title.c_str());
    p_node.append_attribute("identity").set_value(formatIdentity(p_record.identity).c_str());
    p_node.append_child("note").text().set(p_record.note.c_str());
    pugi::xml_node position = p_node.append_child("position");
    position.append_attribute("x").set_value(p_record.position.x);
    position.append_attribute("y").set_value(p_record.position.y);
    position.append_attribute("z").set_value(p_record.position.z);
    pugi::xml_node tags = p_node.append_child("tags");
    for (const std::string& tag : p_record.tags) {
        tags.append_child("item").text().set(tag.c_str());
    }
    pugi::xml_node samples = p_node.append_child("samples");
    for (const double sample : p_record.samples) {
        samples.append_child("item").text().set(sample);
    }
}

void read(PlainRecord& p_record, pugi::xml_node p_node) {
    p_record.id = p_node.attribute("id").as_ullong();
    p_record.number = p_node.attribute("number").as_int();
    p_record.count = p_node.attribute("count").as_uint();
    p_record.offset = p_node.attribute("offset").as_llong();
    p_record.flags = p_node.attribute("flags").as_uint();
    p_record.enabled = p_node.attribute("enabled").as_bool();
    p_record.visible = p_node.attribute("visible").as_bool();
    const char* weather = p_node.attribute("weather").value();
    p_record.weather = findWord<WeatherEnum>(c_weatherWords, weather, strlen(weather));
    const char* state = p_node.attribute("state").value();
    p_record.state = findWord<StateEnum>(c_stateWords, state, strlen(state));
    p_record.ratio = p_node.attribute("ratio").as_float();
    p_record.weight = p_node.attribute("weight").as_double();
    p_record.longitude = p_node.attribute("longitude").as_double();
    p_record.latitude = p_node.attribute("latitude").as_double();
    p_record.name = p_node.attribute("name").value();
    p_record.title = p_node.attribute("title").value();
    parseIdentity(p_record.identity, p_node.attribute("identity").value());
    p_record.note = p_node.child("note").text().get();
    const pugi::xml_node position = p_node.child("position");
    p_record.position = {position.attribute("x").as_float(), position.attribute("y").as_float(),
                         position.attribute("z").as_float()};
    for (const pugi::xml_node tag : p_node.child("tags")) {
        p_record.tags.emplace_back(tag.text().get());
    }
    for (const pugi::xml_node sample : p_node.child("samples")) {
        p_record.samples.push_back(sample.text().as_double());
    }
}

/// Appends what is written to a text.
struct TextWriter : pugi::xml_writer {
    explicit TextWriter(std::string& p_text) : m_text(p_text) {}
    void write(const void* p_data, size_t p_size) override { m_text.append(static_cast<const char*>(p_data), p_size); }
    std::string& m_text;
};

class PugixmlSide : public PlainSide {
public:
    using PlainSide::PlainSide;
    void save() override {
        pugi::xml_document document;
        pugi::xml_node root = document.append_child("records");
        for (const PlainRecord& record : m_records) {
            write(root.append_child("item"), record);
        }
        TextWriter writer(m_text);
        document.save(writer);
    }
    void load() override {
        pugi::xml_document document;
        if (!document.load_buffer(m_text.data(), m_text.size())) {
            abort();
        }
        const auto nodes = document.child("records").children();
        m_loaded.reserve(static_cast<size_t>(std::distance(nodes.begin(), nodes.end())));
        for (const pugi::xml_node node : nodes) {
            read(m_loaded.emplace_back(), node);
        }
    }
};

} // namespace

std::unique_ptr<FormatSide> makePugixml(const PlainRecords& p_records) {
    return std::make_unique<PugixmlSide>(p_records);
}

} // namespace zyr::bench
