#include "host/zyr_framework.h"

#include "host/zyr_guarded_codecs.h"
#include "host/zyr_host_settings.h"
#include "host/zyr_log_place.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/platform/zyr_library.h"
#include "zyr_common/platform/zyr_process_identity.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace zyr::host {

namespace {

/// As the manual says.
constexpr size_t MAX_LOG_FILES = 32;

String toString(const std::string& p_text) {
    return String(p_text);
}

/// A module's prepare function, by which it leaves its initializer in the application data.
typedef void (*prepare_FUNC)(ApplicationData*);

/// The modules stand beside the program in a build tree, and in a folder of their own when installed.
std::string findModuleDirectory() {
    String directory;
    if (!zyr_getCurrentProcessDirectory(directory)) {
        throw ModuleError("cannot tell where this program is");
    }
    const std::string program = toText(directory);
    for (const char* relative : {"../lib/", "../lib/zyrmont/", ""}) {
        const std::string candidate = program + relative;
        if (std::filesystem::exists(candidate + "zyr_core.so")) {
            return std::filesystem::canonical(candidate).string() + "/";
        }
    }
    throw ModuleError("zyr_core.so is not beside this program; tell its directory with --modules");
}

std::string withSlash(const std::string& p_directory) {
    return p_directory.empty() || p_directory.back() == '/' ? p_directory : p_directory + "/";
}

template <typename Interface, typename Guard> std::vector<Ref<Interface>> createAll(Guard&& p_guard) {
    std::vector<Ref<Interface>> objects;
    GUID_t parent;
    GUID_t_fromString(parent, InterfaceTraits<Interface>::c_guidText);
    auto list = Ref<IListOfObjects>::adopt(zyr_createObjectsFromParentGUID(parent));
    for (List<IObject*>::iterator it = list->begin(); it != list->end(); ++it) {
        objects.push_back(p_guard(static_cast<Interface*>((*it)->addRef())));
    }
    return objects;
}

thread_local std::string t_lines;
thread_local bool t_listening = false;

/// Takes kept text apart, and empties it.
std::vector<std::string> takeLines(std::string& p_text) {
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < p_text.size()) {
        const size_t end = std::min(p_text.find('\n', start), p_text.size());
        if (end > start) {
            lines.push_back(p_text.substr(start, end - start));
        }
        start = end + 1;
    }
    p_text.clear();
    return lines;
}

std::string lastWarning(const std::vector<std::string>& p_lines) {
    std::string message;
    for (const std::string& line : p_lines) {
        LogLine parts;
        if (parseLogLine(line, parts) && (parts.m_level == "WARN" || parts.m_level == "ERROR")) {
            message = parts.m_message;
        }
    }
    return message;
}

} // namespace

std::string toText(const String& p_text) {
    return std::string(p_text.getData(), p_text.getLengthInBytes());
}

std::string toText(const GUID_t& p_guid) {
    String text;
    text = String::newFromGUID(p_guid);
    return toText(text);
}

HostApplicationData::HostApplicationData() : ApplicationData(1, 0) {}

void HostApplicationData::openLogFile(const String& p_prefix, const String& p_name) {
    // The caller holds the log's lock.
    if (m_logDirectory.isEmpty()) {
        m_logFile = fopen("/dev/null", "we");
        return;
    }
    ApplicationData::openLogFile(p_prefix, p_name);
}

void HostApplicationData::printStringOnLogFile(const String& p_text) {
    if (t_listening) {
        t_lines.append(p_text.getData(), p_text.getLengthInBytes());
    }
    {
        const std::lock_guard<std::mutex> guard(m_linesMutex);
        if (m_listening) {
            m_lines.append(p_text.getData(), p_text.getLengthInBytes());
        }
    }
    ApplicationData::printStringOnLogFile(p_text);
}

void HostApplicationData::startListening() {
    const std::lock_guard<std::mutex> guard(m_linesMutex);
    m_lines.clear();
    m_listening = true;
}

std::vector<std::string> HostApplicationData::stopListening() {
    const std::lock_guard<std::mutex> guard(m_linesMutex);
    m_listening = false;
    return takeLines(m_lines);
}

void HostApplicationData::startListeningHere() {
    t_lines.clear();
    t_listening = true;
}

std::vector<std::string> HostApplicationData::stopListeningHere() {
    t_listening = false;
    return takeLines(t_lines);
}

bool parseLogLine(const std::string& p_line, LogLine& p_parts) {
    // "time stamp [pid:tid] LEVEL module function - message"; the level word is five characters wide.
    const size_t ids = p_line.find("] ");
    const size_t message = p_line.find(" - ", ids == std::string::npos ? 0 : ids);
    if (ids == std::string::npos || message == std::string::npos || ids + 8 > p_line.size()) {
        return false;
    }
    p_parts.m_level = p_line.substr(ids + 2, 5);
    while (!p_parts.m_level.empty() && p_parts.m_level.back() == ' ') {
        p_parts.m_level.pop_back();
    }
    const size_t module = ids + 8;
    const size_t function = p_line.find(' ', module);
    if (function == std::string::npos || function > message) {
        return false;
    }
    p_parts.m_module = p_line.substr(module, function - module);
    p_parts.m_function = p_line.substr(function + 1, message - function - 1);
    p_parts.m_message = p_line.substr(message + 3);
    return true;
}

CommonLibrary::CommonLibrary(const FrameworkOptions& p_options) : m_data(new HostApplicationData) {
    m_data->prepareAndSetEssentialDirectories();
    const std::string directory = p_options.m_withoutLog ? "" : prepareLogDirectory(p_options.m_logDirectory);
    m_data->setLogDirectory(toString(directory));
    m_data->setLogLevel(p_options.m_logLevel);
    if (!directory.empty()) {
        // The log's own rotation counts files of one second as one, and a script starts many hosts in a second.
        pruneLogFiles(directory, MAX_LOG_FILES - 1);
    }
    if (!m_data->commonInitialize()) {
        throw ModuleError("the common library did not start (see the log)");
    }
}

