/// Objects to save and load, and the lines of this program's copy of the library.
#pragma once

#include "core_module/core_module_test.h"
#include "support/log_capture.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <gmock/gmock.h>

namespace zyr {

class LoadSaveTest : public CoreModuleUpTest {
protected:
    std::string path(const std::string& p_name) const { return m_directory.getPath() + p_name; }

    static INativeFormatInfo* makeInfo(const char* p_name) {
        INativeFormatInfo* info = zyr_createObject<INativeFormatInfo>();
        const unsigned char bytes[] = {1, 2, 3, 250, 5};
        info->setFormatName(p_name);
        info->setFilePath("some/path");
        info->setReadOnly(1);
        info->getMutableOriginalFile()->pushBackRange(bytes, sizeof(bytes));
        return info;
    }
    static void expectInfo(IObject* p_object, const char* p_name) {
        ASSERT_NE(p_object, nullptr);
        ASSERT_EQ(p_object->getClassName(), "NativeFormatInfo");
        const INativeFormatInfo* info = static_cast<const INativeFormatInfo*>(p_object);
        EXPECT_EQ(info->getFormatName(), p_name);
        EXPECT_EQ(info->getFilePath(), "some/path");
        EXPECT_TRUE(info->isReadOnly());
        EXPECT_EQ(info->getOriginalFile()->getSize(), 5U);
    }
    std::string save(IObject* p_object, const std::string& p_format) const {
        Array<unsigned char> data;
        EXPECT_TRUE(zyr_saveToData(p_object, data, p_format.c_str(), 1, m_directory.getPath().c_str()));
        return std::string(reinterpret_cast<const char*>(data.getData()), data.getSize());
    }
    static IObject* load(const std::string& p_bytes, const char* p_format) {
        Array<unsigned char> data;
        data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 1);
        data.pushBackRange(p_bytes.data(), p_bytes.size());
        return zyr_loadFromData(data, p_format, "");
    }
    /// The messages of this program's copy of the library at the level of warnings.
    static std::vector<std::string> warnings(const LogCapture& p_capture) {
        std::vector<std::string> messages;
        for (const CapturedLine& line : p_capture.getLines()) {
            if (line.level <= 2) {
                EXPECT_EQ(line.level, 2);
                EXPECT_FALSE(line.echo);
                messages.push_back(line.message);
            }
        }
        return messages;
    }
    static void expectOnlyLine(const std::string& p_bytes, const char* p_format, const std::string& p_line) {
        const LogCapture capture;
        EXPECT_EQ(load(p_bytes, p_format), nullptr);
        EXPECT_THAT(warnings(capture), testing::ElementsAre(p_line));
    }
    void expectOnlyFileLine(const std::string& p_name, const char* p_format, const std::string& p_line) const {
        const LogCapture capture;
        EXPECT_EQ(zyr_loadFromFile(path(p_name).c_str(), p_format, ""), nullptr);
        EXPECT_THAT(warnings(capture), testing::ElementsAre(p_line));
    }

    TemporaryDirectory m_directory;
};

} // namespace zyr
