#include "core_module/resources/resources_test.h"

namespace zyr {
namespace {

using testing::ElementsAre;

class DynamicResourceTest : public ResourcesTest {};

TEST_F(DynamicResourceTest, StartsEmpty) {
    const auto resource = make<IDynamicResource>();
    EXPECT_TRUE(resource->getResourceGUID().isNull());
    EXPECT_FALSE(resource->isReadOnly());
    EXPECT_TRUE(resource->getPackedData()->isEmpty());
    EXPECT_EQ(resource->getUnpackedResource(0), nullptr);
}

TEST_F(DynamicResourceTest, ComesBackFromEachFormatWithItsBytes) {
    const auto resource = make<IDynamicResource>();
    resource->setName("bytes");
    resource->setResourceGUID(guid(4));
    resource->setReadOnly(1);
    resource->setPackedData(bytes(std::string("any\0bytes\xff", 10)));
    for (const char* format : c_formats) {
        SCOPED_TRACE(format);
        const auto loaded = saveAndLoad<IDynamicResource>(resource.get(), format);
        EXPECT_EQ(loaded->getName(), "bytes");
        EXPECT_EQ(loaded->getResourceGUID(), guid(4));
        EXPECT_TRUE(loaded->isReadOnly());
        ASSERT_EQ(loaded->getPackedData()->getSize(), 10U);
        EXPECT_EQ(memcmp(loaded->getPackedData()->getData(), "any\0bytes\xff", 10), 0);
    }
}

TEST_F(DynamicResourceTest, TakesOverTheGUIDOfWhatItHolds) {
    const auto content = makeResource("content", 5);
    const auto holder = make<IDynamicResource>();
    holder->setUnpackedResource(content.get());
    EXPECT_EQ(holder->getResourceGUID(), guid(5));
    EXPECT_EQ(holder->getGUID(), guid(5));
    EXPECT_TRUE(holder->isContentDirty());
    EXPECT_EQ(content->getRefCount(), 1U);
}

TEST_F(DynamicResourceTest, KeepsAGUIDOfItsOwn) {
    const auto content = makeResource("content", 5);
    const auto holder = make<IDynamicResource>();
    setGUID(holder.get(), guid(6));
    holder->setUnpackedResource(content.get());
    EXPECT_EQ(holder->getGUID(), guid(6));
    EXPECT_EQ(holder->getResourceGUID(), guid(5));
}

TEST_F(DynamicResourceTest, GivesItsUnpackedResourceWithAReferenceWhereAsked) {
    const auto content = makeResource("content", 5);
    const auto holder = make<IDynamicResource>();
    holder->setUnpackedResource(content.get());
    EXPECT_EQ(holder->getUnpackedResource(0), content.get());
    EXPECT_EQ(content->getRefCount(), 1U);
    const auto reference = Ref<IResource>::adopt(holder->getUnpackedResource(1));
    EXPECT_EQ(content->getRefCount(), 2U);
}

TEST_F(DynamicResourceTest, PacksAndUnpacksWhatItHolds) {
    const auto content = makeResource("content", 5);
    const auto holder = make<IDynamicResource>();
    holder->setUnpackedResource(content.get());
    ASSERT_TRUE(holder->packResourceToPackedData());
    EXPECT_FALSE(holder->isContentDirty());
    GUID_t digest;
    zyr_generateGUIDFromXXHash128(digest, holder->getPackedData()->getData(), holder->getPackedData()->getSize());
    EXPECT_EQ(holder->getContentDigest(), digest);

    content->setName("changed since");
    holder->setUnpackedResource(nullptr);
    EXPECT_EQ(holder->getUnpackedResource(0), nullptr);
    ASSERT_TRUE(holder->unpackResourceFromPackedData());
    EXPECT_EQ(holder->getUnpackedResource(0)->getName(), "content");
    EXPECT_EQ(holder->getUnpackedResource(0)->getGUID(), guid(5));
    EXPECT_FALSE(holder->isContentDirty());
}

TEST_F(DynamicResourceTest, PacksToBytesThatAreASavedObject) {
    const auto holder = makePacked(makeResource("content", 5).get());
    const auto loaded = Ref<IObject>::adopt(zyr_loadFromData(*holder->getPackedData(), "zbf", ""));
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->getClassName(), "Resource");
}

TEST_F(DynamicResourceTest, PacksNothingWithoutAResource) {
    const auto holder = make<IDynamicResource>();
    holder->setName("empty");
    EXPECT_FALSE(holder->packResourceToPackedData());
    EXPECT_EQ(lastLine(), "Unable to pack resource empty: it has no unpacked resource");
}

TEST_F(DynamicResourceTest, PacksNothingWhereItIsReadOnly) {
    const auto holder = makePacked(makeResource("content", 5).get());
    const size_t size = holder->getPackedData()->getSize();
    holder->setUnpackedResource(makeResource("a much longer name than before", 5).get());
    holder->setReadOnly(1);
    EXPECT_FALSE(holder->packResourceToPackedData());
    EXPECT_EQ(lastLine(), "Unable to pack resource holder: it is read-only");
    EXPECT_EQ(holder->getPackedData()->getSize(), size);
    EXPECT_TRUE(holder->isContentDirty());
}

TEST_F(DynamicResourceTest, RefusesToUnpackOtherBytesAndKeepsWhatItHas) {
    const auto content = makeResource("content", 5);
    const auto holder = make<IDynamicResource>();
    holder->setName("other");
    holder->setUnpackedResource(content.get());
    holder->setPackedData(bytes("no saved object, although it is long enough for one"));
    EXPECT_FALSE(holder->unpackResourceFromPackedData());
    EXPECT_EQ(lastLine(), "Unable to unpack resource other: its data are no resource");
    EXPECT_EQ(holder->getUnpackedResource(0), content.get());
}

TEST_F(DynamicResourceTest, RefusesToUnpackObjectsOfAnotherKind) {
    const auto holder = make<IDynamicResource>();
    holder->setName("other");
    holder->setPackedData(save(make<IResourcesPack>().get(), "zbf"));
    EXPECT_FALSE(holder->unpackResourceFromPackedData());
    EXPECT_EQ(lastLine(), "Unable to unpack resource other: its data are no resource");
}

TEST_F(DynamicResourceTest, RefusesToUnpackAResourceWithAnotherGUID) {
    const auto holder = makePacked(makeResource("content", 5).get());
    holder->setResourceGUID(guid(6));
    EXPECT_FALSE(holder->unpackResourceFromPackedData());
    EXPECT_EQ(lastLine(),
              "Unable to unpack resource holder: its data are the resource 01000000-0000-0000-0000-000000000005");
    EXPECT_EQ(holder->getUnpackedResource(0), nullptr);
}

TEST_F(DynamicResourceTest, RefusesToHoldItself) {
    const auto outer = make<IDynamicResource>();
    const auto inner = make<IDynamicResource>();
    inner->setName("inner");
    outer->setUnpackedResource(inner.get());
    inner->setUnpackedResource(outer.get());
    EXPECT_EQ(lastLine(), "Unable to set the unpacked resource of inner: it contains this resource");
    EXPECT_EQ(inner->getUnpackedResource(0), nullptr);
    inner->setUnpackedResource(inner.get());
    EXPECT_EQ(inner->getUnpackedResource(0), nullptr);
}

TEST_F(DynamicResourceTest, IsPackedBySavingWhereItIsDirty) {
    const auto content = makeResource("content", 5);
    const auto holder = make<IDynamicResource>();
    holder->setUnpackedResource(content.get());
    for (const char* format : c_formats) {
        SCOPED_TRACE(format);
        content->setName(format);
        holder->setDirtyContent(1);
        const auto loaded = saveAndLoad<IDynamicResource>(holder.get(), format);
        EXPECT_FALSE(loaded->isContentDirty());
        EXPECT_EQ(loaded->getUnpackedResource(0), nullptr);
        ASSERT_TRUE(loaded->unpackResourceFromPackedData());
        EXPECT_EQ(loaded->getUnpackedResource(0)->getName(), format);
        EXPECT_EQ(loaded->getContentDigest(), holder->getContentDigest());
    }
}

TEST_F(DynamicResourceTest, IsSavedAsItIsWhereItIsReadOnly) {
    const auto holder = makePacked(makeResource("content", 5).get());
    const auto changed = makeResource("changed", 5);
    holder->setUnpackedResource(changed.get());
    holder->setReadOnly(1);
    const auto loaded = saveAndLoad<IDynamicResource>(holder.get(), "zbf");
    EXPECT_TRUE(loaded->isContentDirty());
    ASSERT_TRUE(loaded->unpackResourceFromPackedData());
    EXPECT_EQ(loaded->getUnpackedResource(0)->getName(), "content");
}

TEST_F(DynamicResourceTest, IsClonedWithAResourceOfItsOwn) {
    const auto content = makeResource("content", 5);
    const auto holder = make<IDynamicResource>();
    holder->setUnpackedResource(content.get());
    const auto object = Ref<IObject>::adopt(holder->clone());
    const auto* clone = static_cast<const IDynamicResource*>(object.get());
    ASSERT_NE(clone->getUnpackedResource(0), nullptr);
    EXPECT_NE(clone->getUnpackedResource(0), content.get());
    EXPECT_EQ(clone->getUnpackedResource(0)->getName(), "content");
    EXPECT_TRUE(clone->isContentDirty());
}

TEST_F(DynamicResourceTest, CopiesTheResourceThatItAloneHolds) {
    const auto holder = make<IDynamicResource>();
    {
        const auto inner = make<IDynamicResource>();
        inner->setName("a name that is too long for the place that texts have for short ones");
        inner->setPackedData(bytes("content"));
        holder->setUnpackedResource(inner.get());
    }
    EXPECT_TRUE(holder->copy(holder->getUnpackedResource(0)));
    EXPECT_EQ(holder->getName(), "a name that is too long for the place that texts have for short ones");
    EXPECT_EQ(holder->getPackedData()->getSize(), 7U);
    EXPECT_EQ(holder->getUnpackedResource(0), nullptr);
}

TEST_F(DynamicResourceTest, IsClearedToTheStart) {
    const auto content = makeResource("content", 5);
    const auto holder = makePacked(content.get());
    holder->setUnpackedResource(content.get());
    holder->clear();
    EXPECT_TRUE(holder->getPackedData()->isEmpty());
    EXPECT_EQ(holder->getUnpackedResource(0), nullptr);
    EXPECT_EQ(content->getRefCount(), 0U);
}

TEST_F(DynamicResourceTest, WalkersEnterPackedContentWithTheFlagAlone) {
    const auto content = makeResource("content", 5);
    refer(content.get(), "small", 2);
    const auto holder = makePacked(content.get());
    EXPECT_THAT(collectReferences(holder.get(), 0), ElementsAre());
    EXPECT_THAT(collectReferences(holder.get(), 1), ElementsAre(":2"));
    EXPECT_THAT(collectGUIDs(holder.get(), 0), ElementsAre(guid(5)));
    EXPECT_THAT(collectGUIDs(holder.get(), 1), ElementsAre(guid(5), guid(5)));
    EXPECT_EQ(holder->getUnpackedResource(0), nullptr);
}

TEST_F(DynamicResourceTest, ReplacesGUIDsInsidePackedContent) {
    const auto content = makeResource("content", 5);
    refer(content.get(), "small", 2);
    const auto holder = makePacked(content.get());
    HashMap<GUID_t, GUID_t> replacements;
    replacements.pushBack(guid(5), guid(15), nullptr);
    replacements.pushBack(guid(2), guid(12), nullptr);
    holder->replaceGUIDsWhereAvailable(1, replacements);
    EXPECT_EQ(holder->getGUID(), guid(15));
    EXPECT_EQ(holder->getResourceGUID(), guid(15));
    const auto loaded = saveAndLoad<IDynamicResource>(holder.get(), "raw");
    ASSERT_TRUE(loaded->unpackResourceFromPackedData());
    EXPECT_EQ(loaded->getUnpackedResource(0)->getGUID(), guid(15));
    EXPECT_THAT(collectReferences(loaded.get(), 1), ElementsAre(":12"));
}

TEST_F(DynamicResourceTest, WalkersTakeAwayCountUpAndRenewTheGUIDsOfPackedContent) {
    const Ref<IResource> resource = makeResource("content", 5);
    const auto holder = makePacked(resource.get());
    const auto contentGUID = [&] { return holder->getUnpackedResource(0)->getGUID(); };
    holder->replaceGUIDsWithFakeCounterGUIDs(0);
    EXPECT_EQ(holder->getUnpackedResource(0), nullptr);
    EXPECT_EQ(holder->getResourceGUID(), guid(5));
    holder->replaceGUIDsWithFakeCounterGUIDs(1);
    ASSERT_NE(holder->getUnpackedResource(0), nullptr);
    const GUID_t counted = contentGUID();
    EXPECT_NE(counted, guid(5));
    EXPECT_EQ(holder->getResourceGUID(), counted);
    EXPECT_TRUE(holder->isContentDirty());
    holder->regenerateGUIDsWhereAvailable(1);
    EXPECT_NE(contentGUID(), counted);
    EXPECT_EQ(holder->getResourceGUID(), contentGUID());
    holder->clearGUID(1);
    EXPECT_EQ(contentGUID(), GUID_t());
    EXPECT_EQ(holder->getGUID(), GUID_t());
    EXPECT_EQ(holder->getResourceGUID(), GUID_t());
}

TEST_F(DynamicResourceTest, WalkersPassOtherBytesWithoutALine) {
    const auto holder = make<IDynamicResource>();
    holder->setPackedData(bytes("these bytes are the contents of some file and no object"));
    const size_t numOfLines = m_application->getMessages().size();
    EXPECT_THAT(collectReferences(holder.get(), 1), ElementsAre());
    EXPECT_EQ(m_application->getMessages().size(), numOfLines);
}

TEST_F(DynamicResourceTest, WalkersEnterSixtyFourResourcesInsideEachOther) {
    Ref<IResource> resource = makeResource("content", 5);
    refer(resource.get(), "small", 2);
    for (int i = 0; i < 64; i++) {
        resource = makePacked(resource.get());
    }
    EXPECT_THAT(collectReferences(resource.get(), 1), ElementsAre(":2"));
    resource = makePacked(resource.get());
    EXPECT_THAT(collectReferences(resource.get(), 1), ElementsAre());
    EXPECT_EQ(lastLine(), "Unable to enter a resource: 64 are packed inside each other");
}

} // namespace
} // namespace zyr
