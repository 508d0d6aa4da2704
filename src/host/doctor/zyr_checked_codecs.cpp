#include "host/doctor/zyr_checked_codecs.h"

#include "host/doctor/zyr_checked_libraries.h"
#include "host/doctor/zyr_child_question.h"
#include "host/doctor/zyr_trial_frames.h"
#include "host/zyr_codec_roads.h"
#include "host/zyr_plugin_listing.h"

#include "zyr_common/platform/zyr_version.h"
#include "zyr_common/text/zyr_number_text.h"

#include <filesystem>

namespace zyr::host {

namespace {

using nlohmann::json;
using MatchList = std::vector<std::unique_ptr<Match>>;

// All codecs are opened more than once in these, by libraries that may be slow to give up.
constexpr unsigned FRAMEWORK_SECONDS = 300;
constexpr unsigned ROADS_SECONDS = 60;
constexpr unsigned TRIAL_SECONDS = 60;

/// One trial for each pair, whoever asks for it.
class Trials {
public:
    explicit Trials(const Market& p_market) : m_market(p_market) {}

    const ChildAnswer& get(Match& p_match) {
        for (const auto& [match, answer] : m_answers) {
            if (match->m_offer == p_match.m_offer && match->m_wish == p_match.m_wish) {
                return answer;
            }
        }
        m_answers.emplace_back(&p_match, askChild(TRIAL_SECONDS, [&] { return sendTrialFrames(p_match, m_market); }));
        return m_answers.back().second;
    }

private:
    const Market& m_market;
    std::vector<std::pair<const Match*, ChildAnswer>> m_answers;
};

void checkPlugins(Framework& p_framework, FindingList& p_findings) {
    String version;
    zyr_getVersionString(zyr_getFrameworkVersion(), version);
    p_findings.push_back(
        {"modules", "core, picture", FindingState::OK, toText(version) + ", " + p_framework.getModuleDirectory(), ""});
    for (const json& plugin : listPlugins(p_framework)) {
        p_findings.push_back({"modules", "plug-in " + plugin["name"].get<std::string>(), FindingState::OK,
                              plugin["version"].get<std::string>() + ", " + plugin["file"].get<std::string>(), ""});
    }
    for (const std::string& refusal : p_framework.getRefusals()) {
        p_findings.push_back({"modules", "plug-in refused", FindingState::NO, refusal, cureOfRefusal(refusal)});
    }
}

std::string nameOf(const CodecRoad& p_road) {
    const std::string way = p_road.m_hardware.empty() ? "" : " (" + p_road.m_hardware + ")";
    return p_road.m_codec + (p_road.m_isEncoder ? " encoder " : " decoder ") + p_road.m_implementation + way;
}

template <typename Record> bool isRecordOf(const Record& p_record, const CodecRoad& p_road) {
    return toText(p_record.codecName) == p_road.m_codec &&
           toText(p_record.codecImplementation) == p_road.m_implementation &&
           toText(p_record.hardwareDeviceName) == p_road.m_hardware;
}

Match* findMatch(const MatchList& p_matches, const CodecRoad& p_road) {
    for (const std::unique_ptr<Match>& match : p_matches) {
        if (p_road.m_isEncoder ? isRecordOf(*match->m_offer->m_proposal, p_road)
                               : isRecordOf(*match->m_wish->m_request, p_road)) {
            return match.get();
        }
    }
    return nullptr;
}

/// The roads, told in a child: to tell why hardware is not usable, its driver is opened once more.
json explainRoadsSafely(const Market& p_market, FindingList& p_findings) {
    const ChildAnswer answer = askChild(ROADS_SECONDS, [&] {
        json roads = json::array();
        for (const CodecRoad& road : explainRoads(p_market)) {
            roads.push_back({road.m_isEncoder, road.m_codec, road.m_implementation, road.m_hardware, road.m_usable,
                             road.m_failed, road.m_cure});
        }
        return roads.dump(-1, ' ', false, json::error_handler_t::replace);
    });
    if (!answer.m_isGiven) {
        p_findings.push_back({"codecs", "roads", FindingState::NO, "looking for them: " + answer.m_reason,
                              "what stands at graphics above"});
        return json::array();
    }
    return json::parse(answer.m_text);
}

/// The pairs as they agree by themselves, and behind them those that agree when hardware is insisted on.
MatchList judgeAll(const Market& p_market) {
    std::vector<std::string> ignored;
    MatchList matches = judge(p_market, {}, ignored, ignored);
    for (std::unique_ptr<Match>& match : judge(p_market, {"", "", "", "hw"}, ignored, ignored)) {
        matches.push_back(std::move(match));
    }
    return matches;
}

void checkRoads(const Market& p_market, Trials& p_trials, const MatchList& p_matches, FindingList& p_findings) {
    for (const json& entry : explainRoadsSafely(p_market, p_findings)) {
        const CodecRoad road{entry[0], entry[1], entry[2], entry[3], entry[4], "", entry[5], entry[6]};
        Finding finding{"codecs", nameOf(road), FindingState::NO, road.m_failed, road.m_cure};
        Match* match = road.m_usable ? findMatch(p_matches, road) : nullptr;
        if (match != nullptr) {
            const ChildAnswer& answer = p_trials.get(*match);
            finding.m_state = answer.m_isGiven ? FindingState::OK : FindingState::NO;
            finding.m_text = answer.m_isGiven ? answer.m_text : answer.m_reason;
            finding.m_text +=
                ", with the " + (road.m_isEncoder ? "decoder " + toText(match->m_decoderInfo.codecImplementation)
                                                  : "encoder " + toText(match->m_info.codecImplementation));
        } else if (road.m_usable) {
            finding.m_state = FindingState::UNKNOWN;
            finding.m_text =
                std::string("it opens, but no ") + (road.m_isEncoder ? "decoder" : "encoder") + " here agrees with it";
        }
        p_findings.push_back(finding);
    }
}

json judgeWanted(const Market& p_market, Trials& p_trials, const Choice& p_choice, MatchList& p_keep) {
    std::vector<std::string> ignored;
    p_keep = judge(p_market, p_choice, ignored, ignored);
    Match* match = chooseMatch(p_keep);
    if (match == nullptr) {
        return {{"works", false}, {"text", "no encoder and decoder here agree on it"}};
    }
    const std::string pair = toText(match->m_info.codecName) + " by " + toText(match->m_info.codecImplementation) +
                             " and " + toText(match->m_decoderInfo.codecImplementation);
    const ChildAnswer& answer = p_trials.get(*match);
    return {{"works", answer.m_isGiven}, {"text", pair + (answer.m_isGiven ? "" : ": " + answer.m_reason)}};
}

std::string examine(const FrameworkOptions& p_options, const Choice& p_choice) {
    Framework framework(p_options);
    FindingList findings;
    checkPlugins(framework, findings);
    const Market market = openMarket(framework);
    Trials trials(market);
    const MatchList matches = judgeAll(market);
    checkRoads(market, trials, matches, findings);
    MatchList kept;
    json all = {{"wanted", judgeWanted(market, trials, p_choice, kept)}, {"findings", toJson(findings)}};
    return all.dump(-1, ' ', false, json::error_handler_t::replace);
}

/// A directory that the user named is not mended by a package.
std::string cureOfFramework(const FrameworkOptions& p_options) {
    for (const std::string& directory : p_options.m_pluginDirectories) {
        std::error_code error;
        if (!std::filesystem::is_directory(directory, error)) {
            return "--plugins with a directory that is there, in place of " + directory;
        }
    }
    return "apt-get install --reinstall zyrmont-modules";
}

} // namespace

WantedRoad checkCodecs(const FrameworkOptions& p_options, const Choice& p_choice, FindingList& p_findings) {
    WantedRoad wanted;
    const ChildAnswer answer = askChild(FRAMEWORK_SECONDS, [&] { return examine(p_options, p_choice); });
    if (!answer.m_isGiven) {
        const std::string cure = cureOfRefusal(answer.m_reason);
        p_findings.push_back({"modules", "framework", FindingState::NO, answer.m_reason,
                              cure.empty() ? cureOfFramework(p_options) : cure});
        wanted.m_modulesFailed = true;
        wanted.m_text = "the framework does not start";
        return wanted;
    }
    const json all = json::parse(answer.m_text);
    addFromJson(p_findings, all["findings"]);
    wanted.m_works = all["wanted"]["works"];
    wanted.m_text = all["wanted"]["text"];
    return wanted;
}

} // namespace zyr::host
