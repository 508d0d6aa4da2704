#include "host/zyr_codec_state.h"
#include "host/zyr_command_line.h"
#include "host/zyr_object_command.h"
#include "host/zyr_object_examiner.h"
#include "host/zyr_object_file.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

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

/// Deferred files that the new file does not find, since it stands elsewhere.
void tellLostFiles(Framework& p_framework, const std::string& p_output, const std::string& p_format) {
    std::vector<ObjectProblem> problems;
    ObjectExaminer(p_framework).examine(p_output, p_format, problems);
    for (const ObjectProblem& problem : problems) {
        if (problem.m_kind == ObjectProblem::DEFERRED) {
            fail(problem.m_file, {problem.m_text});
        }
    }
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
    registerCodecState();
    ObjectView view;
    std::vector<std::string> reasons;
    std::vector<std::string> losses;
    try {
        view = openObjectView(p_options.m_input, p_options.m_inputFormat);
    } catch (const RunError& error) {
        return fail(p_options.m_input, {error.what()});
    }
    std::vector<ObjectProblem> problems;
    ObjectExaminer(framework).examine(view, problems);
    for (const ObjectProblem& problem : problems) {
        const bool ownFile = problem.m_file == p_options.m_input;
        const std::string text = ownFile ? problem.m_text : problem.m_file + ": " + problem.m_text;
        if (problem.m_kind == ObjectProblem::UNKNOWN) {
            losses.push_back(text);
        } else if (problem.m_kind == ObjectProblem::DEFERRED) {
            reasons.push_back(text);
        }
    }
    if (!reasons.empty() || !loadObjectView(framework, view, reasons)) {
        return fail(p_options.m_input, reasons);
    }
    for (const std::string& field : view.m_strangers) {
        losses.push_back(field + ": its class has no such field");
    }
    if (!losses.empty()) {
        fail(p_options.m_input, losses);
        if (!p_options.m_lossy) {
            fprintf(stderr, "zyr-host: all this would be lost; --lossy converts the rest\n");
            return EXIT_RUN_FAILED;
        }
    }
    // Deferred files stay where and as they are.
    if (!saveObject(framework, *view.m_object, p_options.m_output, format, reasons)) {
        return fail(p_options.m_output, reasons);
    }
    tellLostFiles(framework, p_options.m_output, format);
    return EXIT_DONE;
}

} // namespace zyr::host
