#include "core_module/resources/resources_test.h"
#include "zyr_common/object/zyr_object_class.h"

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class ResourcesPackTest : public ResourcesTest {
protected:
    static Ref<IResourcesPack> makePack(std::initializer_list<IResourcesCategory*> p_categories) {
        Ref<IResourcesPack> pack = make<IResourcesPack>();
        for (IResourcesCategory* category : p_categories) {
            EXPECT_TRUE(pack->insertCategory(category));
        }
        return pack;
    }
    static std::vector<std::string> namesOf(const IResourcesPack* p_pack) {
        std::vector<std::string> names;
        const IHashMapOfObjects<String>* categories = p_pack->getCategories();
        for (auto it = categories->beginConst(); it != categories->endConst(); ++it) {
            names.push_back(it->m_first.getData());
        }
        return names;
    }
    static GUIDDigestPair digestOf(const IResourcesPack* p_pack, uint8_t p_guid) {
        const auto entry = p_pack->getGUIDToDigestMap()->findConst(guid(p_guid));
        return entry != p_pack->getGUIDToDigestMap()->endConst() ? entry->m_second : GUIDDigestPair();
    }
};

TEST_F(ResourcesPackTest, FindsCategoriesByNameInTheOrderOfInsertion) {
    const auto images = makeCategory("images", {});
    const auto fonts = makeCategory("fonts", {});
    const auto pack = makePack({images.get(), fonts.get()});
    EXPECT_EQ(pack->getCategory(0, "fonts"), fonts.get());
    EXPECT_EQ(pack->getCategory(0, "sounds"), nullptr);
    EXPECT_THAT(namesOf(pack.get()), ElementsAre("images", "fonts"));
    EXPECT_EQ(fonts->getRefCount(), 1U);
    const auto reference = Ref<IResourcesCategory>::adopt(pack->getCategory(1, "fonts"));
    EXPECT_EQ(fonts->getRefCount(), 2U);
    const auto map = Ref<IHashMapOfObjects<String>>::adopt(pack->getMutableCategories(1));
    EXPECT_EQ(map.get(), pack->getMutableCategories(0));
    EXPECT_EQ(map->getRefCount(), 1U);
}

TEST_F(ResourcesPackTest, RefusesNullAndNamesThatAreTaken) {
    const auto images = makeCategory("images", {});
    const auto pack = makePack({images.get()});
    EXPECT_FALSE(pack->insertCategory(nullptr));
    EXPECT_EQ(lastLine(), "Unable to add a category: it is null");
    EXPECT_FALSE(pack->insertCategory(makeCategory("images", {}).get()));
    EXPECT_EQ(lastLine(), "Unable to add category images: the name is taken");
    EXPECT_EQ(pack->getCategory(0, "images"), images.get());
}

TEST_F(ResourcesPackTest, RemovesCategories) {
    const auto images = makeCategory("images", {});
    const auto pack = makePack({images.get(), makeCategory("fonts", {}).get()});
    EXPECT_TRUE(pack->removeCategory("images"));
    EXPECT_FALSE(pack->removeCategory("images"));
    EXPECT_EQ(images->getRefCount(), 0U);
    EXPECT_THAT(namesOf(pack.get()), ElementsAre("fonts"));
    pack->clearCategories();
    EXPECT_TRUE(pack->getCategories()->isEmpty());
}

TEST_F(ResourcesPackTest, PassesOverObjectsThatAreNoCategories) {
    const auto pack = makePack({makeCategory("images", {makeResource("a", 1).get()}).get()});
    const auto other = make<IResource>();
    pack->getMutableCategories(0)->pushBack("other", other.get(), nullptr);
    pack->getMutableCategories(0)->pushBack("none", nullptr, nullptr);
    EXPECT_EQ(pack->getCategory(0, "other"), nullptr);
    EXPECT_EQ(pack->getCategory(0, "none"), nullptr);
    EXPECT_THAT(collectGUIDs(pack.get(), 1), ElementsAre(guid(1)));
    EXPECT_THAT(namesOf(saveAndLoad<IResourcesPack>(pack.get(), "zbf").get()), ElementsAre("images"));
}

