#include "core_module/serializers/zyr_text_serializer_level.h"
#include "core_module/serializers/zyr_xml_output.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_SERIALIZER_CLASS(XmlSerializer, ISerializer, "f190e221-b56e-4ee2-b395-53a7167a2265")

using XmlSerializer = Implementation<TextSerializerLevel<IXmlSerializer, XmlOutput>>;

ZYR_DEFINE_CORE_CLASS(XmlSerializer)

} // namespace zyr
