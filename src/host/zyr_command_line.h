/// The subcommands of zyr-host. Each parses its own options into a record and runs it.
#pragma once

#include "host/zyr_framework.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

/// Exit codes of the program.
enum ExitCode : int {
    EXIT_DONE = 0,
    EXIT_RUN_FAILED = 1,
    EXIT_USAGE = 2,
    EXIT_CODEC_NOT_USABLE = 3,
    EXIT_MODULE_FAILED = 4,
    EXIT_BY_SIGNAL = 128 ///< Plus the number of the signal.
};

struct InspectOptions {
    FrameworkOptions m_framework;
    std::string m_codec;    ///< Only this one, in full. Empty: a list of all.
    std::string m_savePath; ///< File that keeps what the codecs offer. Empty: none.
    std::string m_loadPath; ///< Such a file, which is shown in place of this machine. Empty: none.
    bool m_compare = false; ///< Only in what the file and this machine differ.
    bool m_json = false;
    bool m_why = false;
};

struct DoctorOptions {
    FrameworkOptions m_framework;
    std::string m_codec;   ///< What has to work. Empty: whatever "stream" takes.
    std::string m_require; ///< "hw", "sw" or empty.
    bool m_json = false;
};

struct ResizeStep {
    uint64_t m_frame;
    uint32_t m_width;
    uint32_t m_height;
};

struct StreamOptions {
    FrameworkOptions m_framework;
    std::string m_input;
    std::string m_codec;
    std::string m_encoder;
    std::string m_decoder;
    std::string m_require;
    std::string m_codecInfoPath;     ///< File with what was agreed on before, instead of the choices above.
    std::string m_saveCodecInfoPath; ///< File that keeps what is agreed on.
    std::string m_encoderOptions;    ///< On top of what was agreed.
    std::string m_tune;              ///< "screen" or empty.
    std::string m_packetPath;        ///< Or an address. For all outputs "-" is the standard output.
    std::string m_packetFormat;
    std::string m_packetSdpPath; ///< What receivers of packets sent by RTP need to know.
    std::string m_picturePath;
    std::string m_sourcePicturePath;
    std::string m_reportPath;
    std::string m_framesLogPath;
    std::string m_pagePath; ///< The report as HTML.
    std::vector<ResizeStep> m_resizes;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint64_t m_maxFrames = 0; ///< 0: all.
    uint64_t m_startTime = 0; ///< When the program was started, on zyr_getCurrentTime()'s clock.
    uint64_t m_bitrate = 0;   ///< Target in bits per second, 0 for a constant quality.
    int m_quality = -1;       ///< -1: what suits the codec.
    int m_worst = -1;         ///< Frames to keep as pictures. -1: three for a page, otherwise none.
    bool m_tolerant = false;  ///< A damaged source is no failure.
    bool m_explain = false;
    bool m_json = false;
    bool m_progress = true;
    bool m_metrics = true;
};

struct ReportOptions {
    std::vector<std::string> m_reports; ///< Files that "stream --report" wrote.
    std::string m_pagePath;             ///< "-" is the standard output.
};

struct SessionOptions {
    FrameworkOptions m_framework; ///< Of these, only the log's.
    std::string m_user;           ///< Whose environment to look for. Empty: the user at the console.
    bool m_json = false;
};

struct SettingsOptions {
    FrameworkOptions m_framework; ///< Of these, only the module directory.
    bool m_json = false;
    bool m_listOptions = false;           ///< Lists the options in place of the values.
    std::vector<std::string> m_arguments; ///< Options of the settings themselves.
};

struct LaunchOptions {
    std::string m_user;                 ///< Account to run as. Empty: the caller's own identity.
    std::string m_service;              ///< PAM service of a session around the program. Empty: none.
    std::string m_directory;            ///< Working directory. Empty: the present one.
    std::vector<std::string> m_command; ///< Program and arguments.
};

struct PathOptions {
    FrameworkOptions m_framework;
    std::string m_text;    ///< The path, or "-" for the standard input.
    std::string m_svgPath; ///< Where the outline goes; "-" puts it on the standard output, in place of the JSON.
};

struct LayoutOptions {
    FrameworkOptions m_framework; ///< Of these, only the log's.
    std::string m_file;           ///< The layout as JSON, or "-" for the standard input.
    std::string m_svgPath;        ///< Where the drawing goes; "-" puts it on the standard output, in place of the JSON.
    std::string m_view;           ///< "xy", "xz" or "zy". Empty: what the file says.
    double m_scale = 1;           ///< Pixels for each unit.
    bool m_keepGoing = false;
};

struct ServeOptions {
    FrameworkOptions m_framework;
    std::string m_input;   ///< A video; empty: a screen.
    std::string m_display; ///< For this and the next two empty: that of the environment, all of it.
    std::string m_monitor;
    std::string m_window;
    bool m_demo = false;
    bool m_viewOnly = false;
    std::string m_codec = "auto";
    unsigned m_quality = 60;
    unsigned m_rate = 30;
    std::string m_address = "127.0.0.1";
    uint32_t m_port = 0;              ///< 0: any that is free.
    bool m_insecurePlain = false;     ///< Without TLS.
    std::string m_certificatePath;    ///< PEM; empty: one of our own.
    std::string m_keyPath;            ///< PEM.
    std::string m_tokenPath;          ///< Empty: a token is made.
    std::vector<std::string> m_users; ///< Accounts that come in by their passwords.
    std::vector<std::string> m_names; ///< By which the server is called, besides those that it finds.
    std::string m_pageDirectory;      ///< Empty: found beside the program.
    unsigned m_mostViewers = 32;
    std::string m_publishAddress; ///< Of a media server; empty: none.
    std::string m_publishFormat;  ///< Empty: by the address.
    std::string m_publishSdpPath; ///< What receivers of rtp:// need to know.
    unsigned m_publishKeySeconds = 5;
    std::string m_reportPath;
};

struct ViewOptions {
    FrameworkOptions m_framework;
    std::string m_address;
    std::string m_user;        ///< Whose password the secret is; empty: it is the token.
    std::string m_tokenPath;   ///< Empty: the token stands in the address.
    std::string m_fingerprint; ///< Of the server's certificate.
    std::string m_trustedPath; ///< Authorities, PEM; empty: the system's.
    bool m_insecure = false;   ///< Any certificate will do.
    bool m_window = true;
    bool m_viewOnly = false;
    uint64_t m_maxFrames = 0; ///< 0: until the server or the user ends it.
    unsigned m_seconds = 0;   ///< The same.
    std::string m_reportPath; ///< "-" is the standard output.
    std::string m_picturePath;
    std::string m_packetPath;
};

int runServe(const ServeOptions& p_options);
int runView(const ViewOptions& p_options);
int runInspect(const InspectOptions& p_options);
int runDoctor(const DoctorOptions& p_options);
int runStream(const StreamOptions& p_options);
int runReport(const ReportOptions& p_options);
int runPath(const PathOptions& p_options);
int runLayout(const LayoutOptions& p_options);
int runSession(const SessionOptions& p_options);
int runSettings(const SettingsOptions& p_options);
/// Gives the program's own exit status, or EXIT_RUN_FAILED when it can't be started.
int runLaunch(const LaunchOptions& p_options);

} // namespace zyr::host
