#include "zyr_common/platform/zyr_base_path.h"

#include "zyr_common/platform/zyr_process_identity.h"

namespace zyr {

String zyr_getBaseDirectoryOrCurrent(const String& p_directory) {
    String directory = p_directory;
    if (directory.isEmpty()) {
        zyr_getCurrentWorkingDirectory(directory);
    }
    return directory;
}

String zyr_resolvePath(const String& p_path, const String& p_directory) {
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

} // namespace zyr
