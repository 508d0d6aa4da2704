/// The one process-wide context of the framework.
///
/// The host constructs exactly one ApplicationData and keeps it for the life of the process; every module that is
/// loaded stores the pointer in its own copy of this library. It holds what is shared across modules: version, log
/// settings and log file, directories, registries, module states, module tables and the plug-in modules handler.
///
/// What a host does, in this order, on one thread:
///
///     ApplicationData* data = new ApplicationData(0, 0);
///     data->prepareAndSetEssentialDirectories();
///     data->prepareAndSetLogDirectory("", "", "my-host", ZYR_DIRECTORY_PERMISSION_PRIVATE);
///     data->commonInitialize();      // the calling thread becomes the main thread
///     zyr_core_prepare(data);        // each component module stores its initializer ...
///     data->coreInitialize();        // ... which is run here
///     data->pluginModulesInitialize(pluginDirectories);
///     ...
///     data->deinitialize();
///     zyr_setApplicationData(nullptr);
///
/// Modules stay loaded until the object has been destroyed, since lists in its registries are theirs.
///
/// The class is byte-packed and separately built modules read its members directly: their order and widths, and the
/// slots of the virtual operations, are a contract that doesn't change.
#pragma once

#include "zyr_common/application/zyr_format_callbacks.h"
#include "zyr_common/application/zyr_module_tables.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/containers/zyr_pair.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/platform/zyr_files.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/zyr_threading.h"
#include "zyr_common/zyr_types.h"

#include <cstdio>

namespace zyr {

/// A module's initializer: the second argument is 1, for libD3D11Initialize the module's state. Gives true on success.
typedef bool_t (*moduleInitializer_FUNC)(ApplicationData* p_applicationData, uint32_t p_flag);

/// Makes a new object of a registered class.
typedef IObject* (*objectAllocator_FUNC)();

/// Makes a new plain record of a registered type.
typedef void* (*unknownVariableAllocator_FUNC)();

/// Runs when the application data is deinitialized.
typedef void (*deinitialize_FUNC)();

/// How far a module has come. FAILED is sticky: later calls give false at once and never retry.
enum ModuleStateEnum : uint32_t {
    ZYR_MODULE_STATE_NOT_INITIALIZED = 0,
    ZYR_MODULE_STATE_INITIALIZED = 1,
    ZYR_MODULE_STATE_FAILED = 2
};

#pragma pack(push, 1)

class ApplicationData {
public:
    /// @param p_hostFlag              stored only
    /// @param p_localDataDirectories  whether user data and logs live beside the application
    ApplicationData(bool_t p_hostFlag, bool_t p_localDataDirectories);

    ApplicationData(const ApplicationData&) = delete;
    ApplicationData& operator=(const ApplicationData&) = delete;

    // The virtual operations, in slot order. They are virtual so that every module runs the host's code for them. The
    // getters and setters of log settings, and getLogFilePath, take the log mutex.

    /// Doesn't deinitialize: frees the module tables and the members.
    virtual ~ApplicationData();
    virtual LogLevelEnum getLogLevel();
    virtual void setLogLevel(LogLevelEnum p_level);
    virtual void getLogDirectory(String& p_directory);
    virtual void setLogDirectory(const String& p_directory);
    virtual bool_t hasLogRotation();
    virtual void setLogRotation(bool_t p_rotation);
    virtual uint32_t getLogMaxNumOfFiles();
    virtual void setLogMaxNumOfFiles(uint32_t p_maxNumOfFiles);

    /// Applies the rotation under the log mutex, if it is on and the limit isn't 0.
    virtual void cleanupLogFiles();

    /// Closes the open log stream, if any, and opens "<log directory><name>.log" for writing, with a shared lock on the
    /// file. A directory that isn't absolute is taken below the resources directory. When the file can't be opened the
    /// standard output is the log. Takes no lock: start-up code calls it, or the log writer under its mutex.
    /// @param p_prefix  the part of file names, before the first "_", by which rotation knows this log's files
    virtual void openLogFile(const String& p_prefix, const String& p_name);

    /// Gives the log directory followed by the name of the log file, without the extension.
    virtual void getLogFilePath(String& p_path);

    /// Gives true when the log stream is NOT the standard output. The name says the opposite; callers rely on the
    /// result.
    virtual bool_t isLogFileStdout();

    /// Writes the text to the log stream under the log mutex and flushes it; the file is synchronised with the disk at
    /// most four times a second. Does nothing without a stream.
    virtual void printStringOnLogFile(const String& p_text);

    /// Sets the executable, application, libraries, resources and plug-ins directories to that of the executable.
    virtual void prepareAndSetEssentialDirectories();

    /// Makes the user data directory and remembers it: `<base><first>/<second>/`, where an empty base stands for the
    /// user's configuration directory and an empty second for the process name. With local data directories and an
    /// empty base it is the application directory, and nothing is made. A failure to make it is ignored.
    virtual void prepareAndSetUserDataDirectory(const String& p_base, const String& p_first, const String& p_second,
                                                DirectoryPermissionTypeEnum p_permission);

    /// The same for the log directory, with "log/" behind it in every case.
    virtual void prepareAndSetLogDirectory(const String& p_base, const String& p_first, const String& p_second,
                                           DirectoryPermissionTypeEnum p_permission);

    /// Forwards to the plug-in modules handler; null without one.
    virtual IListOfObjects* getPluginModules(bool_t p_flag) const;

    // Initialization of the modules. Each gives true once its module is up, also when it was before, and false without
    // another attempt after a failure. A call before the module's prepare function logs a line and changes nothing.

