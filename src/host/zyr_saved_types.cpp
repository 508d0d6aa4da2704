#include "host/zyr_saved_types.h"

#include <string_view>

namespace zyr::host {

namespace {

/// More are as good as these for whoever reads them.
constexpr size_t MAX_STRANGERS = 100;

/// Finds children by name where they are asked for in nearly their order. A name is looked for in a bounded part of the
/// others, so that files without any order cost no time; what is not found there is looked up in an index.
class ChildFinder {
public:
    ChildFinder(const SavedTree& p_tree, uint32_t p_parent)
        : m_tree(p_tree), m_parent(p_parent), m_next(p_parent != c_noSavedNode ? p_parent + 1 : 0) {}

    uint32_t find(const std::string& p_name) {
        if (m_parent == c_noSavedNode || !m_tree.isGroup(m_parent)) {
            return c_noSavedNode;
        }
        uint32_t child = m_next;
        for (int steps = 0; steps < 4 && child < m_tree.getNext(m_parent); steps++, child = m_tree.getNext(child)) {
            if (m_tree.getName(child) == p_name) {
                m_next = m_tree.getNext(child);
                return child;
            }
        }
        if (m_index.empty()) {
            for (child = m_parent + 1; child < m_tree.getNext(m_parent); child = m_tree.getNext(child)) {
                m_index.emplace(m_tree.getName(child), child);
            }
        }
        const auto found = m_index.find(p_name);
        if (found == m_index.end()) {
            return c_noSavedNode;
        }
        m_next = m_tree.getNext(found->second);
        return found->second;
    }

    /// The next one of an array.
    uint32_t findElement() {
        if (m_parent == c_noSavedNode || !m_tree.isArray(m_parent) || m_next >= m_tree.getNext(m_parent)) {
            return c_noSavedNode;
        }
        const uint32_t child = m_next;
        m_next = m_tree.getNext(child);
        return child;
    }

private:
    const SavedTree& m_tree;
    uint32_t m_parent;
    uint32_t m_next;
    std::unordered_map<std::string_view, uint32_t> m_index;
};

/// A whole number as it stands in front of values of the binary formats.
void appendNumber(std::string& p_bytes, uint64_t p_number) {
    for (; p_number >= 0x80; p_number >>= 7) {
        p_bytes += static_cast<char>(p_number | 0x80);
    }
    p_bytes += static_cast<char>(p_number);
}

class TypeWalk {
public:
    TypeWalk(SavedTree& p_tree, const SavedTree& p_typed, const SavedTree& p_worded,
             std::vector<std::string>& p_strangers)
        : m_tree(p_tree), m_typed(p_typed), m_worded(p_worded), m_strangers(p_strangers) {}

    void walk(uint32_t p_node, uint32_t p_typed, uint32_t p_worded) {
        // Nothing was read of an unknown class, which is told apart.
        if (!m_tree.isGroup(p_node) || m_typed.getKind(p_typed) == SavedKind::NULL_VALUE) {
            return;
        }
        ChildFinder typed(m_typed, p_typed);
        ChildFinder worded(m_worded, p_worded);
        const bool array = m_tree.isArray(p_node);
        uint64_t index = 0;
        for (uint32_t child = p_node + 1; child < m_tree.getNext(p_node); child = m_tree.getNext(child)) {
            const std::string& name = m_tree.getName(child);
            const uint32_t typedChild = array ? typed.findElement() : typed.find(name);
            const uint32_t wordedChild = array ? worded.findElement() : worded.find(name);
            m_path.push(m_tree, child, array ? index++ : UINT64_MAX);
            if (typedChild != c_noSavedNode) {
                take(child, typedChild, wordedChild);
                walk(child, typedChild, wordedChild);
            } else if (!array && !isFile(p_node) && m_strangers.size() < MAX_STRANGERS) {
                m_strangers.push_back(m_path.getText());
            }
            m_path.pop();
        }
    }

private:
    /// What stands beside a file's object belongs to its format.
    bool isFile(uint32_t p_node) const { return p_node == 0 || m_tree.getKind(p_node) == SavedKind::CONTENTS; }

