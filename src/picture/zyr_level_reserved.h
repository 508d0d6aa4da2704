/// Reserved objects of the interfaces whose levels are not stored: access to one level of an implementation for the
/// classes that extend its facade.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// The level of a class without copy semantics.
class ILifeCycleReserved {
public:
    virtual ~ILifeCycleReserved() = default;
    /// Sets the members of this level to their defaults.
    virtual void init_This() = 0;
    /// Frees what this level owns.
    virtual void release_This() = 0;
};

/// The level of a class that is copied, yet not stored.
class ICopyReserved {
public:
    virtual ~ICopyReserved() = default;
    /// Sets the members of this level to their defaults.
    virtual void init_This() = 0;
    /// Frees what this level owns.
    virtual void release_This() = 0;
    /// Copies the members of this level and of those below it.
    virtual void copy_Backwards(const IObject* p_src) = 0;
};

} // namespace zyr
