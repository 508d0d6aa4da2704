#include "host/zyr_command_line.h"
#include "host/zyr_completion.h"
#include "host/zyr_conform_arguments.h"
#include "host/zyr_encoder_options.h"
#include "host/zyr_framework_arguments.h"
#include "host/zyr_live_arguments.h"
#include "host/zyr_new_plugin_arguments.h"
#include "host/zyr_object_arguments.h"
#include "host/zyr_object_file.h"
#include "host/zyr_plugin_guard.h"
#include "host/zyr_standard_output.h"
#include "host/zyr_video_source.h"
#include "zyr_common/platform/zyr_time.h"
#include "zyr_common/platform/zyr_version.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <sstream>

namespace zyr::host {

namespace {

constexpr const char* EXIT_CODES = "Exit codes: 0 done, 1 the run failed, 2 wrong usage, 3 the wanted codec is not "
                                   "usable here, 4 a module failed to load.";

std::string checkSize(const std::string& p_text) {
    uint32_t width = 0;
    uint32_t height = 0;
    return parseSize(p_text, width, height) ? "" : "'" + p_text + "' is not a size such as 1280x720";
}

bool parseResize(const std::string& p_text, ResizeStep& p_step) {
    const size_t colon = p_text.find(':');
    if (colon == 0 || colon == std::string::npos || p_text.find_first_not_of("0123456789") != colon || colon > 12) {
        return false;
    }
    p_step.m_frame = std::stoull(p_text.substr(0, colon));
    return parseSize(p_text.substr(colon + 1), p_step.m_width, p_step.m_height);
}

std::string checkResize(const std::string& p_text) {
    ResizeStep step{};
    return parseResize(p_text, step) ? "" : "'" + p_text + "' is not of the form FRAME:WIDTHxHEIGHT";
}

std::string checkScale(const std::string& p_text) {
    // What is no number at all is told by the conversion.
    const double scale = strtod(p_text.c_str(), nullptr);
    return scale >= 0.0001 && scale <= 1000 ? "" : "'" + p_text + "' is not a number from 0.0001 to 1000";
}

std::string checkCount(const std::string& p_text) {
    const bool number =
        !p_text.empty() && p_text.size() < 20 && p_text.find_first_not_of("0123456789") == std::string::npos;
    return number && p_text.find_first_not_of('0') != std::string::npos ? ""
                                                                        : "'" + p_text + "' is not a number above 0";
}

bool parseBitrate(const std::string& p_text, uint64_t& p_bitrate) {
    double number = 0;
    const char* const end = p_text.data() + p_text.size();
    const auto [stop, error] = std::from_chars(p_text.data(), end, number);
    const std::string unit(stop, end);
    const double factor = unit.empty() ? 1 : unit == "k" ? 1e3 : unit == "M" ? 1e6 : 0;
    const double bits = number * factor;
    if (error != std::errc() || !(bits >= 1000 && bits <= 1e9)) {
        return false;
    }
    p_bitrate = uint64_t(bits);
    return true;
}

std::string checkBitrate(const std::string& p_text) {
    uint64_t bitrate = 0;
    return parseBitrate(p_text, bitrate) ? "" : "'" + p_text + "' is not a bitrate such as 800k, from 1k to 1000M";
}

std::string checkEncoderOptions(const std::string& p_text) {
    return EncoderOptions::isWellFormed(p_text) ? "" : "'" + p_text + "' is not of the form key=value,key=value";
}

std::string checkObjectPath(const std::string& p_path) {
    return isObjectFormat(getExtensionOf(p_path))
               ? ""
               : "the extension of '" + p_path + "' names no format: raw, zbf, xml and json do";
}

struct Program {
    CLI::App m_app{"Host of the Zyrmont codec plug-ins: shows what works here and sends video through it.", "zyr-host"};
    InspectOptions m_inspect;
    DoctorOptions m_doctor;
    StreamOptions m_stream;
    ReportOptions m_report;
    SessionOptions m_session;
    SettingsOptions m_settings;
    LaunchOptions m_launch;
    PathOptions m_path;
    LayoutOptions m_layout;
    ObjectArguments m_object;
    LiveArguments m_live;
    std::string m_shell;
    ConformArguments m_conform;
    NewPluginArguments m_newPlugin;
    std::string m_size;
    std::string m_bitrate;
    std::vector<std::string> m_resizes;
    int m_result = EXIT_DONE;
    uint64_t m_startTime = zyr_getCurrentTime();

