/// The framework as the host starts it: application data, component modules and plug-ins.
#pragma once

#include "picture/zyr_picture.h"
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_ref.h"

#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

namespace zyr::host {

/// A module that the run cannot do without failed to load or to start: exit code 4.
class ModuleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Where the host looks for modules and what it logs.
struct FrameworkOptions {
    std::string m_moduleDirectory; ///< Holds zyr_core.so and zyr_picture.so. Empty: found beside the program.
    std::vector<std::string> m_pluginDirectories; ///< Besides the default one.
    bool m_defaultPlugins = true;                 ///< Loads "plugins" in the module directory, too, and first.
    std::string m_logDirectory;                   ///< Empty: the user's state directory.
    LogLevelEnum m_logLevel = ZYR_LOG_LEVEL_DEBUG;
    bool m_logLevelGiven = false;   ///< Otherwise the settings decide, once the core module is up.
    bool m_coreOnly = false;        ///< Loads the core module and nothing else.
    bool m_withoutSettings = false; ///< Uses no settings, as whoever shows them: what is wrong is logged once.
    bool m_withoutLog = false;      ///< Writes no log file; lines can be listened to.
    std::string m_corePath;         ///< File of the core module. Empty: the one in the module directory.
    std::string m_picturePath;      ///< The same of the picture module.
};

/// Application data that keeps a copy of the lines it logs while somebody listens. Modules log through the virtual
/// operation, so their lines arrive here too.
class HostApplicationData : public ApplicationData {
public:
    HostApplicationData();

    void printStringOnLogFile(const String& p_text) override;
    /// Without a directory the log is dropped; its lines can be listened to all the same.
    void openLogFile(const String& p_prefix, const String& p_name) override;

    /// Starts to keep the lines of all threads, dropping those kept before.
    void startListening();

    /// Starts to keep the calling thread's lines, for that thread alone. Does not meet startListening().
    static void startListeningHere();

    /// Stops what startListeningHere() began, and gives the lines without line feeds.
    static std::vector<std::string> stopListeningHere();

    /// Stops, and gives the lines without line feeds.
    std::vector<std::string> stopListening();

private:
    std::mutex m_linesMutex;
    std::string m_lines;
    bool m_listening = false;
};

/// A line of the log, taken apart.
struct LogLine {
    std::string m_level;
    std::string m_module;
    std::string m_function;
    std::string m_message;
};

/// Takes a line of the log apart; false for lines of another form (the repeat summaries).
bool parseLogLine(const std::string& p_line, LogLine& p_parts);

/// The common library alone, with its log, for what needs no module. One per process; made and destroyed on the main
/// thread. The application data itself lives on until the process ends.
class CommonLibrary {
public:
    /// Of the options, only those of the log count. Throws ModuleError.
    explicit CommonLibrary(const FrameworkOptions& p_options);
    CommonLibrary(const CommonLibrary&) = delete;
    CommonLibrary& operator=(const CommonLibrary&) = delete;
    ~CommonLibrary();

    HostApplicationData& getApplicationData() { return *m_data; }

private:
    HostApplicationData* m_data;
};

/// The running framework. One per process; made and destroyed on the main thread. The application data itself lives on
/// until the process ends, since modules keep their pointer to it.
class Framework {
public:
    /// Loads and starts everything. Throws ModuleError with the reason. Plug-ins that were refused are told by
    /// getRefusals() and do not fail the start.
    explicit Framework(const FrameworkOptions& p_options);
    Framework(const Framework&) = delete;
    Framework& operator=(const Framework&) = delete;
    ~Framework();

    HostApplicationData& getApplicationData() { return m_library.getApplicationData(); }

    const std::string& getModuleDirectory() const { return m_moduleDirectory; }
    const std::vector<std::string>& getPluginDirectories() const { return m_pluginDirectories; }

    /// What the start had to say about files of the plug-in directories.
    const std::vector<std::string>& getRefusals() const { return m_refusals; }

    /// One new object of each registered class that extends the interface, in the order of registration.
    std::vector<Ref<IFrameEncoder>> createEncoders();
    std::vector<Ref<IFrameDecoder>> createDecoders();

private:
    void loadComponent(const char* p_name, const std::string& p_path, const char* p_prepareName);
    void applySettings(const FrameworkOptions& p_options);

    CommonLibrary m_library;
    HostApplicationData* m_data; ///< The library's.
    std::string m_moduleDirectory;
    std::vector<std::string> m_pluginDirectories;
    std::vector<std::string> m_refusals;
};

/// A new picture frame around a new image of the given size in B,G,R,A. Null handles never come back.
Ref<IUnpackedFrameData> createSourceFrame(uint32_t p_width, uint32_t p_height, IImage*& p_image);

/// A new packed frame without contents. Null handles never come back.
Ref<IPackedFrameData> createPackedFrame();

std::string toText(const String& p_text);
std::string toText(const GUID_t& p_guid);

} // namespace zyr::host
