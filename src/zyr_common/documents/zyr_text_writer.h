/// The level that the writers of texts share.
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/documents/zyr_writer.h"

namespace zyr {

/// It adds nothing to a writer but its name.
class ITextWriter : public IWriter {
public:
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getTextWriterReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(TextWriter, IWriter, "bc72ff46-c67a-4d43-b40d-c129ebbe3bc3")

/// Forwards each operation to the TextWriter of its module; what extends that class derives from this.
template <class Interface> class TextWriterFacade : public WriterFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    ILevelReserved* getTextWriterReserved() const override { return m_interfaceObject->getTextWriterReserved(); }
};

using WTextWriter = TextWriterFacade<ITextWriter>;

} // namespace zyr
