#include "core_module/serializers/zyr_binary_deserializer_level.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_SERIALIZER_CLASS(RawDeserializer, IDeserializer, "10d8b6e4-0cca-41a4-aaff-bc47672c5099")

using RawDeserializer = Implementation<BinaryDeserializerLevel<IRawDeserializer, RawHeads>>;

ZYR_DEFINE_CORE_CLASS(RawDeserializer)

} // namespace zyr
