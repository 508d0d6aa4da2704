#include "core_module/serializers/zyr_binary_deserializer_level.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_SERIALIZER_CLASS(ZbfDeserializer, IDeserializer, "9bbc6720-68c6-407b-9fce-aac0da444d1f")

using ZbfDeserializer = Implementation<BinaryDeserializerLevel<IZbfDeserializer, ZbfHeads>>;

ZYR_DEFINE_CORE_CLASS(ZbfDeserializer)

} // namespace zyr
