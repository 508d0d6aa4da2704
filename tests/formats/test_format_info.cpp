#include "core_module/formats/zyr_lz4_compression_info_level.h"
#include "core_module/formats/zyr_zip_compression_info_level.h"
#include "support/zyr_fake_core.h"
#include "support/zyr_print_text.h"
#include "zyr_common/implementation/zyr_native_format_info_level.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <gtest/gtest.h>

namespace zyr {
namespace {

/// A format of a plug-in: its own class, with the core module's implementation behind it.
class PluginFormat : public ObjectClass<PluginFormat, WNativeFormatInfo> {
public:
    static constexpr const char* c_className = "PluginFormat";
    static constexpr const char* c_classGUIDText = "50000000-0000-4000-8000-000000000001";
    PluginFormat() { initObjectInterface(); }
    void init_This() {}
    void release_This() {}
    void copy_This(const PluginFormat*) {}
};

void fill(INativeFormatInfo* p_info) {
    Array<unsigned char> bytes;
    bytes.pushBack(1);
    bytes.pushBack(2);
    p_info->setFormatName("jpg");
    p_info->setAccessType(ZYR_NATIVE_FORMAT_ACCESS_MEMORY);
    p_info->setFilePath("a/b.jpg");
    p_info->setReadOnly(1);
    p_info->setOriginalFile(bytes);
}

void expectFilled(const INativeFormatInfo* p_info) {
    EXPECT_EQ(p_info->getFormatName(), "jpg");
    EXPECT_EQ(p_info->getAccessType(), ZYR_NATIVE_FORMAT_ACCESS_MEMORY);
    EXPECT_EQ(p_info->getFilePath(), "a/b.jpg");
    EXPECT_TRUE(p_info->isReadOnly());
    ASSERT_EQ(p_info->getOriginalFile()->getSize(), 2u);
    EXPECT_EQ(p_info->getOriginalFile()->getData()[0], 1);
    EXPECT_EQ(p_info->getOriginalFile()->getData()[1], 2);
}

void expectEmpty(const INativeFormatInfo* p_info) {
    EXPECT_EQ(p_info->getFormatName(), "");
    EXPECT_EQ(p_info->getAccessType(), ZYR_NATIVE_FORMAT_ACCESS_NONE);
    EXPECT_EQ(p_info->getFilePath(), "");
    EXPECT_FALSE(p_info->isReadOnly());
    EXPECT_TRUE(p_info->getOriginalFile()->isEmpty());
}

TEST(NativeFormatInfo, StartsEmpty) {
    NativeFormatInfo* info = new NativeFormatInfo;
    EXPECT_EQ(info->getClassName(), "NativeFormatInfo");
    expectEmpty(info);
    info->release();
}

TEST(NativeFormatInfo, GivesBackWhatWasSet) {
    NativeFormatInfo* info = new NativeFormatInfo;
    fill(info);
    expectFilled(info);
    info->getMutableOriginalFile()->pushBack(3);
    EXPECT_EQ(info->getOriginalFile()->getSize(), 3u);
    info->release();
}

TEST(NativeFormatInfo, CloneHasTheContentsOfAllLevels) {
    NativeFormatInfo* info = new NativeFormatInfo;
    fill(info);
    info->setDirty(1);
    IObject* clone = info->clone();
    info->release();
    expectFilled(static_cast<INativeFormatInfo*>(clone));
    EXPECT_TRUE(clone->isDirty());
    clone->release();
}

TEST(NativeFormatInfo, ClearEmptiesAllLevels) {
    NativeFormatInfo* info = new NativeFormatInfo;
    fill(info);
    info->clear();
    expectEmpty(info);
    info->release();
}

TEST(NativeFormatInfo, ShowsItsFieldsBehindPaths) {
    NativeFormatInfo* info = new NativeFormatInfo;
    for (const char* path : {"formatName", "accessType", "filePath", "readOnly"}) {
        VariableReference* reference = info->getVariableReferenceByPath(path);
        ASSERT_NE(reference, nullptr) << path;
        reference->release();
    }
    VariableReference* reference = info->getVariableReference("filePath");
    EXPECT_TRUE(reference->changeValueString("written"));
    reference->release();
    EXPECT_EQ(info->getFilePath(), "written");
    EXPECT_EQ(info->getVariableReferenceByPath("unknown"), nullptr);
    info->release();
}

TEST(NativeFormatInfo, ExtendedByAPluginClassCopiesThroughTheFacade) {
    FakeCore core;
    core.addClass<NativeFormatInfo>();
    PluginFormat* source = new PluginFormat;
    fill(source);
    IObject* clone = source->clone();
    EXPECT_EQ(clone->getClassName(), "PluginFormat");
    expectFilled(static_cast<PluginFormat*>(clone));
    clone->clear();
    expectEmpty(static_cast<PluginFormat*>(clone));
    EXPECT_TRUE(clone->copy(source));
    expectFilled(static_cast<PluginFormat*>(clone));
    clone->release();
    source->release();
}

TEST(NativeFormatInfo, CopiesFromAFacade) {
    FakeCore core;
    core.addClass<NativeFormatInfo>();
    PluginFormat* source = new PluginFormat;
    fill(source);
    NativeFormatInfo* info = new NativeFormatInfo;
    EXPECT_TRUE(info->copy(source));
    expectFilled(info);
    info->release();
    source->release();
}

TEST(CompressionInfo, KeepsTheUncompressedSize) {
    CompressionInfo* info = new CompressionInfo;
    EXPECT_EQ(info->getDecompressSize(), 0u);
    info->setDecompressSize(0x123456789abcdef0);
    CompressionInfo* copy = static_cast<CompressionInfo*>(info->clone());
    EXPECT_EQ(copy->getDecompressSize(), 0x123456789abcdef0u);
    copy->release();
    info->release();
}

TEST(Lz4CompressionInfo, HasItsWordAndDefault) {
    Lz4CompressionInfo* info = new Lz4CompressionInfo;
    EXPECT_EQ(info->getFormatName(), "lz4");
    EXPECT_EQ(info->getAcceleration(), 1u);
    info->setAcceleration(9);
    info->setFormatName("other");
    Lz4CompressionInfo* copy = static_cast<Lz4CompressionInfo*>(info->clone());
    EXPECT_EQ(copy->getAcceleration(), 9u);
    EXPECT_EQ(copy->getFormatName(), "other");
    info->clear();
    EXPECT_EQ(info->getFormatName(), "lz4");
    EXPECT_EQ(info->getAcceleration(), 1u);
    copy->release();
    info->release();
}

TEST(ZipCompressionInfo, HasItsWordAndDefault) {
    ZipCompressionInfo* info = new ZipCompressionInfo;
    EXPECT_EQ(info->getFormatName(), "zip");
    EXPECT_EQ(info->getLevel(), 6u);
    info->setLevel(9);
    ZipCompressionInfo* copy = static_cast<ZipCompressionInfo*>(info->clone());
    EXPECT_EQ(copy->getLevel(), 9u);
    info->clear();
    EXPECT_EQ(info->getFormatName(), "zip");
    EXPECT_EQ(info->getLevel(), 6u);
    copy->release();
    info->release();
}

} // namespace
} // namespace zyr