    Program() {
        m_app.set_version_flag("--version", "zyr-host " + std::string(zyr_getFrameworkVersionString()));
        m_app.footer(EXIT_CODES);
        m_app.require_subcommand(1);
        addInspect();
        addDoctor();
        addStream();
        addReport();
        addSession();
        addSettings();
        addLaunch();
        addPath();
        addLayout();
        m_object.add(m_app, m_result);
        m_live.add(m_app, m_result);
        addCompletion();
        m_conform.add(m_app, m_result);
        m_newPlugin.add(m_app, m_result);
    }

    void addInspect() {
        CLI::App* command = m_app.add_subcommand(
            "inspect", "List modules, classes and what each encoder and decoder offers on this machine");
        command->add_option("codec", m_inspect.m_codec, "Show this codec in full (vp9, h264, mpeg1video...)");
        addFrameworkOptions(*command, m_inspect.m_framework);
        command->add_flag("--json", m_inspect.m_json, "Print JSON on the standard output");
        command->add_flag("--why", m_inspect.m_why,
                          "Tell for each codec what was tried, what failed and what would help");
        command
            ->add_option("--save", m_inspect.m_savePath,
                         "Keep what encoders offer and decoders ask for in this file (raw, zbf, xml, json)")
            ->check(checkObjectPath);
        CLI::Option* const load =
            command
                ->add_option("--load", m_inspect.m_loadPath, "Show what such a file has kept, in place of this machine")
                ->excludes("--save")
                ->excludes("--why");
        command->add_flag("--compare", m_inspect.m_compare, "Show only in what the file and this machine differ")
            ->needs(load);
        command->callback([this] { m_result = runInspect(m_inspect); });
    }

    void addDoctor() {
        CLI::App* command = m_app.add_subcommand(
            "doctor", "Look at all that video needs on this machine, and tell what is wrong and what cures it");
        command->add_option("codec", m_doctor.m_codec, "What has to work (default: whatever stream takes)");
        command->add_option("--require", m_doctor.m_require, "hw or sw: what it has to work in")
            ->check(CLI::IsMember({"hw", "sw"}));
        command->add_flag("--json", m_doctor.m_json, "Print JSON on the standard output");
        addFrameworkOptions(*command, m_doctor.m_framework);
        command->callback([this] { m_result = runDoctor(m_doctor); });
    }

    void addStream() {
        CLI::App* command = m_app.add_subcommand(
            "stream", "Send video through an encoder context and a decoder context, frame by frame");
        StreamOptions& o = m_stream;
        command
            ->add_option("input", o.m_input,
                         "Video file, stored stream, - for the standard input, image sequence pattern "
                         "(frames/%04d.png) or generate:WIDTHxHEIGHT[@RATE][:COUNT]")
            ->required();
        CLI::Option* const agreed = command->add_option("--codec-info", o.m_codecInfoPath,
                                                        "Run with what was agreed on before and kept in this file");
        command
            ->add_option("--save-codec-info", o.m_saveCodecInfoPath,
                         "Keep what encoder and decoder agree on in this file (raw, zbf, xml, json)")
            ->check(checkObjectPath);
        command->add_option("--codec", o.m_codec, "Codec by name: vp9, h264, mpeg1video, blocks")->excludes(agreed);
        command->add_option("--encoder", o.m_encoder, "Encoder implementation, such as libvpx-vp9")->excludes(agreed);
        command->add_option("--decoder", o.m_decoder, "Decoder implementation, such as vp9")->excludes(agreed);
        command->add_option("--require", o.m_require, "hw or sw: take only such implementations")
            ->excludes(agreed)
            ->check(CLI::IsMember({"hw", "sw"}));
        command->add_option("--quality", o.m_quality, "0 (small) to 100 (good); 60, or 100 for a lossless codec")
            ->check(CLI::Range(0, 100));
        command->add_option("--encoder-options", o.m_encoderOptions, "key=value,... on top of the agreed options")
            ->check(checkEncoderOptions);
        command->add_option("--tune", o.m_tune, "screen: what helps contents of a screen")
            ->check(CLI::IsMember({"screen"}));
        command->add_option("--frames", o.m_maxFrames, "Stop after this many frames (default: all)")->check(checkCount);
        command->add_option("--bitrate", m_bitrate, "Keep to so many bits per second, such as 800k or 2.5M")
            ->check(checkBitrate);
        command->add_option("--size", m_size, "Scale the pictures to WIDTHxHEIGHT")->check(checkSize);
        command
            ->add_option("--resize-at", m_resizes,
                         "FRAME:WIDTHxHEIGHT, change the size from this frame on; may be given more than once")
            ->check(checkResize)
            ->allow_extra_args(false);
        command->add_option("-o,--packets", o.m_packetPath,
                            "Write the packets to this file (ivf, webm, mkv, mp4, mpg, zyrs), to - for the standard "
                            "output, or send them to an address (rtp://, rtsp://, udp://, tcp://, http://)");
        command->add_option("--packets-format", o.m_packetFormat,
                            "Format of the packet file (default: by its extension or the address)");
        command->add_option("--packets-sdp", o.m_packetSdpPath,
                            "Write what receivers of rtp:// need to know to this file, or to -");
        command->add_option("--pictures", o.m_picturePath,
                            "Write the decoded pictures to name.y4m, - or frames/%04d.png");
        command->add_option("--source-pictures", o.m_sourcePicturePath,
                            "Write the pictures that the encoder got, in the same forms");
        command->add_option("--report", o.m_reportPath, "Write the report as JSON to this file as well, or to -");
        command->add_option("--html", o.m_pagePath, "Write a page with figures, plots and the worst frames, or to -");
        command
            ->add_option("--worst", o.m_worst,
                         "Keep so many of the worst frames as pictures in report and page (default: 3 for a page)")
            ->check(CLI::Range(0, 12));
        command->add_option("--frames-log", o.m_framesLogPath,
                            "Write a row of data for each frame: CSV, or JSON lines for name.jsonl");
        command->add_flag("--tolerant", o.m_tolerant, "A damaged source or one that ends early is no failure");
        command->add_flag("--explain", o.m_explain, "Tell which pairs matched and why others did not");
        command->add_flag("--json", o.m_json, "Print the report as JSON");
        command->add_flag("!--no-progress", o.m_progress, "Show no progress on a terminal");
        command->add_flag("!--no-metrics", o.m_metrics, "Do not compare the pictures with the source");
        addFrameworkOptions(*command, o.m_framework);
        command->footer("Without --codec, --encoder or --decoder the codec is that of the first pair that matches "
                        "in the order in which encoders and decoders list their entries, in its best rated form.\n" +
                        std::string(EXIT_CODES));
        command->callback([this] {
            if (!m_size.empty()) {
                parseSize(m_size, m_stream.m_width, m_stream.m_height);
            }
            for (const std::string& text : m_resizes) {
                ResizeStep step{};
                parseResize(text, step);
                m_stream.m_resizes.push_back(step);
            }
            if (!m_bitrate.empty()) {
                parseBitrate(m_bitrate, m_stream.m_bitrate);
            }
            m_stream.m_startTime = m_startTime;
            const PluginGuard guard;
            m_result = runStream(m_stream);
        });
    }

