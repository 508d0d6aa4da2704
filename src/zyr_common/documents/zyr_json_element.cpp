#include "zyr_common/documents/zyr_json_element.h"

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

JsonElement::JsonElement(const JsonElement& p_src) : Base(p_src) {
    init_This();
    copy_This(p_src);
}

JsonElement& JsonElement::operator=(const JsonElement& p_src) {
    if (this != &p_src) {
        // The source may stand below this node.
        const auto source = Ref<JsonElement>::share(const_cast<JsonElement*>(&p_src));
        clear();
        Base::copy_This(p_src);
        copy_This(p_src);
    }
    return *this;
}

void JsonElement::clear() {
    release_This();
    Base::clear();
    init_This();
}

void JsonElement::setAttributes(const Attributes& p_attributes) {
    m_attributes = p_attributes;
}

void JsonElement::insertItem(JsonElement* p_item) {
    ZYR_ASSERT(p_item != NULL);
    p_item->addRef();
    m_items.pushBack(p_item);
    p_item->setParent(this);
}

void JsonElement::init_This() {
    m_name = WrappedString();
    if (!m_attributes.isEmpty()) {
        m_attributes.clear();
    }
    m_content = WrappedString();
    m_endTag = 0;
}

void JsonElement::release_This() {
    if (m_items.getData() == nullptr) {
        return;
    }
    for (JsonElement* p_item : m_items) {
        ZYR_ASSERT(p_item != NULL);
        p_item->release();
    }
    m_items.clear();
}

void JsonElement::copy_This(const JsonElement& p_src) {
    m_name = p_src.m_name;
    m_attributes = p_src.m_attributes;
    m_content = p_src.m_content;
    m_endTag = p_src.m_endTag;
    m_items = p_src.m_items;
    for (JsonElement* item : m_items) {
        item->addRef();
    }
}

} // namespace zyr
