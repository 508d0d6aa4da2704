/// The subcommands of "zyr-host object", which work on files that hold saved objects.
#pragma once

#include "host/zyr_framework.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

struct ObjectShowOptions {
    FrameworkOptions m_framework;
    std::string m_file;
    std::string m_format; ///< Empty: by what the file begins with.
    std::string m_field;  ///< Path of the only field that is shown. Empty: the object.
    uint32_t m_depth = UINT32_MAX;
    bool m_json = false;
    bool m_full = false; ///< Cuts no value short.
};

struct ObjectCheckOptions {
    FrameworkOptions m_framework;
    std::vector<std::string> m_files;
    bool m_json = false;
};

struct ObjectDiffOptions {
    FrameworkOptions m_framework;
    std::string m_first;
    std::string m_second;
    bool m_json = false;
};

struct ObjectConvertOptions {
    FrameworkOptions m_framework;
    std::string m_input;
    std::string m_output;
    std::string m_format;      ///< Of the output. Empty: by its extension.
    std::string m_inputFormat; ///< Empty: by what the file begins with.
    bool m_lossy = false;      ///< Leaves out what is not known here.
};

/// Each gives the exit code of the program.
int runObjectShow(const ObjectShowOptions& p_options);
int runObjectCheck(const ObjectCheckOptions& p_options);
/// 0 for the same, 1 for different objects, and 2 where they cannot be compared.
int runObjectDiff(const ObjectDiffOptions& p_options);
int runObjectConvert(const ObjectConvertOptions& p_options);

} // namespace zyr::host
