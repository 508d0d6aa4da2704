// Saved objects, cut short and changed: they load or give null with a line, and nothing else happens.
#include "core_module/core_module_test.h"
#include "support/log_capture.h"
#include "zyr_common/digest/zyr_xxhash.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <cstdlib>
#include <random>

namespace zyr {
namespace {

/// How many changes of each file are tried; ZYR_CHANGES asks for more.
int getNumOfChanges() {
    const char* text = getenv("ZYR_CHANGES");
    return text != nullptr ? atoi(text) : 1000;
}

class BadFiles : public CoreModuleUpTest, public testing::WithParamInterface<const char*> {
protected:
    static bool isBinary() { return GetParam()[0] == 'r' || GetParam()[0] == 'z'; }

    /// An object in compressed form, so that one object lies in another.
    static std::string makeFile() {
        IZipCompressionInfo* zip = zyr_createObject<IZipCompressionInfo>();
        INativeFormatInfo* info = zyr_createObject<INativeFormatInfo>();
        Array<unsigned char> data;
        info->setFormatName("name & <more> \"text\" \xC3\xBC");
        info->setFilePath("path");
        info->setAccessType(ZYR_NATIVE_FORMAT_ACCESS_FILE);
        info->getMutableOriginalFile()->pushBackRange("0123456789", 10);
        info->setCompressionInfo(zip);
        EXPECT_TRUE(zyr_saveToData(info, data, GetParam(), 1, ""));
        info->release();
        zip->release();
        return std::string(reinterpret_cast<const char*>(data.getData()), data.getSize());
    }
    /// Gives the wrapper the hash of what is behind it.
    static void mend(std::string& p_bytes) {
        if (isBinary() && p_bytes.size() > 32) {
            const uint64_t seed = GetParam()[0] == 'r' ? 0x9375e58bc0c5ba10 : 0xf3e031aa0b4b71ac;
            const uint64_t hash = zyr_xxHash64(p_bytes.data() + 32, p_bytes.size() - 32, seed);
            memcpy(p_bytes.data() + 16, &hash, sizeof(hash));
        }
    }
    /// Null comes with at least one line, and an object with none of this program's library.
    static bool load(const std::string& p_bytes) {
        const LogCapture capture;
        Array<unsigned char> data;
        data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 1);
        data.pushBackRange(p_bytes.data(), p_bytes.size());
        IObject* object = zyr_loadFromData(data, GetParam(), "/nowhere");
        size_t warnings = 0;
        for (const CapturedLine& line : capture.getLines()) {
            warnings += line.level == 2;
        }
        EXPECT_EQ(object == nullptr, warnings != 0) << p_bytes;
        if (object != nullptr) {
            object->release();
        }
        return object != nullptr;
    }
};

TEST_P(BadFiles, CutShortGiveNullAndALine) {
    const std::string file = makeFile();
    ASSERT_TRUE(load(file));
    // The last byte of a text may be a line end.
    const size_t last = isBinary() ? file.size() : file.size() - 1;
    for (size_t size = 0; size < last; size++) {
        std::string cut = file.substr(0, size);
        EXPECT_FALSE(load(cut)) << size;
        mend(cut);
        load(cut);
    }
}

TEST_P(BadFiles, ChangedAtRandomGiveNullOrAnObject) {
    const std::string file = makeFile();
    std::mt19937 random(20261122);
    for (int i = 0; i < getNumOfChanges(); i++) {
        std::string changed = file;
        for (uint32_t changes = random() % 3 + 1; changes != 0; changes--) {
            const size_t place = random() % changed.size();
            switch (random() % 3) {
            case 0:
                changed[place] = static_cast<char>(random());
                break;
            case 1:
                changed.erase(place, random() % 4);
                break;
            default:
                changed.insert(place, changed.substr(random() % changed.size(), random() % 16));
            }
            if (changed.empty()) {
                changed = "x";
            }
        }
        mend(changed);
        load(changed);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, BadFiles, testing::Values("raw", "zbf", "xml", "json"));

} // namespace
} // namespace zyr