CommonLibrary::~CommonLibrary() {
    m_data->deinitialize();
}

/// What was not told by the options.
void Framework::applySettings(const FrameworkOptions& p_options) {
    const HostSettings settings({});
    if (!settings.isAvailable()) {
        ZYR_LOG_WARN("The core module has no settings handler: configuration files and the environment are not read");
        return;
    }
    if (!p_options.m_logLevelGiven && settings.getLogLevel() != ZYR_LOG_LEVEL_DEBUG) {
        m_data->setLogLevel(settings.getLogLevel());
    }
    if (m_pluginDirectories.empty()) {
        m_pluginDirectories = settings.getPluginDirectories();
    }
}

Framework::Framework(const FrameworkOptions& p_options)
    : m_library(p_options), m_data(&m_library.getApplicationData()) {
    m_moduleDirectory = withSlash(p_options.m_moduleDirectory);
    if (m_moduleDirectory.empty()) {
        m_moduleDirectory = findModuleDirectory();
    }
    m_pluginDirectories = p_options.m_pluginDirectories;
    loadComponent("core", p_options.m_corePath, "zyr_core_prepare");
    m_data->startListening();
    if (!m_data->coreInitialize()) {
        throw ModuleError("module core did not start: " + lastWarning(m_data->stopListening()));
    }
    m_data->stopListening();
    if (!p_options.m_withoutSettings) {
        applySettings(p_options);
    }
    const std::string defaultPlugins = m_moduleDirectory + "plugins";
    // Where others are named, the default directory need not be there.
    if (p_options.m_defaultPlugins && (m_pluginDirectories.empty() || std::filesystem::exists(defaultPlugins))) {
        m_pluginDirectories.insert(m_pluginDirectories.begin(), defaultPlugins);
    }
    if (p_options.m_coreOnly) {
        return;
    }
    loadComponent("picture", p_options.m_picturePath, "zyr_picture_prepare");
    m_data->startListening();
    if (!m_data->pictureInitialize()) {
        throw ModuleError("module picture did not start: " + lastWarning(m_data->stopListening()));
    }
    m_data->stopListening();
    List<String> directories;
    for (const std::string& directory : m_pluginDirectories) {
        directories.pushBack(toString(withSlash(directory)));
    }
    m_data->startListening();
    const bool_t loaded = m_data->pluginModulesInitialize(directories);
    const std::vector<std::string> lines = m_data->stopListening();
    for (const std::string& line : lines) {
        LogLine parts;
        if (parseLogLine(line, parts) && (parts.m_level == "WARN" || parts.m_level == "ERROR")) {
            m_refusals.push_back(parts.m_message);
        }
    }
    if (!loaded) {
        throw ModuleError("plug-ins could not be loaded: " + lastWarning(lines));
    }
}

Framework::~Framework() = default;

void Framework::loadComponent(const char* p_name, const std::string& p_path, const char* p_prepareName) {
    const std::string path = p_path.empty() ? m_moduleDirectory + "zyr_" + p_name + ".so" : p_path;
    m_data->startListening();
    void* handle = zyr_loadLibrary(toString(path), 0, 0, 0, 0);
    const std::string reason = lastWarning(m_data->stopListening());
    if (handle == nullptr) {
        throw ModuleError("module " + std::string(p_name) + " failed to load: " + reason);
    }
    const prepare_FUNC prepare = reinterpret_cast<prepare_FUNC>(zyr_getProcAddress(handle, String(p_prepareName)));
    if (prepare == nullptr) {
        throw ModuleError(path + " lacks the export " + p_prepareName);
    }
    prepare(m_data);
}

std::vector<Ref<IFrameEncoder>> Framework::createEncoders() {
    return createAll<IFrameEncoder>(guardEncoder);
}

std::vector<Ref<IFrameDecoder>> Framework::createDecoders() {
    return createAll<IFrameDecoder>(guardDecoder);
}

namespace {

template <typename Interface> Ref<Interface> createByInterface() {
    GUID_t guid;
    GUID_t_fromString(guid, InterfaceTraits<Interface>::c_guidText);
    IObject* object = zyr_createObjectFromGUIDAndTypeName(guid, String::getConstEmpty());
    if (object == nullptr) {
        throw ModuleError(std::string("the picture module offers no ") + InterfaceTraits<Interface>::c_typeName);
    }
    return Ref<Interface>::adopt(static_cast<Interface*>(object));
}

} // namespace

Ref<IUnpackedFrameData> createSourceFrame(uint32_t p_width, uint32_t p_height, IImage*& p_image) {
    constexpr PixelFormatEnum BGRA = PixelFormatEnum(504);
    Ref<IUnpackedFrameData> frame = createByInterface<IUnpackedFrameData>();
    Ref<IImage> image = createByInterface<IImage>();
    if (!image->init(p_width, p_height, 0, BGRA, ColorSpaceEnum(1), PixelFormatEnum(0), 0)) {
        throw ModuleError("the picture module refused a picture of " + std::to_string(p_width) + "x" +
                          std::to_string(p_height));
    }
    IUnpackedFrameDataReserved* reserved = frame->getUnpackedFrameDataReserved();
    reserved->setWidth(p_width);
    reserved->setHeight(p_height);
    reserved->setSystemMemory(image.get());
    p_image = image.get();
    return frame;
}

Ref<IPackedFrameData> createPackedFrame() {
    return createByInterface<IPackedFrameData>();
}

} // namespace zyr::host
