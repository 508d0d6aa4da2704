/// The subcommands of "zyr-host object", which work on files that hold saved objects.
#pragma once

#include "host/zyr_framework.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

struct ObjectConvertOptions {
    FrameworkOptions m_framework;
    std::string m_input;
    std::string m_output;
    std::string m_format;      ///< Of the output. Empty: by its extension.
    std::string m_inputFormat; ///< Empty: by what the file begins with.
    bool m_lossy = false;      ///< Leaves out what is not known here.
};

/// Each gives the exit code of the program.
int runObjectConvert(const ObjectConvertOptions& p_options);

} // namespace zyr::host
