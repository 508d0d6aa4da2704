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

constexpr uint64_t MAX_ELEMENTS = 16;
constexpr size_t CHUNK_SIZE = 65536;

/// Writes the tree while it walks it, so that a large one needs no second copy.
class ObjectWriter {
public:
    ObjectWriter(const SavedTree& p_tree, const ObjectShowOptions& p_options) : m_tree(p_tree), m_options(p_options) {}

    void writeText(uint32_t p_node, const std::string& p_name, uint32_t p_depth) {
        append(std::string(2 * size_t(p_depth), ' ') + maskControls(p_name) + ": " + makeHead(p_node) + "\n");
        if (!m_tree.isGroup(p_node) || p_depth >= m_options.m_depth) {
            return;
        }
        uint64_t index = 0;
        for (uint32_t child = p_node + 1; child < m_tree.getNext(p_node); child = m_tree.getNext(child), index++) {
            if (m_tree.isArray(p_node) && index >= MAX_ELEMENTS && !m_options.m_full) {
                const uint64_t count = countChildren(p_node);
                append(std::string(2 * size_t(p_depth) + 2, ' ') + "... (" + std::to_string(count) + " elements)\n");
                return;
            }
            writeText(child, m_tree.isArray(p_node) ? "[" + std::to_string(index) + "]" : nameOf(child), p_depth + 1);
        }
    }

    /// The members of a node, without the braces around them.
    void writeJson(uint32_t p_node, uint32_t p_depth, const std::string& p_indent) {
        const SavedKind kind = m_tree.getKind(p_node);
        append("\"type\": " + quoteSavedText(getSavedTypeText(kind)));
        if (!m_tree.getClass(p_node).empty()) {
            append(", \"class\": " + quoteSavedText(m_tree.getClass(p_node)));
        }
        if (!m_tree.getGUID(p_node).empty()) {
            append(", \"guid\": " + quoteSavedText(m_tree.getGUID(p_node)));
        }
        if (!m_tree.isGroup(p_node)) {
            append(", \"value\": " + makeSavedJson(m_tree, p_node));
            return;
        }
        const char* const list = m_tree.isArray(p_node) ? "elements" : "fields";
        if (p_depth >= m_options.m_depth) {
            append(", \"" + std::string(list) + "_left_out\": " + std::to_string(countChildren(p_node)));
            return;
        }
        append(", \"" + std::string(list) + "\": [");
        const std::string indent = p_indent + "  ";
        for (uint32_t child = p_node + 1; child < m_tree.getNext(p_node); child = m_tree.getNext(child)) {
            append((child != p_node + 1 ? ",\n" : "\n") + indent + "{");
            if (!m_tree.isArray(p_node)) {
                append("\"name\": " + quoteSavedText(m_tree.getName(child)) + ", ");
            }
            writeJson(child, p_depth + 1, indent);
            append("}");
        }
        append(m_tree.hasChildren(p_node) ? "\n" + p_indent + "]" : "]");
    }

    void append(const std::string& p_text) {
        m_text += p_text;
        if (m_text.size() >= CHUNK_SIZE) {
            flush();
        }
    }
    bool flush() {
        m_good = m_good && printText(m_text);
        m_text.clear();
        return m_good;
    }

private:
    uint64_t countChildren(uint32_t p_node) const {
        uint64_t count = 0;
        for (uint32_t child = p_node + 1; child < m_tree.getNext(p_node); child = m_tree.getNext(child)) {
            count++;
        }
        return count;
    }
    std::string nameOf(uint32_t p_node) const { return SavedPath::makeName(m_tree.getName(p_node)); }
    std::string makeHead(uint32_t p_node) const {
        const SavedKind kind = m_tree.getKind(p_node);
        if (kind == SavedKind::NULL_VALUE) {
            return "null";
        }
        std::string head = getSavedTypeText(kind);
        if (!m_tree.getClass(p_node).empty()) {
            head += " " + maskControls(m_tree.getClass(p_node));
        }
        if (!m_tree.getGUID(p_node).empty()) {
            head += " {" + maskControls(m_tree.getGUID(p_node)) + "}";
        }
        if (m_tree.isGroup(p_node)) {
            const uint64_t count = countChildren(p_node);
            const bool cut = m_tree.isArray(p_node) || count == 0;
            return head + (cut ? " of " + std::to_string(count) : "");
        }
        return head + " " + makeSavedLine(m_tree, p_node, m_options.m_full);
    }

    const SavedTree& m_tree;
    const ObjectShowOptions& m_options;
    std::string m_text;
    bool m_good = true;
};

void writeProblemList(ObjectWriter& p_writer, const std::vector<std::string>& p_problems) {
    p_writer.append("  \"problems\": [");
    for (size_t i = 0; i < p_problems.size(); i++) {
        p_writer.append((i != 0 ? ", " : "") + quoteSavedText(p_problems[i]));
    }
    p_writer.append("]");
}

bool show(const ObjectView& p_view, uint32_t p_node, const ObjectShowOptions& p_options) {
    const SavedTree& tree = p_view.m_tree;
    ObjectWriter writer(tree, p_options);
    const std::string name = p_options.m_field.empty() ? tree.getName(p_node) : p_options.m_field;
    if (!p_options.m_json) {
        writer.writeText(p_node, name, 0);
        return writer.flush();
    }
    writer.append("{\n  \"file\": " + quoteSavedText(p_view.m_path) +
                  ",\n  \"format\": " + quoteSavedText(p_view.m_format) + ",\n");
    writeProblemList(writer, p_view.m_problems);
    writer.append(",\n  \"object\": {\"name\": " + quoteSavedText(name) + ", ");
    writer.writeJson(p_node, 0, "  ");
    writer.append("}\n}\n");
    return writer.flush();
}

} // namespace

int runObjectShow(const ObjectShowOptions& p_options) {
    claimStandardOutput();
    Framework framework(p_options.m_framework);
    registerCodecState();
    const std::string file = maskControls(p_options.m_file);
    ObjectView view;
    try {
        view = openObjectView(p_options.m_file, p_options.m_format);
    } catch (const RunError& error) {
        fprintf(stderr, "zyr-host: %s: %s\n", file.c_str(), error.what());
        return EXIT_RUN_FAILED;
    }
    for (const std::string& problem : view.m_problems) {
        fprintf(stderr, "zyr-host: %s: %s\n", file.c_str(), maskControls(problem).c_str());
    }
    if (view.m_problems.empty()) {
        loadPlainObjectView(framework, view);
    }
    const uint32_t object = view.getObjectNode();
    const uint32_t node = findSavedNode(view.m_tree, p_options.m_field);
    if (node == c_noSavedNode) {
        const std::string missing =
            object == c_noSavedNode ? "there is no object in it" : "there is no field " + p_options.m_field;
        fprintf(stderr, "zyr-host: %s: %s\n", file.c_str(), maskControls(missing).c_str());
        return EXIT_RUN_FAILED;
    }
    return show(view, node, p_options) && view.m_problems.empty() ? EXIT_DONE : EXIT_RUN_FAILED;
}

} // namespace zyr::host
