// Every golden file cut short at every byte, and changed at random: null with a line, or an object, and no more memory
// than a small multiple of the bytes. ZYR_CHANGES asks for more changes in all, and for every cut from 10000 on.
#include "storage/golden_pack.h"
#include "storage/storage_test.h"
#include "support/zyr_heap_watch.h"
#include "zyr_common/digest/zyr_xxhash.h"

#include <cstdlib>
#include <random>

namespace zyr {
namespace {

/// What a load may take beside what depends on the bytes.
constexpr size_t FIXED_COST = 1 << 20;
/// A byte may stand for a text, a null element or a field, which are objects of up to some hundred bytes in memory.
constexpr size_t COST_OF_BYTE = 1100;

int getNumOfChanges() {
    const char* text = getenv("ZYR_CHANGES");
    return text != nullptr ? atoi(text) : 3000;
}

class GoldenDamage : public SampleTest, public testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        SampleTest::SetUp();
        // The module tells more about a document than the one line; nobody reads it here.
        getData()->setLogLevel(ZYR_LOG_LEVEL_ERROR);
        for (const auto& [name, bytes] : test::readGoldenPack(GetParam())) {
            // A value of no type ends the process, which is relied upon.
            if (name.find("VariableValue") == std::string::npos) {
                m_files.push_back(bytes);
            }
        }
        ASSERT_GT(m_files.size(), 200u);
    }
    static bool isBinary() { return GetParam()[0] == 'r' || GetParam()[0] == 'z'; }
    /// Gives the wrapper the hash of what is behind it.
    static void mend(std::string& p_bytes) {
        if (isBinary() && p_bytes.size() > 32) {
            const uint64_t seed = GetParam()[0] == 'r' ? 0x9375e58bc0c5ba10 : 0xf3e031aa0b4b71ac;
            const uint64_t hash = zyr_xxHash64(p_bytes.data() + 32, p_bytes.size() - 32, seed);
            memcpy(p_bytes.data() + 16, &hash, sizeof(hash));
        }
    }
    /// Null comes with a line of warning, and an object with none.
    void expectNullOrObject(const std::string& p_bytes) {
        test::startHeapPeak();
        size_t peak = 0;
        size_t warnings = 0;
        bool loaded = false;
        bool standsIn = false;
        {
            const LogCapture capture;
            const Ref<IObject> object = load(p_bytes, GetParam(), ZYR_TEST_DATA "/objects");
            loaded = static_cast<bool>(object);
            peak = test::getHeapPeak();
            for (const CapturedLine& line : capture.getLines()) {
                // This one explains the line that follows.
                warnings +=
                    line.level == ZYR_LOG_LEVEL_WARN && line.message != "Xml header not found, non standard xml format";
                standsIn = standsIn || line.message.find("from data in ") != std::string::npos ||
                           line.message.find("file: ") != std::string::npos;
            }
        }
        m_numOfObjects += loaded;
        m_numOfNulls += !loaded;
        EXPECT_EQ(loaded, warnings == 0) << p_bytes;
        // What stands for an object has a line of its own.
        EXPECT_LE(warnings, standsIn ? 3u : 1u) << p_bytes;
        EXPECT_LE(peak, FIXED_COST + COST_OF_BYTE * p_bytes.size()) << p_bytes;
    }

    std::vector<std::string> m_files;
    size_t m_numOfObjects = 0;
    size_t m_numOfNulls = 0;
};

TEST_P(GoldenDamage, FilesCutShortGiveNullOrAnObject) {
    const size_t step = getNumOfChanges() >= 10000 ? 1 : 37;
    size_t place = 0;
    for (const std::string& file : m_files) {
        for (place %= step; place < file.size(); place += step) {
            std::string cut = file.substr(0, place);
            if (isBinary()) {
                EXPECT_FALSE(load(cut, GetParam())) << place;
                mend(cut);
            }
            expectNullOrObject(cut);
        }
    }
    printf("%zu cuts: %zu objects\n", m_numOfNulls + m_numOfObjects, m_numOfObjects);
    EXPECT_GT(m_numOfNulls, m_numOfObjects);
}

TEST_P(GoldenDamage, FilesChangedAtRandomGiveNullOrAnObject) {
    std::mt19937 random(20261122);
    for (int i = 0; i < getNumOfChanges(); i++) {
        std::string changed = m_files[random() % m_files.size()];
        for (uint32_t changes = random() % 3 + 1; changes != 0; changes--) {
            const size_t place = random() % changed.size();
            const std::string& other = m_files[random() % m_files.size()];
            switch (random() % 5) {
            case 0:
                changed[place] = static_cast<char>(random());
                break;
            case 1:
                changed[place] = static_cast<char>(changed[place] ^ 1 << random() % 8);
                break;
            case 2:
                changed.erase(place, random() % 8);
                break;
            case 3:
                changed.insert(place, changed.substr(random() % changed.size(), random() % 32));
                break;
            default:
                changed.insert(place, other.substr(random() % other.size(), random() % 64));
            }
            if (changed.empty()) {
                changed = "x";
            }
        }
        mend(changed);
        expectNullOrObject(changed);
    }
    printf("%zu changes: %zu objects\n", m_numOfNulls + m_numOfObjects, m_numOfObjects);
    EXPECT_GT(m_numOfNulls, 0u);
    EXPECT_GT(m_numOfObjects, 0u);
}

INSTANTIATE_TEST_SUITE_P(Formats, GoldenDamage, testing::ValuesIn(c_formats));

} // namespace
} // namespace zyr
