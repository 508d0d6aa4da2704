#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/application/zyr_format_registries.h"

#include "support/zyr_logged_application.h"
#include "support/zyr_stdout_capture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace zyr;
using testing::ElementsAre;

// Allocators that end the process, so that no whole serializer is needed to see which class was asked for.
#define ZYR_ALLOCATOR(name)                                                                                            \
    {                                                                                                                  \
#name, [] () -> IObject* {                                                                                        \
         fprintf(stderr, #name "\n");                                                                                  \
         _exit(0);                                                                                                     \
     }    \
    }

struct NamedAllocator {
    const char* name;
    objectAllocator_FUNC allocator;
};

static const NamedAllocator ALLOCATORS[] = {ZYR_ALLOCATOR(RawSerializer),   ZYR_ALLOCATOR(ZbfSerializer),
                                            ZYR_ALLOCATOR(XmlSerializer),   ZYR_ALLOCATOR(JsonSerializer),
                                            ZYR_ALLOCATOR(RawDeserializer), ZYR_ALLOCATOR(ZbfDeserializer),
                                            ZYR_ALLOCATOR(XmlDeserializer), ZYR_ALLOCATOR(JsonDeserializer)};

TEST(SerializerLookupDeathTest, EachWordHasItsClasses) {
    LoggedApplication application;
    for (const NamedAllocator& allocator : ALLOCATORS) {
        application->m_objectAllocatorsByName.pushBack(allocator.name, allocator.allocator, nullptr);
    }
    struct {
        const char* word;
        const char* prefix;
    } const words[] = {{"raw", "Raw"}, {"zbf", "Zbf"}, {"xml", "Xml"}, {"json", "Json"}};
    for (const auto& word : words) {
        String format = String("format-") + word.word;
        zyr_addSerializerFileFormat(format, word.word);
        EXPECT_EXIT(zyr_getSerializerFromFileFormat(format), testing::ExitedWithCode(0),
                    std::string("^") + word.prefix + "Serializer\n");
        EXPECT_EXIT(zyr_getDeserializerFromFileFormat(format), testing::ExitedWithCode(0),
                    std::string("^") + word.prefix + "Deserializer\n");
    }
}

TEST(SerializerLookup, UnknownFormatIsLogged) {
    LoggedApplication application;
    EXPECT_EQ(zyr_getSerializerFromFileFormat("xyz"), nullptr);
    EXPECT_EQ(zyr_getDeserializerFromFileFormat("xyz"), nullptr);
    EXPECT_THAT(application.getMessages(), ElementsAre("Serializer not found for file format: xyz",
                                                       "Deserializer not found for file format: xyz"));
    EXPECT_TRUE(application->m_formatLock.tryWriteLock());
    application->m_formatLock.unlock();
}

TEST(SerializerLookup, WordsAreNotKnownByThemselves) {
    LoggedApplication application;
    EXPECT_EQ(zyr_getSerializerFromFileFormat("raw"), nullptr);
    EXPECT_THAT(application.getMessages(), ElementsAre("Serializer not found for file format: raw"));
}

TEST(SerializerLookup, UnknownWordIsLogged) {
    LoggedApplication application;
    zyr_addSerializerFileFormat("f", "yaml");
    EXPECT_EQ(zyr_getSerializerFromFileFormat("f"), nullptr);
    EXPECT_EQ(zyr_getDeserializerFromFileFormat("f"), nullptr);
    EXPECT_THAT(application.getMessages(), ElementsAre("Unable to find serializer (yaml) for format: f",
                                                       "Unable to find deserializer (yaml) for format: f"));
    EXPECT_TRUE(application->m_formatLock.tryWriteLock());
    application->m_formatLock.unlock();
}

TEST(SerializerLookup, ClassThatNobodyRegisteredGivesNullInSilence) {
    LoggedApplication application;
    zyr_addSerializerFileFormat("f", "json");
    EXPECT_EQ(zyr_getSerializerFromFileFormat("f"), nullptr);
    EXPECT_EQ(zyr_getDeserializerFromFileFormat("f"), nullptr);
    EXPECT_TRUE(application.getFileNames().empty());
    EXPECT_TRUE(application->m_formatLock.tryWriteLock());
    application->m_formatLock.unlock();
}

TEST(SerializerLookup, IsLoggedWithoutApplicationData) {
    EXPECT_EQ(captureStdout([] {
                  EXPECT_EQ(zyr_getSerializerFromFileFormat("f"), nullptr);
                  EXPECT_EQ(zyr_getDeserializerFromFileFormat("f"), nullptr);
              }),
              "WARN : Application data is NULL, cannot get serializer from file format: f\n"
              "WARN : Application data is NULL, cannot get deserializer from file format: f\n");
}
