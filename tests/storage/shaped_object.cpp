#include "zyr_common/containers/zyr_array.h"

#include "storage/shaped_object.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/serialization/zyr_single_objects.h"

namespace zyr::test {

bool_t ShapedObject::readSerialized(IDeserializer* p_deserializer) {
    static uint32_t caches[5] = {};
    bool_t found = 0;
    if (!p_deserializer->readInt32("count", caches[0], m_count, nullptr) ||
        !p_deserializer->readFloat("width", caches[1], m_width, nullptr) ||
        !p_deserializer->readString("name", caches[2], m_name, nullptr) ||
        !p_deserializer->enterGroup("place", found)) {
        return 0;
    }
    if (found && (!p_deserializer->readInt32("x", caches[3], m_x, nullptr) || !p_deserializer->leaveGroup())) {
        return 0;
    }
    return p_deserializer->readStringArray("parts", caches[4], m_parts, 0);
}

bool_t ShapedObject::writeField(ISerializer* p_serializer, int p_field) const {
    const String parts[] = {"p", "q"};
    switch (p_field) {
    case 0:
        return m_shape == Shape::OTHER_NUMBER       ? p_serializer->writeInt64("count", 7, 0, 1, nullptr)
               : m_shape == Shape::NUMBER_TOO_LARGE ? p_serializer->writeInt64("count", 7000000000, 0, 1, nullptr)
               : m_shape == Shape::NUMBER_AS_TEXT   ? p_serializer->writeString("count", "seven", 1, 0)
                                                    : p_serializer->writeInt32("count", 7, 0, 1, nullptr);
    case 1:
        return m_shape == Shape::OTHER_NUMBER ? p_serializer->writeUInt32("width", 8, 0, 1, nullptr)
                                              : p_serializer->writeFloat("width", 8, 1, 0);
    case 2:
        return m_shape == Shape::FIELD_LESS || m_shape == Shape::TEXT_AS_GROUP ||
               p_serializer->writeString("name", "nine", 1, 0);
    case 3:
        return m_shape == Shape::FIELD_LESS ||
               (p_serializer->beginStructure(m_shape == Shape::TEXT_AS_GROUP ? "name" : "place", 0) &&
                p_serializer->writeInt32("x", 10, 0, 1, nullptr) && p_serializer->endStructure());
    default:
        return p_serializer->writeStringArray("parts", 2, parts, 0, 0);
    }
}

bool_t ShapedObject::writeMore(ISerializer* p_serializer) const {
    const double doubles[] = {1.5, -2};
    const uint32_t numbers[] = {1, 2, 3};
    const auto child = Ref<IObject>::adopt(zyr_createObject<IDataFormatInfo>());
    bool_t done =
        p_serializer->writeBool("newFlag", 1, 1, 0) && p_serializer->writeUInt64("newNumber", 1, 0, 1, nullptr) &&
        p_serializer->writeDouble("newReal", 0.5, 1, 0) && p_serializer->writeString("newText", "text", 0, 0) &&
        p_serializer->writeDoubleArray("newReals", 2, doubles, 0, 0) &&
        p_serializer->writeUInt32Array("newNumbers", 3, numbers, 0, 0) &&
        p_serializer->writeSingleObject("newObject", child.get()) && p_serializer->writeNullObject("noObject") &&
        p_serializer->beginArray("newRecords", 2, ZYR_ARRAY_OF_RECORDS);
    for (uint32_t i = 0; i < 2 && done; i++) {
        done = p_serializer->beginArrayElement(i, "Later") && p_serializer->writeUInt32("count", i, 0, 1, nullptr) &&
               p_serializer->endArrayElement();
    }
    return done && p_serializer->endArray();
}

bool_t ShapedObject::writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
    p_result = 1;
    if (p_headerPass) {
        return 1; // What isn't declared is declared at its first write.
    }
    for (int i = 0; i < 5 && p_result; i++) {
        p_result = writeField(p_serializer, m_shape == Shape::OTHER_ORDER ? 4 - i : i);
        if (m_shape == Shape::FIELD_MORE && i == 2 && p_result) {
            p_result = writeMore(p_serializer);
        }
    }
    return p_result;
}

} // namespace zyr::test
