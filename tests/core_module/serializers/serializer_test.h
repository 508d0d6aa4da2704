/// A serializer and a deserializer of one format, and what is written and read between them.
#pragma once

#include "core_module/core_module_test.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/serialization/zyr_serializer.h"

#include <functional>
#include <string>

namespace zyr {

inline const char* const c_formatPrefixes[] = {"Raw", "Zbf", "Xml", "Json"};

class SerializerTest : public CoreModuleUpTest {
protected:
    using Write = std::function<void(ISerializer*)>;
    using Read = std::function<void(IDeserializer*)>;

    /// Gives what the function writes inside a group "top".
    static std::string write(const std::string& p_prefix, const Write& p_write) {
        ISerializer* serializer =
            static_cast<ISerializer*>(zyr_createObjectFromName((p_prefix + "Serializer").c_str()));
        EXPECT_TRUE(serializer->initialize());
        EXPECT_TRUE(serializer->beginStructure("top", 0));
        p_write(serializer);
        EXPECT_TRUE(serializer->endStructure());
        const std::string bytes(static_cast<const char*>(serializer->getData()), serializer->getDataSize());
        EXPECT_TRUE(serializer->deinitialize());
        serializer->release();
        return bytes;
    }

    /// The bytes lie in a block of their own size, so that a byte beyond is seen by the address sanitizer.
    static void read(const std::string& p_prefix, const std::string& p_bytes, const Read& p_read) {
        IDeserializer* deserializer =
            static_cast<IDeserializer*>(zyr_createObjectFromName((p_prefix + "Deserializer").c_str()));
        const std::vector<char> bytes(p_bytes.begin(), p_bytes.end());
        bool_t found = 0;
        ASSERT_TRUE(deserializer->initialize(bytes.data(), bytes.size())) << p_bytes;
        ASSERT_TRUE(deserializer->enterGroup("top", found));
        ASSERT_TRUE(found);
        p_read(deserializer);
        EXPECT_TRUE(deserializer->leaveGroup());
        EXPECT_TRUE(deserializer->deinitialize());
        deserializer->release();
    }

    static bool canInitialize(const std::string& p_prefix, const std::string& p_bytes) {
        IDeserializer* deserializer =
            static_cast<IDeserializer*>(zyr_createObjectFromName((p_prefix + "Deserializer").c_str()));
        const std::vector<char> bytes(p_bytes.begin(), p_bytes.end());
        const bool_t done = deserializer->initialize(bytes.data(), bytes.size());
        deserializer->release();
        return done != 0;
    }
};

/// The same test in each of the formats.
class EachFormat : public SerializerTest, public testing::WithParamInterface<const char*> {
protected:
    static std::string write(const Write& p_write) { return SerializerTest::write(GetParam(), p_write); }
    static void read(const std::string& p_bytes, const Read& p_read) {
        SerializerTest::read(GetParam(), p_bytes, p_read);
    }
    static bool isText() { return GetParam()[0] == 'X' || GetParam()[0] == 'J'; }
};

} // namespace zyr
