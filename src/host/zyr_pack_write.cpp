#include "host/zyr_command_line.h"
#include "host/zyr_file_progress.h"
#include "host/zyr_interruption.h"
#include "host/zyr_object_file.h"
#include "host/zyr_pack_command.h"
#include "host/zyr_pack_contents.h"
#include "host/zyr_pack_source.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

#include "zyr_common/memory/zyr_ref.h"

#include <filesystem>

namespace zyr::host {

namespace {

/// The same path gives the same GUID, so that the same directory gives the same pack.
GUID_t makeGUID(const std::string& p_path) {
    GUID_t guid;
    zyr_generateGUIDFromXXHash128(guid, p_path.data(), p_path.size());
    return guid;
}

Ref<IDynamicResource> makeResource(const SourceFile& p_file, const GUID_t& p_guid) {
    Ref<IDynamicResource> resource = Ref<IDynamicResource>::adopt(zyr_createObject<IDynamicResource>());
    resource->setName(p_file.m_name.c_str());
    HashMap<GUID_t, GUID_t> replacement;
    replacement.pushBack(GUID_t(), p_guid, nullptr);
    resource->replaceGUIDsWhereAvailable(0, replacement);
    try {
        const std::string bytes = readWholeFile(p_file.m_path);
        resource->getMutablePackedData()->pushBackRange(bytes.data(), bytes.size());
        zyr_generateGUIDFromXXHash128(resource->getMutableContentDigest(), bytes.data(), bytes.size());
    } catch (const RunError& error) {
        throw RunError(p_file.m_path + ": " + error.what());
    }
    return resource;
}

void addFolder(const SourceFolder& p_folder, IResourcesPack& p_pack, FileProgress& p_progress) {
    const Ref<IResourcesCategory> category = Ref<IResourcesCategory>::adopt(zyr_createObject<IResourcesCategory>());
    category->setName(p_folder.m_path.c_str());
    for (const SourceFile& file : p_folder.m_files) {
        if (getInterruption() != 0) {
            return;
        }
        const GUID_t guid = makeGUID(makePackPath(p_folder.m_path, file.m_name));
        const Ref<IDynamicResource> resource = makeResource(file, guid);
        category->pushBackResource(resource.get());
        p_pack.getMutableGUIDToDigestMap()->pushBack(
            guid, GUIDDigestPair(resource->getName(), guid, resource->getContentDigest()), nullptr);
        p_progress.add(file.m_size);
    }
    p_pack.insertCategory(category.get());
}

void save(Framework& p_framework, IResourcesPack& p_pack, const std::string& p_path, const std::string& p_format) {
    std::vector<std::string> reasons;
    if (!saveObject(p_framework, p_pack, p_path, p_format, reasons)) {
        throw RunError(p_path + ": it cannot be written" + (reasons.empty() ? "" : ": " + reasons.front()));
    }
}

} // namespace

int runObjectPack(const PackOptions& p_options) {
    claimStandardOutput();
    const std::string format = getExtensionOf(p_options.m_output);
    if (!isObjectFormat(format)) {
        throw UsageError("the extension of the pack names no format: .zbf, .raw, .xml and .json do");
    }
    std::error_code error;
    if (!p_options.m_force && std::filesystem::exists(std::filesystem::symlink_status(p_options.m_output, error))) {
        throw RunError(p_options.m_output + ": it is there already: --force replaces it");
    }
    std::vector<std::string> passed;
    const std::vector<SourceFolder> folders = collectSources(p_options.m_directory, p_options.m_output, passed);
    for (const std::string& path : passed) {
        fprintf(stderr, "zyr-host: %s: passed over, since it is no plain file\n", maskControls(path).c_str());
    }
    uint64_t numOfFiles = 0;
    uint64_t numOfBytes = 0;
    for (const SourceFolder& folder : folders) {
        numOfFiles += folder.m_files.size();
        for (const SourceFile& file : folder.m_files) {
            numOfBytes += file.m_size;
        }
    }
    Framework framework(p_options.m_framework);
    const InterruptGuard guard;
    FileProgress progress(p_options.m_progress, "packing", numOfFiles, numOfBytes);
    const Ref<IResourcesPack> pack = Ref<IResourcesPack>::adopt(zyr_createObject<IResourcesPack>());
    for (const SourceFolder& folder : folders) {
        if (!folder.m_files.empty()) {
            addFolder(folder, *pack, progress);
        }
    }
    if (getInterruption() != 0) {
        return EXIT_BY_SIGNAL + getInterruption();
    }
    progress.tell("writing " + maskControls(p_options.m_output));
    save(framework, *pack, p_options.m_output, format);
    return EXIT_DONE;
}

} // namespace zyr::host
