/// The root of every value class that has a virtual table.
#pragma once

#include "zyr_common/zyr_threading.h"

namespace zyr {

#pragma pack(push, 1)

/// Counts holders beyond the creator. A fresh object has a count of 0, and release() deletes the object when it finds
/// 0: one that was never addRef'd dies at its first release(), one that was addRef'd once needs two.
///
/// Only addRef() and release() are safe on any thread. The order of the virtual operations and of the fields is a
/// contract between separately built modules.
class RefCountedData {
public:
    RefCountedData() : m_refCounter(PooledCounterCell()) {}
    /// A copy is a new object: it starts with a count of its own.
    RefCountedData(const RefCountedData&) : RefCountedData() {}
    RefCountedData& operator=(const RefCountedData&) { return *this; }
    virtual ~RefCountedData() {}

    /// A new object that the caller owns. The root class gives a plain RefCountedData.
    virtual RefCountedData* clone() const;
    /// Adds a holder; gives this object.
    virtual RefCountedData* addRef();
    /// Takes a holder away; deletes the object when there was none beyond the creator.
    virtual void release();

protected:
    Atomic<unsigned int> m_refCounter;
};

#pragma pack(pop)

static_assert(sizeof(RefCountedData) == 24 && alignof(RefCountedData) == 1);

} // namespace zyr