    void take(uint32_t p_node, uint32_t p_typed, uint32_t p_worded) {
        const SavedKind kind = m_tree.getKind(p_node);
        const SavedKind type = m_typed.getKind(p_typed);
        if (kind == SavedKind::ENUMERATION || kind == SavedKind::ENUMERATIONS) {
            takeWords(p_node, p_worded);
        } else if (kind == SavedKind::LIST && type == SavedKind::RECORDS) {
            m_tree.setKind(p_node, type);
        } else if (kind == SavedKind::LIST && type == SavedKind::TEXTS) {
            makeTexts(m_tree, p_node, p_node, type);
        } else if (kind == SavedKind::LIST && type == SavedKind::ENUMERATIONS) {
            makeTexts(m_tree, p_node, p_node, SavedKind::WORDS);
        } else if (m_typed.isGroup(p_typed) &&
                   (kind == SavedKind::TEXT || (kind == SavedKind::NUMBERS && m_tree.getBytes(p_node).empty()))) {
            // An empty element can be anything, and an empty array one of anything.
            m_tree.setKind(p_node, type);
            m_tree.setClass(p_node, m_typed.getClass(p_typed), m_typed.getGUID(p_typed));
        } else if (kind == SavedKind::TEXT && (type == SavedKind::TEXT || type == SavedKind::SHARED_TEXT)) {
            m_tree.setKind(p_node, type);
        } else if (kind == SavedKind::TEXT && type == SavedKind::ENUMERATION) {
            const std::string_view word = m_tree.getBytes(p_node);
            m_tree.takeValue(p_node, m_typed, p_typed);
            m_tree.setWord(p_node, word);
        } else if ((kind == SavedKind::TEXT || kind == SavedKind::NUMBER || kind == SavedKind::NUMBERS) &&
                   !m_typed.isGroup(p_typed) && type != SavedKind::NULL_VALUE) {
            m_tree.takeValue(p_node, m_typed, p_typed);
        }
    }

    void takeWords(uint32_t p_node, uint32_t p_worded) {
        if (p_worded == c_noSavedNode) {
            return;
        }
        const SavedKind kind = m_worded.getKind(p_worded);
        if (m_tree.getKind(p_node) == SavedKind::ENUMERATION && kind == SavedKind::TEXT) {
            m_tree.setWord(p_node, m_worded.getBytes(p_worded));
        } else if (m_tree.getKind(p_node) == SavedKind::ENUMERATIONS && kind == SavedKind::LIST) {
            makeTexts(m_worded, p_worded, p_node, SavedKind::WORDS);
        }
    }

    /// Makes a node an array of the texts that stand in a list; its own nodes do not count any more.
    void makeTexts(const SavedTree& p_source, uint32_t p_list, uint32_t p_node, SavedKind p_kind) {
        std::string texts;
        uint64_t count = 0;
        for (uint32_t i = p_list + 1; i < p_source.getNext(p_list); i = p_source.getNext(i), count++) {
            const SavedKind kind = p_source.getKind(i);
            if (kind != SavedKind::TEXT && kind != SavedKind::NUMBER) {
                return;
            }
            const std::string_view text = p_source.getBytes(i);
            appendNumber(texts, text.size() + 1);
            texts += text;
        }
        std::string bytes;
        appendNumber(bytes, count);
        const std::string& kept = m_tree.keep(bytes + texts);
        m_tree.setKind(p_node, p_kind);
        m_tree.setBytes(p_node, kept.data(), kept.size());
    }

    SavedTree& m_tree;
    const SavedTree& m_typed;
    const SavedTree& m_worded;
    std::vector<std::string>& m_strangers;
    SavedPath m_path;
};

} // namespace

void addSavedTypes(SavedTree& p_tree, const SavedTree& p_typed, const SavedTree& p_worded,
                   std::vector<std::string>& p_strangers) {
    p_tree.shareBytes(p_typed);
    TypeWalk(p_tree, p_typed, p_worded, p_strangers).walk(0, 0, 0);
}

} // namespace zyr::host
