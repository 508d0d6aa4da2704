#include "host/zyr_command_line.h"
#include "host/zyr_ffmpeg_handles.h"
#include "host/zyr_negotiation.h"

#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

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

template <typename Fill> std::string filled(Fill&& p_fill) {
    String text;
    p_fill(text);
    return toText(text);
}

json listPlugins(Framework& p_framework) {
    json plugins = json::array();
    const IListOfObjects* modules = p_framework.getApplicationData().getPluginModules(0);
    if (modules == nullptr) {
        return plugins;
    }
    for (List<IObject*>::const_iterator it = modules->beginConst(); it != modules->endConst(); ++it) {
        const IPluginModule* plugin = static_cast<const IPluginModule*>(*it);
        GUID_t guid;
        plugin->getPluginGUID(guid);
        List<String> dependencies;
        plugin->getDependenciesComponentModules(dependencies);
        json names = json::array();
        for (List<String>::iterator name = dependencies.begin(); name != dependencies.end(); ++name) {
            names.push_back(toText(*name));
        }
        plugins.push_back({{"name", filled([&](String& p_out) { plugin->getName(p_out); })},
                           {"long_name", filled([&](String& p_out) { plugin->getLongName(p_out); })},
                           {"version", versionText(plugin->getVersion())},
                           {"guid", toText(guid)},
                           {"description", filled([&](String& p_out) { plugin->getDescription(p_out); })},
                           {"namespace", filled([&](String& p_out) { plugin->getNamespace(p_out); })},
                           {"component_modules", names}});
    }
    return plugins;
}

/// The registered classes, by name with their GUIDs, in the order of registration.
json listClasses(Framework& p_framework) {
    json classes = json::array();
    HostApplicationData& data = p_framework.getApplicationData();
    data.m_objectAllocatorLock.readLock();
    for (auto it = data.m_objectAllocatorsByName.begin(); it != data.m_objectAllocatorsByName.end(); ++it) {
        const ObjectHandle<IObject> object(it->m_second());
        classes.push_back({{"name", toText(it->m_first)}, {"guid", toText(object->getClassGUID())}});
    }
    data.m_objectAllocatorLock.unlock();
    return classes;
}

template <typename Record> json describeCommon(const Record& p_record) {
    return {{"codec", toText(p_record.codecName)},
            {"implementation", toText(p_record.codecImplementation)},
            {"options", toText(p_record.codecOptions)},
            {"hardware", toText(p_record.hardwareDeviceName)},
            {"rating", ratingText(p_record.rating)}};
}

/// The features that a record names, as texts; features at "NONE" are left out.
template <typename Record, typename Convert> json describeFeatures(const Record& r, Convert&& p_convert) {
    json features = json::object();
    const auto add = [&](const char* p_name, auto p_value) {
        if (p_value != 0) {
            features[p_name] = p_convert(p_value);
        }
    };
    add("planesModelSingle", r.planesModelSingle);
    add("planesModel420", r.planesModel420);
    add("planesModel410", r.planesModel410);
    add("planesModel411", r.planesModel411);
    add("planesModel422", r.planesModel422);
    add("planesModel444", r.planesModel444);
    add("colorSpaceRGB", r.colorSpaceRGB);
    add("colorSpaceBT601", r.colorSpaceBT601);
    add("colorSpaceBT601FullRange", r.colorSpaceBT601FullRange);
    add("colorSpaceBT709", r.colorSpaceBT709);
    add("colorSpaceBT709FullRange", r.colorSpaceBT709FullRange);
    add("codecProfileBaseline", r.codecProfileBaseline);
    add("codecProfileMain", r.codecProfileMain);
    add("codecProfileHigh", r.codecProfileHigh);
    add("variableQuality", r.variableQuality);
    add("video", r.video);
    add("lossless", r.lossless);
    add("packedBlocks", r.packedBlocks);
    add("multiSlice", r.multiSlice);
    add("compressionRle", r.compressionRle);
    add("compressionLz4", r.compressionLz4);
    add("compressionZip", r.compressionZip);
    return features;
}

std::string requestText(RequestTypeEnum p_type) {
    return filled([&](String& p_out) {
        uint32_t number = p_type;
        zyr_convertEnumeration<RequestTypeEnum>(p_out, number, 0);
    });
}

