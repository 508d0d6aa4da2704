#include "host/report/zyr_full_report.h"
#include "host/report/zyr_report_page.h"
#include "host/report/zyr_report_reader.h"
#include "host/zyr_codec_state.h"
#include "host/zyr_command_line.h"
#include "host/zyr_heap_tuning.h"
#include "host/zyr_input_file.h"
#include "host/zyr_interruption.h"
#include "host/zyr_known_options.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"
#include "host/zyr_stored_stream.h"
#include "host/zyr_stream_run.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace zyr::host {

namespace {

int tellNoMatch(const Choice& p_choice, const std::vector<std::string>& p_log) {
    fprintf(stderr, "zyr-host: no usable pair of encoder and decoder%s%s%s%s\n",
            p_choice.m_codec.empty() ? "" : " for ", p_choice.m_codec.c_str(), p_choice.m_require.empty() ? "" : " in ",
            p_choice.m_require == "hw" ? "hardware" : (p_choice.m_require == "sw" ? "software" : ""));
    for (const std::string& line : p_log) {
        fprintf(stderr, "  %s\n", line.c_str());
    }
    fprintf(stderr, "'zyr-host inspect --why' tells why codecs are not available.\n");
    return EXIT_CODEC_NOT_USABLE;
}

/// What was agreed on before; null after a message where it cannot be used, with the exit code.
std::unique_ptr<Match> takeAgreement(Framework& p_framework, const Market& p_market, const std::string& p_path,
                                     int& p_result) {
    const std::string file = maskControls(p_path);
    try {
        return loadCodecAgreement(p_framework, p_market, p_path);
    } catch (const RunError& error) {
        p_result = EXIT_RUN_FAILED;
        fprintf(stderr, "zyr-host: %s: %s\n", file.c_str(), maskControls(error.what()).c_str());
    } catch (const NotUsableError& error) {
        p_result = EXIT_CODEC_NOT_USABLE;
        fprintf(stderr, "zyr-host: %s: %s\n'zyr-host inspect --why' tells why codecs are not available.\n",
                file.c_str(), maskControls(error.what()).c_str());
    }
    return nullptr;
}

/// MPEG-1 has no word for full range, and players take it for limited.
void fitColors(const StreamOptions& p_options, Match& p_match, std::vector<std::string>& p_notes) {
    if (p_options.m_packetPath.empty() || toText(p_match.m_info.codecName) != "mpeg1video" ||
        firstOf(p_match.m_info.colorSpaces) != ZYR_COLOR_SPACE_BT_601_FR) {
        return;
    }
    p_notes.push_back(preferLimitedRange(p_match)
                          ? "coded in limited range, since an MPEG-1 file cannot say that its range is full"
                          : "players take the file's full range for limited: MPEG-1 cannot say it");
}

/// The best match of those that the user allows; null after a message without any, with the exit code.
std::unique_ptr<Match> negotiate(const StreamOptions& p_options, const Market& p_market,
                                 std::vector<std::string>& p_log, std::vector<std::string>& p_notes, int& p_result) {
    const Choice choice{p_options.m_codec, p_options.m_encoder, p_options.m_decoder, p_options.m_require};
    const std::vector<std::unique_ptr<Match>> matches = judge(p_market, choice, p_log, p_notes);
    const Match* const match = chooseMatch(matches);
    if (match == nullptr) {
        p_result = tellNoMatch(choice, p_log);
        return nullptr;
    }
    auto chosen = std::make_unique<Match>(*match);
    fitColors(p_options, *chosen, p_notes);
    return chosen;
}

EncoderOptions collectOptions(const StreamOptions& p_options, const Match& p_match, Fraction p_rate) {
    const std::string implementation = toText(p_match.m_info.codecImplementation);
    EncoderOptions options = getRateOptions(implementation, p_rate.m_numerator, p_rate.m_denominator);
    if (p_options.m_tune == "screen") {
        options.add(getScreenOptions(implementation));
    }
    if (p_options.m_bitrate > 0) {
        options.add(BitrateController::getOptions(EncoderOptions(toText(p_match.m_info.codecOptions)), implementation,
                                                  p_options.m_bitrate, p_rate));
    }
    options.add(EncoderOptions(p_options.m_encoderOptions));
    return options;
}

bool isFullRange(const Match& p_match) {
    const ColorSpaceEnum space = firstOf(p_match.m_info.colorSpaces);
    return space != ZYR_COLOR_SPACE_BT_601 && space != ZYR_COLOR_SPACE_BT_709;
}

/// What is asked for; otherwise a lossless codec is taken at its word.
unsigned chooseQuality(const StreamOptions& p_options, const FrameCodecInfo& p_info) {
    if (p_options.m_quality >= 0) {
        return unsigned(p_options.m_quality);
    }
    return p_info.lossless ? 100 : 60;
}

void fillIdentity(StreamReport& p_report, const StreamOptions& p_options, const VideoSource& p_source,
                  const Match& p_match) {
    p_report.m_source = p_source.describe();
    p_report.m_rate = p_source.getRate();
    p_report.m_constantRate = p_source.hasConstantRate();
    p_report.m_codec = toText(p_match.m_info.codecName);
    p_report.m_encoder = toText(p_match.m_info.codecImplementation);
    p_report.m_decoder = toText(p_match.m_decoderInfo.codecImplementation);
    p_report.m_hardware = toText(p_match.m_info.hardwareDeviceName);
    p_report.m_colorSpace =
        p_match.m_info.colorSpaces.isEmpty() ? "none" : colorSpaceText(firstOf(p_match.m_info.colorSpaces));
    p_report.m_quality = chooseQuality(p_options, p_match.m_info);
    p_report.m_metrics = p_options.m_metrics;
}

/// The files have what happened frame by frame as well.
void tellInFull(const StreamReport& p_report, StreamOutputs& p_outputs) {
    if (!p_outputs.m_report && !p_outputs.m_page) {
        return;
    }
    const nlohmann::json full = makeFullReport(p_report);
    if (p_outputs.m_report) {
        const std::string json = full.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
        p_outputs.m_report->writeWhole(json);
    }
    if (p_outputs.m_page) {
        p_outputs.m_page->writeWhole(makeReportPage({readReport(p_report.m_source, full)}));
    }
}

/// Puts the report where it was asked for. False when the standard output takes no more.
bool tell(const StreamOptions& p_options, const StreamReport& p_report, StreamOutputs& p_outputs) {
    const std::string json = p_report.toJson().dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
    tellInFull(p_report, p_outputs);
    if (isStandardOutputTaken(p_options)) {
        fputs(p_report.toTable().c_str(), stderr);
        return true;
    }
    return printText(p_options.m_json ? json : p_report.toTable());
}

int exitCodeOf(const StreamOptions& p_options, const StreamReport& p_report) {
    for (const std::string& complaint : p_report.m_complaints) {
        fprintf(stderr, "zyr-host: %s\n", complaint.c_str());
    }
    if (p_report.m_interrupted) {
        return EXIT_BY_SIGNAL + getInterruption();
    }
    const bool good = p_report.m_frames > 0 && p_report.m_failedEncodes == 0 && p_report.m_failedDecodes == 0 &&
                      (p_options.m_tolerant || p_report.m_complaints.empty());
    return good ? EXIT_DONE : EXIT_RUN_FAILED;
}

/// Null when the program was told to end while it waited for the source.
std::unique_ptr<VideoSource> openSource(const StreamOptions& p_options, std::unique_ptr<InputFile>& p_stored) {
    try {
        return openVideoSource(p_options.m_input, p_stored);
    } catch (const RunError&) {
        if (getInterruption() == 0) {
            throw;
        }
        return nullptr;
    }
}

} // namespace