    bool_t commonInitialize();
#define ZYR_COMPONENT_MODULE(member, function, label, word, isReset) bool_t function();
#include "zyr_common/application/zyr_component_modules.inl"

    /// Loads the plug-in modules of the directories in order and initializes them. Gives false when there is no core
    /// module, or at the first directory that fails; then none of the loaded modules is initialized.
    bool_t pluginModulesInitialize(const List<String>& p_directories);

    /// Runs the deinitialize functions, newest first, clears the registries, resets the module states, releases the
    /// plug-in modules handler and closes the log. Compressors, serializer words and the states of audio, language and
    /// remote stay, which is relied upon. Nothing is written to the log stream afterwards until one is opened again.
    void deinitialize();

    /// Deletes the oldest files of this log until no more than the limit are left. Files are told apart by the second
    /// of their status change: those that share one count as one. The caller holds the log mutex; nothing is logged.
    void applyLogRotation();

    /// Reads the threshold without the log mutex, as each message does.
    int32_t readLogLevelUnlocked() const;

    bool_t m_hostFlag;
    bool_t m_localDataDirectories;
    uint64_t m_frameworkVersion;

    LogLevelEnum m_logLevel;
    String m_logDirectory;
    bool_t m_logRotation;
    uint32_t m_logMaxNumOfFiles;
    String m_lastLogLine;
    String m_lastLogTime;
    uint32_t m_logRepeatCount;
    String m_logFilePrefix;
    String m_logFilePath;
    bool_t m_logFileOpened;
    Mutex m_logMutex;
    int64_t m_lastLogSyncTime;
    bool_t m_logFileLocked;

    String m_executableDirectory;
    String m_applicationDirectory;
    String m_librariesDirectory;
    String m_pluginsDirectory;
    String m_resourcesDirectory;
    String m_userDataDirectory;

    HashMap<String, unknownVariableAllocator_FUNC> m_unknownVariableAllocators;
    RWLock m_unknownVariableLock;
    HashMap<String, objectAllocator_FUNC> m_objectAllocatorsByName;
    HashMap<Pair<GUID_t, String>, objectAllocator_FUNC> m_objectAllocatorsByGUID;
    RWLock m_objectAllocatorLock;

    HashMap<String, List<compressData_FUNC>*> m_compressDataCallbacks;
    HashMap<String, List<decompressData_FUNC>*> m_decompressDataCallbacks;
    HashMap<Pair<GUID_t, String>, List<importFromData_FUNC>*> m_importFromDataCallbacks;
    HashMap<Pair<GUID_t, String>, List<exportToData_FUNC>*> m_exportToDataCallbacks;
    HashMap<Pair<GUID_t, String>, List<importFromFile_FUNC>*> m_importFromFileCallbacks;
    HashMap<Pair<GUID_t, String>, List<exportToFile_FUNC>*> m_exportToFileCallbacks;
    RWLock m_formatLock;
    HashMap<String, String> m_serializerFileFormats;
    RWLock m_spareLock;

    uint32_t m_commonState = ZYR_MODULE_STATE_NOT_INITIALIZED;
#define ZYR_COMPONENT_MODULE(member, function, label, word, isReset)                                                   \
    uint32_t m_##member##State = ZYR_MODULE_STATE_NOT_INITIALIZED;
#include "zyr_common/application/zyr_component_modules.inl"

    List<deinitialize_FUNC> m_deinitializeFunctions;

    CoreModuleTable* m_core;
    ModuleTable<4>* m_secondTable;
    ModuleTable<71>* m_thirdTable;
    ModuleTable<70>* m_fourthTable;
    ModuleTable<116>* m_fifthTable;
    PictureModuleTable* m_picture;
    ModuleTable<14>* m_seventhTable;

#define ZYR_COMPONENT_MODULE(member, function, label, word, isReset)                                                   \
    moduleInitializer_FUNC m_##member##Initializer = nullptr;
#include "zyr_common/application/zyr_component_modules.inl"

    FILE* m_logFile;
    IPluginModulesHandler* m_pluginModulesHandler;

private:
    bool_t initializeModule(moduleInitializer_FUNC p_initializer, uint32_t ApplicationData::*p_state);
    void resetModules();
    void releasePluginModules();
    bool_t hasOpenLogStream() const;
    void closeLogStream();
    void getLogFileDirectory(String& p_directory) const;
};

#pragma pack(pop)

/// Gives this module's pointer to the application data: null before it is set. Threads: see zyr_setApplicationData.
ZYR_API ApplicationData* zyr_getApplicationData();

/// Stores this module's pointer. If another object was stored before, it is destroyed. Called on the main thread, while
/// no other thread uses the library.
ZYR_API void zyr_setApplicationData(ApplicationData* p_applicationData);

// Each of these copies a directory of the application data and gives true. Without application data it logs a line,
// gives false and leaves the argument as it is.

ZYR_API bool_t zyr_getExecutableDirectory(String& p_directory);
ZYR_API bool_t zyr_getApplicationDirectory(String& p_directory);
ZYR_API bool_t zyr_getLibrariesDirectory(String& p_directory);
ZYR_API bool_t zyr_getPluginsDirectory(String& p_directory);
ZYR_API bool_t zyr_getResourcesDirectory(String& p_directory);
ZYR_API bool_t zyr_getUserDataDirectory(String& p_directory);

/// Starts the common library: records the calling thread as the main thread, stores the pointer, registers the variable
/// allocators and compressors and makes SIGPIPE ignored. Hosts and modules call ApplicationData::commonInitialize.
bool_t commonInitialize(ApplicationData* p_applicationData);

} // namespace zyr
