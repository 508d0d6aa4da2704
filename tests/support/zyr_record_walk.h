/// Walks a record by its field list: what must hold for every record is tested here once. Link zyr_test_record_walk.
///
///     TEST(MyRecords, HoldWhatAllRecordsHold) { test::walkRecord<MyRecord>(); }
///
/// Little of it is a template, since it meets every record of the tree: describeRecord turns a type into a table of
/// fields and operations, and the checks work on that.
#pragma once

#include "support/zyr_recording_serializer.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <cstring>
#include <gtest/gtest.h>
#include <ostream>

namespace zyr::test {

/// What a check does with the fields of one type.
struct LeafKind {
    VariableTypeEnum m_type;
    /// Gives the field a value that differs from its own and from that of other numbers.
    void (*m_makeDifferent)(void* p_field, uint32_t p_number);
    bool (*m_isSame)(const void* p_left, const void* p_right);
    void (*m_copy)(void* p_target, const void* p_source);
    /// Writes the value into the target of a reference, as a holder of a path does. Null where none can be made.
    bool_t (*m_change)(VariableReference* p_reference, const void* p_value);
};

/// One field that is no record, on any level.
struct RecordLeaf {
    std::string m_path;
    size_t m_offset;
    const LeafKind* m_kind;

    void* at(void* p_record) const { return static_cast<char*>(p_record) + m_offset; }
};

/// A record type.
struct RecordKind {
    std::string m_name;
    std::vector<RecordLeaf> m_leaves;
    /// The keys that are declared, in their order: on each level the base's first.
    Calls m_keys;
    void* (*m_create)();
    void (*m_destroy)(void* p_record);
    VariableReference* (*m_find)(void* p_record, const String& p_path);
    bool_t (*m_equal)(const void* p_left, const void* p_right);
    void (*m_copy)(void* p_target, const void* p_source);
    void (*m_clear)(void* p_record);
    bool_t (*m_read)(void* p_record, IDeserializer* p_deserializer);
    bool_t (*m_write)(void* p_record, ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result);
};

inline void PrintTo(const RecordKind& p_kind, std::ostream* p_stream) {
    *p_stream << p_kind.m_name;
}

template <typename M> void makeLeafDifferent(void* p_field, uint32_t p_number) {
    M& value = *static_cast<M*>(p_field);
    if constexpr (std::is_array_v<M>) {
        value[p_number % std::extent_v<M>] += static_cast<std::remove_extent_t<M>>(p_number + 2);
    } else if constexpr (std::is_same_v<M, bool_t>) {
        value = !value;
    } else if constexpr (std::is_arithmetic_v<M>) {
        value = static_cast<M>(value + static_cast<M>(p_number + 2));
    } else if constexpr (EnumerationWithTexts<M>) {
        const auto& entries = EnumerationTable<M>::c_entries;
        uint32_t place = p_number % c_enumerationSize<M>;
        if (entries[place].m_number == static_cast<uint32_t>(value)) {
            place = (place + 1) % c_enumerationSize<M>;
        }
        value = static_cast<M>(entries[place].m_number);
    } else if constexpr (std::is_same_v<M, String>) {
        value = String(("text " + std::to_string(p_number)).c_str());
    } else if constexpr (std::is_same_v<M, GUID_t>) {
        ++value.m_data[p_number % 16];
    } else if constexpr (requires { value.pushBack({}, nullptr); }) {
        value.pushBack({}, nullptr);
    } else {
        value.pushBack({});
    }
}

template <typename M> bool isLeafSame(const void* p_left, const void* p_right) {
    const M& left = *static_cast<const M*>(p_left);
    const M& right = *static_cast<const M*>(p_right);
    if constexpr (std::is_array_v<M>) {
        return memcmp(&left, &right, sizeof(M)) == 0;
    } else if constexpr (requires { bool(left == right); }) {
        return left == right;
    } else {
        return left.getSize() == right.getSize();
    }
}

template <typename M> void copyLeaf(void* p_target, const void* p_source) {
    if constexpr (std::is_array_v<M>) {
        memcpy(p_target, p_source, sizeof(M));
    } else {
        *static_cast<M*>(p_target) = *static_cast<const M*>(p_source);
    }
}

template <typename M> bool_t changeLeaf(VariableReference* p_reference, const void* p_value) {
    if constexpr (c_variableTypeOf<M> == ZYR_VARIABLE_NONE) {
        return 0;
    } else {
        const M& value = *static_cast<const M*>(p_value);
        if constexpr (std::is_same_v<M, String>) {
            return p_reference->changeValueString(value);
        } else if constexpr (std::is_same_v<M, GUID_t>) {
            return p_reference->changeValueGUID(value);
        } else if constexpr (std::is_floating_point_v<M>) {
            return p_reference->changeValueDouble(static_cast<double>(value));
        } else {
            return p_reference->changeValueUInt64(static_cast<uint64_t>(value));
        }
    }
}

template <typename M>
inline const LeafKind c_leafKind = {c_variableTypeOf<M>, &makeLeafDifferent<M>, &isLeafSame<M>, &copyLeaf<M>,
                                    &changeLeaf<M>};

/// Collects the fields of a level and those of the records inside it, its own words first, then the base's.
template <class Level>
void collectLeaves(const char* p_start, Level& p_level, const std::string& p_prefix,
                   std::vector<RecordLeaf>& p_leaves) {
    zyr_forEachField<Level>([&](const auto& p_field) {
        using Member = typename std::decay_t<decltype(p_field)>::Member;
        Member& member = p_level.*p_field.m_member;
        std::string path = p_prefix + p_field.m_key;
        if constexpr (RecordLevel<Member>) {
            collectLeaves<Member>(p_start, member, path + ".", p_leaves);
        } else {
            size_t offset = static_cast<size_t>(reinterpret_cast<const char*>(&member) - p_start);
            p_leaves.push_back({path, offset, &c_leafKind<Member>});
        }
    });
    if constexpr (RecordLevel<typename Level::RecordBase>) {
        collectLeaves<typename Level::RecordBase>(p_start, p_level, p_prefix, p_leaves);
    }
}

template <class Level> void collectKeys(Calls& p_keys) {
    if constexpr (RecordLevel<typename Level::RecordBase>) {
        collectKeys<typename Level::RecordBase>(p_keys);
    }
    zyr_forEachField<Level>([&](const auto& p_field) {
        using Member = typename std::decay_t<decltype(p_field)>::Member;
        if constexpr (RecordLevel<Member>) {
            collectKeys<Member>(p_keys);
        } else if (p_field.m_declared) {
            p_keys.push_back(p_field.m_key);
        }
    });
}

template <class R> RecordKind describeRecord() {
    RecordKind kind;
    R sample;
    kind.m_name = R::getRecordName().getData();
    collectLeaves<R>(reinterpret_cast<const char*>(&sample), sample, "", kind.m_leaves);
    collectKeys<R>(kind.m_keys);
    kind.m_create = [] { return static_cast<void*>(new R); };
    kind.m_destroy = [](void* p_record) { delete static_cast<R*>(p_record); };
    kind.m_find = [](void* p_record, const String& p_path) {
        return static_cast<R*>(p_record)->getVariableReferenceByPath(p_path);
    };
    kind.m_equal = [](const void* p_left, const void* p_right) {
        return static_cast<const R*>(p_left)->compare_Backwards(*static_cast<const R*>(p_right));
    };
    kind.m_copy = [](void* p_target, const void* p_source) {
        static_cast<R*>(p_target)->copy_Backwards(*static_cast<const R*>(p_source));
    };
    kind.m_clear = [](void* p_record) { static_cast<R*>(p_record)->clear(); };
    kind.m_read = [](void* p_record, IDeserializer* p_deserializer) {
        return static_cast<R*>(p_record)->readSerialized(p_deserializer);
    };
    kind.m_write = [](void* p_record, ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return static_cast<R*>(p_record)->writeSerialized(p_serializer, p_headerPass, p_result);
    };
    return kind;
}

/// Each field is found by its path and takes a value there; nothing lies below or beside it.
void expectPathsReachFields(const RecordKind& p_kind);
/// A change of any one field makes two records unequal.
void expectEqualitySeesEachField(const RecordKind& p_kind);
/// A copy has every field, and clear brings back every default.
void expectCopyAndClear(const RecordKind& p_kind);
void expectReadsBackWhatItWrites(const RecordKind& p_kind, RecordingSerializer::Kind p_format);
void expectDeclaresEachKeyInOrder(const RecordKind& p_kind);

/// All of the above.
void walkRecord(const RecordKind& p_kind);
template <class R> void walkRecord() {
    walkRecord(describeRecord<R>());
}

} // namespace zyr::test
