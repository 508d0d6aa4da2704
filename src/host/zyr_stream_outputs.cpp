#include "host/zyr_stream_outputs.h"

#include "host/zyr_interruption.h"
#include "host/zyr_network_output.h"
#include "host/zyr_run_error.h"

#include <filesystem>
#include <functional>
#include <sys/stat.h>

namespace zyr::host {

namespace {

struct NamedPath {
    const char* m_option;
    const std::string* m_path;
};

std::vector<NamedPath> outputsOf(const StreamOptions& p_options) {
    return {{"--packets", &p_options.m_packetPath},   {"--packets-sdp", &p_options.m_packetSdpPath},
            {"--pictures", &p_options.m_picturePath}, {"--source-pictures", &p_options.m_sourcePicturePath},
            {"--report", &p_options.m_reportPath},    {"--frames-log", &p_options.m_framesLogPath},
            {"--html", &p_options.m_pagePath},        {"--save-codec-info", &p_options.m_saveCodecInfoPath}};
}

/// True when both paths lead, or would lead once created, to the same ordinary file.
bool areSameFile(const std::string& p_first, const std::string& p_second) {
    if (p_first.empty() || p_second.empty() || p_first == "-" || p_second == "-") {
        return false;
    }
    struct stat first {};
    struct stat second {};
    const bool firstIsThere = stat(p_first.c_str(), &first) == 0;
    const bool secondIsThere = stat(p_second.c_str(), &second) == 0;
    if (firstIsThere && secondIsThere) {
        return S_ISREG(first.st_mode) && first.st_dev == second.st_dev && first.st_ino == second.st_ino;
    }
    std::error_code error;
    return firstIsThere == secondIsThere &&
           std::filesystem::weakly_canonical(p_first, error) == std::filesystem::weakly_canonical(p_second, error);
}

NetworkOutputOptions networkOptionsOf(const StreamOptions& p_options) {
    NetworkOutputOptions options;
    options.m_address = p_options.m_packetPath;
    options.m_format = p_options.m_packetFormat;
    options.m_sdpPath = p_options.m_packetSdpPath;
    options.m_isEnding = [] { return getInterruption() != 0; };
    return options;
}

} // namespace

void refuseSharedFiles(const StreamOptions& p_options) {
    const std::vector<NamedPath> outputs = outputsOf(p_options);
    if (isNetworkAddress(p_options.m_packetPath)) {
        checkNetworkOutput(networkOptionsOf(p_options));
    } else if (!p_options.m_packetSdpPath.empty()) {
        throw UsageError("--packets-sdp goes with --packets rtp://");
    }
    std::string taker = p_options.m_json ? "--json" : "";
    for (size_t i = 0; i < outputs.size(); i++) {
        const std::string& path = *outputs[i].m_path;
        if (areSameFile(path, p_options.m_input)) {
            throw UsageError(std::string(outputs[i].m_option) + " would overwrite the input '" + path + "'");
        }
        for (size_t k = 0; k < i; k++) {
            if (areSameFile(path, *outputs[k].m_path)) {
                throw UsageError(std::string(outputs[k].m_option) + " and " + outputs[i].m_option + " both name '" +
                                 path + "'");
            }
        }
        if (path == "-" && !taker.empty()) {
            throw UsageError(taker + " and " + outputs[i].m_option + " both want the standard output");
        }
        if (path == "-") {
            taker = outputs[i].m_option;
        }
    }
}

bool isStandardOutputTaken(const StreamOptions& p_options) {
    for (const NamedPath& output : outputsOf(p_options)) {
        if (*output.m_path == "-") {
            return true;
        }
    }
    return false;
}

StreamOutputs::StreamOutputs(const StreamOptions& p_options, const std::string& p_codec, Fraction p_rate,
                             bool p_fullRange)
    : m_options(p_options) {
    if (!p_options.m_packetPath.empty()) {
        m_packets = isNetworkAddress(p_options.m_packetPath)
                        ? openNetworkOutput(networkOptionsOf(p_options), p_codec)
                        : openPacketFile(p_options.m_packetPath, p_options.m_packetFormat, p_codec);
    }
    if (!p_options.m_picturePath.empty()) {
        m_pictures = openPictureFile(p_options.m_picturePath, p_rate, p_fullRange);
    }
    if (!p_options.m_sourcePicturePath.empty()) {
        m_sourcePictures = openPictureFile(p_options.m_sourcePicturePath, p_rate, p_fullRange);
    }
    if (!p_options.m_framesLogPath.empty()) {
        m_framesLog = std::make_unique<FrameLog>(p_options.m_framesLogPath);
    }
    if (!p_options.m_reportPath.empty()) {
        m_report = std::make_unique<OutputFile>(p_options.m_reportPath);
    }
    if (!p_options.m_pagePath.empty()) {
        m_page = std::make_unique<OutputFile>(p_options.m_pagePath);
    }
}

void StreamOutputs::close() {
    std::exception_ptr error;
    const auto tryTo = [&](const std::function<void()>& p_close) {
        try {
            p_close();
        } catch (const RunError&) {
            error = error ? error : std::current_exception();
        }
    };
    if (m_packets) {
        tryTo([&] { m_packets->close(); });
    }
    if (m_pictures) {
        tryTo([&] { m_pictures->close(); });
    }
    if (m_sourcePictures) {
        tryTo([&] { m_sourcePictures->close(); });
    }
    if (m_framesLog) {
        tryTo([&] { m_framesLog->close(); });
    }
    if (error) {
        std::rethrow_exception(error);
    }
}

std::vector<std::string> StreamOutputs::getPaths() const {
    std::vector<std::string> paths;
    if (m_packets) {
        paths.push_back(withoutSecrets(m_options.m_packetPath));
    }
    for (const PictureFile* pictures : {m_pictures.get(), m_sourcePictures.get()}) {
        if (pictures != nullptr) {
            const std::vector<std::string> more = pictures->getPaths();
            paths.insert(paths.end(), more.begin(), more.end());
        }
    }
    if (m_framesLog) {
        paths.push_back(m_options.m_framesLogPath);
    }
    return paths;
}

std::vector<std::string> StreamOutputs::getNotes() const {
    return m_packets ? m_packets->getNotes() : std::vector<std::string>();
}

} // namespace zyr::host
