#include "core_module/resources/resources_test.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/variable/zyr_variable_reference.h"

namespace zyr {
namespace {

using testing::ElementsAre;

class ResourceTest : public ResourcesTest {
protected:
    static Ref<IResource> makeFilled() {
        Ref<IResource> resource = makeResource("name", 7);
        resource->setLabel("label");
        resource->setGroupName("group");
        resource->setGroupLabel("label of the group");
        resource->setReadme("two\nlines & \"more\"");
        resource->setContentDigest(guid(9));
        resource->setDirtyContent(1);
        refer(resource.get(), "small", 2);
        refer(resource.get(), "large", 3);
        return resource;
    }
    static void expectFilled(const IResource* p_resource) {
        EXPECT_EQ(p_resource->getGUID(), guid(7));
        EXPECT_EQ(p_resource->getName(), "name");
        EXPECT_EQ(p_resource->getLabel(), "label");
        EXPECT_EQ(p_resource->getGroupName(), "group");
        EXPECT_EQ(p_resource->getGroupLabel(), "label of the group");
        EXPECT_EQ(p_resource->getReadme(), "two\nlines & \"more\"");
        EXPECT_EQ(p_resource->getContentDigest(), guid(9));
        EXPECT_TRUE(p_resource->isContentDirty());
        const HashMap<String, ResourceID>& thumbnails = *p_resource->getThumbnailResourceIDs();
        ASSERT_EQ(thumbnails.getSize(), 2U);
        EXPECT_EQ(thumbnails.beginConst()->m_first, "small");
        EXPECT_EQ(thumbnails.beginConst()->m_second, ResourceID(guid(2), 3));
        EXPECT_EQ(thumbnails.findConst("large")->m_second, ResourceID(guid(3), 3));
    }
};

TEST_F(ResourceTest, StartsEmptyAndWithoutAGUID) {
    const auto resource = make<IResource>();
    EXPECT_TRUE(resource->getGUID().isNull());
    EXPECT_EQ(resource->getName(), "");
    EXPECT_EQ(resource->getReadme(), "");
    EXPECT_TRUE(resource->getContentDigest().isNull());
    EXPECT_FALSE(resource->isContentDirty());
    EXPECT_TRUE(resource->getThumbnailResourceIDs()->isEmpty());
}

TEST_F(ResourceTest, ComesBackFromEachFormatWithItsGUID) {
    const auto resource = makeFilled();
    for (const char* format : c_formats) {
        SCOPED_TRACE(format);
        expectFilled(saveAndLoad<IResource>(resource.get(), format).get());
    }
}

TEST_F(ResourceTest, IsClonedWithAllItsValuesAndThumbnailsOfItsOwn) {
    const auto resource = makeFilled();
    const auto clone = Ref<IObject>::adopt(resource->clone());
    resource->getMutableThumbnailResourceIDs()->clear();
    expectFilled(static_cast<IResource*>(clone.get()));
}

TEST_F(ResourceTest, IsClearedToTheStart) {
    const auto resource = makeFilled();
    resource->clear();
    EXPECT_TRUE(resource->getGUID().isNull());
    EXPECT_EQ(resource->getLabel(), "");
    EXPECT_TRUE(resource->getContentDigest().isNull());
    EXPECT_FALSE(resource->isContentDirty());
    EXPECT_TRUE(resource->getThumbnailResourceIDs()->isEmpty());
}

TEST_F(ResourceTest, GivesItsFieldsByTheirPaths) {
    const auto resource = makeFilled();
    for (const char* path : {"name", "label", "groupName", "groupLabel", "readme", "contentDigest", "contentDirty"}) {
        VariableReference* reference = resource->getVariableReferenceByPath(path);
        EXPECT_NE(reference, nullptr) << path;
        if (reference != nullptr) {
            reference->release();
        }
    }
    EXPECT_EQ(resource->getVariableReferenceByPath("thumbnails"), nullptr);
}

TEST_F(ResourceTest, RefersToItsThumbnailsInAnyCategory) {
    const auto resource = makeFilled();
    resource->getMutableThumbnailResourceIDs()->pushBack("none", ResourceID(), nullptr);
    refer(resource.get(), "the small one again", 2);
    EXPECT_THAT(collectReferences(resource.get(), 0), ElementsAre(":2", ":3"));
}

TEST_F(ResourceTest, CountsOnlyItsOwnGUIDAmongItsGUIDs) {
    EXPECT_THAT(collectGUIDs(makeFilled().get(), 1), ElementsAre(guid(7)));
}

TEST_F(ResourceTest, ReplacesItsGUIDAndThoseOfItsThumbnails) {
    const auto resource = makeFilled();
    resource->setDirtyContent(0);
    HashMap<GUID_t, GUID_t> replacements;
    replacements.pushBack(guid(7), guid(17), nullptr);
    replacements.pushBack(guid(3), guid(13), nullptr);
    resource->replaceGUIDsWhereAvailable(0, replacements);
    EXPECT_EQ(resource->getGUID(), guid(17));
    EXPECT_THAT(collectReferences(resource.get(), 0), ElementsAre(":2", ":13"));
    EXPECT_TRUE(resource->isContentDirty());
}

TEST_F(ResourceTest, StaysCleanWhereItsGUIDAloneIsReplaced) {
    const auto resource = makeResource("name", 7);
    setGUID(resource.get(), guid(17));
    EXPECT_FALSE(resource->isContentDirty());
}

/// A class of the host that extends resources.
class HostResource : public ObjectClass<HostResource, WResource> {
public:
    static constexpr const char* c_className = "HostResource";
    static constexpr const char* c_classGUIDText = "70000000-0000-4000-8000-000000000011";
    HostResource() { initObjectInterface(); }
    void init_This() {}
    void release_This() {}
    void copy_This(const HostResource*) {}
};

TEST_F(ResourceTest, StandsBehindClassesOfTheHost) {
    zyr_addObjectAllocator<HostResource>();
    const auto resource = Ref<IResource>::adopt(new HostResource);
    resource->setName("mine");
    const auto category = makeCategory("all", {resource.get()});
    const auto loaded = saveAndLoad<IResourcesCategory>(category.get(), "json");
    const auto* inside = loaded->getResourceByName(0, "mine");
    ASSERT_NE(inside, nullptr);
    EXPECT_EQ(inside->getClassName(), "HostResource");
    EXPECT_EQ(inside->getGUID(), resource->getGUID());
}

} // namespace
} // namespace zyr
