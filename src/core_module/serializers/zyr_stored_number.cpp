#include "core_module/serializers/zyr_stored_number.h"

#include "core_module/serializers/zyr_exact_number.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

namespace {

constexpr const char* KIND_NAMES[NUM_OF_FIELD_KINDS] = {"nothing",
                                                        "a bool",
                                                        "an int32",
                                                        "a uint32",
                                                        "an int64",
                                                        "a uint64",
                                                        "a float",
                                                        "a double",
                                                        "a text",
                                                        "a shared text",
                                                        "an enumeration",
                                                        "a record",
                                                        "an object",
                                                        "an array of records",
                                                        "an array of texts",
                                                        "an array of floats",
                                                        "an array of doubles",
                                                        "an array of uint32",
                                                        "an array of enumerations"};

} // namespace

void reportOtherKind(const String& p_name, FieldKind p_kind) {
    ZYR_LOG_INFO("Unable to read %s: it is stored as %s", p_name.getData(), KIND_NAMES[static_cast<int>(p_kind)]);
}

template <typename T>
bool readConvertedNumber(BinaryReader& p_reader, const String& p_name, FieldKind p_kind, T& p_value) {
    ExactNumber number;
    uint64_t code = 0;
    float single = 0;
    switch (p_kind) {
    case FieldKind::INT32:
    case FieldKind::INT64:
        if (!p_reader.readNumber(code)) {
            return false;
        }
        number.set(fromZigzag(code));
        break;
    case FieldKind::BOOL:
    case FieldKind::UINT32:
    case FieldKind::UINT64:
    case FieldKind::ENUM:
        if (!p_reader.readNumber(code)) {
            return false;
        }
        number.set(code);
        break;
    case FieldKind::FLOAT:
        if (!p_reader.readBytes(&single, sizeof(single))) {
            return false;
        }
        number.set(static_cast<double>(single));
        break;
    case FieldKind::DOUBLE: {
        double value = 0;
        if (!p_reader.readBytes(&value, sizeof(value))) {
            return false;
        }
        number.set(value);
        break;
    }
    default:
        reportOtherKind(p_name, p_kind);
        return false;
    }
    if (!number.get(p_value)) {
        reportOtherKind(p_name, p_kind);
        return false;
    }
    return true;
}

template bool readConvertedNumber(BinaryReader&, const String&, FieldKind, bool_t&);
template bool readConvertedNumber(BinaryReader&, const String&, FieldKind, int32_t&);
template bool readConvertedNumber(BinaryReader&, const String&, FieldKind, uint32_t&);
template bool readConvertedNumber(BinaryReader&, const String&, FieldKind, int64_t&);
template bool readConvertedNumber(BinaryReader&, const String&, FieldKind, uint64_t&);
template bool readConvertedNumber(BinaryReader&, const String&, FieldKind, float&);
template bool readConvertedNumber(BinaryReader&, const String&, FieldKind, double&);

} // namespace zyr
