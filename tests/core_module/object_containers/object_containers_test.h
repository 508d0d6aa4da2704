/// What the tests of the containers of objects share: elements, and keys of each type.
#pragma once

#include "core_module/core_module_test.h"
#include "support/zyr_recording_serializer.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/text/zyr_wrapped_string.h"

#include <gmock/gmock.h>

namespace zyr {

/// The i-th of three keys of a type, in ascending order.
template <typename K> K getKey(int p_index) {
    return static_cast<K>(10 * (p_index + 1));
}
template <> inline String getKey<String>(int p_index) {
    return std::string(static_cast<size_t>(p_index) + 1, 'k').c_str();
}
template <> inline WrappedString getKey<WrappedString>(int p_index) {
    static const char* const texts[] = {"a", "b", "c"};
    return texts[p_index];
}
template <> inline GUID_t getKey<GUID_t>(int p_index) {
    GUID_t guid;
    guid.m_data[0] = static_cast<uint8_t>(p_index + 1);
    return guid;
}
/// Places that are never looked into.
inline char s_keyPlaces[3];
template <> inline unsigned char* getKey<unsigned char*>(int p_index) {
    return reinterpret_cast<unsigned char*>(s_keyPlaces + p_index);
}
template <> inline String* getKey<String*>(int p_index) {
    return reinterpret_cast<String*>(s_keyPlaces + p_index);
}
template <> inline IObject* getKey<IObject*>(int p_index) {
    return reinterpret_cast<IObject*>(s_keyPlaces + p_index);
}

/// Calls the function template for each key of a family.
#define ZYR_CHECK_KEY(type, word)                                                                                      \
    {                                                                                                                  \
        SCOPED_TRACE(word);                                                                                            \
        check.template operator()<type>();                                                                             \
    }
template <typename Check> void forEachKey(Check check) {
#define ZYR_KEY ZYR_CHECK_KEY
#define ZYR_GUID_KEY ZYR_CHECK_KEY
#include "zyr_common/object/zyr_object_keys.inl"
}
template <typename Check> void forEachKeyButGUID(Check check) {
#define ZYR_KEY ZYR_CHECK_KEY
#include "zyr_common/object/zyr_object_keys.inl"
}
#undef ZYR_CHECK_KEY

/// Three elements, of which no reference may be left over.
class ObjectContainersTest : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        for (const char* name : {"a", "b", "c"}) {
            IDataFormatInfo* item = zyr_createObject<IDataFormatInfo>();
            item->setFormatName(name);
            m_items.push_back(item);
        }
    }
    void TearDown() override {
        for (IDataFormatInfo* item : m_items) {
            EXPECT_EQ(item->getRefCount(), 0u);
            item->release();
        }
    }

    template <class Interface> static Ref<Interface> create() {
        return Ref<Interface>::adopt(zyr_createObject<Interface>());
    }
    static std::string nameOf(const IObject* p_element) {
        return p_element != nullptr ? static_cast<const IDataFormatInfo*>(p_element)->getFormatName().getData()
                                    : "null";
    }
    uint32_t countReferences(size_t p_index) const { return m_items[p_index]->getRefCount(); }

    /// Writes the object and reads it back into a new one of its class.
    static Ref<IObject> stream(IObject* p_object, test::RecordingSerializer::Kind p_kind) {
        test::RecordingSerializer serializer(p_kind);
        bool_t result = 0;
        EXPECT_TRUE(p_object->writeSerialized(&serializer, 0, result));
        EXPECT_TRUE(result);
        auto copy = Ref<IObject>::adopt(zyr_createObjectFromName(p_object->getClassName()));
        test::RecordingDeserializer deserializer(serializer.m_root);
        EXPECT_TRUE(copy->readSerialized(&deserializer));
        return copy;
    }

    std::vector<IDataFormatInfo*> m_items;
};

} // namespace zyr
