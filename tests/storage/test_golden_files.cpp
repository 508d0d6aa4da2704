// The files that every later version and every platform reads, and writes to the same bytes.
#include "storage/golden_pack.h"
#include "storage/shaped_object.h"
#include "storage/storage_test.h"
#include "storage/tree_dump.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

using test::GoldenPack;
using test::Shape;
using test::ShapedObject;
using test::StoredSample;

struct ShapeCase {
    const char* m_name;
    Shape m_shape;
};

constexpr ShapeCase SHAPES[] = {
    {"shape/today", Shape::TODAY},
    {"shape/field less", Shape::FIELD_LESS},
    {"shape/field more", Shape::FIELD_MORE},
    {"shape/other order", Shape::OTHER_ORDER},
    {"shape/other number", Shape::OTHER_NUMBER},
    {"shape/number too large", Shape::NUMBER_TOO_LARGE},
    {"shape/number as text", Shape::NUMBER_AS_TEXT},
    {"shape/text as group", Shape::TEXT_AS_GROUP},
};

class GoldenFiles : public SampleTest {
protected:
    /// What this version writes.
    static GoldenPack makePack(const std::string& p_format) {
        GoldenPack pack;
        for (const StoredSample& sample : test::makeGoldenSamples()) {
            pack.emplace_back(sample.m_name, save(sample.make().get(), p_format));
        }
        for (const ShapeCase& shape : SHAPES) {
            pack.emplace_back(shape.m_name, save(makeShape(shape.m_shape).get(), p_format));
        }
        return pack;
    }
    static Ref<IObject> makeShape(Shape p_shape) { return Ref<IObject>::adopt(new ShapedObject(p_shape)); }
    static Ref<IObject> loadGolden(const std::string& p_bytes, const std::string& p_format) {
        return load(p_bytes, p_format, ZYR_TEST_DATA "/objects");
    }
    static std::string makeTrees() {
        std::string text = "{\n";
        for (const StoredSample& sample : test::makeGoldenSamples()) {
            text += "\"" + sample.m_name + "\": [" + test::dumpTree(sample.m_make().get()) + "],\n";
        }
        for (const ShapeCase& shape : SHAPES) {
            text +=
                "\"" + std::string(shape.m_name) + "\": [" + test::dumpTree(makeShape(shape.m_shape).get()) + "],\n";
        }
        return text.substr(0, text.size() - 2) + "\n}\n";
    }
    static std::string read(const std::string& p_name) {
        return TemporaryDirectory::readFile(ZYR_TEST_DATA "/objects/" + p_name);
    }
};

TEST_F(GoldenFiles, AreWrittenToTheSameBytes) {
    for (const char* format : c_formats) {
        SCOPED_TRACE(format);
        const GoldenPack golden = test::readGoldenPack(format);
        std::map<std::string, std::string> written;
        for (const auto& [name, bytes] : makePack(format)) {
            written[name] = bytes;
        }
        ASSERT_GT(golden.size(), 200u);
        for (const auto& [name, bytes] : golden) {
            EXPECT_TRUE(written[name] == bytes) << name << "\n" << written[name] << "\n" << bytes;
        }
    }
}

TEST_F(GoldenFiles, AreReadAndWrittenBackToTheSameBytes) {
    for (const char* format : c_formats) {
        SCOPED_TRACE(format);
        for (const auto& [name, bytes] : test::readGoldenPack(format)) {
            if (name.rfind("shape/", 0) != 0) {
                const Ref<IObject> object = loadGolden(bytes, format);
                ASSERT_TRUE(object) << name;
                EXPECT_TRUE(save(object.get(), format) == bytes) << name;
            }
        }
    }
}

TEST_F(GoldenFiles, HoldTheTreesThatOtherReadersCompareWith) {
    EXPECT_TRUE(makeTrees() == read("trees.json"));
}

TEST_F(GoldenFiles, HoldEveryClassAndRecord) {
    std::set<std::string> names;
    for (const auto& entry : test::readGoldenPack("json")) {
        names.insert(entry.first);
    }
    for (const StoredSample& sample : test::makeGoldenSamples()) {
        EXPECT_EQ(names.count(sample.m_name), 1u)
            << sample.m_name << " has no golden file: tests/data/README.md tells how to write it";
    }
}

