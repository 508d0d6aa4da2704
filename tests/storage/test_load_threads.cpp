// Two threads that save and load different files at once. They share the cache words of the call sites, the class names
// and the registries, and nothing else.
#include "core_module/core_module_test.h"
#include "storage/golden_pack.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_object.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <atomic>
#include <thread>

namespace zyr {
namespace {

constexpr int ROUNDS = 10;

class LoadThreads : public CoreModuleUpTest {
protected:
    /// Whether the bytes come back from an object of theirs.
    static bool isSameAgain(const std::string& p_bytes, const std::string& p_format) {
        Array<unsigned char> data;
        data.pushBackRange(p_bytes.data(), p_bytes.size());
        const auto object = Ref<IObject>::adopt(zyr_loadFromData(data, p_format.c_str(), ""));
        Array<unsigned char> saved;
        return object && zyr_saveToData(object.get(), saved, p_format.c_str(), 0, "") &&
               saved.getSize() == data.getSize() && memcmp(saved.getData(), data.getData(), data.getSize()) == 0;
    }
};

TEST_F(LoadThreads, LoadDifferentFilesAtOnce) {
    std::vector<std::pair<std::string, std::string>> files;
    for (const char* format : {"raw", "zbf", "xml", "json"}) {
        for (const auto& [name, bytes] : test::readGoldenPack(format)) {
            if (name.rfind("filled/", 0) == 0) {
                files.emplace_back(format, bytes);
            }
        }
    }
    ASSERT_GT(files.size(), 100u);
    std::atomic<bool> start{false};
    std::atomic<int> faults{0};
    const auto run = [&](bool p_backward) {
        while (!start) {
        }
        for (int round = 0; round < ROUNDS; round++) {
            for (size_t i = 0; i < files.size(); i++) {
                const auto& [format, bytes] = files[p_backward ? files.size() - 1 - i : i];
                faults += !isSameAgain(bytes, format);
            }
        }
    };
    std::thread first(run, false);
    std::thread second(run, true);
    start = true;
    first.join();
    second.join();
    EXPECT_EQ(faults, 0);
}

} // namespace
} // namespace zyr
