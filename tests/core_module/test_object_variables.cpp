#include "core_module/core_module_test.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/variable/zyr_variable_factories.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <cstring>

namespace zyr {
namespace {

/// An object of the module behind a facade of this program.
class ObjectVariables : public CoreModuleUpTest {
protected:
    struct ZipInfo : WZipCompressionInfo {
        ZipInfo() {
            initObjectInterface();
            init_This();
        }
    };

    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_info = new ZipInfo;
    }
    void TearDown() override { m_info->release(); }

    bool_t set(const char* p_path, VariableValue* p_value) {
        bool_t done = m_info->setVariableValueByPath(p_path, p_value);
        p_value->release();
        return done;
    }

    IZipCompressionInfo* m_info = nullptr;
};

TEST_F(ObjectVariables, AreSetThroughTheFacade) {
    const String longName("a name that is too long to stand inside the object that holds it, so that it has a block");
    EXPECT_TRUE(set("level", zyr_createVariableValue<int8_t>("", 4)));
    EXPECT_TRUE(set("formatName", zyr_createVariableValue<String>("", longName)));
    EXPECT_TRUE(set("decompressSize", zyr_createVariableValue<float>("", 1e6f)));
    EXPECT_EQ(m_info->getLevel(), 4u);
    EXPECT_EQ(m_info->getFormatName(), longName);
    EXPECT_EQ(m_info->getDecompressSize(), 1000000u);
    VariableValue* value = zyr_createVariableValue<uint32_t>("", 9);
    EXPECT_TRUE(m_info->setVariableValue("level", value));
    value->release();
    EXPECT_EQ(m_info->getLevel(), 9u);
}

TEST_F(ObjectVariables, AreReadThroughAReference) {
    m_info->setLevel(7);
    VariableReference* reference = m_info->getVariableReference("level");
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->getType(), ZYR_VARIABLE_UINT32);
    uint32_t level = 0;
    memcpy(&level, reference->getPointer(), sizeof(level));
    EXPECT_EQ(level, 7u);
    reference->release();
}

TEST_F(ObjectVariables, StayWhenTheValueDoesNotFit) {
    const uint32_t level = m_info->getLevel();
    EXPECT_FALSE(set("level", zyr_createVariableValue<GUID_t>("", GUID_t())));
    EXPECT_FALSE(set("unknown", zyr_createVariableValue<uint32_t>("", 1)));
    EXPECT_EQ(m_info->getLevel(), level);
    EXPECT_NE(m_application->getLog().find("Unable to convert GUID_t to type:uint32_t"), std::string::npos);
}

} // namespace
} // namespace zyr
