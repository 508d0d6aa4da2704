#include "plugin_ffmpeg/zyr_fake_picture.h"
#include "plugin_ffmpeg/zyr_plugin_host.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/platform/zyr_version.h"

extern "C" {
#include <libavutil/log.h>
}

#include <algorithm>
#include <cstdio>
#include <dlfcn.h>
#include <set>
#include <unistd.h>

using namespace zyr;
using namespace zyr_test;

namespace {

constexpr const char* CLASS_NAMES[] = {"FFmpegFrameDecoder", "FFmpegFrameDecoderContext", "FFmpegFrameEncoder",
                                       "FFmpegFrameEncoderContext"};
constexpr const char* CLASS_GUIDS[] = {"999bc88e-a780-4b21-a85c-eef13c553370", "7b5db4cd-2b4d-424f-89f1-16944cdaba08",
                                       "34a75fed-1d36-4ea9-9756-43bb88c2ba21", "84529d24-3e2d-41c1-bbd7-cf0c705c87f2"};

template <typename Function> Function* findExport(const char* p_name) {
    return reinterpret_cast<Function*>(dlsym(loadPlugin().library, p_name));
}

std::string callText(const char* p_name) {
    return findExport<const char*()>(p_name)();
}

std::vector<std::string> runCommand(const std::string& p_command) {
    std::vector<std::string> lines;
    FILE* pipe = popen(p_command.c_str(), "r");
    char line[4096];
    while (fgets(line, sizeof(line), pipe) != nullptr) {
        lines.push_back(std::string(line, strcspn(line, "\n")));
    }
    pclose(pipe);
    return lines;
}

/// What the plug-in's own copy of the library holds.
ApplicationData* pluginApplicationData() {
    return findExport<ApplicationData*()>("_ZN3zyr22zyr_getApplicationDataEv")();
}

/// The plug-in before its initialization, in processes of their own. By their name these tests run before all others,
/// which initialize it. What it prints goes where death tests look.
class FreshPluginDeathTest : public testing::Test {
protected:
    static void showOutput() { dup2(STDERR_FILENO, STDOUT_FILENO); }
};

[[noreturn]] void initializeWithVersion(uint64_t p_version) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    RecordingApplicationData data;
    prepareFakeModules(data);
    data.m_frameworkVersion = p_version;
    const uint8_t result = loadPlugin().initialize(&data);
    fflush(stdout);
    _exit(result == 0 && pluginApplicationData() == nullptr && fakeRecord().calls.empty() ? 3 : 4);
}

[[noreturn]] void printAndExit(RecordingApplicationData& p_data, int p_status) {
    for (const LogMessage& message : p_data.takeMessages()) {
        fprintf(stderr, "%s|%s|%s|%s\n", message.level.c_str(), message.module.c_str(), message.function.c_str(),
                message.text.c_str());
    }
    fflush(stderr);
    _exit(p_status);
}

} // namespace

TEST(PluginExports, TellIdentityAndDependenciesBeforeInitialization) {
    EXPECT_EQ("FFmpeg", callText("zyr_plugin_getName"));
    EXPECT_EQ(0x10000050000u, findExport<uint64_t()>("zyr_plugin_getVersion")());
    EXPECT_EQ("FFmpeg Plugin Module v1.5.0 (Zyrmont Framework)", callText("zyr_plugin_getLongName"));
    EXPECT_EQ("aee7f2a9-1016-4390-8600-25cc9bd9cd34", callText("zyr_plugin_getGUID"));
    EXPECT_EQ("Plugin Module which makes use of ffmpeg library for decoding and encoding videos",
              callText("zyr_plugin_getDescription"));
    EXPECT_EQ("ZYR", callText("zyr_plugin_getNamespace"));
    EXPECT_EQ("common, core, picture", callText("zyr_plugin_getDependenciesComponentModules"));
    EXPECT_EQ("", callText("zyr_plugin_getDependenciesPluginModules"));
}

TEST(PluginExports, KnowNoExtension) {
    EXPECT_EQ(0, findExport<uint8_t(const char*, int*)>("zyr_plugin_isExtensionSupported")("VIDEO", nullptr));
    EXPECT_EQ(0, findExport<uint8_t()>("zyr_plugin_isExtensionSupported")());
    EXPECT_EQ(nullptr, findExport<void*(const char*)>("zyr_plugin_getProcAddress")("zyr_plugin_getName"));
    EXPECT_EQ(nullptr, findExport<void*()>("zyr_plugin_getProcAddress")());
}

