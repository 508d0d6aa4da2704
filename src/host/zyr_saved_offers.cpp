#include "host/zyr_saved_offers.h"

#include "host/zyr_codec_listing.h"
#include "host/zyr_codec_state.h"
#include "host/zyr_guarded_codecs.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

#include <algorithm>
#include <cstdio>

namespace zyr::host {

namespace {

using nlohmann::json;

/// The two lists of records, and how a record of each is called.
constexpr std::pair<const char*, const char*> LISTS[] = {{"proposals", "encoder"}, {"requests", "decoder"}};

bool isWanted(const json& p_record, const std::string& p_codec) {
    return p_codec.empty() || p_record["codec"] == p_codec;
}

void add(json& p_list, json p_record, const std::string& p_codec) {
    if (isWanted(p_record, p_codec)) {
        p_list.push_back(std::move(p_record));
    }
}

json describeSaved(Framework& p_framework, const std::string& p_path, const std::string& p_codec) {
    Ref<CodecOffers> offers;
    try {
        offers = loadCodecOffers(p_framework, p_path);
    } catch (const RunError& error) {
        throw RunError(maskControls(p_path) + ": " + maskControls(error.what()));
    }
    json all = {{"proposals", json::array()}, {"requests", json::array()}};
    for (const FrameCodecProposal& proposal : offers->m_first) {
        add(all["proposals"], describeProposal(proposal), p_codec);
    }
    for (const FrameCodecRequest& request : offers->m_second) {
        add(all["requests"], describeRequest(request), p_codec);
    }
    return all;
}

json describeHere(Framework& p_framework, const std::string& p_codec) {
    const Market market = openMarket(p_framework);
    json all = {{"proposals", json::array()}, {"requests", json::array()}};
    for (const Offer& offer : market.m_offers) {
        add(all["proposals"], describeProposal(*offer.m_proposal), p_codec);
    }
    for (const Wish& wish : market.m_wishes) {
        add(all["requests"], describeRequest(*wish.m_request), p_codec);
    }
    return all;
}

bool isSameRoad(const json& p_first, const json& p_second) {
    return p_first["codec"] == p_second["codec"] && p_first["implementation"] == p_second["implementation"] &&
           p_first["hardware"] == p_second["hardware"];
}

/// Each field of two records of one road that differs; null stands for a feature that one of them does not name.
json compareFields(const json& p_there, const json& p_here) {
    json fields = json::object();
    for (const char* name : {"options", "rating"}) {
        if (p_there[name] != p_here[name]) {
            fields[name] = {{"there", p_there[name]}, {"here", p_here[name]}};
        }
    }
    json names = p_there["features"];
    names.update(p_here["features"]);
    for (const auto& [name, any] : names.items()) {
        const json there = p_there["features"].value(name, json());
        const json here = p_here["features"].value(name, json());
        if (there != here) {
            fields[name] = {{"there", there}, {"here", here}};
        }
    }
    return fields;
}

json makeDifference(const char* p_kind, const json& p_record, const char* p_where) {
    return {{"kind", p_kind},
            {"codec", p_record["codec"]},
            {"implementation", p_record["implementation"]},
            {"hardware", p_record["hardware"]},
            {"where", p_where}};
}

/// Roads in the order of the file, then those that are only here.
json compare(const json& p_there, const json& p_here) {
    json differences = json::array();
    for (const auto& [list, kind] : LISTS) {
        json left = p_here[list];
        for (const json& record : p_there[list]) {
            const auto twin = std::find_if(left.begin(), left.end(),
                                           [&](const json& p_other) { return isSameRoad(record, p_other); });
            if (twin == left.end()) {
                differences.push_back(makeDifference(kind, record, "there"));
                continue;
            }
            json fields = compareFields(record, *twin);
            if (!fields.empty()) {
                differences.push_back(makeDifference(kind, record, "both"));
                differences.back()["fields"] = std::move(fields);
            }
            left.erase(twin);
        }
        for (const json& record : left) {
            differences.push_back(makeDifference(kind, record, "here"));
        }
    }
    return differences;
}

std::string valueOf(const json& p_value) {
    return p_value.is_null() ? "none" : "\"" + textOf(p_value) + "\"";
}

/// As in differences of objects: "-" before what the file has, "+" before what this machine has.
std::string makeDifferences(const json& p_differences) {
    std::string text;
    for (const json& one : p_differences) {
        const std::string where = textOf(one["where"]);
        text += where == "there" ? "- " : where == "here" ? "+ " : "  ";
        text += textOf(one["kind"]) + " " + textOf(one["codec"]) + " " + textOf(one["implementation"]) + " (" +
                roadOf(one) + ")\n";
        if (where != "both") {
            continue;
        }
        for (const auto& [name, values] : one["fields"].items()) {
            text += "  - " + name + ": " + valueOf(values["there"]) + "\n  + " + name + ": " + valueOf(values["here"]) +
                    "\n";
        }
    }
    return text;
}

std::string makeInFull(const json& p_all) {
    std::string text;
    for (const auto& [list, kind] : LISTS) {
        for (const json& record : p_all[list]) {
            text += (text.empty() ? "" : "\n") + makeRecordInFull(kind, record);
        }
    }
    return text;
}

} // namespace

int showSavedOffers(const InspectOptions& p_options, Framework& p_framework) {
    json all = describeSaved(p_framework, p_options.m_loadPath, p_options.m_codec);
    int result = EXIT_DONE;
    std::string text;
    if (p_options.m_compare) {
        all = {{"differences", compare(all, describeHere(p_framework, p_options.m_codec))}};
        result = all["differences"].empty() ? EXIT_DONE : EXIT_RUN_FAILED;
        text = makeDifferences(all["differences"]);
    } else if (p_options.m_codec.empty()) {
        text = makeRecords("encoders offered", all["proposals"]).substr(1) +
               makeRecords("decoders asked for", all["requests"]);
    } else {
        text = makeInFull(all);
        if (text.empty()) {
            fprintf(stderr, "zyr-host: codec '%s' was not usable where %s was saved\n",
                    maskControls(p_options.m_codec).c_str(), maskControls(p_options.m_loadPath).c_str());
            result = EXIT_CODEC_NOT_USABLE;
        }
    }
    if (p_options.m_json) {
        text = all.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
    }
    return printText(text) ? result : EXIT_RUN_FAILED;
}

} // namespace zyr::host
