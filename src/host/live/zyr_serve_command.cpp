#include "host/live/zyr_access_token.h"
#include "host/live/zyr_console_user.h"
#include "host/live/zyr_demo_screen.h"
#include "host/live/zyr_live_identity.h"
#include "host/live/zyr_live_server.h"
#include "host/live/zyr_published_stream.h"
#include "host/zyr_command_line.h"
#include "host/zyr_heap_tuning.h"
#include "host/zyr_input_file.h"
#include "host/zyr_interruption.h"
#include "host/zyr_output_file.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"
#include "zyr_common/platform/zyr_process_identity.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace zyr::host {

namespace {

namespace fs = std::filesystem;

PublishOptions publishOptionsOf(const ServeOptions& p_options) {
    PublishOptions options;
    options.m_network.m_address = p_options.m_publishAddress;
    options.m_network.m_format = p_options.m_publishFormat;
    options.m_network.m_sdpPath = p_options.m_publishSdpPath;
    options.m_keySeconds = p_options.m_publishKeySeconds;
    return options;
}

void refuseWrongUsage(const ServeOptions& p_options) {
    if (p_options.m_insecurePlain && !isLoopback(p_options.m_address)) {
        throw UsageError("--insecure-plain is for loopback addresses only");
    }
    if (p_options.m_certificatePath.empty() != p_options.m_keyPath.empty()) {
        throw UsageError("--cert and --key belong together");
    }
    if (p_options.m_insecurePlain && !p_options.m_certificatePath.empty()) {
        throw UsageError("--insecure-plain and --cert exclude each other");
    }
    if (!p_options.m_monitor.empty() && !p_options.m_window.empty()) {
        throw UsageError("--monitor and --window exclude each other");
    }
    if (!p_options.m_input.empty() && p_options.m_demo) {
        throw UsageError("--demo shows a screen of its own, so it takes no input");
    }
    if (!p_options.m_publishAddress.empty()) {
        if (p_options.m_codec == "blocks") {
            throw UsageError("--publish takes VP9, so --codec blocks excludes it");
        }
        checkNetworkOutput(publishOptionsOf(p_options).m_network);
    }
}

/// A name that is mistyped would keep its owner out without a word.
void refuseUnknownAccounts(const std::vector<std::string>& p_users) {
    for (const std::string& user : p_users) {
        String identity;
        long uid = -1;
        if (!zyr_getUserAccountIdentity(String(user), identity, uid)) {
            throw UsageError("there is no account " + maskControls(user));
        }
    }
}

/// The page lies beside the program, in the build folder as in an installed tree.
std::string findPage(const std::string& p_given) {
    const fs::path page = p_given.empty() ? fs::read_symlink("/proc/self/exe").parent_path() / "../share/zyrmont/live"
                                          : fs::path(p_given);
    if (!fs::exists(page / "index.html")) {
        throw RunError("there is no page in " + page.string() + ": tell its directory with --page");
    }
    return fs::canonical(page);
}

bool tellAddress(const ServeOptions& p_options, const LiveServer& p_server, const LiveCertificate& p_certificate,
                 const std::string& p_token) {
    const bool isEverywhere =
        p_options.m_address.empty() || p_options.m_address == "0.0.0.0" || p_options.m_address == "::";
    const std::string name = !p_options.m_names.empty() ? p_options.m_names.front()
                             : isEverywhere             ? "localhost"
                                                        : p_options.m_address;
    const std::string host = name.find(':') == std::string::npos ? name : "[" + name + "]";
    std::string text = std::string(p_options.m_insecurePlain ? "http" : "https") + "://" + host + ":" +
                       std::to_string(p_server.getPort()) + "/";
    // What stands behind the mark stays in the browser: it is in no request and no log.
    text += p_token.empty() || !p_options.m_tokenPath.empty() ? "" : "#token=" + p_token;
    if (!p_certificate.m_fingerprint.empty()) {
        fprintf(stderr, "zyr-host: certificate's SHA-256 fingerprint %s\n", p_certificate.m_fingerprint.c_str());
    }
    // Whoever has read the address has all that was said before.
    return printText(text + "\n");
}

std::unique_ptr<LiveSource> openSource(const ServeOptions& p_options) {
    return p_options.m_input.empty()
               ? openScreenSource(ScreenChoice{p_options.m_display, p_options.m_monitor, p_options.m_window})
               : openClockedSource(openVideoSource(p_options.m_input));
}

void tellReport(OutputFile& p_report, const LiveServer& p_server, PublishedStream* p_published) {
    nlohmann::ordered_json report{{"viewers", p_server.getNumOfViewers()}};
    if (p_published != nullptr) {
        report["published"] = p_published->describe();
    }
    const std::string text = report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
    p_report.write(text.data(), text.size());
    p_report.close();
}

} // namespace

