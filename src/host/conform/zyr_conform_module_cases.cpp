#include "host/conform/zyr_conform_bench.h"
#include "host/zyr_standard_output.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/platform/zyr_version.h"
#include "zyr_common/text/zyr_number_text.h"

#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <set>

namespace zyr::host {

namespace {

namespace fs = std::filesystem;

/// The component modules that a host has for a plug-in.
const std::set<std::string> COMPONENTS = {"common", "core", "picture"};

struct NamedText {
    const char* m_export;
    const char* (*PluginExports::*m_get)();
};

const NamedText TEXTS[] = {
    {"zyr_plugin_getName", &PluginExports::m_getName},
    {"zyr_plugin_getLongName", &PluginExports::m_getLongName},
    {"zyr_plugin_getGUID", &PluginExports::m_getGUID},
    {"zyr_plugin_getDescription", &PluginExports::m_getDescription},
    {"zyr_plugin_getNamespace", &PluginExports::m_getNamespace},
    {"zyr_plugin_getDependenciesComponentModules", &PluginExports::m_getDependenciesComponentModules},
    {"zyr_plugin_getDependenciesPluginModules", &PluginExports::m_getDependenciesPluginModules}};

bool parseGUID(const std::string& p_text, GUID_t& p_guid) {
    p_guid.fromString(p_text.c_str());
    return toText(p_guid) == p_text;
}

void checkLoading(const ConformSubject& p_subject) {
    PluginBench(p_subject).load();
}

void checkExports(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.load();
    String reason;
    PluginExports exports;
    const bool complete = exports.lookUp(bench.getHandle(), reason);
    require(complete, toText(reason));
}

void checkIsolation(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.load();
    link_map* module = nullptr;
    require(dlinfo(bench.getHandle(), RTLD_DI_LINKMAP, &module) == 0, "the loader does not know it");
    for (const char* name : {"_Znwm", "_Znam", "_ZdlPv", "_ZdaPv", "malloc", "free"}) {
        Dl_info info{};
        const void* address = dlsym(bench.getHandle(), name);
        const bool isOwn = address != nullptr && dladdr(address, &info) != 0 &&
                           reinterpret_cast<uintptr_t>(info.dli_fbase) == module->l_addr;
        require(!isOwn, std::string("it exports ") + name + ", to which other modules may bind");
    }
}

void checkMetadata(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.load();
    for (const NamedText& text : TEXTS) {
        const auto get = bench.getExports().*text.m_get;
        const char* value = bench.call("", text.m_export, 0, [&] { return get(); });
        require(value != nullptr, std::string(text.m_export) + " gives NULL");
        const std::string first = value;
        require(maskControls(first) == first, std::string(text.m_export) + " gives a text that is no plain UTF-8");
        require(first == bench.call("", text.m_export, 0, [&] { return get(); }),
                std::string(text.m_export) + " gives another text at its second call");
    }
    require(*bench.getExports().m_getName() != 0, "zyr_plugin_getName gives an empty text");
}

std::string versionText(uint64_t p_version) {
    String text;
    zyr_getVersionString(p_version, text);
    return toText(text);
}

void checkVersion(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.load();
    const uint64_t version = bench.call("", "zyr_plugin_getVersion", 0, bench.getExports().m_getVersion);
    const uint64_t own = zyr_getFrameworkVersion();
    require(zyr_getMajorVersion64(version) == zyr_getMajorVersion64(own) &&
                zyr_getMinorVersion64(version) == zyr_getMinorVersion64(own),
            "it is of version " + versionText(version) + ", the framework of " + versionText(own));
}

/// The GUIDs that other plug-ins of the directories tell, with their files.
std::vector<std::pair<GUID_t, std::string>> listNeighbours(const ConformSubject& p_subject) {
    std::vector<std::pair<GUID_t, std::string>> neighbours;
    for (const std::string& directory : p_subject.m_framework.m_pluginDirectories) {
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(directory, error)) {
            if (entry.path().extension() != ".so" || fs::equivalent(entry.path(), p_subject.m_path, error)) {
                continue;
            }
            void* handle = dlopen(entry.path().c_str(), RTLD_NOW | RTLD_LOCAL);
            String ignored;
            PluginExports exports;
            GUID_t guid;
            if (handle != nullptr && exports.lookUp(handle, ignored) && exports.m_getGUID() != nullptr &&
                parseGUID(exports.m_getGUID(), guid)) {
                neighbours.emplace_back(guid, entry.path().filename());
            }
        }
    }
    return neighbours;
}

void checkGUID(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.load();
    const std::string text = bench.getExports().m_getGUID();
    GUID_t guid;
    require(parseGUID(text, guid), "'" + text + "' is no GUID in lower case, as 8-4-4-4-12 digits");
    require(guid != GUID_t(), "its GUID is all zero");
    for (const auto& [other, file] : listNeighbours(p_subject)) {
        require(other != guid, file + " has the same GUID");
    }
}

/// Takes a list apart that is joined by commas and blanks.
std::vector<std::string> split(const std::string& p_text) {
    std::vector<std::string> words;
    for (size_t start = 0; start < p_text.size();) {
        const size_t end = std::min(p_text.find(", ", start), p_text.size());
        words.push_back(p_text.substr(start, end - start));
        start = end + 2;
    }
    return words;
}

void checkDependencies(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.load();
    for (const std::string& word : split(bench.getExports().m_getDependenciesComponentModules())) {
        require(COMPONENTS.count(word) != 0, "there is no component module '" + word + "' here");
    }
    const std::vector<std::string> wanted = split(bench.getExports().m_getDependenciesPluginModules());
    const auto neighbours = listNeighbours(p_subject);
    for (const std::string& word : wanted) {
        GUID_t guid;
        require(parseGUID(word, guid), "'" + word + "' is no GUID of a plug-in");
        bool found = false;
        for (const auto& [other, file] : neighbours) {
            found = found || other == guid;
        }
        require(found, "there is no plug-in " + word + " in the plug-in directories");
    }
}

void checkExtensions(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.load();
    int version = 0;
    const char* unknown = "conform.no-such-extension";
    require(!bench.call("", "zyr_plugin_isExtensionSupported", 0,
                        [&] { return bench.getExports().m_isExtensionSupported(unknown, &version); }),
            "it claims to support an extension that does not exist");
    require(bench.call("", "zyr_plugin_getProcAddress", 0,
                       [&] { return bench.getExports().m_getProcAddress(unknown); }) == nullptr,
            "it gives an address for a function that does not exist");
}

void checkInitialize(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.start();
    require(zyr_getApplicationData() == &bench.getData(), "it changed the host's own application data");
}

void checkInitializeWithNull(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.load();
    bench.startFramework();
    require(!bench.initialize(nullptr), "zyr_plugin_initialize(NULL) gives 1");
}

void checkInitializeWithVersions(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.load();
    bench.startFramework();
    const uint64_t own = bench.getData().m_frameworkVersion;
    const uint32_t major = zyr_getMajorVersion64(own);
    const uint32_t minor = zyr_getMinorVersion64(own);
    const size_t before = bench.listClasses().size();
    for (const uint64_t other : {zyr_encodeVersion64(major, minor + 1, 0), zyr_encodeVersion64(major + 1, minor, 0)}) {
        bench.getData().m_frameworkVersion = other;
        require(!bench.initialize(&bench.getData()), "it starts under a host of version " + versionText(other));
        require(bench.listClasses().size() == before, "it registers classes although it refuses the host");
    }
    bench.getData().m_frameworkVersion = zyr_encodeVersion64(major, minor, zyr_getPatchVersion64(own) + 7);
    const bool started = bench.initialize(&bench.getData());
    require(started, "it refuses a host of another patch version" + bench.takeWarning());
}

void checkInitializeAgain(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.start();
    const size_t before = bench.listClasses().size();
    bench.initialize(&bench.getData());
    require(bench.listClasses().size() == before, "a second start registers more classes");
    bench.createAll(zyr_getInterfaceGUID<IObject>());
}

} // namespace