TEST_F(ResourcesPackTest, ComesBackFromEachFormat) {
    const auto pack = makePack({makeCategory("images", {makeResource("a", 1).get(), makeResource("b", 2).get()}).get(),
                                makeCategory("fonts", {makeResource("c", 3).get()}).get()});
    pack->getMutableGUIDToDigestMap()->pushBack(guid(1), GUIDDigestPair("a", guid(1), guid(101)), nullptr);
    pack->getMutableGUIDToDigestMap()->pushBack(guid(9), GUIDDigestPair("gone", guid(8), guid(109)), nullptr);
    for (const char* format : c_formats) {
        SCOPED_TRACE(format);
        const auto loaded = saveAndLoad<IResourcesPack>(pack.get(), format);
        EXPECT_THAT(namesOf(loaded.get()), ElementsAre("images", "fonts"));
        EXPECT_THAT(collectGUIDs(loaded.get(), 1), ElementsAre(guid(1), guid(2), guid(3)));
        EXPECT_EQ(loaded->getGUIDToDigestMap()->getSize(), 2U);
        EXPECT_EQ(digestOf(loaded.get(), 1), GUIDDigestPair("a", guid(1), guid(101)));
        EXPECT_EQ(digestOf(loaded.get(), 9), GUIDDigestPair("gone", guid(8), guid(109)));
    }
}

TEST_F(ResourcesPackTest, IsClonedAndCleared) {
    const auto pack = makePack({makeCategory("images", {makeResource("a", 1).get()}).get()});
    pack->updateResourceContentDigest(guid(1));
    const auto object = Ref<IObject>::adopt(pack->clone());
    const auto* clone = static_cast<const IResourcesPack*>(object.get());
    EXPECT_NE(clone->getCategory(0, "images"), pack->getCategory(0, "images"));
    EXPECT_EQ(digestOf(clone, 1), digestOf(pack.get(), 1));
    pack->clear();
    EXPECT_TRUE(pack->getCategories()->isEmpty());
    EXPECT_TRUE(pack->getGUIDToDigestMap()->isEmpty());
    EXPECT_THAT(collectGUIDs(clone, 1), ElementsAre(guid(1)));
}

TEST_F(ResourcesPackTest, RefusesStoredCategoriesWithEqualNames) {
    const auto pack = makePack({makeCategory("one", {}).get(), makeCategory("two", {}).get()});
    pack->getCategory(0, "two")->setName("one");
    const Array<unsigned char> data = save(pack.get(), "zbf");
    EXPECT_EQ(zyr_loadFromData(data, "zbf", ""), nullptr);
    EXPECT_THAT(m_application->getMessages(), testing::Contains("Unable to add category one: the name is taken"));
}

TEST_F(ResourcesPackTest, ComputesTheDigestOfAResource) {
    const auto resource = makeResource("a", 1);
    const auto pack = makePack({makeCategory("images", {resource.get()}).get()});
    resource->setDirtyContent(1);
    ASSERT_TRUE(pack->updateResourceContentDigest(guid(1)));
    const GUID_t digest = resource->getContentDigest();
    EXPECT_FALSE(digest.isNull());
    EXPECT_FALSE(resource->isContentDirty());
    EXPECT_EQ(digestOf(pack.get(), 1), GUIDDigestPair("a", guid(1), digest));

    ASSERT_TRUE(pack->updateResourceContentDigest(guid(1)));
    EXPECT_EQ(resource->getContentDigest(), digest);
    resource->setReadme("more");
    ASSERT_TRUE(pack->updateResourceContentDigest(guid(1)));
    EXPECT_NE(resource->getContentDigest(), digest);
    EXPECT_EQ(digestOf(pack.get(), 1).m_digest, resource->getContentDigest());
}

TEST_F(ResourcesPackTest, GivesEqualResourcesWithDifferentGUIDsEqualDigests) {
    const auto first = makeResource("a", 1);
    const auto second = makeResource("a", 2);
    second->setContentDigest(guid(77));
    second->setDeferredFile("somewhere.zbf");
    const auto pack = makePack({makeCategory("images", {first.get(), second.get()}).get()});
    ASSERT_TRUE(pack->updateResourceContentDigest(guid(1)));
    ASSERT_TRUE(pack->updateResourceContentDigest(guid(2)));
    EXPECT_EQ(first->getContentDigest(), second->getContentDigest());
    EXPECT_STREQ(second->getDeferredFile()->getData(), "somewhere.zbf");
}