TEST(PluginExports, AreTheTwelvePlainNamesAndTheLibrarysFunctions) {
    std::set<std::string> plainNames;
    // "  12: 0000000000046133    13 FUNC    GLOBAL DEFAULT   12 name"; readelf knows the files of every machine.
    for (const std::string& line : runCommand("readelf --dyn-syms -W -C " ZYR_TEST_PLUGIN)) {
        char type[16];
        char section[16];
        int nameOffset = 0;
        if (sscanf(line.c_str(), " %*d: %*x %*s %15s %*s %*s %15s %n", type, section, &nameOffset) != 2 ||
            strcmp(type, "SECTION") == 0 || strcmp(section, "UND") == 0) {
            continue;
        }
        const std::string name = line.substr(static_cast<size_t>(nameOffset));
        if (name.find('(') == std::string::npos) {
            plainNames.insert(name);
        } else {
            // A template is listed with its result type.
            EXPECT_NE(std::string::npos, (" " + name).find(" zyr::zyr_")) << line;
        }
    }
    EXPECT_EQ((std::set<std::string>{
                  "zyr_plugin_getName", "zyr_plugin_getVersion", "zyr_plugin_getLongName", "zyr_plugin_getGUID",
                  "zyr_plugin_getDescription", "zyr_plugin_getNamespace", "zyr_plugin_getDependenciesComponentModules",
                  "zyr_plugin_getDependenciesPluginModules", "zyr_plugin_initialize", "zyr_plugin_deinitialize",
                  "zyr_plugin_isExtensionSupported", "zyr_plugin_getProcAddress"}),
              plainNames);
}

TEST(PluginExports, StandInAFileWithTheSonameThatItIsKnownBy) {
    bool isFound = false;
    for (const std::string& line : runCommand("readelf -d " ZYR_TEST_PLUGIN)) {
        isFound = isFound || line.find("soname: [zyr_ffmpeg.so]") != std::string::npos;
    }
    EXPECT_TRUE(isFound);
}

TEST_F(FreshPluginDeathTest, RefusesNullApplicationData) {
    EXPECT_EXIT(
        {
            showOutput();
            const uint8_t result = loadPlugin().initialize(nullptr);
            fflush(stdout);
            _exit(result == 0 && pluginApplicationData() == nullptr ? 3 : 4);
        },
        testing::ExitedWithCode(3),
        "(^|\n)WARN : Application data is NULL, cannot initialize plugin module: ffmpeg\n$");
}

TEST_F(FreshPluginDeathTest, RefusesAHostOfAnotherMinorVersion) {
    EXPECT_EXIT(
        initializeWithVersion(zyr_encodeVersion64(1, 6, 0)), testing::ExitedWithCode(3),
        "(^|\n)WARN : Application framework version:1\\.6\\.0 is incompatible with module framework version:1\\.5\\.0"
        "\\. Cannot initialize plugin module: ffmpeg\n$");
    EXPECT_EXIT(initializeWithVersion(zyr_encodeVersion64(1, 4, 0)), testing::ExitedWithCode(3),
                "version:1\\.4\\.0 is incompatible with module framework version:1\\.5\\.0");
}

TEST_F(FreshPluginDeathTest, RefusesAHostOfAnotherMajorVersion) {
    EXPECT_EXIT(initializeWithVersion(zyr_encodeVersion64(2, 5, 0)), testing::ExitedWithCode(3),
                "version:2\\.5\\.0 is incompatible with module framework version:1\\.5\\.0");
}

TEST_F(FreshPluginDeathTest, AcceptsAHostOfAnotherPatchVersion) {
    EXPECT_EXIT(
        {
            RecordingApplicationData& data = *new RecordingApplicationData;
            zyr_setApplicationData(&data);
            prepareFakeModules(data);
            data.m_frameworkVersion = zyr_encodeVersion64(1, 5, 7);
            const uint8_t result = loadPlugin().initialize(&data);
            printAndExit(data, result == 1 && pluginApplicationData() == &data ? 3 : 4);
        },
        testing::ExitedWithCode(3), "^$");
}

TEST_F(FreshPluginDeathTest, SaysWhichDependencyFailed) {
    constexpr const char* failure =
        "WARN\\|zyr_ffmpeg\\.so\\|uint8_t zyr::zyr_plugin_initialize\\(void\\*\\)\\|Unable to "
        "initialize component module dependency: ";
    EXPECT_EXIT(
        {
            RecordingApplicationData& data = *new RecordingApplicationData;
            data.m_commonState = ZYR_MODULE_STATE_FAILED;
            printAndExit(data, loadPlugin().initialize(&data) == 0 ? 3 : 4);
        },
        testing::ExitedWithCode(3), std::string("^") + failure + "common\n$");
    EXPECT_EXIT(
        {
            RecordingApplicationData& data = *new RecordingApplicationData;
            printAndExit(data, loadPlugin().initialize(&data) == 0 ? 3 : 4);
        },
        testing::ExitedWithCode(3), std::string("before prepare call\n") + failure + "core\n$");
    EXPECT_EXIT(
        {
            RecordingApplicationData& data = *new RecordingApplicationData;
            prepareFakeModules(data);
            data.m_pictureInitializer = nullptr;
            printAndExit(data, loadPlugin().initialize(&data) == 0 && pluginApplicationData() == &data ? 3 : 4);
        },
        testing::ExitedWithCode(3), std::string("before prepare call\n") + failure + "picture\n$");
}

