#include "host/zyr_codec_state.h"
#include "host/zyr_command_line.h"
#include "host/zyr_object_command.h"
#include "host/zyr_object_view.h"
#include "host/zyr_run_error.h"
#include "host/zyr_saved_value.h"
#include "host/zyr_standard_output.h"

#include <cstdio>

namespace zyr::host {

namespace {

/// As of the program of that name: here 1 is no failure, and 2 is.
enum DiffExitCode : int { EXIT_SAME = 0, EXIT_DIFFERENT = 1, EXIT_TROUBLE = 2 };

class ObjectComparison {
public:
    ObjectComparison(const ObjectView& p_first, const ObjectView& p_second, bool p_json)
        : m_first(p_first.m_tree),
          m_second(p_second.m_tree),
          m_wordsAreTexts((p_first.m_format == "xml") != (p_second.m_format == "xml")),
          m_json(p_json) {}

    void compare(uint32_t p_first, uint32_t p_second) {
        const bool group = m_first.isGroup(p_first) && !isPlainList(m_first, p_first);
        if (group != (m_second.isGroup(p_second) && !isPlainList(m_second, p_second)) ||
            (group && (m_first.isArray(p_first) != m_second.isArray(p_second) ||
                       m_first.getClass(p_first) != m_second.getClass(p_second)))) {
            tell(p_first, p_second);
        } else if (!group) {
            if (!isSameValue(p_first, p_second)) {
                tell(p_first, p_second);
            }
        } else if (m_first.isArray(p_first)) {
            compareElements(p_first, p_second);
        } else {
            compareFields(p_first, p_second);
        }
    }

    /// The whole text, with what JSON needs around it.
    bool finish() {
        if (m_json) {
            m_text = m_text.empty() ? "[]\n" : "[\n" + m_text + "\n]\n";
        }
        return printText(m_text);
    }
    bool isSame() const { return m_same; }

private:
    bool isSameValue(uint32_t p_first, uint32_t p_second) const {
        const std::string first = makeSavedJson(m_first, p_first);
        const std::string second = makeSavedJson(m_second, p_second);
        if (first == second || !m_wordsAreTexts) {
            return first == second;
        }
        // XML has texts alone where no class tells what they are.
        return (m_first.getKind(p_first) == SavedKind::TEXT && m_first.getBytes(p_first) == second) ||
               (m_second.getKind(p_second) == SavedKind::TEXT && m_second.getBytes(p_second) == first);
    }

    /// Whether it is an array of single values, which a binary format keeps without nodes.
    static bool isPlainList(const SavedTree& p_tree, uint32_t p_node) {
        if (p_tree.getKind(p_node) != SavedKind::LIST) {
            return false;
        }
        for (uint32_t child = p_node + 1; child < p_tree.getNext(p_node); child = p_tree.getNext(child)) {
            if (p_tree.isGroup(child)) {
                return false;
            }
        }
        return true;
    }

    /// Whether the files' formats decide about a field: what stands beside the object in compressed contents, and the
    /// size of these.
    bool isOfFormat(uint32_t p_parent, const std::string& p_name) const {
        return m_first.getKind(p_parent) == SavedKind::CONTENTS
                   ? p_name != "fileObject"
                   : m_first.getName(p_parent) == "compressionInfo" && p_name == "decompressSize";
    }

    void compareFields(uint32_t p_first, uint32_t p_second) {
        std::unordered_map<std::string_view, uint32_t> others;
        for (uint32_t i = p_second + 1; i < m_second.getNext(p_second); i = m_second.getNext(i)) {
            if (!isOfFormat(p_first, m_second.getName(i))) {
                others.emplace(m_second.getName(i), i);
            }
        }
        for (uint32_t i = p_first + 1; i < m_first.getNext(p_first); i = m_first.getNext(i)) {
            if (isOfFormat(p_first, m_first.getName(i))) {
                continue;
            }
            const auto other = others.find(m_first.getName(i));
            m_path.push(m_first, i, UINT64_MAX);
            if (other == others.end()) {
                tell(i, c_noSavedNode);
            } else {
                compare(i, other->second);
                others.erase(other);
            }
            m_path.pop();
        }
        for (uint32_t i = p_second + 1; i < m_second.getNext(p_second); i = m_second.getNext(i)) {
            const auto other = others.find(m_second.getName(i));
            if (other != others.end() && other->second == i) {
                m_path.push(m_second, i, UINT64_MAX);
                tell(c_noSavedNode, i);
                m_path.pop();
            }
        }
    }