TEST_F(ResourcesPackTest, ComputesTheDigestOfPackedBytes) {
    const auto holder = make<IDynamicResource>();
    setGUID(holder.get(), guid(1));
    holder->setPackedData(bytes("some bytes"));
    const auto pack = makePack({makeCategory("files", {holder.get()}).get()});
    ASSERT_TRUE(pack->updateResourceContentDigest(guid(1)));
    GUID_t digest;
    zyr_generateGUIDFromXXHash128(digest, "some bytes", 10);
    EXPECT_EQ(holder->getContentDigest(), digest);
}

TEST_F(ResourcesPackTest, ComputesNoDigestOfAResourceThatItHasNot) {
    const auto pack = makePack({});
    EXPECT_FALSE(pack->updateResourceContentDigest(guid(1)));
    EXPECT_FALSE(pack->updateResourceContentDigest(GUID_t()));
    EXPECT_TRUE(pack->getGUIDToDigestMap()->isEmpty());
}

class Unfolding : public ResourcesPackTest {
protected:
    /// 1 refers to 2 and 3, 3 to 4 and back to 1; 5 stands alone. 2 and 4 are in the second category, 4 is packed.
    void SetUp() override {
        ResourcesPackTest::SetUp();
        const auto first = makeResource("first", 1);
        refer(first.get(), "a", 2);
        refer(first.get(), "b", 3);
        const auto third = makeResource("third", 3);
        refer(third.get(), "a", 4);
        refer(third.get(), "b", 1);
        const auto fourth = makePacked(makeResource("fourth", 4).get());
        m_pack = makePack({makeCategory("one", {first.get(), third.get(), makeResource("fifth", 5).get()}).get(),
                           makeCategory("two", {makeResource("second", 2).get(), fourth.get()}).get()});
    }
    void TearDown() override { m_pack.clear(); }

    Ref<IResourcesPack> m_pack;
    HashMultiSet<String, GUID_t> m_collected;
    HashMultiSet<String, GUID_t> m_unfolded;
};

TEST_F(Unfolding, FollowsReferencesUntilNothingIsNew) {
    m_collected.add("", guid(1));
    EXPECT_TRUE(m_pack->unfoldCollectedGUIDReferences(m_collected, m_unfolded));
    EXPECT_THAT(textsOf(m_unfolded), UnorderedElementsAre("one:1", "one:3", "two:2", "two:4"));
}

TEST_F(Unfolding, TakesReferencesIntoOneCategory) {
    m_collected.add("two", guid(2));
    EXPECT_TRUE(m_pack->unfoldCollectedGUIDReferences(m_collected, m_unfolded));
    EXPECT_THAT(textsOf(m_unfolded), ElementsAre("two:2"));
    m_collected.add("one", guid(4));
    EXPECT_FALSE(m_pack->unfoldCollectedGUIDReferences(m_collected, m_unfolded));
}

TEST_F(Unfolding, SaysHowManyAreMissingAndAddsTheOthers) {
    m_collected.add("", guid(5));
    m_collected.add("", guid(98));
    m_collected.add("three", guid(99));
    EXPECT_FALSE(m_pack->unfoldCollectedGUIDReferences(m_collected, m_unfolded));
    EXPECT_THAT(textsOf(m_unfolded), ElementsAre("one:5"));
    EXPECT_EQ(lastLine(), "Unable to unfold all references: 2 resources are not in the pack, the first is "
                          "01000000-0000-0000-0000-000000000062");
}

TEST_F(Unfolding, DoesNotFollowWhatIsUnfoldedAlready) {
    m_unfolded.add("one", guid(3));
    m_collected.add("", guid(3));
    EXPECT_TRUE(m_pack->unfoldCollectedGUIDReferences(m_collected, m_unfolded));
    EXPECT_THAT(textsOf(m_unfolded), ElementsAre("one:3"));
}

TEST_F(Unfolding, MayAddToTheCollectedOnes) {
    m_collected.add("", guid(1));
    EXPECT_TRUE(m_pack->unfoldCollectedGUIDReferences(m_collected, m_collected));
    EXPECT_THAT(textsOf(m_collected), UnorderedElementsAre(":1", "one:1", "one:3", "two:2", "two:4"));
}

