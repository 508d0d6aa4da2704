#include "core_module/serializers/zyr_json_output.h"
#include "core_module/serializers/zyr_text_serializer_level.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_SERIALIZER_CLASS(JsonSerializer, ISerializer, "210419e3-059a-4daf-acc3-a0d967c63ca4")

using JsonSerializer = Implementation<TextSerializerLevel<IJsonSerializer, JsonOutput>>;

ZYR_DEFINE_CORE_CLASS(JsonSerializer)

} // namespace zyr
