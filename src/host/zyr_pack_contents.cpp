#include "host/zyr_pack_contents.h"

#include "host/zyr_object_file.h"
#include "host/zyr_run_error.h"

#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"

#include <algorithm>

namespace zyr::host {

namespace {

Ref<IObject> load(Framework& p_framework, const std::string& p_file) {
    std::vector<std::string> reasons;
    try {
        const std::string format = chooseObjectFormat(p_file, readObjectFile(p_file), "");
        Ref<IObject> object = Ref<IObject>::adopt(loadObject(p_framework, p_file, format, reasons).release());
        if (object) {
            return object;
        }
    } catch (const RunError& error) {
        reasons.emplace_back(error.what());
    }
    std::string text = p_file;
    const char* separator = ": ";
    for (const std::string& reason : reasons) {
        text += separator + reason;
        separator = "; ";
    }
    throw RunError(text);
}

template <class Interface> const Interface* asInterface(const IObject* p_object) {
    const bool is = p_object != nullptr && p_object->findClassGUID(zyr_getInterfaceGUID<Interface>());
    return is ? static_cast<const Interface*>(p_object) : nullptr;
}

/// Without what has no meaning in it: "./" in front and "/" behind.
std::string cleanPath(std::string p_path) {
    while (p_path.compare(0, 2, "./") == 0) {
        p_path.erase(0, 2);
    }
    while (p_path.size() > 1 && p_path.back() == '/') {
        p_path.pop_back();
    }
    return p_path.empty() ? "." : p_path;
}

bool isAtOrBelow(const std::string& p_path, const std::string& p_place) {
    return p_place == "." || p_path == p_place ||
           (p_path.size() > p_place.size() && p_path[p_place.size()] == '/' &&
            p_path.compare(0, p_place.size(), p_place) == 0);
}

} // namespace

std::string makePackPath(const std::string& p_category, const std::string& p_name) {
    return p_category.empty() || p_category == "." ? p_name : p_category + "/" + p_name;
}

PackContents::PackContents(Framework& p_framework, const std::string& p_file)
    : m_object(load(p_framework, p_file)), m_pack(asInterface<IResourcesPack>(m_object.get())) {
    if (m_pack == nullptr) {
        throw RunError(p_file + ": it is no resources pack, but an object of class " +
                       toText(m_object->getClassName()));
    }
    collect();
}

void PackContents::collect() {
    const IHashMapOfObjects<String>* categories = m_pack->getCategories();
    for (auto it = categories->beginConst(); it != categories->endConst(); ++it) {
        const auto* category = asInterface<IResourcesCategory>(it->m_second);
        if (category == nullptr) {
            continue;
        }
        const IListOfObjects* resources = category->getResources();
        for (auto place = resources->beginConst(); place != resources->endConst(); ++place) {
            const auto* resource = asInterface<IResource>(*place);
            const auto* dynamicResource = asInterface<IDynamicResource>(*place);
            const std::string categoryName = toText(category->getName());
            const std::string name = toText(resource->getName());
            m_entries.push_back({categoryName, name, makePackPath(categoryName, name), resource,
                                 dynamicResource != nullptr ? dynamicResource->getPackedData() : nullptr});
        }
    }
}

std::vector<PackEntry> PackContents::select(const std::vector<std::string>& p_paths) const {
    if (p_paths.empty()) {
        return m_entries;
    }
    std::vector<bool> chosen(m_entries.size(), false);
    for (const std::string& path : p_paths) {
        const std::string place = cleanPath(path);
        bool found = false;
        for (size_t i = 0; i < m_entries.size(); i++) {
            if (isAtOrBelow(m_entries[i].m_path, place)) {
                chosen[i] = true;
                found = true;
            }
        }
        if (!found) {
            throw RunError("the pack has nothing at " + path);
        }
    }
    std::vector<PackEntry> entries;
    for (size_t i = 0; i < m_entries.size(); i++) {
        if (chosen[i]) {
            entries.push_back(m_entries[i]);
        }
    }
    return entries;
}

} // namespace zyr::host
