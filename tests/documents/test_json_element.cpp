#include "support/binary_layout.h"
#include "support/log/zyr_log_recorder.h"
#include "zyr_common/documents/zyr_json_element.h"

#include <gmock/gmock.h>
#include <string>

namespace zyr {

static uint32_t getCount(const void* p_counted) {
    return *readAt<uint32_t*>(p_counted, 8);
}

/// Counts the living ones.
class CountedJsonElement : public JsonElement {
public:
    CountedJsonElement() { s_living++; }
    ~CountedJsonElement() override { s_living--; }

    static inline int s_living = 0;
};

TEST(JsonElement, IsEmptyAtFirst) {
    JsonElement element;
    EXPECT_EQ(element.getNodes(), nullptr);
    EXPECT_EQ(element.getName().getData(), nullptr);
    EXPECT_EQ(element.getName().getSize(), 0u);
    EXPECT_EQ(element.getContent().getData(), nullptr);
    EXPECT_EQ(element.getContent().getSize(), 0u);
    EXPECT_EQ(element.getNumOfItems(), 0u);
    EXPECT_EQ(element.getEndTag(), 0);
    EXPECT_TRUE(element.getAttributes().isEmpty());
    EXPECT_EQ(element.getParent(), nullptr);
}

TEST(JsonElement, TakesAReferenceOnAnItemAndBecomesItsParent) {
    JsonElement element;
    JsonElement* item = new JsonElement;
    element.insertItem(item);
    EXPECT_EQ(element.getNumOfItems(), 1u);
    EXPECT_EQ(element.getItem(0), item);
    EXPECT_EQ(item->getParent(), &element);
    EXPECT_EQ(getCount(item), 1u);
    item->release();
}

TEST(JsonElement, KeepsTheReferenceOnAnItemThatAFixedArrayCannotStore) {
    JsonElement element;
    JsonElement* item = new JsonElement;
    Array<JsonElement*>& items = *reinterpret_cast<Array<JsonElement*>*>(reinterpret_cast<char*>(&element) + 147);
    JsonElement* place[1] = {};
    items.bindFixedSizeData(place, 0);
    element.insertItem(item);
    EXPECT_EQ(element.getNumOfItems(), 0u);
    EXPECT_EQ(item->getParent(), &element);
    EXPECT_EQ(getCount(item), 1u);
    item->release();
    item->release();
}

TEST(JsonElement, GivesUpAFixedArrayOfItemsWhenCleared) {
    JsonElement element;
    Array<JsonElement*>& items = *reinterpret_cast<Array<JsonElement*>*>(reinterpret_cast<char*>(&element) + 147);
    JsonElement* place[1] = {};
    items.bindFixedSizeData(place, 0);
    element.clear();
    JsonElement* item = new JsonElement;
    element.insertItem(item);
    item->release();
    EXPECT_EQ(element.getNumOfItems(), 1u);
}

TEST(JsonElement, BecomesACopyOfItsItem) {
    JsonElement element;
    JsonElement* item = new JsonElement;
    item->setContent("content");
    element.insertItem(item);
    item->release();
    element = *element.getItem(0);
    EXPECT_EQ(element.getContent(), "content");
    EXPECT_EQ(element.getNumOfItems(), 0u);
}

TEST(JsonElement, EndsTheProcessForANullItem) {
    JsonElement element;
    EXPECT_EXIT(element.insertItem(nullptr), testing::ExitedWithCode(0),
                testing::HasSubstr(test::assertionLine("virtual void zyr::JsonElement::insertItem(zyr::JsonElement*)",
                                                       "p_item != NULL")));
}

TEST(JsonElement, ReleasesItemsAndChildren) {
    {
        JsonElement element;
        for (int i = 0; i < 2; i++) {
            CountedJsonElement* item = new CountedJsonElement;
            element.insertItem(item);
            item->release();
        }
        CountedJsonElement* child = new CountedJsonElement;
        element.pushBack("child", child);
        child->release();
        EXPECT_EQ(CountedJsonElement::s_living, 3);
        EXPECT_EQ(element.findElement("child"), child);
        EXPECT_EQ(element.findElement("other"), nullptr);
    }
    EXPECT_EQ(CountedJsonElement::s_living, 0);
}

TEST(JsonElement, ClearsEveryField) {
    JsonElement element;
    CountedJsonElement* item = new CountedJsonElement;
    element.insertItem(item);
    item->release();
    CountedJsonElement* child = new CountedJsonElement;
    element.pushBack("child", child);
    child->release();
    element.setName("name");
    element.setContent("content");
    element.setEndTag(1);
    element.getMutableAttributes().pushBack("key", "value", nullptr);
    element.clear();
    EXPECT_EQ(CountedJsonElement::s_living, 0);
    EXPECT_EQ(element.getNodes(), nullptr);
    EXPECT_EQ(element.getNumOfItems(), 0u);
    EXPECT_EQ(element.getName().getData(), nullptr);
    EXPECT_EQ(element.getContent().getData(), nullptr);
    EXPECT_EQ(element.getEndTag(), 0);
    EXPECT_TRUE(element.getAttributes().isEmpty());
}

TEST(JsonElement, ReplacesItsAttributesByViewsOnTheSameTexts) {
    const std::string texts = "b1a2";
    HashMap<WrappedString, WrappedString> attributes;
    attributes.pushBack(WrappedString(texts.data(), 1), WrappedString(texts.data() + 1, 1), nullptr);
    attributes.pushBack(WrappedString(texts.data() + 2, 1), WrappedString(texts.data() + 3, 1), nullptr);
    JsonElement element;
    element.getMutableAttributes().pushBack("old", "0", nullptr);
    element.setAttributes(attributes);
    ASSERT_EQ(element.getAttributes().getSize(), 2u);
    auto entry = element.getAttributes().begin();
    EXPECT_EQ(entry->m_first.getData(), texts.data());
    EXPECT_EQ(entry->m_second.getData(), texts.data() + 1);
    ++entry;
    EXPECT_EQ(entry->m_first.getData(), texts.data() + 2);
}

TEST(JsonElement, SharesItemsWithItsCopies) {
    JsonElement source;
    JsonElement* item = new JsonElement;
    source.insertItem(item);
    item->release();
    source.setName("name");
    JsonElement copy(source);
    JsonElement assigned;
    assigned = source;
    JsonElement& same = assigned;
    assigned = same;
    EXPECT_EQ(copy.getItem(0), item);
    EXPECT_EQ(assigned.getItem(0), item);
    EXPECT_EQ(getCount(item), 2u);
    EXPECT_EQ(assigned.getName(), "name");
}

TEST(JsonElement, HasItsOperationsAndFieldsInTheirPlaces) {
    EXPECT_EQ(getSlot(&JsonElement::getName), 14u);
    EXPECT_EQ(getSlot(&JsonElement::getAttributes), 15u);
    EXPECT_EQ(getSlot(&JsonElement::getMutableAttributes), 16u);
    EXPECT_EQ(getSlot(&JsonElement::getContent), 17u);
    EXPECT_EQ(getSlot(&JsonElement::getEndTag), 18u);
    EXPECT_EQ(getSlot(&JsonElement::getNumOfItems), 19u);
    EXPECT_EQ(getSlot(&JsonElement::getItem), 20u);
    EXPECT_EQ(getSlot(&JsonElement::setName), 21u);
    EXPECT_EQ(getSlot(&JsonElement::setAttributes), 22u);
    EXPECT_EQ(getSlot(&JsonElement::setContent), 23u);
    EXPECT_EQ(getSlot(&JsonElement::setEndTag), 24u);
    EXPECT_EQ(getSlot(&JsonElement::insertItem), 25u);
    JsonElement element;
    element.setName("name");
    element.setContent("content");
    element.setEndTag(1);
    EXPECT_EQ(readAt<const char*>(&element, 40), element.getName().getData());
    EXPECT_EQ(reinterpret_cast<const char*>(&element.getAttributes()) - reinterpret_cast<const char*>(&element), 56);
    EXPECT_EQ(readAt<const char*>(&element, 130), element.getContent().getData());
    EXPECT_EQ(readAt<uint8_t>(&element, 146), 1);
}

} // namespace zyr
