#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/application/zyr_format_registries.h"

#include "support/zyr_invariant.h"
#include "support/zyr_logged_application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace zyr;
using testing::ElementsAre;

static std::vector<int> s_calls;

static void first() {
    s_calls.push_back(1);
}

static void second() {
    s_calls.push_back(2);
}

TEST(Deinitialize, RunsTheFunctionsFromTheFrontAndForgetsThem) {
    ApplicationData data(0, 0);
    data.m_deinitializeFunctions.pushFront(&first);
    data.m_deinitializeFunctions.pushFront(&second);
    s_calls.clear();
    data.deinitialize();
    EXPECT_THAT(s_calls, ElementsAre(2, 1));
    EXPECT_TRUE(data.m_deinitializeFunctions.isEmpty());
    data.deinitialize();
    EXPECT_EQ(s_calls.size(), 2u);
}

TEST(Deinitialize, ClearsAllocatorsImportersAndExporters) {
    LoggedApplication application;
    GUID_t guid = {};
    application->m_unknownVariableAllocators.pushBack("a", nullptr, nullptr);
    application->m_objectAllocatorsByName.pushBack("a", nullptr, nullptr);
    application->m_objectAllocatorsByGUID.pushBack(Pair<GUID_t, String>(guid, "a"), nullptr, nullptr);
    zyr_addImportFromDataCallback(guid, "a,b", nullptr);
    zyr_addExportToDataCallback(guid, "a,b", nullptr);
    zyr_addImportFromFileCallback(guid, "a,b", nullptr);
    zyr_addExportToFileCallback(guid, "a,b", nullptr);
    application->deinitialize();
    EXPECT_TRUE(application->m_unknownVariableAllocators.isEmpty());
    EXPECT_TRUE(application->m_objectAllocatorsByName.isEmpty());
    EXPECT_TRUE(application->m_objectAllocatorsByGUID.isEmpty());
    EXPECT_TRUE(application->m_importFromDataCallbacks.isEmpty());
    EXPECT_TRUE(application->m_exportToDataCallbacks.isEmpty());
    EXPECT_TRUE(application->m_importFromFileCallbacks.isEmpty());
    EXPECT_TRUE(application->m_exportToFileCallbacks.isEmpty());
}

TEST(Deinitialize, KeepsCompressorsSerializerWordsAndTables) {
    LoggedApplication application;
    zyr_addCompressDataCallback("a", nullptr);
    zyr_addDecompressDataCallback("a", nullptr);
    zyr_addSerializerFileFormat("a", "raw");
    application->m_core->m_entries[5] = &first;
    application->deinitialize();
    EXPECT_EQ(application->m_compressDataCallbacks.getSize(), 1u);
    EXPECT_EQ(application->m_decompressDataCallbacks.getSize(), 1u);
    EXPECT_EQ(application->m_serializerFileFormats.getSize(), 1u);
    EXPECT_EQ(application->m_core->m_entries[5], &first);
}

TEST(DeinitializeDeathTest, NullFunctionEndsTheProcess) {
    ApplicationData data(0, 0);
    data.m_deinitializeFunctions.pushFront(nullptr);
    ZYR_EXPECT_INVARIANT(data.deinitialize(), "ERROR: assert\\(\\*it != NULL\\)\n");
}

TEST(DeinitializeDeathTest, NullCallbackListEndsTheProcess) {
    ApplicationData data(0, 0);
    Pair<GUID_t, String> key(GUID_t(), "a");
    data.m_exportToFileCallbacks.pushFront(key, nullptr, nullptr);
    ZYR_EXPECT_INVARIANT(data.deinitialize(), "ERROR: assert\\(it1->m_second != NULL\\)\n");
}
