#include "zyr_fuzz.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace zyr_fuzz {

namespace {

/// A directory that goes with the process.
class LogDirectory {
public:
    LogDirectory() {
        if (mkdtemp(m_path) == nullptr) {
            perror("mkdtemp");
            abort();
        }
    }
    ~LogDirectory() {
        std::error_code ignored; // Nothing is left to tell it to.
        std::filesystem::remove_all(m_path, ignored);
    }
    const char* getPath() const { return m_path; }

private:
    char m_path[32] = "/tmp/zyr-fuzz.XXXXXX";
};

zyr::host::FrameworkOptions makeOptions(const char* p_logDirectory, bool p_coreOnly) {
    zyr::host::FrameworkOptions options;
    options.m_logDirectory = p_logDirectory;
    options.m_logLevel = zyr::ZYR_LOG_LEVEL_WARN; // a module that cannot be loaded has its reason there
    options.m_coreOnly = p_coreOnly;
    return options;
}

} // namespace

void require(bool p_holds, const char* p_what) {
    if (!p_holds) {
        fprintf(stderr, "does not hold: %s\n", p_what);
        abort();
    }
}

zyr::host::Framework& getFramework(bool p_coreOnly) {
    static LogDirectory directory;
    static zyr::host::Framework framework(makeOptions(directory.getPath(), p_coreOnly));
    framework.getApplicationData().setLogLevel(zyr::ZYR_LOG_LEVEL_ERROR);
    return framework;
}

} // namespace zyr_fuzz
