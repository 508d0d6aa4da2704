#include "host/conform/zyr_conform_command.h"

#include "host/conform/zyr_conform_child.h"
#include "host/zyr_command_line.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <unistd.h>

namespace zyr::host {

namespace {

const std::map<std::string, ConformKind> KINDS = {
    {"plugin", ConformKind::PLUGIN}, {"core", ConformKind::CORE}, {"picture", ConformKind::PICTURE}};

const char* wordOf(ConformResult p_result) {
    switch (p_result) {
    case ConformResult::PASSED:
        return "passed";
    case ConformResult::FAILED:
        return "failed";
    case ConformResult::SKIPPED:
        return "skipped";
    default:
        return "blocked";
    }
}

/// Runs cases, each once, those that it needs first.
class ConformRun {
public:
    ConformRun(const std::vector<ConformCase>& p_cases, const ConformSubject& p_subject, unsigned p_seconds)
        : m_cases(p_cases), m_subject(p_subject), m_seconds(p_seconds) {}

    const ConformVerdict& run(const ConformCase& p_case) {
        const auto known = m_verdicts.find(p_case.m_name);
        if (known != m_verdicts.end()) {
            return known->second;
        }
        ConformVerdict verdict;
        if (!findObstacle(p_case, verdict)) {
            verdict = runConformCase(p_case, m_subject, m_seconds != 0 ? m_seconds : p_case.m_seconds);
        }
        return m_verdicts[p_case.m_name] = verdict;
    }

private:
    bool findObstacle(const ConformCase& p_case, ConformVerdict& p_verdict) {
        for (const char* name : p_case.m_needs) {
            const auto needed = std::find_if(m_cases.begin(), m_cases.end(), [&](const ConformCase& p_other) {
                return std::string(p_other.m_name) == name;
            });
            const ConformVerdict& found = run(*needed);
            if (found.m_result == ConformResult::SKIPPED) {
                p_verdict = {ConformResult::SKIPPED, found.m_reason};
                return true;
            }
            if (found.m_result != ConformResult::PASSED) {
                p_verdict = {ConformResult::BLOCKED, std::string("the case ") + name + " did not pass"};
                return true;
            }
        }
        return false;
    }

