/// Writers: the output that text writers and binary writers share.
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// A new writer has an empty array of its own.
class IWriter : public IObject {
public:
    /// What was written so far. With the flag set the caller gets a reference.
    virtual Array<unsigned char>* getOutputData(bool_t p_addReference) const = 0;
    /// From now on output goes behind what the array holds. The writer takes a reference on it and gives it back with
    /// the next one; an array that is not on the heap must outlive the writer. Null gives the writer a new one of its
    /// own. Anything begun and not ended is forgotten.
    virtual void setOutputData(Array<unsigned char>* p_data) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getWriterReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Writer, IObject, "52c7a77f-3216-4791-a30d-d9a4fcbaf321")

/// Forwards each operation to the Writer of its module; what extends that class derives from this.
template <class Interface> class WriterFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    Array<unsigned char>* getOutputData(bool_t p_addReference) const override {
        return m_interfaceObject->getOutputData(p_addReference);
    }
    void setOutputData(Array<unsigned char>* p_data) override { m_interfaceObject->setOutputData(p_data); }
    ILevelReserved* getWriterReserved() const override { return m_interfaceObject->getWriterReserved(); }
};

using WWriter = WriterFacade<IWriter>;

} // namespace zyr
