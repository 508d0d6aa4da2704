/// Reserved objects of the interfaces whose levels are not stored: access to one level of an implementation for the
/// classes that extend its facade.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// The level of a class without copy semantics.
class ILifeCycleReserved {
public:
    virtual ~ILifeCycleReserved() = default;
    virtual void init_This() = 0;
    virtual void release_This() = 0;
};

/// The level of a class that is copied, yet not stored.
class ICopyReserved {
public:
    virtual ~ICopyReserved() = default;
    virtual void init_This() = 0;
    virtual void release_This() = 0;
    virtual void copy_Backwards(const IObject* p_src) = 0;
};

} // namespace zyr
