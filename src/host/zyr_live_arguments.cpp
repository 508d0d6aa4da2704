#include "host/zyr_live_arguments.h"

#include "host/zyr_framework_arguments.h"
#include "host/zyr_plugin_guard.h"

namespace zyr::host {

void LiveArguments::addServe(CLI::App& p_program, int& p_result) {
    CLI::App* command = p_program.add_subcommand("serve", "Show a screen live in browsers and to 'zyr-host view'");
    ServeOptions& o = m_serve;
    command->add_option("input", o.m_input,
                        "Show this video in real time in place of a screen: a file, - or generate:WIDTHxHEIGHT[@RATE]"
                        "[:COUNT]");
    command->add_option("--display", o.m_display, "X display (default: that of the environment)");
    command->add_option("--monitor", o.m_monitor, "Only this monitor, by its name or its number from 0");
    command->add_option("--window", o.m_window, "Only this window, by its number or a part of its title");
    command->add_flag("--demo", o.m_demo, "Where no display is named, start Xvfb with moving contents");
    command->add_flag("--view-only", o.m_viewOnly, "Take no input from viewers");
    command->add_option("--codec", o.m_codec, "auto (the one that suits the contents), blocks or vp9")
        ->check(CLI::IsMember({"auto", "blocks", "vp9"}))
        ->capture_default_str();
    command->add_option("--quality", o.m_quality, "Of VP9, 0 (small) to 100 (good)")
        ->check(CLI::Range(0, 100))
        ->capture_default_str();
    command->add_option("--rate", o.m_rate, "Pictures per second at most")
        ->check(CLI::Range(1, 120))
        ->capture_default_str();
    command->add_option("--listen", o.m_address, "Address to listen at; 0.0.0.0 or :: for all")->capture_default_str();
    command->add_option("--port", o.m_port, "Port to listen at (default: any that is free)")
        ->check(CLI::Range(0, 65535));
    command->add_flag("--insecure-plain", o.m_insecurePlain, "Without TLS; for loopback addresses only");
    command->add_option("--cert", o.m_certificatePath, "Certificate with its chain, PEM (default: one is made)");
    command->add_option("--key", o.m_keyPath, "Its key, PEM");
    command->add_option("--token-file", o.m_tokenPath, "File whose first line is the token (default: one is made)");
    command->add_option("--user", o.m_users, "Account that comes in by its password; may be given more than once")
        ->allow_extra_args(false);
    command
        ->add_option("--name", o.m_names,
                     "Name by which viewers call this machine, besides those it finds; may be given more than once")
        ->allow_extra_args(false);
    command->add_option("--page", o.m_pageDirectory, "Directory of the page (default: found beside the program)");
    command->add_option("--viewers", o.m_mostViewers, "Viewers at a time")
        ->check(CLI::Range(1, 256))
        ->capture_default_str();
    CLI::Option* const publish =
        command->add_option("--publish", o.m_publishAddress,
                            "Send the pictures by VP9 to a media server as well (rtsp://, rtp://, tcp://, http://)");
    command->add_option("--publish-format", o.m_publishFormat, "Its format (default: by the address)")->needs(publish);
    command->add_option("--publish-key", o.m_publishKeySeconds, "Seconds between its key frames")
        ->needs(publish)
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
    command->add_option("--publish-sdp", o.m_publishSdpPath, "Write what receivers of rtp:// need to know to this file")
        ->needs(publish);
    command->add_option("--report", o.m_reportPath, "Write at the end what was served as JSON to this file");
    addFrameworkOptions(*command, o.m_framework);
    command->callback([this, &p_result] {
        const PluginGuard guard;
        p_result = runServe(m_serve);
    });
}

void LiveArguments::addView(CLI::App& p_program, int& p_result) {
    CLI::App* command = p_program.add_subcommand("view", "Show a screen that 'zyr-host serve' serves");
    ViewOptions& o = m_view;
    command->add_option("address", o.m_address, "https://HOST[:PORT]/[#token=TOKEN]")->required();
    command->add_option("--user", o.m_user, "Account on the server; its password is taken from ZYR_LIVE_PASSWORD");
    command->add_option("--token-file", o.m_tokenPath, "File whose first line is the token");
    command->add_option("--fingerprint", o.m_fingerprint, "SHA-256 of the server's certificate, as it prints it");
    command->add_option("--ca", o.m_trustedPath, "Authorities to trust, PEM (default: the system's)");
    command->add_flag("--insecure", o.m_insecure, "Take any certificate");
    command->add_flag("!--no-window", o.m_window, "Show nothing");
    command->add_flag("--view-only", o.m_viewOnly, "Send no input");
    command->add_option("--frames", o.m_maxFrames, "Stop after this many frames")->check([](const std::string& p_text) {
        return p_text.find_first_not_of('0') != std::string::npos ? "" : "'" + p_text + "' is not a number above 0";
    });
    command->add_option("--seconds", o.m_seconds, "Stop after this time")->check(CLI::Range(1, 1000000));
    command->add_option("--report", o.m_reportPath, "Write what was measured as JSON to this file, or to -");
    command->add_option("--pictures", o.m_picturePath, "Write the pictures to frames/%04d.png")
        ->check([](const std::string& p_path) {
            return p_path.find('%') != std::string::npos ? "" : "'" + p_path + "' is no pattern such as %04d.png";
        });
    command->add_option("--packets", o.m_packetPath, "Write the packets to this file (ivf, webm, mkv, zyrs)");
    addFrameworkOptions(*command, o.m_framework);
    command->callback([this, &p_result] {
        const PluginGuard guard;
        p_result = runView(m_view);
    });
}

void LiveArguments::add(CLI::App& p_program, int& p_result) {
    addServe(p_program, p_result);
    addView(p_program, p_result);
}

} // namespace zyr::host
