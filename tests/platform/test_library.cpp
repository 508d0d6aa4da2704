#include "zyr_common/platform/zyr_library.h"
#include "zyr_common/text/zyr_string.h"

#include "support/zyr_stdout_capture.h"
#include "support/zyr_temporary_directory.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace zyr;

static const char* const LIBRARY = ZYR_TEST_LIBRARY;

TEST(Library, SymbolsAreFoundByName) {
    void* handle = zyr_loadLibrary(LIBRARY, 1, 0, 0, 0);
    ASSERT_NE(handle, nullptr);
    void* address = zyr_getProcAddress(handle, "zyr_test_answer");
    ASSERT_NE(address, nullptr);
    EXPECT_EQ(reinterpret_cast<int (*)()>(address)(), 42);
    EXPECT_EQ(zyr_getProcAddress(handle, "zyr_test_noSuchSymbol"), nullptr);
    zyr_freeLibrary(handle);
}

TEST(Library, OnlyLazyLoadingAcceptsUnresolvedFunctions) {
    EXPECT_EQ(zyr_loadLibrary(LIBRARY, 0, 0, 0, 1), nullptr);
    void* handle = zyr_loadLibrary(LIBRARY, 1, 0, 0, 1);
    EXPECT_NE(handle, nullptr);
    zyr_freeLibrary(handle);
}

TEST(Library, OnlyGlobalLoadingOffersItsSymbolsToOthers) {
    void* handle = zyr_loadLibrary(LIBRARY, 1, 0, 1, 0);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "zyr_test_answer"), nullptr);
    zyr_freeLibrary(handle);
    handle = zyr_loadLibrary(LIBRARY, 1, 1, 0, 0);
    ASSERT_NE(handle, nullptr);
    EXPECT_NE(dlsym(RTLD_DEFAULT, "zyr_test_answer"), nullptr);
    zyr_freeLibrary(handle);
}

TEST(Library, FreeingUnloads) {
    // A file of its own: a look-up among all global symbols keeps a library loaded.
    TemporaryDirectory directory;
    String path = directory.writeFile("copy.so", TemporaryDirectory::readFile(LIBRARY)).c_str();
    void* handle = zyr_loadLibrary(path, 1, 0, 0, 0);
    ASSERT_NE(handle, nullptr);
    void* again = dlopen(path.getData(), RTLD_LAZY | RTLD_NOLOAD);
    EXPECT_NE(again, nullptr);
    dlclose(again);
    zyr_freeLibrary(handle);
    EXPECT_EQ(dlopen(path.getData(), RTLD_LAZY | RTLD_NOLOAD), nullptr);
}

TEST(Library, FailureIsLoggedWithTheFileNameAndTheLoadersText) {
    TemporaryDirectory directory;
    String path = directory.writeFile("broken.so", "no library").c_str();
    void* handle = &path;
    std::string output = captureStdout([&] { handle = zyr_loadLibrary(path, 1, 0, 0, 0); });
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(output, "WARN : Unable to load library:broken.so with error:" + std::string(path.getData()) +
                          ": file too short\n");
}

TEST(Library, QuietFailureLeavesNoLine) {
    EXPECT_EQ(captureStdout([] { EXPECT_EQ(zyr_loadLibrary("/nowhere/lib.so", 1, 0, 0, 1), nullptr); }), "");
}

TEST(Library, NullHandlesAreLogged) {
    EXPECT_EQ(captureStdout([] { EXPECT_EQ(zyr_getProcAddress(nullptr, "a"), nullptr); }),
              "WARN : Unable to getProcAddress from NULL handle\n");
    EXPECT_EQ(captureStdout([] { zyr_freeLibrary(nullptr); }),
              "WARN : Trying to freeLibrary with NULL handle: nothing to do\n");
}

TEST(Library, DefaultDirectoriesCannotBeSet) {
    EXPECT_EQ(captureStdout([] { EXPECT_FALSE(zyr_setDefaultLibraryDirectories(1)); }), "");
}
