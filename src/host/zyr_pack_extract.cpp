#include "host/zyr_command_line.h"
#include "host/zyr_file_progress.h"
#include "host/zyr_interruption.h"
#include "host/zyr_pack_command.h"
#include "host/zyr_pack_contents.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"
#include "host/zyr_target_directory.h"

#include <set>

namespace zyr::host {

namespace {

/// A digest that is up to date has to be that of the bytes.
bool isIntact(const PackEntry& p_entry) {
    const GUID_t& stored = p_entry.m_resource->getContentDigest();
    if (stored.isNull() || p_entry.m_resource->isContentDirty()) {
        return true;
    }
    GUID_t digest;
    zyr_generateGUIDFromXXHash128(digest, p_entry.m_data->getData(), p_entry.m_data->getSize());
    return digest == stored;
}

/// What stands against writing the entry: a text, or an empty one.
std::string findObstacle(const PackEntry& p_entry, const TargetDirectory& p_directory, bool p_force,
                         std::set<std::string>& p_paths) {
    if (p_entry.m_data == nullptr) {
        return "it has no bytes of its own: it is of class " + toText(p_entry.m_resource->getClassName());
    }
    if (!p_paths.insert(p_entry.m_path).second) {
        return "it stands in the pack twice";
    }
    if (!isIntact(p_entry)) {
        return "its bytes do not have the digest that was stored with them";
    }
    if (!p_force && p_directory.has(TargetDirectory::splitPath(p_entry.m_path))) {
        return "it is there already: --force replaces it";
    }
    return "";
}

/// Tells everything that stands against it before anything is written.
bool checkAll(const std::vector<PackEntry>& p_entries, const TargetDirectory& p_directory, bool p_force) {
    std::set<std::string> paths;
    bool good = true;
    for (const PackEntry& entry : p_entries) {
        const std::string path = maskControls(entry.m_path);
        try {
            TargetDirectory::splitPath(entry.m_path);
            const std::string obstacle = findObstacle(entry, p_directory, p_force, paths);
            if (obstacle.empty()) {
                continue;
            }
            fprintf(stderr, "zyr-host: %s: %s\n", path.c_str(), obstacle.c_str());
        } catch (const RunError& error) {
            fprintf(stderr, "zyr-host: %s\n", error.what());
        }
        good = false;
    }
    return good;
}

} // namespace

int runObjectExtract(const PackExtractOptions& p_options) {
    claimStandardOutput();
    Framework framework(p_options.m_framework);
    const InterruptGuard guard;
    const PackContents contents(framework, p_options.m_pack);
    const std::vector<PackEntry> entries = contents.select(p_options.m_names);
    const TargetDirectory directory(p_options.m_directory);
    if (!checkAll(entries, directory, p_options.m_force)) {
        fprintf(stderr, "zyr-host: nothing was extracted\n");
        return EXIT_RUN_FAILED;
    }
    uint64_t numOfBytes = 0;
    for (const PackEntry& entry : entries) {
        numOfBytes += entry.m_data->getSize();
    }
    FileProgress progress(p_options.m_progress, "extracting", entries.size(), numOfBytes);
    for (const PackEntry& entry : entries) {
        if (getInterruption() != 0) {
            return EXIT_BY_SIGNAL + getInterruption();
        }
        directory.write(TargetDirectory::splitPath(entry.m_path), entry.m_data->getData(), entry.m_data->getSize(),
                        p_options.m_force);
        progress.add(entry.m_data->getSize());
    }
    return EXIT_DONE;
}

} // namespace zyr::host
