/// The last line of the source of each class of the core module.
#pragma once

#include "zyr_common/zyr_types.h"

/// Defines make<Class>(), which creates an object of the class. The list of classes (zyr_core_classes.inl) names it.
#define ZYR_DEFINE_CORE_CLASS(Class)                                                                                   \
    IObject* make##Class();                                                                                            \
    IObject* make##Class() {                                                                                           \
        return new Class;                                                                                              \
    }

/// The same for the class of one key: an instance of the function template make<Class>(), of which a family's source
/// has one for each key.
#define ZYR_DEFINE_CORE_CLASS_FOR(Class, Key) template IObject* make##Class<Key>();
