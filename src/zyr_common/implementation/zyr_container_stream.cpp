#include "zyr_common/implementation/zyr_container_stream.h"

#include "zyr_common/serialization/zyr_single_objects.h"

namespace zyr {

namespace {

const String& getItemsKey() {
    static const String& key = makePermanent<String>("items");
    return key;
}
const String& getElementKey() {
    static const String& key = makePermanent<String>("object");
    return key;
}
const String& getItemTypeName() {
    static const String& name = makePermanent<String>("ObjectItem");
    return name;
}

} // namespace

bool_t ContainerStream::beginDeclaration(ISerializer* p_serializer) {
    return p_serializer->beginHeaderStructure(getItemTypeName());
}

bool_t ContainerStream::declareElement(ISerializer* p_serializer, IObject* p_element) {
    bool_t result = 1;
    return p_element == nullptr || p_serializer->writeHeaderSingleObject(getElementKey(), p_element, result);
}

bool_t ContainerStream::endDeclaration(ISerializer* p_serializer) {
    return p_serializer->endHeaderStructure() &&
           p_serializer->writeHeaderField(getItemsKey(), ZYR_HEADER_FIELD_ARRAY, ZYR_HEADER_FIELD_RECORD,
                                          getItemTypeName());
}

bool_t ContainerStream::beginItems(ISerializer* p_serializer, uint64_t p_count) {
    return p_count <= UINT32_MAX &&
           p_serializer->beginArray(getItemsKey(), static_cast<uint32_t>(p_count), ZYR_ARRAY_OF_RECORDS);
}

bool_t ContainerStream::beginItem(ISerializer* p_serializer, uint32_t p_index) {
    return p_serializer->beginArrayElement(p_index, getItemTypeName());
}

bool_t ContainerStream::writeElement(ISerializer* p_serializer, IObject* p_element) {
    return p_serializer->writeSingleObject(getElementKey(), p_element);
}

bool_t ContainerStream::endItem(ISerializer* p_serializer) {
    return p_serializer->endArrayElement();
}

bool_t ContainerStream::writeNullItem(ISerializer* p_serializer, uint32_t p_index) {
    return p_serializer->beginArrayElement(p_index, String::getConstEmpty()) && p_serializer->endArrayElement();
}

bool_t ContainerStream::endItems(ISerializer* p_serializer) {
    return p_serializer->endArray();
}

bool_t ContainerStream::enterItems(IDeserializer* p_deserializer, bool_t& p_found, uint32_t& p_count) {
    if (!p_deserializer->enterArray(getItemsKey(), p_found, 0)) {
        return 0;
    }
    p_count = p_found ? p_deserializer->getArraySize() : 0;
    return 1;
}

bool_t ContainerStream::enterItem(IDeserializer* p_deserializer, uint32_t p_index, bool_t& p_isNull) {
    String typeName;
    if (!p_deserializer->enterArrayElement(p_index, typeName)) {
        return 0;
    }
    p_isNull = typeName.isEmpty();
    return 1;
}

bool_t ContainerStream::readElement(IDeserializer* p_deserializer, IObject*& p_element) {
    bool_t found = 0;
    return p_deserializer->readSingleObject(getElementKey(), found, &p_element, String::getConstEmpty());
}

bool_t ContainerStream::leaveItem(IDeserializer* p_deserializer) {
    return p_deserializer->leaveArrayElement();
}

bool_t ContainerStream::leaveItems(IDeserializer* p_deserializer) {
    return p_deserializer->leaveArray(ZYR_HEADER_FIELD_RECORD);
}

} // namespace zyr
