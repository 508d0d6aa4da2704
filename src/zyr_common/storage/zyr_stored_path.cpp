#include "zyr_common/storage/zyr_stored_path.h"

#include "zyr_common/platform/zyr_process_identity.h"

#include <cstring>

namespace zyr {

String zyr_getBaseDirectoryOrCurrent(const String& p_directory) {
    String directory = p_directory;
    if (directory.isEmpty()) {
        zyr_getCurrentWorkingDirectory(directory);
    }
    return directory;
}

String zyr_resolveStoredPath(const String& p_path, const String& p_directory) {
    String path = p_path;
    if (!path.isAbsolutePath()) {
        path = p_directory;
        if (!path.isEmpty()) {
            path.normalizeDirectoryPath();
        }
        path += p_path;
    }
    path.setCoherentPathSlashes();
    return path;
}

String zyr_getFormatFromPath(const String& p_path) {
    const char* period = strrchr(p_path.getData(), '.');
    return period != nullptr ? String(period + 1) : String();
}

} // namespace zyr
