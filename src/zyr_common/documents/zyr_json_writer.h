/// The writer of JSON texts.
///
///     writer->beginTag("", 0);                         // {
///     writer->addProperty("name", "a \"b\"", 1, 1);    //   "name": "a \"b\"",
///     writer->beginTag("sizes", 1);                    //   "sizes": [
///     writer->addContent("12", 0);                     //     12
///     writer->endTag(1);                               //   ]
///     writer->endTag(0);                               // }
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/documents/zyr_text_writer.h"

namespace zyr {

/// The output is indented by two blanks a level and ends in a line end behind the root. Texts are escaped by the
/// standard; bytes that are no UTF-8 become U+FFFD. What doesn't fit where it stands (a second root, a property in an
/// array, content in an object, the end of what was not begun, a number that is none) writes nothing, leaves a line in
/// the log and gives false.
class IJsonWriter : public ITextWriter {
public:
    /// Begins an object, or an array with the flag set. The name is left out in arrays and at the root.
    virtual bool_t beginTag(const String& p_name, bool_t p_array) = 0;
    /// Ends what was begun last, which must be an array when the flag is set and an object when not.
    virtual bool_t endTag(bool_t p_array) = 0;
    /// Adds a scalar to an object: a text with the first flag set, otherwise a number, true, false or null as it is.
    /// The second flag tells that name and text are to be escaped; without it they must be fit for JSON as they are.
    virtual bool_t addProperty(const String& p_name, const String& p_value, bool_t p_text, bool_t p_escape) = 0;
    /// Adds a scalar to an array or as the root: a text with the flag set, otherwise a number, true, false or null.
    virtual bool_t addContent(const String& p_value, bool_t p_text) = 0;
    /// Appends characters as they are: blanks or line ends of the caller's own layout.
    virtual bool_t addSpecialCharacters(const String& p_characters) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getJsonWriterReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(JsonWriter, ITextWriter, "b7f3d400-3cb3-48eb-9777-6d725c57b970")

/// Forwards each operation to the JsonWriter of its module; what extends that class derives from this.
template <class Interface> class JsonWriterFacade : public TextWriterFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t beginTag(const String& p_name, bool_t p_array) override {
        return m_interfaceObject->beginTag(p_name, p_array);
    }
    bool_t endTag(bool_t p_array) override { return m_interfaceObject->endTag(p_array); }
    bool_t addProperty(const String& p_name, const String& p_value, bool_t p_text, bool_t p_escape) override {
        return m_interfaceObject->addProperty(p_name, p_value, p_text, p_escape);
    }
    bool_t addContent(const String& p_value, bool_t p_text) override {
        return m_interfaceObject->addContent(p_value, p_text);
    }
    bool_t addSpecialCharacters(const String& p_characters) override {
        return m_interfaceObject->addSpecialCharacters(p_characters);
    }
    ILevelReserved* getJsonWriterReserved() const override { return m_interfaceObject->getJsonWriterReserved(); }
};

using WJsonWriter = JsonWriterFacade<IJsonWriter>;

} // namespace zyr