    void addReport() {
        CLI::App* command =
            m_app.add_subcommand("report", "Make a page that compares runs by the reports of \"stream\"");
        command->add_option("reports", m_report.m_reports, "Files that stream --report wrote; the first is the measure")
            ->required();
        command->add_option("-o,--output", m_report.m_pagePath, "The page, or - for the standard output")->required();
        command->callback([this] { m_result = runReport(m_report); });
    }

    void addSession() {
        CLI::App* command = m_app.add_subcommand(
            "session", "Show who is at the console, and the graphical environment of a user's session");
        command->add_option("--user", m_session.m_user,
                            "Account whose environment is looked for (default: the user at the console)");
        command->add_flag("--json", m_session.m_json, "Print JSON on the standard output");
        addLogOptions(*command, m_session.m_framework);
        command->callback([this] { m_result = runSession(m_session); });
    }

    void addSetting(CLI::App& p_command, const char* p_name, const char* p_description) {
        p_command.add_option_function<std::string>(
            p_name,
            [this, p_name](const std::string& p_value) {
                m_settings.m_arguments.push_back(std::string(p_name) + "=" + p_value);
            },
            p_description);
    }

    void addSettings() {
        CLI::App* command = m_app.add_subcommand(
            "settings", "Show the host's own defaults and where each comes from: files, environment, options");
        command->add_flag("--json", m_settings.m_json, "Print JSON on the standard output");
        command->add_flag("--options", m_settings.m_listOptions, "List the options of the settings instead");
        command->add_option("--modules", m_settings.m_framework.m_moduleDirectory,
                            "Directory of zyr_core.so (default: found beside the program)");
        addSetting(*command, "--log-level",
                   "What is logged (error, warn, info, debug or trace), as if it were said here");
        addSetting(*command, "--plugins", "Directories of plug-ins, separated by colons, as if they were said here");
        command->callback([this] { m_result = runSettings(m_settings); });
    }

    void addLaunch() {
        CLI::App* command =
            m_app.add_subcommand("launch", "Start a program, as another user or in a login session too");
        command->add_option("--user", m_launch.m_user, "Account to run as (default: the present identity)");
        command->add_option("--pam", m_launch.m_service, "PAM service of a login session around the program");
        command->add_option("--cwd", m_launch.m_directory, "Working directory (default: the present one)");
        command->footer(
            "The program and its arguments stand behind \"--\". The exit code is the program's own, 128 and "
            "the number of the signal that ended it, 1 when it could not be started, or 2 for wrong usage.");
        command->callback([this] {
            if (m_launch.m_command.empty()) {
                throw CLI::RequiredError("-- PROGRAM ARGUMENTS...");
            }
            m_result = runLaunch(m_launch);
        });
    }

