#include "zyr_common/platform/zyr_stubs.h"
#include "zyr_common/text/zyr_string.h"

#include "support/zyr_stdout_capture.h"

#include <gtest/gtest.h>
#include <unistd.h>

using namespace zyr;

static const char* const REGISTRY_LINE = "WARN : Registry keys are not supported by current OS\n";
static constexpr RegistryKeyLevelEnum LEVEL = ZYR_REGISTRY_KEY_LEVEL_USER;

TEST(RegistryStubs, EachLogsAndGivesFalse) {
    uint32_t number32 = 5;
    uint64_t number64 = 6;
    String text = "kept";
    bool_t result = 1;
    EXPECT_EQ(captureStdout([&] { result = zyr_createRegistryKey(LEVEL, "a"); }), REGISTRY_LINE);
    EXPECT_FALSE(result);
    EXPECT_EQ(captureStdout([&] { result = zyr_deleteRegistryKey(LEVEL, "a"); }), REGISTRY_LINE);
    EXPECT_FALSE(result);
    EXPECT_EQ(captureStdout([&] { result = zyr_getRegistryKeyValueUInt32(LEVEL, "a", "b", number32); }), REGISTRY_LINE);
    EXPECT_FALSE(result);
    EXPECT_EQ(captureStdout([&] { result = zyr_setRegistryKeyValueUInt32(LEVEL, "a", "b", 1); }), REGISTRY_LINE);
    EXPECT_FALSE(result);
    EXPECT_EQ(captureStdout([&] { result = zyr_getRegistryKeyValueUInt64(LEVEL, "a", "b", number64); }), REGISTRY_LINE);
    EXPECT_FALSE(result);
    EXPECT_EQ(captureStdout([&] { result = zyr_setRegistryKeyValueUInt64(LEVEL, "a", "b", 1); }), REGISTRY_LINE);
    EXPECT_FALSE(result);
    EXPECT_EQ(captureStdout([&] { result = zyr_getRegistryKeyValueString(LEVEL, "a", "b", text); }), REGISTRY_LINE);
    EXPECT_FALSE(result);
    EXPECT_EQ(captureStdout([&] { result = zyr_setRegistryKeyValueString(LEVEL, "a", "b", "c"); }), REGISTRY_LINE);
    EXPECT_FALSE(result);
    EXPECT_EQ(captureStdout([&] { result = zyr_deleteRegistryKeyValue(LEVEL, "a", "b"); }), REGISTRY_LINE);
    EXPECT_FALSE(result);
    EXPECT_EQ(number32, 5u);
    EXPECT_EQ(number64, 6u);
    EXPECT_STREQ(text.getData(), "kept");
}

TEST(DesktopStubs, GiveNullOrFalseInSilence) {
    String name = "kept";
    int desktop = 0;
    EXPECT_EQ(captureStdout([&] {
                  EXPECT_EQ(zyr_openDesktop("default"), nullptr);
                  EXPECT_EQ(zyr_openInputDesktop(), nullptr);
                  EXPECT_EQ(zyr_getCurrentThreadDesktop(), nullptr);
                  EXPECT_FALSE(zyr_closeDesktop(&desktop));
                  EXPECT_FALSE(zyr_setCurrentThreadDesktop(&desktop));
                  EXPECT_FALSE(zyr_getDesktopName(&desktop, name));
                  EXPECT_FALSE(zyr_isSecureDesktop(&desktop));
                  EXPECT_FALSE(zyr_setDesktopSwitchEventHook(nullptr));
              }),
              "");
    EXPECT_STREQ(name.getData(), "kept");
}

TEST(SessionStubs, HaveFixedAnswers) {
    EXPECT_EQ(zyr_getProcessUserSessionID(4711), 4711u);
    EXPECT_FALSE(zyr_isSessionRemote(1));
    EXPECT_EQ(zyr_openUserToken(1), 0u);
    EXPECT_EQ(zyr_openCurrentProcessToken(), geteuid());
    EXPECT_TRUE(zyr_closeToken(0));
    EXPECT_TRUE(zyr_closeToken(1000));
}
