#include "host/zyr_codec_listing.h"

#include "host/zyr_framework.h"
#include "host/zyr_standard_output.h"

#include <algorithm>

namespace zyr::host {

using nlohmann::json;

namespace {

template <typename Fill> std::string filled(Fill&& p_fill) {
    String text;
    p_fill(text);
    return toText(text);
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

} // namespace

json describeProposal(const FrameCodecProposal& p_proposal) {
    json entry = describeCommon(p_proposal);
    entry["adapter"] = p_proposal.adapterID;
    entry["features"] = describeFeatures(p_proposal, proposalText);
    return entry;
}

json describeRequest(const FrameCodecRequest& p_request) {
    json entry = describeCommon(p_request);
    entry["features"] = describeFeatures(p_request, requestText);
    return entry;
}

std::string textOf(const json& p_value) {
    return maskControls(p_value.get<std::string>());
}

std::string padded(const std::string& p_text, size_t p_width) {
    std::string text = p_text;
    text.resize(std::max(text.size(), p_width), ' ');
    return text + " ";
}

std::string roadOf(const json& p_record) {
    const std::string hardware = textOf(p_record["hardware"]);
    return hardware.empty() ? "software" : hardware;
}

std::string makeRecords(const char* p_title, const json& p_records) {
    std::string text = "\n" + std::string(p_title) + "\n";
    if (p_records.empty()) {
        text += "  none\n";
    }
    for (const json& record : p_records) {
        const std::string options = textOf(record["options"]);
        text += "  " + padded(textOf(record["codec"]), 11) + padded(textOf(record["implementation"]), 13) +
                padded(textOf(record["rating"]), 11) + roadOf(record) + (options.empty() ? "" : "  " + options) + "\n";
    }
    return text;
}

std::string makeRecordInFull(const char* p_kind, const json& p_record) {
    std::string text = std::string(p_kind) + " " + textOf(p_record["implementation"]) + ", " + roadOf(p_record) + ", " +
                       textOf(p_record["rating"]) + "\n";
    if (p_record.contains("class")) {
        text += "  " + textOf(p_record["class"]) + " in " + textOf(p_record["file"]) + "\n";
    }
    if (!textOf(p_record["options"]).empty()) {
        text += "  options " + textOf(p_record["options"]) + "\n";
    }
    if (p_record.contains("chosen")) {
        text += "  chosen " + textOf(p_record["chosen"]) + "\n";
    }
    for (const auto& [name, value] : p_record["features"].items()) {
        text += "  " + padded(name, 26) + textOf(value) + "\n";
    }
    return text;
}

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

} // namespace zyr::host
