#include "support/render_node/zyr_render_node.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <xf86drm.h>

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

std::atomic<bool> isPresent{true};

/// Render nodes are open on /dev/null, so its device number tells their descriptors.
bool isRenderNode(int p_file) {
    struct stat file = {};
    struct stat null = {};
    return fstat(p_file, &file) == 0 && stat("/dev/null", &null) == 0 && file.st_rdev == null.st_rdev;
}

int openFile(const char* p_symbol, const char* p_path, int p_flags, mode_t p_mode) {
    using Open = int (*)(const char*, int, ...);
    Open real = reinterpret_cast<Open>(dlsym(RTLD_NEXT, p_symbol));
    if (strncmp(p_path, "/dev/dri/", 9) == 0) {
        if (strcmp(p_path, "/dev/dri/renderD128") != 0 || !isPresent) {
            errno = ENOENT;
            return -1;
        }
        p_path = "/dev/null";
    }
    return real(p_path, p_flags, p_mode);
}

mode_t modeArgument(int p_flags, va_list p_arguments) {
    return (p_flags & (O_CREAT | O_TMPFILE)) != 0 ? static_cast<mode_t>(va_arg(p_arguments, int)) : 0;
}

} // namespace

EXPORTED int open(const char* p_path, int p_flags, ...) {
    va_list arguments;
    va_start(arguments, p_flags);
    mode_t mode = modeArgument(p_flags, arguments);
    va_end(arguments);
    return openFile("open", p_path, p_flags, mode);
}

EXPORTED int open64(const char* p_path, int p_flags, ...) {
    va_list arguments;
    va_start(arguments, p_flags);
    mode_t mode = modeArgument(p_flags, arguments);
    va_end(arguments);
    return openFile("open64", p_path, p_flags, mode);
}

EXPORTED int drmGetNodeTypeFromFd(int p_file) {
    return isRenderNode(p_file) ? DRM_NODE_RENDER : -1;
}

/// The caller frees the result with drmFreeVersion.
EXPORTED drmVersionPtr drmGetVersion(int p_file) {
    if (!isRenderNode(p_file)) {
        return nullptr;
    }
    drmVersionPtr version = static_cast<drmVersionPtr>(calloc(1, sizeof(drmVersion)));
    version->name = strdup("zyrtest");
    version->name_len = 7;
    version->date = strdup("20260101");
    version->date_len = 8;
    version->desc = strdup("no device");
    version->desc_len = 9;
    return version;
}

namespace zyr_test {

void setRenderNodePresent(bool p_present) {
    isPresent = p_present;
}

void useTestVaDriver(const char* p_directory) {
    setenv("LIBVA_DRIVERS_PATH", p_directory, 1);
    setenv("LIBVA_DRIVER_NAME", "zyrtest", 1);
    setenv("LIBVA_MESSAGING_LEVEL", "0", 1);
}

void failVaDriverAt(const char* p_words) {
    if (p_words == nullptr) {
        unsetenv("ZYR_TEST_VA_FAIL");
    } else {
        setenv("ZYR_TEST_VA_FAIL", p_words, 1);
    }
}

} // namespace zyr_test
