#include "core_module/serializers/zyr_text_deserializer_level.h"
#include "core_module/serializers/zyr_xml_input.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_SERIALIZER_CLASS(XmlDeserializer, IDeserializer, "df88f176-3172-4c19-a076-bb68185fcd57")

using XmlDeserializer = Implementation<TextDeserializerLevel<IXmlDeserializer, XmlInput>>;

ZYR_DEFINE_CORE_CLASS(XmlDeserializer)

} // namespace zyr