    void addPath() {
        CLI::App* command =
            m_app.add_subcommand("path", "Check an SVG path, list its commands and resolve its outline");
        command->add_option("text", m_path.m_text, "The path, or - to read it from the standard input")->required();
        command->add_option("--svg", m_path.m_svgPath,
                            "Write the outline to this SVG file; - prints it in place of the commands");
        command->add_option("--modules", m_path.m_framework.m_moduleDirectory,
                            "Directory of zyr_core.so (default: found beside the program)");
        addLogOptions(*command, m_path.m_framework);
        command->callback([this] { m_result = runPath(m_path); });
    }

    void addLayout() {
        CLI::App* command = m_app.add_subcommand("layout", "Solve a tree of anchored rectangles or boxes, and draw it");
        command->add_option("file", m_layout.m_file, "The layout as JSON, or - to read it from the standard input")
            ->required();
        command->add_option("--svg", m_layout.m_svgPath,
                            "Draw the result into this SVG file; - prints it in place of the JSON");
        command->add_option("--scale", m_layout.m_scale, "Pixels of the drawing for each unit")
            ->check(checkScale)
            ->capture_default_str();
        command->add_option("--view", m_layout.m_view, "Which axes of boxes are drawn, to the right and down")
            ->check(CLI::IsMember({"xy", "xz", "zy"}));
        command->add_flag("--keep-going", m_layout.m_keepGoing,
                          "Show the others when a rectangle has no solution; the exit code is 1 all the same");
        addLogOptions(*command, m_layout.m_framework);
        command->callback([this] { m_result = runLayout(m_layout); });
    }

    void addCompletion() {
        CLI::App* command = m_app.add_subcommand("completion", "Print a script that completes this program's options");
        command->add_option("shell", m_shell, "The shell that it is for")
            ->required()
            ->check(CLI::IsMember({"bash", "zsh", "fish"}));
        command->callback([this] {
            const bool printed = printText(makeCompletion(m_app, m_shell));
            m_result = printed ? EXIT_DONE : EXIT_RUN_FAILED;
        });
    }

    /// Takes what stands behind "--" of a launch, which is the program's and not to be parsed. Gives the number of
    /// arguments that are left.
    int takeCommand(int p_count, char** p_arguments) {
        if (p_count < 2 || strcmp(p_arguments[1], "launch") != 0) {
            return p_count;
        }
        char** const end = p_arguments + p_count;
        char** const mark = std::find_if(p_arguments, end, [](const char* p) { return strcmp(p, "--") == 0; });
        if (mark != end) {
            m_launch.m_command.assign(mark + 1, end);
        }
        return static_cast<int>(mark - p_arguments);
    }

    /// Prints help, the version or what is wrong with the arguments. Gives the exit code.
    int tell(const CLI::Error& p_error) const {
        std::ostringstream text;
        const int code = m_app.exit(p_error, text, std::cerr);
        return !printText(text.str()) ? EXIT_RUN_FAILED : code == 0 ? EXIT_DONE : EXIT_USAGE;
    }
};

} // namespace

} // namespace zyr::host

int main(int argc, char** argv) {
    using namespace zyr::host;
    Program program;
    try {
        program.m_app.parse(program.takeCommand(argc, argv), argv);
        return program.m_result;
    } catch (const CLI::RequiredError& error) {
        // The library tells of something that is missing where there is a word that it does not know.
        const std::vector<std::string> unknown = program.m_app.remaining(true);
        const bool isOption = !unknown.empty() && unknown[0][0] == '-';
        if (unknown.empty() || (!isOption && std::string(error.what()) != "A subcommand is required")) {
            return program.tell(error);
        }
        const std::string word = maskControls(unknown[0]);
        fprintf(stderr,
                isOption ? "The following argument was not expected: %s\nRun with --help for more information.\n"
                         : "'%s' is no subcommand\nRun with --help for more information.\n",
                word.c_str());
        return EXIT_USAGE;
    } catch (const CLI::ParseError& error) {
        return program.tell(error);
    } catch (const UsageError& error) {
        fprintf(stderr, "zyr-host: %s\n", error.what());
        return EXIT_USAGE;
    } catch (const ModuleError& error) {
        fprintf(stderr, "zyr-host: %s\n", error.what());
        return EXIT_MODULE_FAILED;
    } catch (const std::exception& error) {
        fprintf(stderr, "zyr-host: %s\n", error.what());
        return EXIT_RUN_FAILED;
    }
}
