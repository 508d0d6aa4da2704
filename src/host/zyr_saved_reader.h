/// Reads files with saved objects as trees, in any of the four formats and however damaged. What cannot be read is told
/// and left out; whatever is behind it and has its own bounds is read all the same.
#pragma once

#include "host/zyr_saved_tree.h"

#include <string>
#include <string_view>
#include <vector>

namespace zyr::host {

/// One reading of a file, and what is inside it in compressed form.
class SavedReading {
public:
    /// Reads a whole file. The bytes have to live as long as the tree.
    static void read(std::string_view p_bytes, const std::string& p_format, SavedTree& p_tree,
                     std::vector<std::string>& p_problems);

    // For the readers of the formats.

    SavedTree& getTree() { return m_tree; }
    /// Tells what is wrong at the place that has been entered.
    void report(const std::string& p_problem);
    void reportAt(const void* p_place, const std::string& p_problem);
    /// Enters a node that was just added: false, after a report, where that is too deep. p_index is UINT64_MAX for a
    /// node with a name.
    bool enter(uint32_t p_node, uint64_t p_index);
    /// Leaves the node, whose children are complete.
    void leave(uint32_t p_node);

private:
    SavedReading(SavedTree& p_tree, std::vector<std::string>& p_problems, uint64_t p_size);

    void readFile(std::string_view p_bytes, const std::string& p_format);
    void readWrapped(std::string_view p_bytes, const std::string& p_format);
    void unpack(uint32_t p_object);
    bool getPackedBytes(uint32_t p_node, std::string& p_bytes);

    SavedTree& m_tree;
    std::vector<std::string>& m_problems;
    SavedPath m_path;
    std::string m_format;
    const char* m_begin = nullptr; ///< Of the bytes that are read.
    uint64_t m_allowance;          ///< Bytes that may still be unpacked.
    uint32_t m_depth = 0;
    uint32_t m_nesting = 0;
};

/// Add the fields of a payload, or of a document, to what was entered.
void readSavedRaw(SavedReading& p_reading, std::string_view p_payload);
void readSavedZbf(SavedReading& p_reading, std::string_view p_payload);
void readSavedXml(SavedReading& p_reading, std::string_view p_document);
void readSavedJson(SavedReading& p_reading, std::string_view p_document);

/// The numbers of an array that is kept as its text: each call gives the next one, empty behind the last.
std::string_view nextSavedWord(std::string_view& p_numbers);

} // namespace zyr::host
