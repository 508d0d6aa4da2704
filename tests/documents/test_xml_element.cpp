#include "support/binary_layout.h"
#include "zyr_common/documents/zyr_xml_element.h"

#include <gtest/gtest.h>

namespace zyr {

static XmlElement* addChild(XmlElement& p_parent, const char* p_key) {
    XmlElement* child = new XmlElement;
    p_parent.pushBack(p_key, child);
    child->release();
    return child;
}

TEST(XmlElement, IsEmptyAtFirst) {
    XmlElement element;
    EXPECT_EQ(element.getNodes(), nullptr);
    EXPECT_EQ(element.getName().getData(), nullptr);
    EXPECT_EQ(element.getContent().getData(), nullptr);
    EXPECT_EQ(element.isProcessingInstruction(), 0);
    EXPECT_EQ(element.getEndTag(), 0);
    EXPECT_EQ(element.getItems(), nullptr);
}

TEST(XmlElement, HasNoItemsWithoutAChildOfThatName) {
    XmlElement element;
    addChild(element, "items");
    EXPECT_EQ(element.getItems(), nullptr);
    EXPECT_EQ(element.getItems(), nullptr);
}

TEST(XmlElement, LooksForItemsAgainUntilThereAreSome) {
    XmlElement element;
    EXPECT_EQ(element.getItems(), nullptr);
    XmlElement* item = addChild(element, "item");
    ASSERT_NE(element.getItems(), nullptr);
    EXPECT_EQ((*element.getItems())[0], item);
}

TEST(XmlElement, GivesTheSameItemsWhichLaterOnesJoin) {
    XmlElement element;
    addChild(element, "item");
    auto* items = element.getItems();
    EXPECT_EQ(readAt<void*>(&element, 148), items);
    addChild(element, "other");
    XmlElement* second = addChild(element, "item");
    EXPECT_EQ(element.getItems(), items);
    ASSERT_EQ(items->getSize(), 2u);
    EXPECT_EQ((*items)[1], second);
}

TEST(XmlElement, ForgetsItsItemsWithItsChildren) {
    XmlElement element;
    addChild(element, "item");
    ASSERT_NE(element.getItems(), nullptr);
    element.clearNodes();
    EXPECT_EQ(element.getItems(), nullptr);
    addChild(element, "item");
    ASSERT_NE(element.getItems(), nullptr);
    element.clear();
    EXPECT_EQ(element.getItems(), nullptr);
}

TEST(XmlElement, LooksForTheItemsOfACopyInTheCopy) {
    XmlElement source;
    XmlElement* item = addChild(source, "item");
    source.getItems();
    XmlElement copy(source);
    ASSERT_NE(copy.getItems(), nullptr);
    EXPECT_NE((*copy.getItems())[0], item);
    (*copy.getItems())[0]->release();
}

TEST(XmlElement, BecomesACopyOfItsChild) {
    XmlElement element;
    XmlElement* child = new XmlElement;
    child->setContent("content");
    element.pushBack("child", child);
    child->release();
    element = *child;
    EXPECT_EQ(element.getContent(), "content");
    EXPECT_EQ(element.getNodes(), nullptr);
}

TEST(XmlElement, ClearsEveryField) {
    XmlElement element;
    element.setName("name");
    element.setContent("content");
    element.setEndTag(1);
    element.setProcessingInstruction(1);
    element.getMutableAttributes().pushBack("key", "value", nullptr);
    addChild(element, "item");
    element.clear();
    EXPECT_EQ(element.getNodes(), nullptr);
    EXPECT_EQ(element.getName().getData(), nullptr);
    EXPECT_EQ(element.getContent().getData(), nullptr);
    EXPECT_EQ(element.getEndTag(), 0);
    EXPECT_EQ(element.isProcessingInstruction(), 0);
    EXPECT_TRUE(element.getAttributes().isEmpty());
}

TEST(XmlElement, CopiesItsFields) {
    XmlElement source;
    source.setName("name");
    source.setContent("content");
    source.setEndTag(1);
    source.setProcessingInstruction(1);
    HashMap<WrappedString, WrappedString> attributes;
    attributes.pushBack("key", "value", nullptr);
    source.setAttributes(attributes);
    XmlElement copy;
    copy = source;
    EXPECT_EQ(copy.getName(), "name");
    EXPECT_EQ(copy.getContent(), "content");
    EXPECT_EQ(copy.getEndTag(), 1);
    EXPECT_EQ(copy.isProcessingInstruction(), 1);
    EXPECT_EQ(copy.getAttributes().begin()->m_second, "value");
}

TEST(XmlElement, HasItsOperationsAndFieldsInTheirPlaces) {
    EXPECT_EQ(getSlot(&XmlElement::getName), 15u);
    EXPECT_EQ(getSlot(&XmlElement::setName), 16u);
    EXPECT_EQ(getSlot(&XmlElement::getAttributes), 17u);
    EXPECT_EQ(getSlot(&XmlElement::setAttributes), 18u);
    EXPECT_EQ(getSlot(&XmlElement::getMutableAttributes), 19u);
    EXPECT_EQ(getSlot(&XmlElement::getContent), 20u);
    EXPECT_EQ(getSlot(&XmlElement::setContent), 21u);
    EXPECT_EQ(getSlot(&XmlElement::isProcessingInstruction), 22u);
    EXPECT_EQ(getSlot(&XmlElement::setProcessingInstruction), 23u);
    EXPECT_EQ(getSlot(&XmlElement::getEndTag), 24u);
    EXPECT_EQ(getSlot(&XmlElement::setEndTag), 25u);
    EXPECT_EQ(getSlot(&XmlElement::getItems), 26u);
    XmlElement element;
    element.setName("name");
    element.setContent("content");
    element.setProcessingInstruction(2);
    element.setEndTag(1);
    EXPECT_EQ(readAt<const char*>(&element, 40), element.getName().getData());
    EXPECT_EQ(readAt<const char*>(&element, 130), element.getContent().getData());
    EXPECT_EQ(readAt<uint8_t>(&element, 146), 2);
    EXPECT_EQ(readAt<uint8_t>(&element, 147), 1);
}

} // namespace zyr