TEST_F(Unfolding, FindsNothingUnderTheNullGUID) {
    m_pack->getCategory(0, "one")->clearGUID(1);
    m_collected.add("", GUID_t());
    EXPECT_FALSE(m_pack->unfoldCollectedGUIDReferences(m_collected, m_unfolded));
    EXPECT_TRUE(m_unfolded.isEmpty());
}

TEST_F(Unfolding, OfNothingGivesNothing) {
    EXPECT_TRUE(m_pack->unfoldCollectedGUIDReferences(m_collected, m_unfolded));
    EXPECT_TRUE(m_unfolded.isEmpty());
}

/// Has a category of its own.
class LatePack : public WResourcesPack {
public:
    explicit LatePack(IResourcesCategory* p_category) : m_category(Ref<IResourcesCategory>::share(p_category)) {
        initObjectInterface();
    }
    IResourcesCategory* getCategory(bool_t p_addReference, const String& p_name) const override {
        return p_name == m_category->getName() ? m_category.get(p_addReference)
                                               : WResourcesPack::getCategory(p_addReference, p_name);
    }

private:
    Ref<IResourcesCategory> m_category;
};

TEST_F(Unfolding, AsksTheClassThatExtendsThePack) {
    const auto late = makeCategory("late", {makeResource("sixth", 6).get()});
    const auto pack = Ref<IResourcesPack>::adopt(new LatePack(late.get()));
    m_collected.add("late", guid(6));
    EXPECT_TRUE(pack->unfoldCollectedGUIDReferences(m_collected, m_unfolded));
    EXPECT_THAT(textsOf(m_unfolded), ElementsAre("late:6"));
}

class Merging : public ResourcesPackTest {
protected:
    HashMap<GUID_t, GUID_t> m_replacements;
};

TEST_F(Merging, AddsCategoriesAndResourcesAsCopies) {
    const auto pack = makePack({makeCategory("images", {makeResource("a", 1).get()}).get()});
    const auto added = makeResource("b", 2);
    const auto source = makePack(
        {makeCategory("images", {added.get()}).get(), makeCategory("fonts", {makeResource("c", 3).get()}).get()});
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));
    EXPECT_THAT(namesOf(pack.get()), ElementsAre("images", "fonts"));
    EXPECT_THAT(collectGUIDs(pack.get(), 1), ElementsAre(guid(1), guid(2), guid(3)));
    EXPECT_NE(pack->getCategory(0, "images")->getResource(0, guid(2)), added.get());
    EXPECT_TRUE(m_replacements.isEmpty());
    EXPECT_EQ(collectGUIDs(source.get(), 1).size(), 2U);
}

TEST_F(Merging, LeavesOutWhatIsThereWithTheSameContent) {
    const auto resource = makeResource("a", 1);
    const auto pack = makePack({makeCategory("images", {resource.get()}).get()});
    const auto source = makePack({makeCategory("other", {makeResource("a", 1).get()}).get()});
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));
    EXPECT_THAT(collectGUIDs(pack.get(), 1), ElementsAre(guid(1)));
    EXPECT_EQ(pack->getCategory(0, "images")->getResource(0, guid(1)), resource.get());
    EXPECT_TRUE(m_replacements.isEmpty());
}

TEST_F(Merging, GivesAFreshGUIDToOtherContentAndToReferencesOnIt) {
    const auto present = makeResource("present", 1);
    const auto pack = makePack({makeCategory("images", {present.get()}).get()});
    const auto referring = makeResource("referring", 2);
    refer(referring.get(), "small", 1);
    const auto packed = makePacked(referring.get());
    setGUID(packed.get(), guid(3));
    const auto source =
        makePack({makeCategory("images", {makeResource("incoming", 1).get(), referring.get(), packed.get()}).get()});
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));

    ASSERT_EQ(m_replacements.getSize(), 1U);
    const GUID_t fresh = m_replacements.find(guid(1))->m_second;
    IResourcesCategory* images = pack->getCategory(0, "images");
    EXPECT_EQ(images->getResource(0, guid(1)), present.get());
    ASSERT_NE(images->getResource(0, fresh), nullptr);
    EXPECT_EQ(images->getResource(0, fresh)->getName(), "incoming");
    for (uint8_t number : {2, 3}) {
        HashMultiSet<String, GUID_t> references;
        images->getResource(0, guid(number))->collectResourceGUIDReferences(1, references);
        EXPECT_TRUE(references.contains("", fresh));
        EXPECT_FALSE(references.contains("", guid(1)));
    }
}

