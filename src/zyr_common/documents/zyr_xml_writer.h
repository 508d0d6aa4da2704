/// The writer of XML texts.
///
///     writer->beginTag("xml", 1);                      // <?xml
///     writer->addProperty("version", "1.0");           //  version="1.0"
///     writer->endTag(1);                               // ?>
///     writer->beginTag("size", 0);                     // <size
///     writer->addNumberContent("12", 0);               // >12
///     writer->endTag(0);                               // </size>
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/documents/zyr_text_writer.h"

namespace zyr {

/// The output is indented by two blanks a level; an element with text stands on one line, and one without anything is
/// closed in its own tag. Texts are escaped; characters that XML can't hold and bytes that are no UTF-8 become U+FFFD.
/// What doesn't fit where it stands (a name that is none, a property behind content or a name used twice, the end of
/// what was not begun, a second root) writes nothing, leaves a line in the log and gives false.
class IXmlWriter : public ITextWriter {
public:
    /// Begins an element, or a processing instruction with the flag set.
    virtual bool_t beginTag(const String& p_name, bool_t p_processingInstruction) = 0;
    /// Adds an attribute to the element or processing instruction that was begun last.
    virtual bool_t addProperty(const String& p_name, const String& p_value) = 0;
    /// Adds the text of a number. With the flag set a blank stands in front where there is content already, as in
    /// lists.
    virtual bool_t addNumberContent(const String& p_number, bool_t p_separate) = 0;
    /// Adds a text: escaped, or as a CDATA section with the flag set. The last argument, where not null, takes the
    /// place of each line end in the text.
    virtual bool_t addStringContent(const String& p_text, bool_t p_cdata, const char* p_lineEnd) = 0;
    /// Appends characters to the content as they are: comments, or blanks of the caller's own layout.
    virtual bool_t addSpecialCharacters(const String& p_characters) = 0;
    /// Ends what was begun last, which must be a processing instruction when the flag is set and an element when not.
    virtual bool_t endTag(bool_t p_processingInstruction) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getXmlWriterReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(XmlWriter, ITextWriter, "c7e1ca38-44ea-47a1-bb65-16cc2dc59905")

/// Forwards each operation to the XmlWriter of its module; what extends that class derives from this.
template <class Interface> class XmlWriterFacade : public TextWriterFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t beginTag(const String& p_name, bool_t p_processingInstruction) override {
        return m_interfaceObject->beginTag(p_name, p_processingInstruction);
    }
    bool_t addProperty(const String& p_name, const String& p_value) override {
        return m_interfaceObject->addProperty(p_name, p_value);
    }
    bool_t addNumberContent(const String& p_number, bool_t p_separate) override {
        return m_interfaceObject->addNumberContent(p_number, p_separate);
    }
    bool_t addStringContent(const String& p_text, bool_t p_cdata, const char* p_lineEnd) override {
        return m_interfaceObject->addStringContent(p_text, p_cdata, p_lineEnd);
    }
    bool_t addSpecialCharacters(const String& p_characters) override {
        return m_interfaceObject->addSpecialCharacters(p_characters);
    }
    bool_t endTag(bool_t p_processingInstruction) override {
        return m_interfaceObject->endTag(p_processingInstruction);
    }
    ILevelReserved* getXmlWriterReserved() const override { return m_interfaceObject->getXmlWriterReserved(); }
};

using WXmlWriter = XmlWriterFacade<IXmlWriter>;

} // namespace zyr
