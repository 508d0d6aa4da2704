/// The parser of configuration texts.
///
///     # Comments begin with "#" or ";", behind a value too when a blank stands in front.
///     directory = /var/log/host
///     [network]
///     port = 8080
///     title = "a \"quoted\" text # without a comment\n"
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/documents/zyr_config_section.h"
#include "zyr_common/documents/zyr_text_parser.h"

namespace zyr {

/// A name is what stands in front of the first "=", a value what stands behind it, both without the blanks around them.
/// A value between double quotes keeps its blanks and knows the escapes `\\ \" \n \r` and `\t`. A value that is not
/// quoted and reads as a number (decimal, with or without sign, point and exponent, or hexadecimal behind 0x) is marked
/// as numeric. A section that is begun twice goes on where it was, and a name may occur more than once in it.
///
/// All faulty lines are reported, up to ten; then there are no sections.
class IConfigParser : public ITextParser {
public:
    /// In the order in which they began; pairs in front of the first header stand in a section without a name. The
    /// sections own their texts, and the parser holds a reference on each section.
    virtual const List<ConfigSection*>& getSections() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getConfigParserReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(ConfigParser, ITextParser, "96d91241-8576-4309-859d-fb16d83ce89e")

/// Forwards each operation to the ConfigParser of its module; what extends that class derives from this.
template <class Interface> class ConfigParserFacade : public TextParserFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    const List<ConfigSection*>& getSections() const override { return m_interfaceObject->getSections(); }
    ILevelReserved* getConfigParserReserved() const override { return m_interfaceObject->getConfigParserReserved(); }
};

using WConfigParser = ConfigParserFacade<IConfigParser>;

} // namespace zyr
