// Every class of the core module and every record of the library, through every format.
#include "storage/object_fills.h"
#include "storage/storage_test.h"

#include <set>

namespace zyr {
namespace {

using test::StoredSample;

class StoredWalk : public SampleTest {
protected:
    /// Saves and loads the object in each format; what comes back is stored as the same bytes in all of them.
    static void expectEqualInEachFormat(const std::vector<StoredSample>& p_samples) {
        for (const StoredSample& sample : p_samples) {
            SCOPED_TRACE(sample.m_name);
            const Ref<IObject> object = sample.make();
            std::string bytes[std::size(c_formats)];
            for (size_t i = 0; i < std::size(c_formats); i++) {
                bytes[i] = save(object.get(), c_formats[i]);
                ASSERT_FALSE(bytes[i].empty()) << c_formats[i];
            }
            for (size_t i = 0; i < std::size(c_formats); i++) {
                SCOPED_TRACE(c_formats[i]);
                const Ref<IObject> loaded = load(bytes[i], c_formats[i], ZYR_TEST_DATA "/objects");
                ASSERT_TRUE(loaded) << bytes[2];
                EXPECT_EQ(loaded->getClassName(), object->getClassName());
                EXPECT_EQ(loaded->getRefCount(), 0u);
                for (size_t j = 0; j < std::size(c_formats); j++) {
                    EXPECT_TRUE(save(loaded.get(), c_formats[j]) == bytes[j]) << c_formats[j] << "\n"
                                                                              << save(loaded.get(), "xml") << bytes[2];
                }
            }
        }
    }
};

TEST_F(StoredWalk, NewObjectsOfEveryClassComeBackInEachFormat) {
    const auto samples = test::makeDefaultObjects();
    EXPECT_GE(samples.size(), 100u);
    expectEqualInEachFormat(samples);
}

TEST_F(StoredWalk, FilledObjectsComeBackInEachFormat) {
    expectEqualInEachFormat(test::makeFilledObjects());
}

TEST_F(StoredWalk, NestedSharedAndStoodForObjectsComeBackInEachFormat) {
    expectEqualInEachFormat(test::makeOddObjects());
}

TEST_F(StoredWalk, NewAndFilledRecordsComeBackInEachFormat) {
    const auto samples = test::makeRecords(true);
    EXPECT_GE(samples.size(), 400u);
    expectEqualInEachFormat(samples);
}

TEST_F(StoredWalk, AFilledObjectOrRecordIsStoredAsOtherBytesThanANewOne) {
    std::map<std::string, std::string> fresh;
    for (const auto& samples : {test::makeDefaultObjects(), test::makeRecords(true)}) {
        for (const StoredSample& sample : samples) {
            if (sample.m_name.rfind("record/", 0) != 0) {
                fresh[sample.m_name.substr(sample.m_name.find('/'))] = save(sample.make().get(), "json");
            }
        }
    }
    for (const auto& samples : {test::makeFilledObjects(), test::makeRecords(false)}) {
        for (const StoredSample& sample : samples) {
            const std::string name = sample.m_name.substr(sample.m_name.find('/'));
            // A command of this class is nothing but its name.
            if (name.find("/ClosePath2DCommand") != 0 && name.find("/Path2DCommand") != 0) {
                EXPECT_NE(save(sample.make().get(), "json"), fresh[name]) << name;
            }
        }
    }
}

/// With values from the table, by name and by GUID: the same class each time.
TEST_F(StoredWalk, EveryClassIsMadeByTableNameAndGUID) {
    const auto& byName = getData()->m_objectAllocatorsByName;
    std::set<std::string> made;
    for (moduleEntry_FUNC entry : getData()->m_core->m_entries) {
        const auto object = Ref<IObject>::adopt(reinterpret_cast<objectAllocator_FUNC>(entry)());
        if (object) {
            made.insert(object->getClassName().getData());
        }
    }
    for (auto it = byName.begin(); it != byName.end(); ++it) {
        SCOPED_TRACE(it->m_first.getData());
        const auto named = Ref<IObject>::adopt(zyr_createObjectFromName(it->m_first));
        ASSERT_TRUE(named);
        const auto identified = Ref<IObject>::adopt(
            zyr_createObjectFromGUIDAndTypeName(named->getClassGUID(), named->getClassTemplateTypeName()));
        ASSERT_TRUE(identified);
        EXPECT_EQ(identified->getClassName(), it->m_first);
        made.erase(it->m_first.getData());
    }
    EXPECT_TRUE(made.empty()) << *made.begin();
}

TEST_F(StoredWalk, StandInsThatAreEmptyGiveNullAndOneLine) {
    for (const char* name : {"DeferredFileObject", "CompressedObject"}) {
        for (const char* format : c_formats) {
            SCOPED_TRACE(std::string(name) + " " + format);
            const auto standIn = Ref<IObject>::adopt(zyr_createObjectFromName(name));
            const std::string bytes = save(standIn.get(), format);
            ASSERT_FALSE(bytes.empty());
            const LogCapture capture;
            EXPECT_FALSE(load(bytes, format, "/nowhere"));
            EXPECT_EQ(capture.getLines().back().message,
                      "The object cannot be deserialized from data: bad data format");
        }
    }
}

} // namespace
} // namespace zyr
