/// The fields of a saved object as they stand in its file, whatever class they belong to and whether it is known here.
///
/// A node takes 24 bytes and its value stays where it is, in the bytes of the file, so that a tree needs a small
/// multiple of its file. Nodes stand in the order of the file, each in front of what is in it.
#pragma once

#include "core_module/serializers/zyr_field_kind.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zyr::host {

/// What a node is. The first ones are stored in the binary formats under the same numbers; the text formats know less.
enum class SavedKind : uint8_t {
    NONE = 0,
    BOOL,
    INT32,
    UINT32,
    INT64,
    UINT64,
    FLOAT,
    DOUBLE,
    TEXT,
    SHARED_TEXT,
    ENUMERATION,
    RECORD,
    OBJECT,
    RECORDS,
    TEXTS,
    FLOATS,
    DOUBLES,
    UINT32S,
    ENUMERATIONS,
    NULL_VALUE,
    NUMBER,  ///< Of a text format, any type of number.
    NUMBERS, ///< The same in an array, kept as its text.
    LIST,    ///< An array of a text format that does not tell of what.
    WORDS,   ///< The words of an array of enumerations, stored like texts.
    CONTENTS ///< A whole saved object that stood in compressed form.
};
static_assert(static_cast<int>(SavedKind::ENUMERATIONS) == static_cast<int>(FieldKind::ENUM_ARRAY));

inline constexpr uint32_t c_noSavedNode = UINT32_MAX;

class SavedTree {
public:
    SavedTree();
    SavedTree(SavedTree&&) = default;
    SavedTree& operator=(SavedTree&&) = default;

    /// Node 0 holds all others.
    uint32_t getSize() const { return static_cast<uint32_t>(m_nodes.size()); }
    SavedKind getKind(uint32_t p_node) const { return m_nodes[p_node].m_kind; }
    bool hasChildren(uint32_t p_node) const { return m_nodes[p_node].m_next > p_node + 1; }
    /// The first node behind this one and everything in it; nodes in it go from p_node + 1 on.
    uint32_t getNext(uint32_t p_node) const { return m_nodes[p_node].m_next; }
    /// Empty for elements of arrays.
    const std::string& getName(uint32_t p_node) const { return *m_words[m_nodes[p_node].m_name]; }
    /// The class of an object, or the type of an element.
    const std::string& getClass(uint32_t p_node) const { return *m_classes[m_nodes[p_node].m_class].m_name; }
    const std::string& getGUID(uint32_t p_node) const { return *m_classes[m_nodes[p_node].m_class].m_guid; }
    /// The value of a number of the binary formats and of a truth value; floating ones as their bits.
    uint64_t getNumber(uint32_t p_node) const { return m_nodes[p_node].m_value; }
    /// The word of an enumeration's number, empty where it is not known.
    const std::string& getWord(uint32_t p_node) const { return *m_words[m_nodes[p_node].m_size]; }
    /// The bytes of a text or of an array without nodes.
    std::string_view getBytes(uint32_t p_node) const {
        return {reinterpret_cast<const char*>(m_nodes[p_node].m_value), m_nodes[p_node].m_size};
    }
    /// Whether the node is one of an array: it has an index in place of a name.
    bool isArray(uint32_t p_node) const;
    /// Whether it has nodes in it, though maybe none.
    bool isGroup(uint32_t p_node) const;
    /// The child of that name, or the null node.
    uint32_t findChild(uint32_t p_node, std::string_view p_name) const;

    /// Adds a node behind the last one. Gives the null node when there are too many.
    uint32_t add(SavedKind p_kind, std::string_view p_name);
    /// What is added from now on is not in it any more.
    void close(uint32_t p_node) { m_nodes[p_node].m_next = getSize(); }
    void setKind(uint32_t p_node, SavedKind p_kind) { m_nodes[p_node].m_kind = p_kind; }
    void setClass(uint32_t p_node, const std::string& p_name, const std::string& p_guid);
    void setNumber(uint32_t p_node, uint64_t p_number) { m_nodes[p_node].m_value = p_number; }
    void setWord(uint32_t p_node, std::string_view p_word) { m_nodes[p_node].m_size = findWord(p_word); }
    /// The bytes have to stay: keep() makes them.
    void setBytes(uint32_t p_node, const void* p_bytes, size_t p_size);
    /// Takes all nodes from this one on away again.
    void cut(uint32_t p_node) {
        if (p_node < getSize()) {
            m_nodes.resize(p_node);
        }
    }

    /// Bytes that live as long as the tree.
    const std::string& keep(std::string&& p_bytes);
    /// Keeps what another tree's values point to.
    void shareBytes(const SavedTree& p_other);
    /// Makes a node's kind and value those of a node of another tree, whose bytes are shared.
    void takeValue(uint32_t p_node, const SavedTree& p_other, uint32_t p_source);

private:
    struct Node {
        uint32_t m_name;
        uint32_t m_class : 24;
        SavedKind m_kind : 8;
        uint32_t m_next;
        uint32_t m_size;
        uint64_t m_value;
    };
    struct Class {
        const std::string* m_name;
        const std::string* m_guid;
    };
    using Bytes = std::deque<std::string>;

    uint32_t findWord(std::string_view p_word);

    std::vector<Node> m_nodes;
    std::vector<const std::string*> m_words; ///< Into the keys of the next.
    std::unordered_map<std::string, uint32_t> m_wordNumbers;
    std::vector<Class> m_classes;
    std::unordered_map<uint64_t, uint32_t> m_classNumbers;
    std::vector<std::shared_ptr<Bytes>> m_bytes; ///< The first ones are this tree's own.
};

/// Where a node stands, as the commands show and take it: names joined by periods, indices in brackets. Names that hold
/// anything but letters, digits, "_", "-" and what is not ASCII stand as JSON texts.
class SavedPath {
public:
    void push(const SavedTree& p_tree, uint32_t p_node, uint64_t p_index);
    void pop();
    const std::string& getText() const { return m_text; }

    static std::string makeName(const std::string& p_name);

private:
    std::string m_text;
    std::vector<size_t> m_lengths;
};

} // namespace zyr::host