/// Files of other versions: what is missing keeps its own value, what is unknown is skipped, any order will do.
class GoldenShapes : public GoldenFiles {
protected:
    /// Calls the function with the object of the shape in each format; null where it can't be loaded.
    template <typename Check> static void forEachFormat(const std::string& p_shape, Check p_check) {
        for (const char* format : c_formats) {
            SCOPED_TRACE(format);
            size_t found = 0;
            for (const auto& [name, bytes] : test::readGoldenPack(format)) {
                if (name == "shape/" + p_shape) {
                    found++;
                    const LogCapture capture;
                    const Ref<IObject> object = loadGolden(bytes, format);
                    std::vector<std::string> messages;
                    for (const CapturedLine& line : capture.getLines()) {
                        messages.push_back(line.message);
                    }
                    p_check(static_cast<const ShapedObject*>(object.get()), messages);
                }
            }
            EXPECT_EQ(found, 1u);
        }
    }
    static void expectWhole(const ShapedObject* p_object, const std::vector<std::string>& p_messages) {
        ASSERT_NE(p_object, nullptr);
        EXPECT_TRUE(p_messages.empty());
        EXPECT_EQ(p_object->m_count, 7);
        EXPECT_EQ(p_object->m_width, 8.0f);
        EXPECT_EQ(p_object->m_name, "nine");
        EXPECT_EQ(p_object->m_x, 10);
        ASSERT_EQ(p_object->m_parts.getSize(), 2u);
        EXPECT_EQ(p_object->m_parts[1], "q");
    }
    static void expectRefused(const ShapedObject* p_object, const std::vector<std::string>& p_messages) {
        EXPECT_EQ(p_object, nullptr);
        EXPECT_THAT(p_messages, testing::ElementsAre("The object cannot be deserialized from data: bad data format"));
    }
};

TEST_F(GoldenShapes, OfTodayAreWhole) {
    forEachFormat("today", &expectWhole);
}

TEST_F(GoldenShapes, WithAFieldLessKeepTheReadersOwnValue) {
    forEachFormat("field less", [](const ShapedObject* p_object, const std::vector<std::string>& p_messages) {
        ASSERT_NE(p_object, nullptr);
        EXPECT_TRUE(p_messages.empty());
        EXPECT_EQ(p_object->m_name, "no name");
        EXPECT_EQ(p_object->m_x, -1);
        EXPECT_EQ(p_object->m_count, 7);
        EXPECT_EQ(p_object->m_parts.getSize(), 2u);
    });
}

TEST_F(GoldenShapes, WithFieldsMoreAreReadWithoutThem) {
    forEachFormat("field more", &expectWhole);
}

TEST_F(GoldenShapes, InAnotherOrderAreWhole) {
    forEachFormat("other order", &expectWhole);
}

TEST_F(GoldenShapes, WithNumbersOfAnotherTypeThatHoldsThemAreWhole) {
    forEachFormat("other number", &expectWhole);
}

TEST_F(GoldenShapes, WithANumberThatDoesNotFitAreRefused) {
    forEachFormat("number too large", &expectRefused);
}

TEST_F(GoldenShapes, WithATextForANumberAreRefused) {
    forEachFormat("number as text", &expectRefused);
}

TEST_F(GoldenShapes, WithAGroupForATextAreRefused) {
    forEachFormat("text as group", &expectRefused);
}

/// Not a test: writes the golden files of this version into the directory that ZYR_WRITE_GOLDEN names.
TEST_F(GoldenFiles, WriteThemselvesWhereAskedFor) {
    const char* directory = getenv("ZYR_WRITE_GOLDEN");
    if (directory == nullptr) {
        return;
    }
    for (const char* format : c_formats) {
        std::ofstream(std::string(directory) + "/golden." + format + ".pack", std::ios::binary)
            << test::joinPack(makePack(format));
    }
    std::ofstream(std::string(directory) + "/trees.json", std::ios::binary) << makeTrees();
}

} // namespace
} // namespace zyr
