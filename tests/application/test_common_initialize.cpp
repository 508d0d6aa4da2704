#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/digest/zyr_compression.h"
#include "zyr_common/zyr_common_initialize.h"

#include "support/zyr_logged_application.h"
#include "support/zyr_stdout_capture.h"

#include <csignal>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace zyr;
using testing::ElementsAre;

class CommonInitialize : public testing::Test {
protected:
    CommonInitialize() : m_data(new ApplicationData(0, 0)) {
        zyr_setMainThreadId(0);
        signal(SIGPIPE, SIG_DFL);
    }
    ~CommonInitialize() override {
        if (zyr_getApplicationData() == nullptr) {
            delete m_data;
        }
        zyr_setApplicationData(nullptr);
        signal(SIGPIPE, SIG_DFL);
    }

    ApplicationData* m_data;
};

TEST_F(CommonInitialize, NullIsLoggedAndFails) {
    EXPECT_EQ(captureStdout([] { EXPECT_FALSE(commonInitialize(nullptr)); }),
              "WARN : Application data is NULL, cannot initialize component module: common\n");
    EXPECT_EQ(zyr_getMainThreadId(), 0u);
}

TEST_F(CommonInitialize, RecordsTheMainThreadAndThePointer) {
    EXPECT_TRUE(m_data->commonInitialize());
    EXPECT_EQ(m_data->m_commonState, 1u);
    EXPECT_EQ(zyr_getApplicationData(), m_data);
    EXPECT_EQ(zyr_getMainThreadId(), zyr_getCurrentThreadId());
}

TEST_F(CommonInitialize, MakesThePipeSignalIgnored) {
    EXPECT_TRUE(m_data->commonInitialize());
    struct sigaction action = {};
    sigaction(SIGPIPE, nullptr, &action);
    EXPECT_EQ(action.sa_handler, SIG_IGN);
}

TEST_F(CommonInitialize, RegistersTheCompressors) {
    EXPECT_TRUE(m_data->commonInitialize());
    ASSERT_EQ(m_data->m_compressDataCallbacks.getSize(), 2u);
    ASSERT_EQ(m_data->m_decompressDataCallbacks.getSize(), 2u);
    EXPECT_EQ(m_data->m_compressDataCallbacks.find("lz4")->m_second->front(), &compressLZ4);
    EXPECT_EQ(m_data->m_compressDataCallbacks.find("zip")->m_second->front(), &compressZIP);
    EXPECT_EQ(m_data->m_decompressDataCallbacks.find("lz4")->m_second->front(), &decompressLZ4);
    EXPECT_EQ(m_data->m_decompressDataCallbacks.find("zip")->m_second->front(), &decompressZIP);
}

TEST_F(CommonInitialize, CompressorsPackAndUnpack) {
    EXPECT_TRUE(m_data->commonInitialize());
    const std::string text(1000, 'z');
    for (const char* format : {"lz4", "zip"}) {
        Array<unsigned char> packed;
        size_t size = zyr_compressData(format, text.data(), text.size(), packed, 1);
        ASSERT_GT(size, 0u) << format;
        EXPECT_LT(size, text.size()) << format;
        std::string unpacked(text.size(), 0);
        EXPECT_EQ(zyr_decompressData(format, packed.getData(), size, unpacked.data(), unpacked.size()), text.size());
        EXPECT_EQ(unpacked, text) << format;
    }
}

TEST_F(CommonInitialize, PutsItsDeinitializerInFront) {
    m_data->m_deinitializeFunctions.pushFront(nullptr);
    EXPECT_TRUE(m_data->commonInitialize());
    EXPECT_EQ(m_data->m_deinitializeFunctions.front(), &commonDeinitialize);
    EXPECT_EQ(m_data->m_deinitializeFunctions.getSize(), 2u);
}

TEST_F(CommonInitialize, SecondCallRegistersNothingAgain) {
    EXPECT_TRUE(m_data->commonInitialize());
    EXPECT_TRUE(m_data->commonInitialize());
    EXPECT_EQ(m_data->m_deinitializeFunctions.getSize(), 1u);
    EXPECT_EQ(m_data->m_compressDataCallbacks.find("lz4")->m_second->getSize(), 1u);
}

TEST_F(CommonInitialize, FailedStateIsSticky) {
    m_data->m_commonState = 2;
    EXPECT_FALSE(m_data->commonInitialize());
    EXPECT_EQ(zyr_getApplicationData(), nullptr);
    EXPECT_EQ(m_data->m_commonState, 2u);
}

TEST(CommonDeinitialize, HasNoWorkOfItsOwn) {
    EXPECT_EQ(captureStdout([] { commonDeinitialize(); }),
              "WARN : Application data is NULL, cannot deinitialize module: common\n");
    LoggedApplication application;
    EXPECT_EQ(captureStdout([] { commonDeinitialize(); }), "");
    EXPECT_TRUE(application.getFileNames().empty());
}
