#include "host/zyr_codec_listing.h"
#include "host/zyr_codec_roads.h"
#include "host/zyr_codec_state.h"
#include "host/zyr_command_line.h"
#include "host/zyr_ffmpeg_handles.h"
#include "host/zyr_guarded_codecs.h"
#include "host/zyr_plugin_listing.h"
#include "host/zyr_saved_offers.h"
#include "host/zyr_standard_output.h"

#include "zyr_common/platform/zyr_version.h"
#include "zyr_common/text/zyr_number_text.h"

extern "C" {
#include <libavutil/hwcontext.h>
}

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>

namespace zyr::host {

namespace {

using nlohmann::json;

std::string versionText(uint64_t p_version) {
    String text;
    zyr_getVersionString(p_version, text);
    return toText(text);
}

/// The registered classes, by name with their GUIDs, in the order of registration.
json listClasses(Framework& p_framework) {
    json classes = json::array();
    HostApplicationData& data = p_framework.getApplicationData();
    const ScopedReadLock lock(data.m_objectAllocatorLock);
    for (auto it = data.m_objectAllocatorsByName.begin(); it != data.m_objectAllocatorsByName.end(); ++it) {
        const auto object = Ref<IObject>::adopt(it->m_second());
        classes.push_back({{"name", toText(it->m_first)}, {"guid", toText(object->getClassGUID())}});
    }
    return classes;
}

json listOffers(const Market& p_market) {
    json offers = json::array();
    for (const Offer& offer : p_market.m_offers) {
        json entry = describeProposal(*offer.m_proposal);
        entry["class"] = toText(p_market.m_encoders[offer.m_encoder]->getClassName());
        entry["file"] = findModuleFile(*p_market.m_encoders[offer.m_encoder]);
        entry["chosen"] = offer.m_proposal->lossless == ZYR_PROPOSAL_NONE
                              ? std::string("the best rated of the first codec on which both sides agree")
                              : "with --codec " + toText(offer.m_proposal->codecName) +
                                    ", as it is lossless; the best rated unless --encoder names one";
        offers.push_back(entry);
    }
    return offers;
}

json listWishes(const Market& p_market) {
    json wishes = json::array();
    for (const Wish& wish : p_market.m_wishes) {
        json entry = describeRequest(*wish.m_request);
        entry["class"] = toText(p_market.m_decoders[wish.m_decoder]->getClassName());
        entry["file"] = findModuleFile(*p_market.m_decoders[wish.m_decoder]);
        wishes.push_back(entry);
    }
    return wishes;
}

/// What the probes logged on the way: the reason for each codec that is not offered.
json listReasons(const std::vector<std::string>& p_lines, uint32_t p_repeats) {
    json reasons = json::array();
    for (const std::string& line : p_lines) {
        LogLine parts;
        if (parseLogLine(line, parts)) {
            reasons.push_back({{"level", parts.m_level},
                               {"module", parts.m_module},
                               {"function", parts.m_function},
                               {"message", parts.m_message},
                               {"times", 1}});
        }
    }
    if (!reasons.empty()) {
        // The log writes a repeated line once and counts.
        reasons.back()["times"] = p_repeats + 1;
    }
    return reasons;
}

/// Opens the hardware path as the codecs do, since decoders that cannot have it give no reason of their own.
json probeHardware() {
    AVBufferRef* device = nullptr;
    const int result = av_hwdevice_ctx_create(&device, AV_HWDEVICE_TYPE_VAAPI, nullptr, nullptr, 0);
    av_buffer_unref(&device);
    return json::array(
        {{{"device", "vaapi"}, {"usable", result >= 0}, {"reason", result >= 0 ? std::string() : errorText(result)}}});
}

json listRoads(const Market& p_market) {
    json roads = json::array();
    for (const CodecRoad& road : explainRoads(p_market)) {
        roads.push_back({{"kind", road.m_isEncoder ? "encoder" : "decoder"},
                         {"codec", road.m_codec},
                         {"implementation", road.m_implementation},
                         {"hardware", road.m_hardware},
                         {"usable", road.m_usable},
                         {"tried", road.m_tried},
                         {"failed", road.m_failed},
                         {"cure", road.m_cure}});
    }
    return roads;
}

std::string makeRoads(const json& p_roads) {
    std::string text;
    for (const json& road : p_roads) {
        text += "  " + textOf(road["codec"]) + " " + textOf(road["kind"]) + " " + textOf(road["implementation"]) +
                " (" + roadOf(road) + "): " + (road["usable"].get<bool>() ? "usable" : "not usable") +
                "\n    tried   " + textOf(road["tried"]) + "\n";
        if (!road["usable"].get<bool>()) {
            text += "    failed  " + textOf(road["failed"]) + "\n";
        }
        if (!textOf(road["cure"]).empty()) {
            text += "    cure    " + textOf(road["cure"]) + "\n";
        }
    }
    return text;
}

std::string makeReasons(const json& p_all) {
    std::string text = "\nwhat was tried\n" + makeRoads(p_all["roads"]);
    text += "\nwhat the attempts logged\n";
    for (const json& reason : p_all["why"]) {
        const uint32_t times = reason["times"].get<uint32_t>();
        text += "  " + textOf(reason["level"]) + ": " + textOf(reason["message"]) +
                (times > 1 ? " (" + std::to_string(times) + " times)" : "") + "\n";
    }
    for (const json& device : p_all["hardware"]) {
        text += "  hardware " + textOf(device["device"]) + ", for encoders and decoders alike: " +
                (device["usable"].get<bool>() ? "usable" : "cannot be opened: ") + textOf(device["reason"]) + "\n";
    }
    return text;
}

std::string makeText(const json& p_all) {
    std::string text = "framework " + textOf(p_all["framework_version"]) + ", modules in " +
                       textOf(p_all["module_directory"]) + "\n\nplug-ins\n";
    for (const json& plugin : p_all["plugins"]) {
        text += "  " + textOf(plugin["name"]) + " " + textOf(plugin["version"]) + "  " + textOf(plugin["guid"]) +
                "\n    " + textOf(plugin["description"]) + "\n    " + textOf(plugin["file"]) + "\n";
    }
    for (const json& refusal : p_all["refused"]) {
        text += "  refused: " + textOf(refusal) + "\n";
    }
    text += "\nclasses\n";
    for (const json& entry : p_all["classes"]) {
        text += "  " + padded(textOf(entry["name"]), 28) + textOf(entry["guid"]) + "\n";
    }
    return text + makeRecords("encoders offer", p_all["proposals"]) +
           makeRecords("decoders ask for", p_all["requests"]);
}

/// Only what concerns one codec.
json selectCodec(const json& p_all, const std::string& p_codec) {
    json selected = {{"codec", p_codec}};
    for (const char* list : {"proposals", "requests", "roads"}) {
        selected[list] = json::array();
        for (const json& entry : p_all[list]) {
            if (entry["codec"] == p_codec) {
                selected[list].push_back(entry);
            }
        }
    }
    return selected;
}

std::string makeCodecText(const json& p_codec) {
    std::string text = textOf(p_codec["codec"]) + "\n";
    for (const json& record : p_codec["proposals"]) {
        text += "\n" + makeRecordInFull("encoder", record);
    }
    for (const json& record : p_codec["requests"]) {
        text += "\n" + makeRecordInFull("decoder", record);
    }
    return text + "\nwhat was tried\n" + makeRoads(p_codec["roads"]);
}

} // namespace

int runInspect(const InspectOptions& p_options) {
    claimStandardOutput();
    Framework framework(p_options.m_framework);
    if (!p_options.m_loadPath.empty()) {
        return showSavedOffers(p_options, framework);
    }
    if (p_options.m_why) {
        framework.getApplicationData().setLogLevel(std::max(p_options.m_framework.m_logLevel, ZYR_LOG_LEVEL_DEBUG));
    }
    framework.getApplicationData().startListening();
    const Market market = openMarket(framework);
    const std::vector<std::string> lines = framework.getApplicationData().stopListening();
    json all = {{"framework_version", versionText(zyr_getFrameworkVersion())},
                {"module_directory", framework.getModuleDirectory()},
                {"plugin_directories", framework.getPluginDirectories()},
                {"component_modules", {"common", "core", "picture"}},
                {"plugins", listPlugins(framework)},
                {"refused", framework.getRefusals()},
                {"classes", listClasses(framework)},
                {"proposals", listOffers(market)},
                {"requests", listWishes(market)}};
    if (p_options.m_why || !p_options.m_codec.empty()) {
        all["roads"] = listRoads(market);
    }
    if (p_options.m_why) {
        all["why"] = listReasons(lines, framework.getApplicationData().m_logRepeatCount);
        all["hardware"] = probeHardware();
    }
    if (!p_options.m_savePath.empty()) {
        saveCodecOffers(framework, market, p_options.m_savePath);
    }
    int result = EXIT_DONE;
    std::string text;
    if (!p_options.m_codec.empty()) {
        const json selected = selectCodec(all, p_options.m_codec);
        text = p_options.m_json ? selected.dump(2, ' ', false, json::error_handler_t::replace) + "\n"
                                : makeCodecText(selected);
        if (selected["proposals"].empty() && selected["requests"].empty()) {
            fprintf(stderr, "zyr-host: codec '%s' is not usable here\n", maskControls(p_options.m_codec).c_str());
            result = EXIT_CODEC_NOT_USABLE;
        }
    } else if (p_options.m_json) {
        text = all.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
    } else {
        text = makeText(all) + (p_options.m_why ? makeReasons(all) : "");
    }
    return printText(text) ? result : EXIT_RUN_FAILED;
}

} // namespace zyr::host
