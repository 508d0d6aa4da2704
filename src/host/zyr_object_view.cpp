#include "host/zyr_object_view.h"

#include "host/zyr_object_examiner.h"
#include "host/zyr_object_file.h"
#include "host/zyr_saved_reader.h"
#include "host/zyr_saved_types.h"

#include "zyr_common/storage/zyr_load_save.h"

#include <charconv>
#include <nlohmann/json.hpp>

namespace zyr::host {

namespace {

/// The object as its classes save it. False where they cannot.
bool saveAgain(IObject* p_object, const ObjectView& p_view, const char* p_format, std::string& p_bytes) {
    Array<unsigned char> data;
    data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
    if (!zyr_saveToData(p_object, data, p_format, 0, getDirectoryOf(p_view.m_path).c_str())) {
        return false;
    }
    p_bytes.assign(reinterpret_cast<const char*>(data.getData()), data.getSize());
    return true;
}

bool readAgain(IObject* p_object, const ObjectView& p_view, const char* p_format, SavedTree& p_tree) {
    std::string bytes;
    std::vector<std::string> problems;
    if (!saveAgain(p_object, p_view, p_format, bytes)) {
        return false;
    }
    const std::string& kept = p_tree.keep(std::move(bytes));
    SavedReading::read(kept, p_format, p_tree, problems);
    return problems.empty();
}

} // namespace

ObjectView openObjectView(const std::string& p_path, const std::string& p_format) {
    ObjectView view;
    view.m_path = p_path;
    view.m_bytes = std::make_unique<const std::string>(readObjectFile(p_path));
    view.m_format = chooseObjectFormat(p_path, *view.m_bytes, p_format);
    SavedReading::read(*view.m_bytes, view.m_format, view.m_tree, view.m_problems);
    return view;
}

bool loadObjectView(Framework& p_framework, ObjectView& p_view, std::vector<std::string>& p_reasons) {
    p_view.m_object = loadObject(p_framework, p_view.m_path, p_view.m_format, p_reasons);
    if (!p_view.m_object) {
        return false;
    }
    SavedTree typed;
    SavedTree worded;
    if (readAgain(p_view.m_object.get(), p_view, "raw", typed) &&
        readAgain(p_view.m_object.get(), p_view, "json", worded)) {
        addSavedTypes(p_view.m_tree, typed, worded, p_view.m_strangers);
    }
    return true;
}

void loadPlainObjectView(Framework& p_framework, ObjectView& p_view) {
    std::vector<ObjectProblem> problems;
    std::vector<std::string> reasons;
    ObjectExaminer(p_framework).examine(p_view, problems);
    for (const ObjectProblem& problem : problems) {
        if (problem.m_kind != ObjectProblem::UNKNOWN) {
            return;
        }
    }
    loadObjectView(p_framework, p_view, reasons);
}

namespace {

uint32_t findNodeFrom(const SavedTree& p_tree, uint32_t p_from, const std::string& p_path) {
    uint32_t node = p_from;
    size_t place = 0;
    while (node != c_noSavedNode && place < p_path.size()) {
        if (p_path[place] == '[') {
            uint64_t index = 0;
            const char* const end = p_path.data() + p_path.size();
            const auto [stop, error] = std::from_chars(p_path.data() + place + 1, end, index);
            if (error != std::errc() || stop == end || *stop != ']' || !p_tree.isArray(node)) {
                return c_noSavedNode;
            }
            uint32_t child = node + 1;
            for (; index > 0 && child < p_tree.getNext(node); index--) {
                child = p_tree.getNext(child);
            }
            node = child < p_tree.getNext(node) ? child : c_noSavedNode;
            place = static_cast<size_t>(stop + 1 - p_path.data());
            continue;
        }
        place += p_path[place] == '.' && place != 0 ? 1 : 0;
        size_t end = p_path.find_first_of(".[", place);
        std::string name;
        if (place < p_path.size() && p_path[place] == '"') {
            for (end = place + 1; end < p_path.size() && p_path[end] != '"'; end++) {
                end += p_path[end] == '\\' ? 1 : 0;
            }
            const nlohmann::json text =
                nlohmann::json::parse(p_path.substr(place, end + 1 - place), nullptr, /* allow_exceptions */ false);
            if (!text.is_string()) {
                return c_noSavedNode;
            }
            name = text.get<std::string>();
            end++;
        } else {
            name = p_path.substr(place, end - place);
        }
        node = p_tree.isGroup(node) && !p_tree.isArray(node) ? p_tree.findChild(node, name) : c_noSavedNode;
        place = end < p_path.size() ? end : p_path.size();
    }
    return node;
}

} // namespace

uint32_t findSavedNode(const SavedTree& p_tree, const std::string& p_path) {
    const uint32_t node = findNodeFrom(p_tree, p_tree.findChild(0, "fileObject"), p_path);
    return node != c_noSavedNode || p_path.empty() ? node : findNodeFrom(p_tree, 0, p_path);
}

} // namespace zyr::host
