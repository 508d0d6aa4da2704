#include "zyr_common/storage/zyr_payload_wrapper.h"

#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/digest/zyr_xxhash.h"

#include <cstring>

namespace zyr {

namespace {

struct BinaryFormat {
    const char* m_identifier;
    uint64_t m_seed;
};

/// In the order of PayloadFormat.
constexpr BinaryFormat BINARY_FORMATS[] = {
    {"98880ce6-8e7d-4d88-89a8-8a97997c03b1", 0x9375e58bc0c5ba10},
    {"b136dd6d-3d1d-45e6-81ab-6897c140739b", 0xf3e031aa0b4b71ac},
};

} // namespace

void zyr_makePayloadWrapper(uint8_t (&p_wrapper)[c_payloadWrapperSize], const String& p_serializerClassName,
                            const void* p_payload, size_t p_size) {
    const BinaryFormat& format = BINARY_FORMATS[p_serializerClassName == "ZbfSerializer" ? 1 : 0];
    const GUID_t identifier = GUID_t_fromString(format.m_identifier);
    const uint64_t hash = zyr_xxHash64(p_payload, p_size, format.m_seed);
    const uint64_t size = p_size;
    memcpy(p_wrapper, identifier.m_data, c_payloadIdentifierSize);
    memcpy(p_wrapper + 16, &hash, sizeof(hash));
    memcpy(p_wrapper + 24, &size, sizeof(size));
}

PayloadFormat zyr_getPayloadFormat(const uint8_t* p_identifier) {
    for (int i = 0; i < static_cast<int>(PayloadFormat::UNKNOWN); i++) {
        const GUID_t identifier = GUID_t_fromString(BINARY_FORMATS[i].m_identifier);
        if (memcmp(p_identifier, identifier.m_data, c_payloadIdentifierSize) == 0) {
            return static_cast<PayloadFormat>(i);
        }
    }
    return PayloadFormat::UNKNOWN;
}

const char* zyr_getPayloadMismatch(PayloadFormat p_format, const String& p_deserializerClassName) {
    if (p_format == PayloadFormat::ZBF && p_deserializerClassName == "RawDeserializer") {
        return "Unable to deserialize raw format because file format is zbf";
    }
    if (p_format == PayloadFormat::RAW && p_deserializerClassName == "ZbfDeserializer") {
        return "Unable to deserialize zbf format because file format is raw";
    }
    return nullptr;
}

bool_t zyr_isPayloadIntact(PayloadFormat p_format, const void* p_payload, size_t p_size, uint64_t p_hash) {
    return zyr_xxHash64(p_payload, p_size, BINARY_FORMATS[static_cast<int>(p_format)].m_seed) == p_hash;
}

} // namespace zyr