TEST_F(Merging, SeparatesEqualResourcesThatReferToDifferentOnes) {
    // 3 refers to 2 and 2 to 1: both are equal in both packs, but 1 is not.
    const auto make = [](const char* p_name) {
        const auto second = makeResource("second", 2);
        refer(second.get(), "small", 1);
        const auto third = makeResource("third", 3);
        refer(third.get(), "small", 2);
        return makePack({makeCategory("all", {third.get(), second.get(), makeResource(p_name, 1).get(),
                                              makeResource("fourth", 4).get()})
                             .get()});
    };
    const auto pack = make("present");
    const auto source = make("incoming");
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));
    EXPECT_EQ(m_replacements.getSize(), 3U);
    EXPECT_EQ(m_replacements.count(guid(4)), 0U);
    IResourcesCategory* all = pack->getCategory(0, "all");
    EXPECT_EQ(all->getResources()->getSize(), 7U);
    const IResource* third = all->getResource(0, m_replacements.find(guid(3))->m_second);
    ASSERT_NE(third, nullptr);
    EXPECT_EQ(third->getThumbnailResourceIDs()->beginConst()->m_second.m_guid, m_replacements.find(guid(2))->m_second);
}

TEST_F(Merging, MakesTheReplacementsOfTheCallerToo) {
    const auto pack = makePack({});
    const auto source = makePack({makeCategory("all", {makeResource("a", 1).get()}).get()});
    m_replacements.pushBack(guid(1), guid(21), nullptr);
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));
    EXPECT_THAT(collectGUIDs(pack.get(), 1), ElementsAre(guid(21)));
    EXPECT_EQ(m_replacements.getSize(), 1U);
}

TEST_F(Merging, TwiceWithTheSameReplacementsAddsNothing) {
    const auto pack = makePack({makeCategory("all", {makeResource("present", 1).get()}).get()});
    const auto referring = makeResource("referring", 2);
    refer(referring.get(), "small", 1);
    const auto source = makePack({makeCategory("all", {makeResource("incoming", 1).get(), referring.get()}).get()});
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));
    const std::vector<GUID_t> guids = collectGUIDs(pack.get(), 1);
    const HashMap<GUID_t, GUID_t> replacements = m_replacements;
    const size_t numOfLines = m_application->getMessages().size();
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));
    EXPECT_EQ(collectGUIDs(pack.get(), 1), guids);
    EXPECT_EQ(m_replacements.getSize(), replacements.getSize());
    EXPECT_EQ(m_replacements.find(guid(1))->m_second, replacements.findConst(guid(1))->m_second);
    EXPECT_EQ(m_application->getMessages().size(), numOfLines);
}

TEST_F(Merging, GivesAFreshGUIDWhereTheCallersReplacementIsTaken) {
    const auto pack = makePack({makeCategory("all", {makeResource("present", 21).get()}).get()});
    const auto referring = makeResource("referring", 2);
    refer(referring.get(), "small", 1);
    const auto source = makePack({makeCategory("all", {makeResource("incoming", 1).get(), referring.get()}).get()});
    m_replacements.pushBack(guid(1), guid(21), nullptr);
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));
    const GUID_t fresh = m_replacements.find(guid(1))->m_second;
    EXPECT_EQ(m_replacements.getSize(), 1U);
    EXPECT_THAT(collectGUIDs(pack.get(), 1), ElementsAre(guid(21), fresh, guid(2)));
    const IResourcesCategory* all = pack->getCategory(0, "all");
    EXPECT_EQ(all->getResource(0, fresh)->getName(), "incoming");
    HashMultiSet<String, GUID_t> references;
    all->getResource(0, guid(2))->collectResourceGUIDReferences(1, references);
    EXPECT_TRUE(references.contains("", fresh));
}

