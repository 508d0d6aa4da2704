/// "zyr-host conform": does a module keep the rules?
#pragma once

#include "host/conform/zyr_conform_case.h"

#include <string>
#include <vector>

namespace zyr::host {

struct ConformOptions {
    FrameworkOptions m_framework;
    std::string m_path; ///< The module. Only a list needs none.
    std::string m_kind = "plugin";
    std::vector<std::string> m_only; ///< Names of cases. Empty: all.
    unsigned m_seconds = 0;          ///< Limit of each case. 0: its own.
    bool m_list = false;
    bool m_json = false;
};

/// Gives EXIT_DONE only when no case failed and none was kept from running.
int runConform(const ConformOptions& p_options);

} // namespace zyr::host
