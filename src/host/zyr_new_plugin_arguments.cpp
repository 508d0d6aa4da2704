#include "host/zyr_new_plugin_arguments.h"

namespace zyr::host {

void NewPluginArguments::add(CLI::App& p_program, int& p_result) {
    CLI::App* command = p_program.add_subcommand("new-plugin", "Write the project of a plug-in to begin with");
    NewPluginOptions& o = m_options;
    command->add_option("name", o.m_name, "Name of the plug-in: small letters, digits and underscores")
        ->required()
        ->check(checkPluginName);
    command->add_option("directory", o.m_directory, "Where to write it (default: the name)");
    command->add_option("--kind", o.m_kind, "codec: a lossless codec; objects: a class that is saved and loaded")
        ->check(CLI::IsMember({"codec", "objects"}))
        ->capture_default_str();
    command->callback([this, &p_result] { p_result = runNewPlugin(m_options); });
}

} // namespace zyr::host
