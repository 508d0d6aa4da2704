#include "core_module/serializers/zyr_json_input.h"
#include "core_module/serializers/zyr_text_deserializer_level.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_SERIALIZER_CLASS(JsonDeserializer, IDeserializer, "c89bd7ea-a6fc-4e79-a687-501e952fe44c")

using JsonDeserializer = Implementation<TextDeserializerLevel<IJsonDeserializer, JsonInput>>;

ZYR_DEFINE_CORE_CLASS(JsonDeserializer)

} // namespace zyr
