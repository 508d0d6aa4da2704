#include "core_module/serializers/zyr_binary_serializer_level.h"
#include "core_module/serializers/zyr_raw_output.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_SERIALIZER_CLASS(RawSerializer, ISerializer, "872b4234-574f-4afd-9eb5-bf9dc2eb9c92")

namespace {

/// Fields carry their names, so nothing is declared beforehand.
class RawSerializerLevel : public BinarySerializerLevel<IRawSerializer, RawOutput> {
public:
    bool_t hasHeaderSection() const override { return 0; }
};

} // namespace

using RawSerializer = Implementation<RawSerializerLevel>;

ZYR_DEFINE_CORE_CLASS(RawSerializer)

} // namespace zyr