int runServe(const ServeOptions& p_given) {
    refuseWrongUsage(p_given);
    refuseUnknownAccounts(p_given.m_users);
    ServeOptions options = p_given;
    const InterruptGuard guard;
    claimStandardOutput();
    tuneHeapForPictures();
    const bool isScreen = options.m_input.empty();
    if (isScreen && !options.m_demo) {
        const std::string line = becomeConsoleUser();
        if (!line.empty()) {
            fprintf(stderr, "zyr-host: %s\n", line.c_str());
        }
    }
    std::unique_ptr<DemoScreen> demo;
    const char* const display = getenv("DISPLAY");
    if (options.m_demo && options.m_display.empty() && (display == nullptr || display[0] == '\0')) {
        demo = std::make_unique<DemoScreen>(1280, 720, true);
        options.m_display = demo->getDisplay();
        fprintf(stderr, "zyr-host: the demonstration is on display %s\n", demo->getDisplay().c_str());
    }
    Framework framework(options.m_framework);
    for (const std::string& refusal : framework.getRefusals()) {
        fprintf(stderr, "zyr-host: %s\n", refusal.c_str());
    }
    const LiveCodecs codecs(framework, options.m_codec, options.m_quality);
    const std::unique_ptr<LiveSource> source = openSource(options);
    ScreenControl watching;
    std::unique_ptr<ScreenControl> steering;
    if (isScreen && !options.m_viewOnly) {
        steering = std::make_unique<ScreenControl>(options.m_display);
    }
    LiveServerOptions serving;
    serving.m_address = options.m_address;
    serving.m_port = options.m_port;
    serving.m_pageDirectory = findPage(options.m_pageDirectory);
    serving.m_names = findServerNames(options.m_address, options.m_names);
    serving.m_mostViewers = options.m_mostViewers;
    serving.m_access.m_users = options.m_users;
    if (!options.m_tokenPath.empty()) {
        serving.m_access.m_token = readAccessToken(options.m_tokenPath);
    } else if (options.m_users.empty()) {
        serving.m_access.m_token = createAccessToken();
    }
    LiveCertificate certificate{options.m_certificatePath, options.m_keyPath, ""};
    if (!options.m_insecurePlain && certificate.m_certificatePath.empty()) {
        certificate = provideCertificate(serving.m_names);
    }
    if (!options.m_insecurePlain) {
        checkCertificate(certificate);
    }
    serving.m_certificatePath = certificate.m_certificatePath;
    serving.m_keyPath = certificate.m_keyPath;
    PictureLoop pictures(*source, codecs, options.m_rate);
    const std::unique_ptr<OutputFile> report =
        options.m_reportPath.empty() ? nullptr : std::make_unique<OutputFile>(options.m_reportPath);
    const std::unique_ptr<PublishedStream> published =
        options.m_publishAddress.empty()
            ? nullptr
            : std::make_unique<PublishedStream>(publishOptionsOf(options), codecs, options.m_rate);
    LiveServer server(serving, pictures, steering ? *steering : watching, codecs);
    if (published) {
        server.publish(*published);
    }
    if (!tellAddress(options, server, certificate, serving.m_access.m_token)) {
        return EXIT_RUN_FAILED;
    }
    pictures.start();
    server.run();
    pictures.stop();
    if (published) {
        published->finish();
    }
    if (report) {
        tellReport(*report, server, published.get());
    }
    return getInterruption() == 0 || getInterruption() == SIGINT || getInterruption() == SIGTERM
               ? EXIT_DONE
               : EXIT_BY_SIGNAL + getInterruption();
}

} // namespace zyr::host
