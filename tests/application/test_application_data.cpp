#include "zyr_common/application/zyr_application_data.h"

#include "support/zyr_stdout_capture.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>

using namespace zyr;

// The order and the widths of the members, which separately built modules read directly.

struct Member {
    const char* name;
    size_t offset;
    size_t size;
    size_t expectedSize;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#define ZYR_MEMBER(member, size)                                                                                       \
    { #member, offsetof(ApplicationData, member), sizeof(ApplicationData::member), size }
static const Member MEMBERS[] = {
    ZYR_MEMBER(m_hostFlag, 1),
    ZYR_MEMBER(m_localDataDirectories, 1),
    ZYR_MEMBER(m_frameworkVersion, 8),
    ZYR_MEMBER(m_logLevel, 4),
    ZYR_MEMBER(m_logDirectory, 112),
    ZYR_MEMBER(m_logRotation, 1),
    ZYR_MEMBER(m_logMaxNumOfFiles, 4),
    ZYR_MEMBER(m_lastLogLine, 112),
    ZYR_MEMBER(m_lastLogTime, 112),
    ZYR_MEMBER(m_logRepeatCount, 4),
    ZYR_MEMBER(m_logFilePrefix, 112),
    ZYR_MEMBER(m_logFilePath, 112),
    ZYR_MEMBER(m_logFileOpened, 1),
    ZYR_MEMBER(m_logMutex, 16),
    ZYR_MEMBER(m_lastLogSyncTime, 8),
    ZYR_MEMBER(m_logFileLocked, 1),
    ZYR_MEMBER(m_executableDirectory, 112),
    ZYR_MEMBER(m_applicationDirectory, 112),
    ZYR_MEMBER(m_librariesDirectory, 112),
    ZYR_MEMBER(m_pluginsDirectory, 112),
    ZYR_MEMBER(m_resourcesDirectory, 112),
    ZYR_MEMBER(m_userDataDirectory, 112),
    ZYR_MEMBER(m_unknownVariableAllocators, 74),
    ZYR_MEMBER(m_unknownVariableLock, 16),
    ZYR_MEMBER(m_objectAllocatorsByName, 74),
    ZYR_MEMBER(m_objectAllocatorsByGUID, 74),
    ZYR_MEMBER(m_objectAllocatorLock, 16),
    ZYR_MEMBER(m_compressDataCallbacks, 74),
    ZYR_MEMBER(m_decompressDataCallbacks, 74),
    ZYR_MEMBER(m_importFromDataCallbacks, 74),
    ZYR_MEMBER(m_exportToDataCallbacks, 74),
    ZYR_MEMBER(m_importFromFileCallbacks, 74),
    ZYR_MEMBER(m_exportToFileCallbacks, 74),
    ZYR_MEMBER(m_formatLock, 16),
    ZYR_MEMBER(m_serializerFileFormats, 74),
    ZYR_MEMBER(m_spareLock, 16),
    ZYR_MEMBER(m_commonState, 4),
    ZYR_MEMBER(m_coreState, 4),
    ZYR_MEMBER(m_geometryState, 4),
    ZYR_MEMBER(m_pictureState, 4),
    ZYR_MEMBER(m_sampleState, 4),
    ZYR_MEMBER(m_systemState, 4),
    ZYR_MEMBER(m_projectState, 4),
    ZYR_MEMBER(m_engineState, 4),
    ZYR_MEMBER(m_audioState, 4),
    ZYR_MEMBER(m_graphicsState, 4),
    ZYR_MEMBER(m_physicsState, 4),
    ZYR_MEMBER(m_cairoState, 4),
    ZYR_MEMBER(m_d3d11State, 4),
    ZYR_MEMBER(m_vulkanState, 4),
    ZYR_MEMBER(m_openGLState, 4),
    ZYR_MEMBER(m_shadercState, 4),
    ZYR_MEMBER(m_openALState, 4),
    ZYR_MEMBER(m_oggVorbisState, 4),
    ZYR_MEMBER(m_openSSLState, 4),
    ZYR_MEMBER(m_guiState, 4),
    ZYR_MEMBER(m_languageState, 4),
    ZYR_MEMBER(m_remoteState, 4),
    ZYR_MEMBER(m_deinitializeFunctions, 48),
    ZYR_MEMBER(m_core, 8),
    ZYR_MEMBER(m_secondTable, 8),
    ZYR_MEMBER(m_thirdTable, 8),
    ZYR_MEMBER(m_fourthTable, 8),
    ZYR_MEMBER(m_fifthTable, 8),
    ZYR_MEMBER(m_picture, 8),
    ZYR_MEMBER(m_seventhTable, 8),
    ZYR_MEMBER(m_coreInitializer, 8),
    ZYR_MEMBER(m_geometryInitializer, 8),
    ZYR_MEMBER(m_pictureInitializer, 8),
    ZYR_MEMBER(m_sampleInitializer, 8),
    ZYR_MEMBER(m_systemInitializer, 8),
    ZYR_MEMBER(m_projectInitializer, 8),
    ZYR_MEMBER(m_engineInitializer, 8),
    ZYR_MEMBER(m_audioInitializer, 8),
    ZYR_MEMBER(m_graphicsInitializer, 8),
    ZYR_MEMBER(m_physicsInitializer, 8),
    ZYR_MEMBER(m_cairoInitializer, 8),
    ZYR_MEMBER(m_d3d11Initializer, 8),
    ZYR_MEMBER(m_vulkanInitializer, 8),
    ZYR_MEMBER(m_openGLInitializer, 8),
    ZYR_MEMBER(m_shadercInitializer, 8),
    ZYR_MEMBER(m_openALInitializer, 8),
    ZYR_MEMBER(m_oggVorbisInitializer, 8),
    ZYR_MEMBER(m_openSSLInitializer, 8),
    ZYR_MEMBER(m_guiInitializer, 8),
    ZYR_MEMBER(m_languageInitializer, 8),
    ZYR_MEMBER(m_remoteInitializer, 8),
    ZYR_MEMBER(m_logFile, 8),
    ZYR_MEMBER(m_pluginModulesHandler, 8),
};
#undef ZYR_MEMBER
static_assert(offsetof(ApplicationData, m_frameworkVersion) == 10);
#pragma GCC diagnostic pop

TEST(ApplicationData, MembersFollowEachOtherWithoutGaps) {
    size_t offset = sizeof(void*);
    for (const Member& member : MEMBERS) {
        EXPECT_EQ(member.offset, offset) << member.name;
        EXPECT_EQ(member.size, member.expectedSize) << member.name;
        offset += member.expectedSize;
    }
    EXPECT_EQ(offset, 2469u);
    EXPECT_EQ(sizeof(ApplicationData), 2469u);
}

// A pointer to a virtual member function holds its place in the table: plus one on x86-64, as it is on AArch64.
template <typename Function> static size_t getSlot(Function p_function) {
    uintptr_t words[2] = {};
    static_assert(sizeof(p_function) == sizeof(words));
    memcpy(words, &p_function, sizeof(words));
    return (words[0] & ~uintptr_t(1)) / sizeof(void*);
}

TEST(ApplicationData, VirtualOperationsStandInTheirSlots) {
    EXPECT_EQ(getSlot(&ApplicationData::getLogLevel), 2);
    EXPECT_EQ(getSlot(&ApplicationData::setLogLevel), 3);
    EXPECT_EQ(getSlot(&ApplicationData::getLogDirectory), 4);
    EXPECT_EQ(getSlot(&ApplicationData::setLogDirectory), 5);
    EXPECT_EQ(getSlot(&ApplicationData::hasLogRotation), 6);
    EXPECT_EQ(getSlot(&ApplicationData::setLogRotation), 7);
    EXPECT_EQ(getSlot(&ApplicationData::getLogMaxNumOfFiles), 8);
    EXPECT_EQ(getSlot(&ApplicationData::setLogMaxNumOfFiles), 9);
    EXPECT_EQ(getSlot(&ApplicationData::cleanupLogFiles), 10);
    EXPECT_EQ(getSlot(&ApplicationData::openLogFile), 11);
    EXPECT_EQ(getSlot(&ApplicationData::getLogFilePath), 12);
    EXPECT_EQ(getSlot(&ApplicationData::isLogFileStdout), 13);
    EXPECT_EQ(getSlot(&ApplicationData::printStringOnLogFile), 14);
    EXPECT_EQ(getSlot(&ApplicationData::prepareAndSetEssentialDirectories), 15);
    EXPECT_EQ(getSlot(&ApplicationData::prepareAndSetUserDataDirectory), 16);
    EXPECT_EQ(getSlot(&ApplicationData::prepareAndSetLogDirectory), 17);
    EXPECT_EQ(getSlot(&ApplicationData::getPluginModules), 18);
}

TEST(ApplicationData, StartsWithItsDefaults) {
    ApplicationData data(3, 4);
    EXPECT_EQ(data.m_hostFlag, 3);
    EXPECT_EQ(data.m_localDataDirectories, 4);
    EXPECT_EQ(data.m_frameworkVersion, 0x10000050000u);
    EXPECT_EQ(data.m_logLevel, ZYR_LOG_LEVEL_DEBUG);
    EXPECT_STREQ(data.m_logDirectory.getData(), "log/");
    EXPECT_EQ(data.m_logRotation, 0);
    EXPECT_EQ(data.m_logMaxNumOfFiles, 64u);
    EXPECT_EQ(data.m_logRepeatCount, 0u);
    EXPECT_EQ(data.m_logFileOpened, 0);
    EXPECT_EQ(data.m_lastLogSyncTime, 0);
    EXPECT_EQ(data.m_logFileLocked, 0);
    EXPECT_EQ(data.m_logFile, nullptr);
    EXPECT_EQ(data.m_pluginModulesHandler, nullptr);
    for (const String* text : {&data.m_lastLogLine, &data.m_lastLogTime, &data.m_logFilePrefix, &data.m_logFilePath,
                               &data.m_executableDirectory, &data.m_applicationDirectory, &data.m_librariesDirectory,
                               &data.m_pluginsDirectory, &data.m_resourcesDirectory, &data.m_userDataDirectory}) {
        EXPECT_TRUE(text->isEmpty());
    }
    EXPECT_TRUE(data.m_objectAllocatorsByName.isEmpty());
    EXPECT_TRUE(data.m_serializerFileFormats.isEmpty());
    EXPECT_TRUE(data.m_deinitializeFunctions.isEmpty());
    for (uint32_t ApplicationData::*state : {&ApplicationData::m_commonState, &ApplicationData::m_coreState,
                                             &ApplicationData::m_d3d11State, &ApplicationData::m_remoteState}) {
        EXPECT_EQ(data.*state, 0u);
    }
    EXPECT_EQ(data.m_coreInitializer, nullptr);
    EXPECT_EQ(data.m_remoteInitializer, nullptr);
}

template <typename Table> static void expectEmptyTable(Table* p_table, size_t p_numOfEntries) {
    ASSERT_NE(p_table, nullptr);
    EXPECT_EQ(sizeof(Table), p_numOfEntries * sizeof(void*) + sizeof(RWLock));
    const char* bytes = reinterpret_cast<const char*>(p_table);
    EXPECT_TRUE(std::all_of(bytes, bytes + p_numOfEntries * sizeof(void*), [](char p_byte) { return p_byte == 0; }));
    EXPECT_TRUE(p_table->m_lock.tryWriteLock());
    p_table->m_lock.unlock();
}

TEST(ApplicationData, OwnsZeroFilledModuleTables) {
    ApplicationData data(0, 0);
    expectEmptyTable(data.m_core, 124);
    expectEmptyTable(data.m_secondTable, 4);
    expectEmptyTable(data.m_thirdTable, 71);
    expectEmptyTable(data.m_fourthTable, 70);
    expectEmptyTable(data.m_fifthTable, 116);
    expectEmptyTable(data.m_picture, 2);
    expectEmptyTable(data.m_seventhTable, 14);
}

// What the process-wide pointer does.

class CountedData : public ApplicationData {
public:
    explicit CountedData(int& p_numOfDestroyed) : ApplicationData(0, 0), m_numOfDestroyed(p_numOfDestroyed) {}
    ~CountedData() override { m_numOfDestroyed++; }

private:
    int& m_numOfDestroyed;
};

TEST(ApplicationDataPointer, IsNullAtFirst) {
    EXPECT_EQ(zyr_getApplicationData(), nullptr);
}

TEST(ApplicationDataPointer, SettingAnotherObjectDestroysTheStoredOne) {
    int destroyed = 0;
    auto* first = new CountedData(destroyed);
    auto* second = new CountedData(destroyed);
    zyr_setApplicationData(first);
    EXPECT_EQ(zyr_getApplicationData(), first);
    zyr_setApplicationData(first);
    EXPECT_EQ(destroyed, 0);
    zyr_setApplicationData(second);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(zyr_getApplicationData(), second);
    zyr_setApplicationData(nullptr);
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(zyr_getApplicationData(), nullptr);
}

TEST(ApplicationDataPointer, SettingNullWithoutAnObjectDoesNothing) {
    zyr_setApplicationData(nullptr);
    EXPECT_EQ(zyr_getApplicationData(), nullptr);
}

struct DirectoryGetter {
    bool_t (*get)(String&);
    String ApplicationData::*member;
    const char* word;
};

static const DirectoryGetter DIRECTORY_GETTERS[] = {
    {zyr_getExecutableDirectory, &ApplicationData::m_executableDirectory, "executable directory"},
    {zyr_getApplicationDirectory, &ApplicationData::m_applicationDirectory, "application directory"},
    {zyr_getLibrariesDirectory, &ApplicationData::m_librariesDirectory, "libraries directory"},
    {zyr_getPluginsDirectory, &ApplicationData::m_pluginsDirectory, "plugins directory"},
    {zyr_getResourcesDirectory, &ApplicationData::m_resourcesDirectory, "resources directory"},
    {zyr_getUserDataDirectory, &ApplicationData::m_userDataDirectory, "user data directory"},
};

TEST(DirectoryGetters, CopyTheirMember) {
    auto* data = new ApplicationData(0, 0);
    zyr_setApplicationData(data);
    for (const DirectoryGetter& getter : DIRECTORY_GETTERS) {
        data->*getter.member = getter.word;
        String directory;
        EXPECT_TRUE(getter.get(directory));
        EXPECT_STREQ(directory.getData(), getter.word);
        data->*getter.member = "";
    }
    zyr_setApplicationData(nullptr);
}

TEST(DirectoryGetters, LogAndFailWithoutApplicationData) {
    for (const DirectoryGetter& getter : DIRECTORY_GETTERS) {
        String directory = "kept";
        std::string output = captureStdout([&] { EXPECT_FALSE(getter.get(directory)); });
        EXPECT_EQ(output, std::string("WARN : Application data is NULL, cannot get ") + getter.word + "\n");
        EXPECT_STREQ(directory.getData(), "kept");
    }
}
