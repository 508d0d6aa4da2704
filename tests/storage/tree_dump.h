/// What an object stores, as JSON for readers of other makes to compare with.
///
/// An object is {"class", "guid", "fields"}; fields are [name, kind, value] in their order. Kinds are those of the
/// binary formats by name. Reals are the digits of their bits, texts that are not UTF-8 {"bytes": digits}, enumerations
/// [number, word], words of other numbers likewise; null elements and objects are null.
#pragma once

#include "zyr_common/object/zyr_object.h"

#include <string>

namespace zyr::test {

/// The object as one line. Stand-ins show themselves.
std::string dumpTree(IObject* p_object);

} // namespace zyr::test