    void compareElements(uint32_t p_first, uint32_t p_second) {
        uint32_t first = p_first + 1;
        uint32_t second = p_second + 1;
        for (uint64_t index = 0;; index++) {
            const bool hasFirst = first < m_first.getNext(p_first);
            const bool hasSecond = second < m_second.getNext(p_second);
            if (!hasFirst && !hasSecond) {
                return;
            }
            m_path.push(m_first, p_first, index);
            if (hasFirst && hasSecond) {
                compare(first, second);
            } else {
                tell(hasFirst ? first : c_noSavedNode, hasSecond ? second : c_noSavedNode);
            }
            m_path.pop();
            first = hasFirst ? m_first.getNext(first) : first;
            second = hasSecond ? m_second.getNext(second) : second;
        }
    }

    std::string describe(const SavedTree& p_tree, uint32_t p_node) const {
        if (!p_tree.isGroup(p_node)) {
            return m_json ? makeSavedJson(p_tree, p_node) : makeSavedLine(p_tree, p_node, false);
        }
        const std::string& name = p_tree.getClass(p_node);
        const std::string text =
            getSavedTypeText(p_tree.getKind(p_node)) + (name.empty() ? "" : " " + maskControls(name));
        return m_json ? quoteSavedText(text) : text;
    }

    void tell(uint32_t p_first, uint32_t p_second) {
        m_same = false;
        if (!m_json) {
            const std::string path = maskControls(m_path.getText());
            if (p_first != c_noSavedNode) {
                m_text += "- " + path + ": " + describe(m_first, p_first) + "\n";
            }
            if (p_second != c_noSavedNode) {
                m_text += "+ " + path + ": " + describe(m_second, p_second) + "\n";
            }
            return;
        }
        m_text += (m_text.empty() ? "" : ",\n") + std::string("  {\"path\": ") + quoteSavedText(m_path.getText());
        if (p_first != c_noSavedNode) {
            m_text += ", \"first\": " + describe(m_first, p_first);
        }
        if (p_second != c_noSavedNode) {
            m_text += ", \"second\": " + describe(m_second, p_second);
        }
        m_text += "}";
    }

    const SavedTree& m_first;
    const SavedTree& m_second;
    bool m_wordsAreTexts;
    bool m_json;
    bool m_same = true;
    SavedPath m_path;
    std::string m_text;
};

/// False, with the reason told, for a file without an object that can be compared.
bool open(Framework& p_framework, const std::string& p_path, ObjectView& p_view) {
    std::vector<std::string> reasons;
    try {
        p_view = openObjectView(p_path, "");
        reasons = p_view.m_problems;
        if (reasons.empty() && p_view.getObjectNode() == c_noSavedNode) {
            reasons.push_back("there is no object in it");
        }
    } catch (const RunError& error) {
        reasons.push_back(error.what());
    }
    for (const std::string& reason : reasons) {
        fprintf(stderr, "zyr-host: %s: %s\n", maskControls(p_path).c_str(), maskControls(reason).c_str());
    }
    if (reasons.empty()) {
        loadPlainObjectView(p_framework, p_view);
    }
    return reasons.empty();
}

} // namespace

int runObjectDiff(const ObjectDiffOptions& p_options) {
    claimStandardOutput();
    Framework framework(p_options.m_framework);
    registerCodecState();
    ObjectView first;
    ObjectView second;
    const bool readable = open(framework, p_options.m_first, first);
    if (!open(framework, p_options.m_second, second) || !readable) {
        return EXIT_TROUBLE;
    }
    ObjectComparison comparison(first, second, p_options.m_json);
    comparison.compare(first.getObjectNode(), second.getObjectNode());
    if (!comparison.finish()) {
        return EXIT_TROUBLE;
    }
    return comparison.isSame() ? EXIT_SAME : EXIT_DIFFERENT;
}

} // namespace zyr::host
