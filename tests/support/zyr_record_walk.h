/// Walks a record by its field list: what must hold for every record is tested here once.
///
///     walkRecord<ExtRect<float>>();
#pragma once

#include "support/zyr_recording_serializer.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <gtest/gtest.h>

namespace zyr::test {

/// Calls p_visit(path, access, type) for each field that is no record, own levels first; access(record) gives the
/// field.
template <class Top, class Level, class Access, class Visit>
void forEachLeaf(const std::string& p_prefix, Access p_access, Visit& p_visit) {
    zyr_forEachField<Level>([&](const auto& p_field) {
        using Member = typename std::decay_t<decltype(p_field)>::Member;
        auto member = p_field.m_member;
        auto access = [p_access, member](Top& p_top) -> Member& { return p_access(p_top).*member; };
        std::string path = p_prefix + p_field.m_key;
        if constexpr (RecordLevel<Member>) {
            forEachLeaf<Top, Member>(path + ".", access, p_visit);
        } else {
            p_visit(path, access, std::type_identity<Member>());
        }
    });
    using Base = typename Level::RecordBase;
    if constexpr (RecordLevel<Base>) {
        forEachLeaf<Top, Base>(
            p_prefix, [p_access](Top& p_top) -> Base& { return p_access(p_top); }, p_visit);
    }
}

template <class R, class Visit> void visitLeaves(Visit p_visit) {
    forEachLeaf<R, R>(
        "", [](R& p_record) -> R& { return p_record; }, p_visit);
}

/// Gives a field a value that differs from p_value and from that of other numbers.
template <typename M> void makeDifferent(M& p_value, uint32_t p_number) {
    if constexpr (std::is_array_v<M>) {
        p_value[p_number % std::extent_v<M>] += static_cast<std::remove_extent_t<M>>(p_number + 2);
    } else if constexpr (std::is_same_v<M, bool_t>) {
        p_value = !p_value;
    } else if constexpr (std::is_arithmetic_v<M>) {
        p_value = static_cast<M>(p_value + static_cast<M>(p_number + 2));
    } else if constexpr (EnumerationWithTexts<M>) {
        const auto& entries = EnumerationTable<M>::c_entries;
        uint32_t place = p_number % c_enumerationSize<M>;
        if (entries[place].m_number == static_cast<uint32_t>(p_value)) {
            place = (place + 1) % c_enumerationSize<M>;
        }
        p_value = static_cast<M>(entries[place].m_number);
    } else if constexpr (std::is_same_v<M, String>) {
        p_value = String(("text " + std::to_string(p_number)).c_str());
    } else if constexpr (std::is_same_v<M, GUID_t>) {
        p_value.m_data[p_number % 16] = static_cast<uint8_t>(p_value.m_data[p_number % 16] + 1);
    } else if constexpr (requires { p_value.pushBack(p_value.getData()[0]); }) {
        p_value.pushBack({});
    } else {
        p_value.pushBack({}, nullptr);
    }
}

template <typename M> bool isSame(const M& p_left, const M& p_right) {
    if constexpr (std::is_array_v<M>) {
        return memcmp(p_left, p_right, sizeof(M)) == 0;
    } else if constexpr (requires { bool(p_left == p_right); }) {
        return p_left == p_right;
    } else {
        return p_left.getSize() == p_right.getSize();
    }
}

/// Writes a different value into a field through its reference, as a holder of a path does.
template <typename M> bool_t changeThroughReference(VariableReference* p_reference, M p_value) {
    if constexpr (std::is_floating_point_v<M>) {
        return p_reference->changeValueDouble(static_cast<double>(p_value));
    } else if constexpr (std::is_same_v<M, String>) {
        return p_reference->changeValueString(p_value);
    } else if constexpr (std::is_same_v<M, GUID_t>) {
        return p_reference->changeValueGUID(p_value);
    } else {
        return p_reference->changeValueUInt64(static_cast<uint64_t>(p_value));
    }
}

template <class R> void expectPathsReachFields() {
    uint32_t number = 0;
    visitLeaves<R>([&](const std::string& p_path, auto p_access, auto p_type) {
        using M = typename decltype(p_type)::type;
        SCOPED_TRACE(p_path);
        R record;
        VariableReference* reference = record.getVariableReferenceByPath(p_path.c_str());
        if constexpr (c_variableTypeOf<M> == ZYR_VARIABLE_NONE) {
            EXPECT_EQ(reference, nullptr);
        } else {
            ASSERT_NE(reference, nullptr);
            EXPECT_EQ(reference->getType(), c_variableTypeOf<M>);
            EXPECT_EQ(reference->getPointer(), static_cast<void*>(&p_access(record)));
            M value = p_access(record);
            makeDifferent(value, number++);
            EXPECT_EQ(changeThroughReference(reference, value), 1);
            EXPECT_TRUE(isSame<M>(p_access(record), value));
            reference->release();
        }
        EXPECT_EQ(record.getVariableReferenceByPath((p_path + ".x").c_str()), nullptr);
        EXPECT_EQ(record.getVariableReferenceByPath((p_path + ".").c_str()) == nullptr, reference == nullptr);
        EXPECT_EQ(record.getVariableReferenceByPath(("." + p_path).c_str()), nullptr);
    });
}

template <class R> void expectEqualitySeesEachField() {
    uint32_t number = 0;
    visitLeaves<R>([&](const std::string& p_path, auto p_access, auto) {
        SCOPED_TRACE(p_path);
        R plain;
        R changed;
        EXPECT_TRUE(plain.compare_Backwards(changed));
        makeDifferent(p_access(changed), number++);
        EXPECT_FALSE(plain.compare_Backwards(changed));
        EXPECT_FALSE(changed.compare_Backwards(plain));
    });
}

template <class R> void fillAll(R& p_record) {
    uint32_t number = 1;
    visitLeaves<R>([&](const std::string&, auto p_access, auto) { makeDifferent(p_access(p_record), number++); });
}

template <class R> void expectSameFields(R& p_left, R& p_right) {
    visitLeaves<R>([&](const std::string& p_path, auto p_access, auto p_type) {
        using M = typename decltype(p_type)::type;
        EXPECT_TRUE(isSame<M>(p_access(p_left), p_access(p_right))) << p_path;
    });
}

template <class R> void expectCopyAndClear() {
    R plain;
    R filled;
    fillAll(filled);
    R copy;
    copy.copy_Backwards(filled);
    expectSameFields(copy, filled);
    EXPECT_TRUE(copy.compare_Backwards(filled));
    copy.clear();
    expectSameFields(copy, plain);
    EXPECT_TRUE(copy.compare_Backwards(plain));
}

template <class R> void expectReadsBackWhatItWrites(RecordingSerializer::Kind p_kind) {
    R filled;
    fillAll(filled);
    RecordingSerializer serializer(p_kind);
    bool_t result = 0;
    EXPECT_EQ(filled.writeSerialized(&serializer, 0, result), 1);
    EXPECT_EQ(result, 1);
    R read;
    RecordingDeserializer deserializer(serializer.m_root);
    EXPECT_EQ(read.readSerialized(&deserializer), 1);
    expectSameFields(read, filled);
}

/// The keys of one level and those below it, in the order in which they are stored: the base's first.
template <class R> void collectKeys(std::vector<std::string>& p_keys) {
    if constexpr (RecordLevel<typename R::RecordBase>) {
        collectKeys<typename R::RecordBase>(p_keys);
    }
    zyr_forEachField<R>([&](const auto& p_field) {
        using Member = typename std::decay_t<decltype(p_field)>::Member;
        if constexpr (RecordLevel<Member>) {
            collectKeys<Member>(p_keys);
        } else {
            p_keys.push_back(p_field.m_key);
        }
    });
}

template <class R> void expectDeclaresEachKeyInOrder() {
    R record;
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_EQ(record.writeSerialized(&serializer, 1, result), 1);
    std::vector<std::string> declared;
    for (const std::string& call : serializer.m_calls) {
        if (call.rfind("declare", 0) == 0) {
            declared.push_back(call.substr(call.find(' ') + 1));
        }
    }
    std::vector<std::string> expected;
    collectKeys<R>(expected);
    EXPECT_EQ(declared, expected);
}

/// All of the above.
template <class R> void walkRecord() {
    SCOPED_TRACE(R::getRecordName().getData());
    expectPathsReachFields<R>();
    expectEqualitySeesEachField<R>();
    expectCopyAndClear<R>();
    expectReadsBackWhatItWrites<R>(RecordingSerializer::c_text);
    expectReadsBackWhatItWrites<R>(RecordingSerializer::c_binary);
    expectDeclaresEachKeyInOrder<R>();
}

} // namespace zyr::test
