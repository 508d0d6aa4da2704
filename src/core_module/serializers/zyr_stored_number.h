/// Numbers that were stored as one kind and are read as another.
#pragma once

#include "core_module/serializers/zyr_binary_reader.h"

namespace zyr {

/// Reads a number of the stored kind. One that the type of p_value can't hold exactly is refused, with a line; then
/// p_value stays as it is.
template <typename T> bool readStoredNumber(BinaryReader& p_reader, const String& p_name, FieldKind p_kind, T& p_value);

/// Says that a field can't be read because of the kind in which it is stored.
void reportOtherKind(const String& p_name, FieldKind p_kind);

} // namespace zyr
