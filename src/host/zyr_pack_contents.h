/// The resources of a pack that was read from a file.
#pragma once

#include "host/zyr_framework.h"

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/resources/zyr_resources_pack.h"

#include <string>
#include <vector>

namespace zyr::host {

/// The path of a resource: that of its category, unless it is "." or empty, and its name.
std::string makePackPath(const std::string& p_category, const std::string& p_name);

struct PackEntry {
    std::string m_category;
    std::string m_name;
    std::string m_path;
    const IResource* m_resource;
    /// Null for a resource that has no bytes of its own, which cannot become a file. The resource's.
    const Array<unsigned char>* m_data;
};

class PackContents {
public:
    /// Reads the pack. Throws RunError that names the file.
    PackContents(Framework& p_framework, const std::string& p_file);

    /// In the order in which they stand in the pack.
    const std::vector<PackEntry>& getEntries() const { return m_entries; }

    /// Those that have one of the paths or stand below it, in the order of the pack; all without paths. Throws RunError
    /// for a path that leads to nothing.
    std::vector<PackEntry> select(const std::vector<std::string>& p_paths) const;

private:
    void collect();

    Ref<IObject> m_object;
    const IResourcesPack* m_pack;
    std::vector<PackEntry> m_entries;
};

} // namespace zyr::host
