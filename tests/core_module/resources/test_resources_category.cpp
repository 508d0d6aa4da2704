#include "core_module/resources/resources_test.h"

namespace zyr {
namespace {

using testing::ElementsAre;

class ResourcesCategoryTest : public ResourcesTest {
protected:
    static std::vector<std::string> namesOf(const IResourcesCategory* p_category) {
        std::vector<std::string> names;
        for (auto it = p_category->getResources()->beginConst(); it != p_category->getResources()->endConst(); ++it) {
            names.push_back(static_cast<IResource*>(*it)->getName().getData());
        }
        return names;
    }
};

TEST_F(ResourcesCategoryTest, FindsResourcesByGUIDAndByName) {
    const auto first = makeResource("a", 1);
    const auto second = makeResource("b", 2);
    const auto category = makeCategory("all", {first.get(), second.get()});
    EXPECT_EQ(category->getResource(0, guid(2)), second.get());
    EXPECT_EQ(category->getResource(0, guid(3)), nullptr);
    EXPECT_EQ(category->getResource(0, GUID_t()), nullptr);
    EXPECT_EQ(category->getResourceByName(0, "a"), first.get());
    EXPECT_EQ(category->getResourceByName(0, "c"), nullptr);
    EXPECT_EQ(first->getRefCount(), 1U);
}

TEST_F(ResourcesCategoryTest, GivesAReferenceWhereAsked) {
    const auto resource = makeResource("a", 1);
    const auto category = makeCategory("all", {resource.get()});
    const auto byGUID = Ref<IResource>::adopt(category->getResource(1, guid(1)));
    const auto byName = Ref<IResource>::adopt(category->getResourceByName(1, "a"));
    EXPECT_EQ(resource->getRefCount(), 3U);
    EXPECT_EQ(category->getResource(1, guid(9)), nullptr);
}

TEST_F(ResourcesCategoryTest, GivesTheFirstOfEqualNamesInTheOrderOfAdding) {
    const auto first = makeResource("a", 2);
    const auto second = makeResource("a", 1);
    const auto category = makeCategory("all", {first.get(), second.get()});
    EXPECT_EQ(category->getResourceByName(0, "a"), first.get());
    EXPECT_THAT(namesOf(category.get()), ElementsAre("a", "a"));
}

TEST_F(ResourcesCategoryTest, GivesAGUIDToAResourceWithoutOne) {
    const auto resource = make<IResource>();
    const auto category = makeCategory("all", {resource.get()});
    EXPECT_FALSE(resource->getGUID().isNull());
    EXPECT_EQ(category->getResource(0, resource->getGUID()), resource.get());
}

TEST_F(ResourcesCategoryTest, RefusesNullAndGUIDsThatItHas) {
    const auto category = makeCategory("all", {makeResource("a", 1).get()});
    EXPECT_FALSE(category->pushBackResource(nullptr));
    EXPECT_EQ(lastLine(), "Unable to add a resource to category all: it is null");
    EXPECT_FALSE(category->pushBackResource(makeResource("b", 1).get()));
    EXPECT_EQ(lastLine(), "Unable to add resource b to category all: 01000000-0000-0000-0000-000000000001 is there "
                          "already");
    EXPECT_THAT(namesOf(category.get()), ElementsAre("a"));
}

TEST_F(ResourcesCategoryTest, RemovesResources) {
    const auto first = makeResource("a", 1);
    const auto second = makeResource("b", 2);
    const auto category = makeCategory("all", {first.get(), second.get()});
    EXPECT_FALSE(category->removeResource(guid(3)));
    EXPECT_TRUE(category->removeResource(guid(1)));
    EXPECT_EQ(first->getRefCount(), 0U);
    EXPECT_EQ(category->getResource(0, guid(1)), nullptr);
    EXPECT_THAT(namesOf(category.get()), ElementsAre("b"));
    category->clearResources();
    EXPECT_EQ(second->getRefCount(), 0U);
    EXPECT_EQ(category->getResource(0, guid(2)), nullptr);
    EXPECT_EQ(category->getName(), "all");
}

TEST_F(ResourcesCategoryTest, ComesBackFromEachFormat) {
    const auto holder = makePacked(makeResource("content", 2).get());
    const auto category = makeCategory("all", {makeResource("a", 1).get(), holder.get()});
    for (const char* format : c_formats) {
        SCOPED_TRACE(format);
        const auto loaded = saveAndLoad<IResourcesCategory>(category.get(), format);
        EXPECT_EQ(loaded->getName(), "all");
        EXPECT_THAT(namesOf(loaded.get()), ElementsAre("a", "holder"));
        ASSERT_NE(loaded->getResource(0, guid(2)), nullptr);
        EXPECT_EQ(loaded->getResource(0, guid(2))->getClassName(), "DynamicResource");
    }
}

TEST_F(ResourcesCategoryTest, ComesBackEmptyFromEachFormat) {
    for (const char* format : c_formats) {
        SCOPED_TRACE(format);
        EXPECT_TRUE(
            saveAndLoad<IResourcesCategory>(make<IResourcesCategory>().get(), format)->getResources()->isEmpty());
    }
}

TEST_F(ResourcesCategoryTest, IsClonedWithResourcesOfItsOwn) {
    const auto resource = makeResource("a", 1);
    const auto category = makeCategory("all", {resource.get()});
    const auto object = Ref<IObject>::adopt(category->clone());
    const auto* clone = static_cast<const IResourcesCategory*>(object.get());
    ASSERT_NE(clone->getResource(0, guid(1)), nullptr);
    EXPECT_NE(clone->getResource(0, guid(1)), resource.get());
    category->clear();
    EXPECT_EQ(category->getName(), "");
    EXPECT_TRUE(category->getResources()->isEmpty());
    EXPECT_THAT(namesOf(clone), ElementsAre("a"));
}

TEST_F(ResourcesCategoryTest, WalkersEnterTheResourcesWithTheFlag) {
    const auto resource = makeResource("a", 1);
    refer(resource.get(), "small", 2);
    const auto category = makeCategory("all", {resource.get()});
    EXPECT_THAT(collectReferences(category.get(), 0), ElementsAre());
    EXPECT_THAT(collectReferences(category.get(), 1), ElementsAre(":2"));
    EXPECT_THAT(collectGUIDs(category.get(), 0), ElementsAre());
    EXPECT_THAT(collectGUIDs(category.get(), 1), ElementsAre(guid(1)));
}

TEST_F(ResourcesCategoryTest, FindsResourcesByTheGUIDsThatItGaveThem) {
    const auto resource = makeResource("a", 1);
    const auto category = makeCategory("all", {resource.get()});
    HashMap<GUID_t, GUID_t> replacements;
    replacements.pushBack(guid(1), guid(11), nullptr);
    category->replaceGUIDsWhereAvailable(0, replacements);
    EXPECT_EQ(category->getResource(0, guid(1)), resource.get());
    category->replaceGUIDsWhereAvailable(1, replacements);
    EXPECT_EQ(category->getResource(0, guid(1)), nullptr);
    EXPECT_EQ(category->getResource(0, guid(11)), resource.get());
    category->regenerateGUIDsWhereAvailable(1);
    EXPECT_EQ(category->getResource(0, resource->getGUID()), resource.get());
    category->replaceGUIDsWithFakeCounterGUIDs(1);
    EXPECT_EQ(category->getResource(0, resource->getGUID()), resource.get());
    category->clearGUID(1);
    EXPECT_TRUE(resource->getGUID().isNull());
    EXPECT_EQ(category->getResource(0, GUID_t()), nullptr);
    EXPECT_EQ(category->getResourceByName(0, "a"), resource.get());
}

TEST_F(ResourcesCategoryTest, RefusesStoredObjectsThatAreNoResources) {
    const auto category = makeCategory("all", {makeResource("a", 1).get()});
    const Array<unsigned char> data = save(category.get(), "json");
    std::string text(reinterpret_cast<const char*>(data.getData()), data.getSize());
    const std::string guidOfResources = String::newFromGUID(zyr_getInterfaceGUID<IResource>()).getData();
    const std::string guidOfCategories = String::newFromGUID(zyr_getInterfaceGUID<IResourcesCategory>()).getData();
    const size_t place = text.find(guidOfResources);
    ASSERT_NE(place, std::string::npos);
    text.replace(place, guidOfResources.size(), guidOfCategories);
    EXPECT_EQ(zyr_loadFromData(bytes(text), "json", ""), nullptr);
    const std::vector<std::string> lines = m_application->getMessages();
    EXPECT_THAT(lines, testing::Contains("Unable to read resources: it has objects of another class"));
}

} // namespace
} // namespace zyr