TEST_F(Merging, TakesTheDigestsOverUnderTheNewGUIDs) {
    const auto pack = makePack({makeCategory("all", {makeResource("present", 1).get()}).get()});
    const auto source =
        makePack({makeCategory("all", {makeResource("incoming", 1).get(), makeResource("b", 2).get()}).get()});
    ASSERT_TRUE(source->updateResourceContentDigest(guid(1)));
    ASSERT_TRUE(source->updateResourceContentDigest(guid(2)));
    ASSERT_TRUE(pack->updateResourceContentDigest(guid(1)));
    const GUIDDigestPair own = digestOf(pack.get(), 1);
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));
    EXPECT_EQ(digestOf(pack.get(), 1), own);
    EXPECT_EQ(digestOf(pack.get(), 2), digestOf(source.get(), 2));
    const GUID_t fresh = m_replacements.find(guid(1))->m_second;
    const auto entry = pack->getGUIDToDigestMap()->findConst(fresh);
    ASSERT_NE(entry, pack->getGUIDToDigestMap()->endConst());
    EXPECT_EQ(entry->m_second, GUIDDigestPair("incoming", fresh, digestOf(source.get(), 1).m_digest));
}

TEST_F(Merging, OfItselfChangesNothingAndOfNullFails) {
    const auto pack = makePack({makeCategory("all", {makeResource("a", 1).get()}).get()});
    EXPECT_TRUE(pack->mergeResourcesPack(pack.get(), m_replacements));
    EXPECT_EQ(collectGUIDs(pack.get(), 1).size(), 1U);
    EXPECT_FALSE(pack->mergeResourcesPack(nullptr, m_replacements));
    EXPECT_EQ(lastLine(), "Unable to merge a resources pack: it is null");
}

TEST_F(Merging, TwiceAddsNothing) {
    const auto pack = makePack({});
    const auto source = makePack({makeCategory("all", {makeResource("a", 1).get(), makeResource("b", 2).get()}).get()});
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));
    ASSERT_TRUE(pack->mergeResourcesPack(source.get(), m_replacements));
    EXPECT_EQ(collectGUIDs(pack.get(), 1).size(), 2U);
    EXPECT_TRUE(m_replacements.isEmpty());
}

TEST_F(ResourcesPackTest, WalkersKeepTheDigestsWithTheirResources) {
    const auto pack = makePack({makeCategory("all", {makeResource("a", 1).get()}).get()});
    ASSERT_TRUE(pack->updateResourceContentDigest(guid(1)));
    HashMap<GUID_t, GUID_t> replacements;
    replacements.pushBack(guid(1), guid(11), nullptr);
    pack->replaceGUIDsWhereAvailable(0, replacements);
    EXPECT_EQ(digestOf(pack.get(), 1).m_name, "a");
    pack->replaceGUIDsWhereAvailable(1, replacements);
    EXPECT_EQ(digestOf(pack.get(), 1).m_name, "");
    EXPECT_EQ(digestOf(pack.get(), 11).m_guid, guid(11));
    EXPECT_NE(pack->getCategory(0, "all")->getResource(0, guid(11)), nullptr);
    pack->regenerateGUIDsWhereAvailable(1);
    EXPECT_TRUE(pack->getGUIDToDigestMap()->isEmpty());
}

TEST_F(ResourcesPackTest, WalkersReachTheResourcesOfAllCategories) {
    const Ref<IResource> first = makeResource("a", 1);
    const Ref<IResource> second = makeResource("b", 2);
    refer(second.get(), "small", 9);
    const auto pack = makePack({makeCategory("one", {first.get()}).get(), makeCategory("two", {second.get()}).get()});
    EXPECT_THAT(collectReferences(pack.get(), 0), ElementsAre());
    EXPECT_THAT(collectReferences(pack.get(), 1), ElementsAre(":9"));
    ASSERT_TRUE(pack->updateResourceContentDigest(guid(1)));
    HashMap<GUID_t, GUIDDigestPair> digests(*pack->getGUIDToDigestMap());
    pack->replaceGUIDsWithFakeCounterGUIDs(1);
    EXPECT_TRUE(pack->getGUIDToDigestMap()->isEmpty());
    EXPECT_NE(first->getGUID(), guid(1));
    EXPECT_NE(second->getGUID(), guid(2));
    EXPECT_NE(first->getGUID(), second->getGUID());
    pack->setGUIDToDigestMap(digests);
    EXPECT_EQ(pack->getGUIDToDigestMap()->getSize(), 1U);
    pack->clearGUID(0);
    EXPECT_EQ(pack->getGUIDToDigestMap()->getSize(), 1U);
    pack->clearGUID(1);
    EXPECT_TRUE(pack->getGUIDToDigestMap()->isEmpty());
    EXPECT_EQ(first->getGUID(), GUID_t());
}

} // namespace
} // namespace zyr