int runStream(const StreamOptions& p_options) {
    refuseSharedFiles(p_options);
    claimStandardOutput();
    tuneHeapForPictures();
    const InterruptGuard guard;
    std::unique_ptr<InputFile> stored;
    const std::unique_ptr<VideoSource> opened = openSource(p_options, stored);
    if (!opened && !stored) {
        return EXIT_BY_SIGNAL + getInterruption();
    }
    Framework framework(p_options.m_framework);
    for (const std::string& refusal : framework.getRefusals()) {
        fprintf(stderr, "zyr-host: %s\n", refusal.c_str());
    }
    const Market market = openMarket(framework);
    // Decodes through the framework, so it ends before the framework does.
    const std::unique_ptr<VideoSource> decoded =
        stored ? openStoredStream(std::move(stored), framework, market) : nullptr;
    VideoSource* const source = decoded ? decoded.get() : opened.get();
    std::vector<std::string> log;
    StreamReport report;
    int result = EXIT_DONE;
    const std::unique_ptr<Match> match = p_options.m_codecInfoPath.empty()
                                             ? negotiate(p_options, market, log, report.m_notes, result)
                                             : takeAgreement(framework, market, p_options.m_codecInfoPath, result);
    if (!match) {
        return result;
    }
    if (toText(market.m_encoders[match->m_offer->m_encoder]->getLibName()) == "ffmpeg") {
        refuseUnknownOptions(EncoderOptions(p_options.m_encoderOptions), toText(match->m_info.codecImplementation));
    }
    if (!p_options.m_saveCodecInfoPath.empty()) {
        saveCodecAgreement(framework, *match, p_options.m_saveCodecInfoPath);
    }
    fillIdentity(report, p_options, *source, *match);
    report.m_negotiation = log;
    report.m_negotiation.push_back("chosen: " + report.m_encoder + " with " + report.m_decoder);
    report.m_worst.setCount(size_t(p_options.m_worst >= 0 ? p_options.m_worst : p_options.m_pagePath.empty() ? 0 : 3));
    const PlaneTap tap(framework.getApplicationData());
    StreamCoder coder(*match, market);
    coder.open(collectOptions(p_options, *match, source->getRate()), chooseQuality(p_options, match->m_info));
    report.m_encoderOptions = toText(match->m_info.codecOptions);
    if (p_options.m_explain) {
        for (const std::string& line : log) {
            fprintf(stderr, "%s\n", line.c_str());
        }
        fprintf(stderr, "chosen: %s with %s\nencoder options: %s\n", report.m_encoder.c_str(), report.m_decoder.c_str(),
                report.m_encoderOptions.c_str());
    }
    for (const std::string& note : report.m_notes) {
        fprintf(stderr, "zyr-host: %s\n", note.c_str());
    }
    const bool fullRange = isFullRange(*match);
    StreamOutputs outputs(p_options, report.m_codec, source->getRate(), fullRange);
    const PacketStream stream{&match->m_decoderInfo,     0,        0, source->getRate(), source->getTimeBase(),
                              source->hasConstantRate(), fullRange};
    StreamRun(p_options, *source, coder, outputs, stream, report).run();
    const bool told = tell(p_options, report, outputs);
    result = exitCodeOf(p_options, report);
    return told || result != EXIT_DONE ? result : EXIT_RUN_FAILED;
}

} // namespace zyr::host
