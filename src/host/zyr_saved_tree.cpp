#include "host/zyr_saved_tree.h"

#include <nlohmann/json.hpp>

namespace zyr::host {

namespace {

constexpr size_t MAX_CLASSES = 1 << 24;

} // namespace

SavedTree::SavedTree() {
    static_assert(sizeof(Node) == 24);
    m_bytes.push_back(std::make_shared<Bytes>());
    findWord("");
    m_classes.push_back({m_words[0], m_words[0]});
    m_classNumbers.emplace(0, 0);
    add(SavedKind::RECORD, "");
}

bool SavedTree::isArray(uint32_t p_node) const {
    return getKind(p_node) == SavedKind::RECORDS || getKind(p_node) == SavedKind::LIST;
}

bool SavedTree::isGroup(uint32_t p_node) const {
    const SavedKind kind = getKind(p_node);
    return isArray(p_node) || kind == SavedKind::RECORD || kind == SavedKind::OBJECT || kind == SavedKind::CONTENTS;
}

uint32_t SavedTree::findChild(uint32_t p_node, std::string_view p_name) const {
    for (uint32_t child = p_node + 1; child < getNext(p_node); child = getNext(child)) {
        if (getName(child) == p_name) {
            return child;
        }
    }
    return c_noSavedNode;
}

uint32_t SavedTree::findWord(std::string_view p_word) {
    const auto [place, isNew] = m_wordNumbers.emplace(p_word, static_cast<uint32_t>(m_words.size()));
    if (isNew) {
        m_words.push_back(&place->first);
    }
    return place->second;
}

uint32_t SavedTree::add(SavedKind p_kind, std::string_view p_name) {
    if (m_nodes.size() >= c_noSavedNode - 1) {
        return c_noSavedNode;
    }
    const uint32_t node = getSize();
    m_nodes.push_back({findWord(p_name), 0, p_kind, node + 1, 0, 0});
    return node;
}

void SavedTree::setClass(uint32_t p_node, const std::string& p_name, const std::string& p_guid) {
    const uint32_t name = findWord(p_name);
    const uint32_t guid = findWord(p_guid);
    const auto [place, isNew] =
        m_classNumbers.emplace(uint64_t(name) << 32 | guid, static_cast<uint32_t>(m_classes.size()));
    if (isNew) {
        m_classes.push_back({m_words[name], m_words[guid]});
    }
    // More classes than that are no class's names any more.
    m_nodes[p_node].m_class = place->second < MAX_CLASSES ? place->second : 0;
}

void SavedTree::setBytes(uint32_t p_node, const void* p_bytes, size_t p_size) {
    m_nodes[p_node].m_value = reinterpret_cast<uintptr_t>(p_bytes);
    m_nodes[p_node].m_size = static_cast<uint32_t>(p_size);
}

const std::string& SavedTree::keep(std::string&& p_bytes) {
    return m_bytes.front()->emplace_back(std::move(p_bytes));
}

void SavedTree::shareBytes(const SavedTree& p_other) {
    m_bytes.insert(m_bytes.end(), p_other.m_bytes.begin(), p_other.m_bytes.end());
}

void SavedTree::takeValue(uint32_t p_node, const SavedTree& p_other, uint32_t p_source) {
    const Node& source = p_other.m_nodes[p_source];
    m_nodes[p_node].m_kind = source.m_kind;
    m_nodes[p_node].m_size = source.m_size;
    m_nodes[p_node].m_value = source.m_value;
}

void SavedPath::push(const SavedTree& p_tree, uint32_t p_node, uint64_t p_index) {
    m_lengths.push_back(m_text.size());
    const std::string& name = p_tree.getName(p_node);
    if (p_index != UINT64_MAX) {
        m_text += "[" + std::to_string(p_index) + "]";
    } else {
        m_text += (m_text.empty() ? "" : ".") + makeName(name);
    }
}

void SavedPath::pop() {
    m_text.resize(m_lengths.back());
    m_lengths.pop_back();
}

std::string SavedPath::makeName(const std::string& p_name) {
    for (const char character : p_name) {
        const auto byte = static_cast<unsigned char>(character);
        const bool plain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= 'a' && byte <= 'z') || byte == '_' || byte == '-' || byte >= 0x80;
        if (!plain) {
            return nlohmann::json(p_name).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
        }
    }
    return p_name.empty() ? "\"\"" : p_name;
}

} // namespace zyr::host
