#include "zyr_common/documents/zyr_xml_element.h"

#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

XmlElement::XmlElement(const XmlElement& p_src) : Base(p_src) {
    init_This();
    copy_This(p_src);
}

XmlElement& XmlElement::operator=(const XmlElement& p_src) {
    if (this != &p_src) {
        // The source may stand below this node.
        const auto source = Ref<XmlElement>::share(const_cast<XmlElement*>(&p_src));
        clear();
        Base::copy_This(p_src);
        copy_This(p_src);
    }
    return *this;
}

void XmlElement::clear() {
    release_This();
    Base::clear();
    init_This();
}

void XmlElement::clearNodes() {
    m_cachedItems = nullptr;
    Base::clearNodes();
}

void XmlElement::setAttributes(const Attributes& p_attributes) {
    m_attributes = p_attributes;
}

Array<XmlElement::Base*>* XmlElement::getItems() {
    static const String& item = makePermanent<String>("item");
    if (m_cachedItems == nullptr) {
        m_cachedItems = findVectorOfNodes(item.getWrapped());
    }
    return m_cachedItems;
}

void XmlElement::init_This() {
    m_name = WrappedString();
    if (!m_attributes.isEmpty()) {
        m_attributes.clear();
    }
    m_content = WrappedString();
    m_processingInstruction = 0;
    m_endTag = 0;
    m_cachedItems = nullptr;
}

/// The found items are those of the source and stay there.
void XmlElement::copy_This(const XmlElement& p_src) {
    m_name = p_src.m_name;
    m_attributes = p_src.m_attributes;
    m_content = p_src.m_content;
    m_processingInstruction = p_src.m_processingInstruction;
    m_endTag = p_src.m_endTag;
}

} // namespace zyr