std::vector<ConformCase> listModuleCases() {
    return {
        {"load",
         "A host opens the file with the loader of the system, which finds all that it needs.",
         {},
         checkLoading,
         20},
        {"exports", "Twelve entry points stand in the file under their plain names.", {"load"}, checkExports},
        {"isolation",
         "A module keeps its allocation functions to itself: what it exports of them would serve other modules, whose "
         "memory then ends in the wrong hands.",
         {"load"},
         checkIsolation},
        {"metadata",
         "Name, description and the other texts are there before the module is started, never NULL, and always the "
         "same.",
         {"exports"},
         checkMetadata},
        {"version",
         "Major and minor version of module and framework are the same; the patch number is free.",
         {"exports"},
         checkVersion},
        {"guid",
         "A module has a GUID of its own, in the usual text form, which no other plug-in has.",
         {"metadata"},
         checkGUID},
        {"dependencies",
         "Lists of what a module builds on are joined by a comma and a blank, and name component modules by their "
         "words and plug-ins by their GUIDs; all of them have to be here.",
         {"metadata"},
         checkDependencies},
        {"extensions",
         "A module that is asked for an extension or a function that it does not know says no.",
         {"exports"},
         checkExtensions},
        {"initialize",
         "Under a host of its own version the module starts and says so.",
         {"version", "dependencies"},
         checkInitialize},
        {"initialize-null",
         "Without application data the module refuses to start.",
         {"initialize"},
         checkInitializeWithNull},
        {"initialize-version",
         "A host of another major or minor version is refused before anything is touched; another patch number is "
         "fine.",
         {"initialize"},
         checkInitializeWithVersions},
        {"initialize-again",
         "A second start does no harm: classes stay registered once and can be created.",
         {"initialize"},
         checkInitializeAgain},
    };
}

} // namespace zyr::host