TEST_F(FreshPluginDeathTest, LogsADeinitializationWithoutApplicationData) {
    EXPECT_EXIT(
        {
            showOutput();
            loadPlugin().deinitialize();
            fflush(stdout);
            _exit(3);
        },
        testing::ExitedWithCode(3),
        "(^|\n)WARN : Application data is NULL, cannot deinitialize plugin module: ffmpeg\n$");
}

TEST_F(FreshPluginDeathTest, InitializesDependenciesInOrderAndOnce) {
    EXPECT_EXIT(
        {
            RecordingApplicationData& data = *new RecordingApplicationData;
            zyr_setApplicationData(&data);
            prepareFakeModules(data);
            const PluginEntries plugin = loadPlugin();
            const bool areBothFine = plugin.initialize(&data) == 1 && plugin.initialize(&data) == 1;
            const bool isOrdered = fakeRecord().calls.size() >= 2 && fakeRecord().calls[0] == "core" &&
                                   fakeRecord().calls[1] == "picture" &&
                                   std::count(fakeRecord().calls.begin(), fakeRecord().calls.end(), "core") == 1;
            printAndExit(data, areBothFine && isOrdered ? 3 : 4);
        },
        testing::ExitedWithCode(3), "^$");
}

TEST_F(FreshPluginDeathTest, IsUnloadedWhenItIsClosed) {
    EXPECT_EXIT(
        {
            for (int i = 0; i < 2; i++) {
                const PluginEntries plugin = loadPlugin();
                plugin.initialize(nullptr);
                dlclose(plugin.library);
                if (dlopen(ZYR_TEST_PLUGIN, RTLD_NOW | RTLD_NOLOAD) != nullptr) {
                    _exit(4);
                }
            }
            _exit(3);
        },
        testing::ExitedWithCode(3), "");
}

class Plugin : public PluginTest {};

TEST_F(Plugin, RegistersItsFourClassesInOrderByNameAndGUID) {
    std::vector<std::string> names;
    for (const auto& entry : hostData().m_objectAllocatorsByName) {
        names.push_back(entry.m_first.getData());
    }
    EXPECT_EQ(std::vector<std::string>(std::begin(CLASS_NAMES), std::end(CLASS_NAMES)), names);
    for (int i = 0; i < 4; i++) {
        Held<IObject> byName(zyr_createObjectFromName(String(CLASS_NAMES[i])));
        Held<IObject> byGUID(zyr_createObjectFromGUIDAndTypeName(GUID_t_fromString(CLASS_GUIDS[i]), String()));
        ASSERT_TRUE(byName && byGUID) << CLASS_NAMES[i];
        EXPECT_STREQ(CLASS_NAMES[i], byGUID->getClassName().getData());
        EXPECT_EQ(GUID_t_fromString(CLASS_GUIDS[i]), byName->getClassGUID());
        EXPECT_TRUE(byName->getClassTemplateTypeName().isEmpty());
        EXPECT_EQ(0u, byName->getRefCount());
    }
}

TEST_F(Plugin, KeepsItsClassesWhenDeinitialized) {
    loadPlugin().deinitialize();
    EXPECT_EQ(Lines{}, takeLog());
    Held<IObject> encoder(zyr_createObjectFromName(String("FFmpegFrameEncoder")));
    EXPECT_TRUE(encoder);
}

TEST_F(Plugin, InitializedAgainChangesNothing) {
    const size_t names = hostData().m_objectAllocatorsByName.getSize();
    const size_t guids = hostData().m_objectAllocatorsByGUID.getSize();
    EXPECT_EQ(1, loadPlugin().initialize(&hostData()));
    EXPECT_EQ(names, hostData().m_objectAllocatorsByName.getSize());
    EXPECT_EQ(guids, hostData().m_objectAllocatorsByGUID.getSize());
}

TEST_F(Plugin, PassesOnFFmpegsWarningsAsDebugLines) {
    EXPECT_EQ(32, av_log_get_level());
    av_log(nullptr, 24, "first %d\n", 5);
    av_log(nullptr, 25, "second\n");
    av_log(nullptr, 32, "third\n");
    av_log(nullptr, 16, "fourth");
    av_log(nullptr, -8, "fifth");
    const std::vector<LogMessage> messages = hostData().takeMessages();
    ASSERT_EQ(3u, messages.size());
    EXPECT_EQ("DEBUG", messages[0].level);
    EXPECT_EQ("zyr_ffmpeg.so", messages[0].module);
    EXPECT_EQ("level:24 message:first 5\n", messages[0].text);
    EXPECT_EQ("level:16 message:fourth", messages[1].text);
    EXPECT_EQ("level:4294967288 message:fifth", messages[2].text);
}

TEST_F(Plugin, CutsALongMessageOfFFmpegs) {
    av_log(nullptr, 24, "%s", std::string(2000, 'x').c_str());
    const std::vector<LogMessage> messages = hostData().takeMessages();
    ASSERT_EQ(1u, messages.size());
    EXPECT_EQ("level:24 message:" + std::string(1023, 'x'), messages[0].text);
}
