#include "support/binary_layout.h"
#include "zyr_common/serialization/zyr_serializer.h"

#include <gtest/gtest.h>

namespace zyr {

static size_t getFirstSlotBehindObject() {
    return getSlot(&IObject::getObjectReserved) + 1;
}

TEST(Serializer, KeepsTheOrderOfItsOperations) {
    size_t slot = getFirstSlotBehindObject();
    EXPECT_EQ(getSlot(&ISerializer::initialize), slot++);
    EXPECT_EQ(getSlot(&ISerializer::deinitialize), slot++);
    EXPECT_EQ(getSlot(&ISerializer::beginHeader), slot++);
    EXPECT_EQ(getSlot(&ISerializer::endHeader), slot++);
    EXPECT_EQ(getSlot(&ISerializer::beginHeaderStructure), slot++);
    EXPECT_EQ(getSlot(&ISerializer::endHeaderStructure), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeHeaderField), slot++);
    EXPECT_EQ(getSlot(&ISerializer::beginStructure), slot++);
    EXPECT_EQ(getSlot(&ISerializer::endStructure), slot++);
    EXPECT_EQ(getSlot(&ISerializer::beginObject), slot++);
    EXPECT_EQ(getSlot(&ISerializer::endObject), slot++);
    EXPECT_EQ(getSlot(&ISerializer::beginArray), slot++);
    EXPECT_EQ(getSlot(&ISerializer::endArray), slot++);
    EXPECT_EQ(getSlot(&ISerializer::beginArrayElement), slot++);
    EXPECT_EQ(getSlot(&ISerializer::endArrayElement), slot++);
    EXPECT_EQ(getSlot(&ISerializer::getData), slot++);
    EXPECT_EQ(getSlot(&ISerializer::getDataSize), slot++);
    EXPECT_EQ(getSlot(&ISerializer::isBinaryFormat), slot++);
    EXPECT_EQ(getSlot(&ISerializer::hasHeaderSection), slot++);
    EXPECT_EQ(getSlot(&ISerializer::getBaseDirectory), slot++);
    EXPECT_EQ(getSlot(&ISerializer::setBaseDirectory), slot++);
    EXPECT_EQ(getSlot(&ISerializer::isWritingDeferredFiles), slot++);
    EXPECT_EQ(getSlot(&ISerializer::setWritingDeferredFiles), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareStringRef), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareEnum), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareInt32), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareUInt32), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareInt64), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareUInt64), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareFloat), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareDouble), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareString), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareStringArray), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeStringRef), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeBool), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeEnum), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeInt32), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeUInt32), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeInt64), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeUInt64), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeFloat), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeDouble), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeString), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeStringArray), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeNullObject), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareBool), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareFloatArray), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareDoubleArray), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareUInt32Array), slot++);
    EXPECT_EQ(getSlot(&ISerializer::declareEnumArray), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeFloatArray), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeDoubleArray), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeUInt32Array), slot++);
    EXPECT_EQ(getSlot(&ISerializer::writeEnumArray), slot++);
    EXPECT_EQ(getSlot(&ISerializer::getSerializerReserved), slot++);
}

TEST(Deserializer, KeepsTheOrderOfItsOperations) {
    size_t slot = getFirstSlotBehindObject();
    EXPECT_EQ(getSlot(&IDeserializer::initialize), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::deinitialize), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::enterGroup), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::leaveGroup), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::enterObject), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::leaveObject), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::enterArray), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::leaveArray), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::enterArrayElement), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::leaveArrayElement), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::getCurrentObjectTypeName), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::getCurrentObjectGUIDText), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::getArraySize), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::isBinaryFormat), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::getBaseDirectory), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::setBaseDirectory), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readStringRef), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readBool), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readStringArray), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readEnum), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readInt32), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readUInt32), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readInt64), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readUInt64), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readFloat), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readDouble), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readString), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readFloatArray), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readDoubleArray), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readUInt32Array), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::readEnumArray), slot++);
    EXPECT_EQ(getSlot(&IDeserializer::getDeserializerReserved), slot++);
}

TEST(Serializer, MarksFieldsWithFixedNumbers) {
    EXPECT_EQ(ZYR_HEADER_FIELD_ARRAY, 0xFFFFFFFDu);
    EXPECT_EQ(ZYR_HEADER_FIELD_RECORD, 0xFFFFFFFEu);
    EXPECT_EQ(ZYR_HEADER_FIELD_OBJECT, 0xFFFFFFFFu);
    EXPECT_EQ(ZYR_ARRAY_OF_RECORDS, 254);
}

} // namespace zyr