    const std::vector<ConformCase>& m_cases;
    const ConformSubject& m_subject;
    const unsigned m_seconds;
    std::map<std::string, ConformVerdict> m_verdicts;
};

/// As a text of YAML in double quotes, which is one of JSON too.
std::string quote(const std::string& p_text) {
    return nlohmann::json(maskControls(p_text)).dump();
}

std::string describeAsTap(size_t p_number, const ConformCase& p_case, const ConformVerdict& p_verdict) {
    const bool failed = p_verdict.m_result == ConformResult::FAILED;
    const bool ran = failed || p_verdict.m_result == ConformResult::PASSED;
    std::string text = (failed ? "not ok " : "ok ") + std::to_string(p_number) + " - " + p_case.m_name;
    if (!ran) {
        text += " # SKIP " + maskControls(p_verdict.m_reason);
    }
    text += "\n  ---\n  rule: " + quote(p_case.m_rule) + "\n";
    if (failed) {
        text += "  reason: " + quote(p_verdict.m_reason) + "\n";
    }
    return text + "  result: " + wordOf(p_verdict.m_result) + "\n  ...\n";
}

nlohmann::ordered_json describeAsJson(const ConformCase& p_case, const ConformVerdict& p_verdict) {
    nlohmann::ordered_json entry = {
        {"name", p_case.m_name}, {"rule", p_case.m_rule}, {"result", wordOf(p_verdict.m_result)}};
    if (!p_verdict.m_reason.empty()) {
        entry["reason"] = maskControls(p_verdict.m_reason);
    }
    entry["seconds"] = std::round(p_verdict.m_seconds * 1000) / 1000;
    return entry;
}

void print(const std::string& p_text) {
    if (!printText(p_text)) {
        throw RunError("the standard output cannot be written to");
    }
}

/// What keeps a case from being run at all keeps the others, too. A harness is told.
const ConformVerdict& runOrBailOut(ConformRun& p_run, const ConformCase& p_case, bool p_json) {
    try {
        return p_run.run(p_case);
    } catch (const std::exception& error) {
        if (!p_json) {
            print("Bail out! " + maskControls(error.what()) + "\n");
        }
        throw;
    }
}

void printList(const std::vector<ConformCase>& p_cases, bool p_json) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    std::string text;
    for (const ConformCase& entry : p_cases) {
        list.push_back({{"name", entry.m_name}, {"rule", entry.m_rule}});
        text += std::string(entry.m_name) + "\n    " + entry.m_rule + "\n";
    }
    print(p_json ? list.dump(2) + "\n" : text);
}

std::vector<ConformCase> choose(const std::vector<ConformCase>& p_cases, const std::vector<std::string>& p_only) {
    std::vector<ConformCase> chosen;
    for (const ConformCase& entry : p_cases) {
        if (p_only.empty() || std::count(p_only.begin(), p_only.end(), entry.m_name) != 0) {
            chosen.push_back(entry);
        }
    }
    for (const std::string& name : p_only) {
        if (std::none_of(chosen.begin(), chosen.end(), [&](const ConformCase& p) { return name == p.m_name; })) {
            throw UsageError("there is no case '" + name + "'; --list shows all");
        }
    }
    return chosen;
}

ConformSubject makeSubject(const ConformOptions& p_options) {
    namespace fs = std::filesystem;
    std::error_code error;
    ConformSubject subject;
    subject.m_kind = KINDS.at(p_options.m_kind);
    subject.m_path = fs::absolute(p_options.m_path, error).string();
    subject.m_name = fs::path(subject.m_path).filename();
    if (access(subject.m_path.c_str(), R_OK) != 0) {
        throw ModuleError("the file '" + p_options.m_path + "' cannot be read");
    }
    subject.m_framework = p_options.m_framework;
    subject.m_framework.m_defaultPlugins = false;
    subject.m_framework.m_withoutSettings = true;
    subject.m_framework.m_withoutLog = true;
    if (subject.m_kind == ConformKind::CORE) {
        subject.m_framework.m_corePath = subject.m_path;
    } else if (subject.m_kind == ConformKind::PICTURE) {
        subject.m_framework.m_picturePath = subject.m_path;
    }
    return subject;
}

} // namespace

std::vector<ConformCase> listConformCases(ConformKind p_kind) {
    if (p_kind == ConformKind::CORE) {
        return listCoreCases();
    }
    if (p_kind == ConformKind::PICTURE) {
        return listPictureCases();
    }
    std::vector<ConformCase> cases = listModuleCases();
    for (const auto& more : {listClassCases(), listOfferCases(), listStreamCases(), listEnduranceCases()}) {
        cases.insert(cases.end(), more.begin(), more.end());
    }
    return cases;
}

int runConform(const ConformOptions& p_options) {
    const std::vector<ConformCase> cases = listConformCases(KINDS.at(p_options.m_kind));
    const std::vector<ConformCase> chosen = choose(cases, p_options.m_only);
    if (p_options.m_list) {
        printList(chosen, p_options.m_json);
        return EXIT_DONE;
    }
    const ConformSubject subject = makeSubject(p_options);
    ConformRun run(cases, subject, p_options.m_seconds);
    nlohmann::ordered_json entries = nlohmann::ordered_json::array();
    std::map<std::string, size_t> counts = {{"passed", 0}, {"failed", 0}, {"skipped", 0}, {"blocked", 0}};
    if (!p_options.m_json) {
        print("TAP version 14\n1.." + std::to_string(chosen.size()) + "\n");
    }
    for (size_t i = 0; i < chosen.size(); i++) {
        const ConformVerdict& verdict = runOrBailOut(run, chosen[i], p_options.m_json);
        counts[wordOf(verdict.m_result)]++;
        entries.push_back(describeAsJson(chosen[i], verdict));
        if (!p_options.m_json) {
            print(describeAsTap(i + 1, chosen[i], verdict));
        }
    }
    if (p_options.m_json) {
        nlohmann::ordered_json report = {{"module", subject.m_path}, {"kind", p_options.m_kind}};
        for (const char* word : {"passed", "failed", "skipped", "blocked"}) {
            report[word] = counts[word];
        }
        report["cases"] = entries;
        print(report.dump(2) + "\n");
    }
    return counts["failed"] + counts["blocked"] == 0 ? EXIT_DONE : EXIT_RUN_FAILED;
}

} // namespace zyr::host
