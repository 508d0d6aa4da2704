#include "host/zyr_codec_roads.h"

#include "host/zyr_ffmpeg_handles.h"

extern "C" {
#include <libavutil/hwcontext.h>
}

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr::host {

namespace {

namespace fs = std::filesystem;

struct KnownRoad {
    bool m_isEncoder;
    const char* m_codec;
    const char* m_implementation;
    const char* m_hardware;
};

constexpr KnownRoad KNOWN_ROADS[] = {
    {true, "vp9", "libvpx-vp9", ""},
    {true, "vp9", "vp9_vaapi", "vaapi"},
    {true, "h264", "h264_vaapi", "vaapi"},
    {true, "mpeg1video", "mpeg1video", ""},
    {false, "vp9", "vp9", ""},
    {false, "vp9", "libvpx-vp9", ""},
    {false, "vp9", "vp9", "vaapi"},
    {false, "h264", "h264", "vaapi"},
    {false, "mpeg1video", "mpeg1video", ""},
};

/// What is missing, and what would help.
struct Diagnosis {
    std::string m_failed;
    std::string m_cure;
};

std::vector<std::string> listRenderNodes(const std::string& p_devices) {
    std::vector<std::string> nodes;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(p_devices, error)) {
        if (entry.path().filename().string().starts_with("renderD")) {
            nodes.push_back(entry.path());
        }
    }
    std::sort(nodes.begin(), nodes.end());
    return nodes;
}

/// Opens the device as the codecs do. Empty when it works.
Diagnosis diagnoseVaapi(const std::string& p_devices) {
    AVBufferRef* device = nullptr;
    const int result = av_hwdevice_ctx_create(&device, AV_HWDEVICE_TYPE_VAAPI, nullptr, nullptr, 0);
    av_buffer_unref(&device);
    if (result >= 0) {
        return {};
    }
    const std::vector<std::string> nodes = listRenderNodes(p_devices);
    if (nodes.empty()) {
        return {"there is no render node in " + p_devices + " (" + errorText(result) + ")",
                "a graphics processor with its kernel driver, or /dev/dri handed into the container"};
    }
    const char* driver = getenv("LIBVA_DRIVER_NAME");
    for (const std::string& node : nodes) {
        const bool opens = access(node.c_str(), R_OK | W_OK) == 0;
        if (opens && driver != nullptr && *driver != 0) {
            return {"libva finds no driver that works with " + node + " (LIBVA_DRIVER_NAME names " + driver +
                        "): " + errorText(result),
                    "unset LIBVA_DRIVER_NAME, so that libva finds the driver itself"};
        }
        if (opens) {
            return {"libva finds no driver that works with " + node + " (" + errorText(result) + ")",
                    "the package with the VA driver of this graphics processor (intel-media-va-driver or "
                    "mesa-va-drivers); vainfo shows what it does"};
        }
    }
    struct stat status {};
    const group* owner = stat(nodes[0].c_str(), &status) == 0 ? getgrgid(status.st_gid) : nullptr;
    return {"this user may not open " + nodes[0], "membership in the group " +
                                                      std::string(owner != nullptr ? owner->gr_name : "render") +
                                                      ", and a new login"};
}

Diagnosis diagnose(const KnownRoad& p_road, const std::string& p_devices) {
    const bool isThere = p_road.m_isEncoder ? avcodec_find_encoder_by_name(p_road.m_implementation) != nullptr
                                            : avcodec_find_decoder_by_name(p_road.m_implementation) != nullptr;
    if (!isThere) {
        return {"this libavcodec is built without " + std::string(p_road.m_implementation),
                "a libavcodec 61 that has it: the distribution's package, or the one that scripts/deps.sh builds"};
    }
    if (*p_road.m_hardware == 0) {
        return {std::string("no loaded plug-in offers it, or it could not be opened (the log tells the error)"),
                "the plug-in zyr_ffmpeg.so in a directory of plug-ins"};
    }
    const Diagnosis device = diagnoseVaapi(p_devices);
    if (!device.m_failed.empty()) {
        return device;
    }
    return {"the VA driver cannot " + std::string(p_road.m_isEncoder ? "encode " : "decode ") + p_road.m_codec +
                (p_road.m_isEncoder ? ", or not with a packet for each frame" : ""),
            "another VA driver or graphics processor; vainfo lists the profiles that this one has"};
}

template <typename Record> bool isRecordOf(const Record& p_record, const KnownRoad& p_road) {
    return p_record.codecName == p_road.m_codec && p_record.codecImplementation == p_road.m_implementation &&
           p_record.hardwareDeviceName == p_road.m_hardware;
}

bool isOffered(const Market& p_market, const KnownRoad& p_road) {
    if (p_road.m_isEncoder) {
        return std::any_of(p_market.m_offers.begin(), p_market.m_offers.end(),
                           [&](const Offer& p_offer) { return isRecordOf(*p_offer.m_proposal, p_road); });
    }
    return std::any_of(p_market.m_wishes.begin(), p_market.m_wishes.end(),
                       [&](const Wish& p_wish) { return isRecordOf(*p_wish.m_request, p_road); });
}

std::string tryText(const KnownRoad& p_road) {
    std::string text = "opens the " + std::string(p_road.m_isEncoder ? "encoder " : "decoder ") +
                       p_road.m_implementation + " of libavcodec at 800x600";
    if (*p_road.m_hardware != 0) {
        text += p_road.m_isEncoder ? " on the first VA device and encodes a frame" : " on the first VA device";
    }
    return text;
}

template <typename Record> void addForeign(const Record& p_record, bool p_isEncoder, std::vector<CodecRoad>& p_roads) {
    for (const KnownRoad& known : KNOWN_ROADS) {
        if (known.m_isEncoder == p_isEncoder && isRecordOf(p_record, known)) {
            return;
        }
    }
    p_roads.push_back({p_isEncoder, toText(p_record.codecName), toText(p_record.codecImplementation),
                       toText(p_record.hardwareDeviceName), true, "asks the plug-in", "", ""});
}

} // namespace

std::vector<CodecRoad> explainRoads(const Market& p_market, const std::string& p_devices) {
    std::vector<CodecRoad> roads;
    for (const KnownRoad& known : KNOWN_ROADS) {
        const bool usable = isOffered(p_market, known);
        const Diagnosis diagnosis = usable ? Diagnosis() : diagnose(known, p_devices);
        roads.push_back({known.m_isEncoder, known.m_codec, known.m_implementation, known.m_hardware, usable,
                         tryText(known), diagnosis.m_failed, diagnosis.m_cure});
    }
    roads.push_back({false, "h264", "h264", "", false, "nothing: it is left out of software on purpose",
                     "H.264 is decoded in hardware only", ""});
    for (const Offer& offer : p_market.m_offers) {
        addForeign(*offer.m_proposal, true, roads);
    }
    for (const Wish& wish : p_market.m_wishes) {
        addForeign(*wish.m_request, false, roads);
    }
    return roads;
}

} // namespace zyr::host
