/// The options of "zyr-host new-plugin".
#pragma once

#include "host/new_plugin/zyr_new_plugin_command.h"

#include <CLI/CLI.hpp>

namespace zyr::host {

struct NewPluginArguments {
    /// Adds the command; its exit code goes to `p_result`.
    void add(CLI::App& p_program, int& p_result);

private:
    NewPluginOptions m_options;
};

} // namespace zyr::host
