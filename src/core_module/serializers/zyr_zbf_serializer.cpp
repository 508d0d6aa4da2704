#include "core_module/serializers/zyr_binary_serializer_level.h"
#include "core_module/serializers/zyr_zbf_output.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_SERIALIZER_CLASS(ZbfSerializer, ISerializer, "36ae76e6-576f-4db7-bd4b-6cade3e23326")

namespace {

class ZbfSerializerLevel : public BinarySerializerLevel<IZbfSerializer, ZbfOutput> {
public:
    bool_t hasHeaderSection() const override { return 1; }
};

} // namespace

using ZbfSerializer = Implementation<ZbfSerializerLevel>;

ZYR_DEFINE_CORE_CLASS(ZbfSerializer)

} // namespace zyr
