/// A reader: the input that parsers and binary readers share.
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// A reader has no input at first.
class IReader : public IObject {
public:
    virtual Array<unsigned char>* getInputData() const = 0;
    /// Begins anew at the first byte, and what was read before is gone. The reader takes a reference on the array and
    /// gives it back with the next one, so that the bytes live as long as the views into them; an array that is not on
    /// the heap must outlive the reader. The bytes must not change meanwhile. Null means no input.
    virtual void setInputData(Array<unsigned char>* p_data) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getReaderReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Reader, IObject, "7c5cbec9-7209-409f-8852-a77c58391f84")

/// Forwards each operation to the Reader of its module; what extends that class derives from this.
template <class Interface> class ReaderFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    Array<unsigned char>* getInputData() const override { return m_interfaceObject->getInputData(); }
    void setInputData(Array<unsigned char>* p_data) override { m_interfaceObject->setInputData(p_data); }
    ILevelReserved* getReaderReserved() const override { return m_interfaceObject->getReaderReserved(); }
};

using WReader = ReaderFacade<IReader>;

} // namespace zyr