std::string proposalText(ProposalTypeEnum p_type) {
    return filled([&](String& p_out) {
        uint32_t number = p_type;
        zyr_convertEnumeration<ProposalTypeEnum>(p_out, number, 0);
    });
}

json listOffers(const Market& p_market) {
    json offers = json::array();
    for (const Offer& offer : p_market.m_offers) {
        json entry = describeCommon(*offer.m_proposal);
        entry["class"] = toText(p_market.m_encoders[offer.m_encoder]->getClassName());
        entry["adapter"] = offer.m_proposal->adapterID;
        entry["features"] = describeFeatures(*offer.m_proposal, proposalText);
        offers.push_back(entry);
    }
    return offers;
}

json listWishes(const Market& p_market) {
    json wishes = json::array();
    for (const Wish& wish : p_market.m_wishes) {
        json entry = describeCommon(*wish.m_request);
        entry["class"] = toText(p_market.m_decoders[wish.m_decoder]->getClassName());
        entry["features"] = describeFeatures(*wish.m_request, requestText);
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

std::string textOf(const json& p_value) {
    return p_value.get<std::string>();
}

void printRecords(const char* p_title, const json& p_records) {
    printf("\n%s\n", p_title);
    if (p_records.empty()) {
        printf("  none\n");
    }
    for (const json& record : p_records) {
        const std::string hardware = textOf(record["hardware"]);
        const std::string options = textOf(record["options"]);
        printf("  %-11s %-13s %-11s %s%s%s\n", textOf(record["codec"]).c_str(),
               textOf(record["implementation"]).c_str(), textOf(record["rating"]).c_str(),
               hardware.empty() ? "software" : hardware.c_str(), options.empty() ? "" : "  ", options.c_str());
    }
}

void printText(const json& p_all) {
    printf("framework %s, modules in %s\n", textOf(p_all["framework_version"]).c_str(),
           textOf(p_all["module_directory"]).c_str());
    printf("\nplug-ins\n");
    for (const json& plugin : p_all["plugins"]) {
        printf("  %s %s  %s\n    %s\n", textOf(plugin["name"]).c_str(), textOf(plugin["version"]).c_str(),
               textOf(plugin["guid"]).c_str(), textOf(plugin["description"]).c_str());
    }
    for (const json& refusal : p_all["refused"]) {
        printf("  refused: %s\n", textOf(refusal).c_str());
    }
    printf("\nclasses\n");
    for (const json& entry : p_all["classes"]) {
        printf("  %-28s %s\n", textOf(entry["name"]).c_str(), textOf(entry["guid"]).c_str());
    }
    printRecords("encoders offer", p_all["proposals"]);
    printRecords("decoders ask for", p_all["requests"]);
    if (p_all.contains("why")) {
        printf("\nwhy the others are not available\n");
        for (const json& reason : p_all["why"]) {
            printf("  %s: %s", textOf(reason["level"]).c_str(), textOf(reason["message"]).c_str());
            const uint32_t times = reason["times"].get<uint32_t>();
            if (times > 1) {
                printf(" (%u times)", times);
            }
            printf("\n");
        }
        for (const json& device : p_all["hardware"]) {
            const bool usable = device["usable"].get<bool>();
            printf("  hardware %s, for encoders and decoders alike: %s%s\n", textOf(device["device"]).c_str(),
                   usable ? "usable" : "cannot be opened: ", textOf(device["reason"]).c_str());
        }
    }
}

} // namespace

std::string ratingText(CodecRatingEnum p_rating) {
    return filled([&](String& p_out) {
        uint32_t number = p_rating;
        zyr_convertEnumeration<CodecRatingEnum>(p_out, number, 0);
    });
}

std::string colorSpaceText(ColorSpaceEnum p_space) {
    return filled([&](String& p_out) {
        uint32_t number = p_space;
        zyr_convertEnumeration<ColorSpaceEnum>(p_out, number, 0);
    });
}

int runInspect(const InspectOptions& p_options) {
    Framework framework(p_options.m_framework);
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
    if (p_options.m_why) {
        all["why"] = listReasons(lines, framework.getApplicationData().m_logRepeatCount);
        all["hardware"] = probeHardware();
    }
    if (p_options.m_json) {
        printf("%s\n", all.dump(2).c_str());
    } else {
        printText(all);
    }
    if (fflush(stdout) != 0) {
        return EXIT_RUN_FAILED;
    }
    return EXIT_DONE;
}

} // namespace zyr::host
