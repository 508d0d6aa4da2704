/// An object with a record of any kind, so that records are stored as a host stores them.
#pragma once

#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/serialization/zyr_serializer.h"

#include <string>
#include <vector>

namespace zyr::test {

/// How the holder handles a type of records.
struct HeldKind {
    std::string m_name;
    void* (*m_create)(const HeldKind& p_kind);
    void (*m_destroy)(void* p_record);
    /// Gives every field a value that is not its default.
    void (*m_fill)(const HeldKind& p_kind, void* p_record);
    bool_t (*m_read)(void* p_record, IDeserializer* p_deserializer);
    bool_t (*m_write)(void* p_record, ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result);
    /// Of use to the kind's own functions alone.
    const void* m_description = nullptr;
    uint32_t m_number = 0;
};

/// All kinds, each with a name of its own. They stay.
const std::vector<HeldKind>& getHeldKinds();
/// Null for a name that no kind has.
const HeldKind* findHeldKind(const std::string& p_name);

/// Stores the name of the kind as "kind" and the record as "record".
class RecordHolder : public ObjectClass<RecordHolder, WObject> {
public:
    static constexpr const char* c_className = "RecordHolder";
    static constexpr const char* c_classGUIDText = "70000000-0000-4000-8000-0000000000a1";

    RecordHolder() { initObjectInterface(); }
    ~RecordHolder() override { release_This(); }

    void hold(const HeldKind* p_kind);
    void fill() { m_kind->m_fill(*m_kind, m_record); }

    bool_t readSerialized(IDeserializer* p_deserializer) override;
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override;

    void init_This() {}
    void release_This() { hold(nullptr); }
    void copy_This(const RecordHolder*) {}

private:
    const HeldKind* m_kind = nullptr;
    void* m_record = nullptr;
};

} // namespace zyr::test
