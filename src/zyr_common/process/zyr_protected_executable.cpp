#include "zyr_common/process/zyr_protected_executable.h"

#include "zyr_common/text/zyr_string.h"

#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace zyr {

static bool isWritableForRootOnly(const struct stat& p_status) {
    return p_status.st_uid == 0 && (p_status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

bool_t zyr_isProtectedRootExecutable(const String& p_path) {
    char* canonical = realpath(p_path.getData(), nullptr);
    const bool isCanonical = canonical != nullptr && p_path == canonical;
    free(canonical);
    if (!isCanonical) {
        return 0;
    }
    struct stat status;
    if (lstat(p_path.getData(), &status) != 0 || !S_ISREG(status.st_mode) || !isWritableForRootOnly(status) ||
        (status.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) == 0) {
        return 0;
    }
    // Each directory above, the root not counted.
    String directory = p_path;
    char* start = directory.getData();
    for (char* end = strchr(start + 1, '/'); end != nullptr; end = strchr(end + 1, '/')) {
        *end = '\0';
        if (lstat(start, &status) != 0 || !S_ISDIR(status.st_mode) || !isWritableForRootOnly(status)) {
            return 0;
        }
        *end = '/';
    }
    return 1;
}

} // namespace zyr
