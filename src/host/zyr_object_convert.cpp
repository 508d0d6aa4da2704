#include "host/zyr_command_line.h"
#include "host/zyr_object_command.h"
#include "host/zyr_object_file.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

#include "zyr_common/storage/zyr_load_save.h"

#include <cstdio>
#include <sys/stat.h>

namespace zyr::host {

namespace {

int fail(const std::string& p_file, const std::vector<std::string>& p_reasons) {
    for (const std::string& reason : p_reasons) {
        fprintf(stderr, "zyr-host: %s: %s\n", maskControls(p_file).c_str(), maskControls(reason).c_str());
    }
    return EXIT_RUN_FAILED;
}

bool isSameFile(const std::string& p_first, const std::string& p_second) {
    struct stat first {};
    struct stat second {};
    return stat(p_first.c_str(), &first) == 0 && stat(p_second.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

} // namespace

int runObjectConvert(const ObjectConvertOptions& p_options) {
    claimStandardOutput();
    const std::string format = p_options.m_format.empty() ? getExtensionOf(p_options.m_output) : p_options.m_format;
    if (!isObjectFormat(format)) {
        throw UsageError("the extension of the output names no format: --format raw, zbf, xml or json does");
    }
    if (isSameFile(p_options.m_input, p_options.m_output)) {
        throw UsageError("the output is the input");
    }
    Framework framework(p_options.m_framework);
    std::string inputFormat;
    try {
        inputFormat = chooseObjectFormat(p_options.m_input, readObjectFile(p_options.m_input), p_options.m_inputFormat);
    } catch (const RunError& error) {
        return fail(p_options.m_input, {error.what()});
    }
    std::vector<std::string> reasons;
    const ObjectHandle<IObject> object = loadObject(framework, p_options.m_input, inputFormat, reasons);
    if (object == nullptr) {
        return fail(p_options.m_input, reasons);
    }
    ObjectLog log(framework);
    // Deferred files stay where and as they are.
    const bool saved = zyr_saveToFile(object.get(), p_options.m_output.c_str(), format.c_str(), 0, "") != 0;
    reasons = log.stop();
    return saved ? EXIT_DONE : fail(p_options.m_output, reasons);
}

} // namespace zyr::host
