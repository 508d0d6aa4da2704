#include "host/report/zyr_report_page.h"
#include "host/report/zyr_report_reader.h"
#include "host/zyr_command_line.h"
#include "host/zyr_run_error.h"
#include "host/zyr_strict_json.h"
#include "host/zyr_text_files.h"

#include <cstdio>
#include <filesystem>

namespace zyr::host {

int runReport(const ReportOptions& p_options) {
    std::vector<PagedRun> runs;
    for (const std::string& path : p_options.m_reports) {
        std::error_code error;
        if (std::filesystem::equivalent(path, p_options.m_pagePath, error)) {
            throw UsageError("--output would overwrite the report '" + path + "'");
        }
        std::string text;
        if (!readText(path, text)) {
            return EXIT_RUN_FAILED;
        }
        try {
            runs.push_back(readReport(path == "-" ? "standard input" : path, parseStrictJson(text)));
        } catch (const JsonError& wrong) {
            fprintf(stderr, "zyr-host: %s: %s\n", maskControls(path).c_str(), maskControls(wrong.what()).c_str());
            return EXIT_RUN_FAILED;
        }
    }
    writeWholeText(p_options.m_pagePath, makeReportPage(runs));
    return EXIT_DONE;
}

} // namespace zyr::host
