#include "host/zyr_conform_arguments.h"

namespace zyr::host {

void ConformArguments::add(CLI::App& p_program, int& p_result) {
    CLI::App* command =
        p_program.add_subcommand("conform", "Check that a module keeps the rules, each case in a process of its own");
    ConformOptions& o = m_options;
    CLI::Option* list = command->add_flag("--list", o.m_list, "List the cases with their rules, and run none");
    CLI::Option* module = command->add_option("module", o.m_path, "The module: a file such as my_codec.so");
    command->add_option("--kind", o.m_kind, "What the module is: plugin, core or picture")
        ->check(CLI::IsMember({"plugin", "core", "picture"}))
        ->capture_default_str();
    command
        ->add_option("--only", o.m_only, "Run this case alone, with those that it needs; may be given more than once")
        ->allow_extra_args(false);
    command->add_option("--timeout", o.m_seconds, "Seconds for each case (default: by case)")
        ->check(CLI::Range(1, 3600));
    command->add_flag("--json", o.m_json, "Print JSON in place of TAP");
    command->add_option("--modules", o.m_framework.m_moduleDirectory,
                        "Directory of zyr_core.so and zyr_picture.so (default: found beside the program)");
    command
        ->add_option("--plugins", o.m_framework.m_pluginDirectories,
                     "Directory of plug-ins that it builds on or stands beside, may be given more than once")
        ->allow_extra_args(false);
    command->callback([this, list, module, &p_result] {
        if (list->empty() && module->empty()) {
            throw CLI::RequiredError("module");
        }
        p_result = runConform(m_options);
    });
}

} // namespace zyr::host
