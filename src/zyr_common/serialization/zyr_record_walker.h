/// The bodies of RecordWalker. Only for the source that instantiates a record:
///
///     template class RecordWalker<Rect<float>>;
#pragma once

#include "zyr_common/object/zyr_type_names.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/serialization/zyr_record_items.h"
#include "zyr_common/serialization/zyr_record_table.h"

namespace zyr {

/// Bytes that the field list of R's own level covers, plus those that R excepts on purpose with a static member
/// c_unlistedSize.
template <RecordLevel R> constexpr size_t zyr_listedSize() {
    size_t size = 0;
    zyr_forEachField<R>([&](const auto& p_field) { size += sizeof(typename std::decay_t<decltype(p_field)>::Member); });
    if constexpr (requires { R::c_unlistedSize; }) {
        size += R::c_unlistedSize;
    }
    return size;
}

/// Bytes of a record that are not of its own level: the base and, where this level adds it, the virtual table.
template <RecordLevel R> constexpr size_t zyr_inheritedSize() {
    using Base = typename R::RecordBase;
    size_t table = std::is_polymorphic_v<R> && !std::is_polymorphic_v<Base> ? sizeof(void*) : 0;
    return table + (std::is_empty_v<Base> ? 0 : sizeof(Base));
}

/// All enumerations of one size are stored alike: their converters stand in the rows.
enum ByteEnumeration : uint8_t {};
enum WordEnumeration : uint32_t {};

/// The operations for fields of the type M.
template <typename M> struct RecordFieldOperations {
    static bool_t declare(ISerializer* p_serializer, const String& p_key, void* p_value, bool_t& p_result) {
        return RecordFieldIO<M>::declare(p_serializer, p_key, *static_cast<M*>(p_value), p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, void* p_value, bool_t p_attribute,
                        EnumerationConverter p_converter) {
        return RecordFieldIO<M>::write(p_serializer, p_key, *static_cast<M*>(p_value), p_attribute, p_converter);
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, void* p_value,
                       EnumerationConverter p_converter) {
        return RecordFieldIO<M>::read(p_deserializer, p_key, p_cache, *static_cast<M*>(p_value), p_converter);
    }
    static VariableReference* find(void* p_value, const String& p_path) {
        if constexpr (RecordLevel<M>) {
            return static_cast<M*>(p_value)->getVariableReferenceByPath(p_path);
        } else {
            return nullptr;
        }
    }
    static constexpr RecordFieldKind c_kind = {&declare, &write, &read, &find, zyr_getVariableTypeEnum<M>()};
};

template <typename M> constexpr const RecordFieldKind* zyr_getRecordFieldKind() {
    if constexpr (std::is_enum_v<M>) {
        static_assert(sizeof(M) == 4 || (sizeof(M) == 1 && std::is_unsigned_v<std::underlying_type_t<M>>));
        using Stored = std::conditional_t<sizeof(M) == 1, ByteEnumeration, WordEnumeration>;
        return &RecordFieldOperations<Stored>::c_kind;
    } else {
        return &RecordFieldOperations<M>::c_kind;
    }
}

template <size_t N> struct RecordRows {
    RecordRow m_items[N + 1]; // A level may have no fields.
};

/// The rows of R's own level.
template <RecordLevel R> constexpr RecordRows<c_recordFieldCount<R>> zyr_makeRecordRows() {
    RecordRows<c_recordFieldCount<R>> rows{};
    RecordRow* row = rows.m_items;
    zyr_forEachField<R>([&](const auto& p_field) {
        using Member = typename std::decay_t<decltype(p_field)>::Member;
        const bool element = RecordFieldIO<Member>::c_element || p_field.m_element;
        *row++ = {p_field.m_key, zyr_getRecordFieldKind<Member>(), p_field.m_converter,
                  element,       !element && p_field.m_attribute,  p_field.m_declared};
    });
    return rows;
}

template <RecordLevel R> inline constexpr auto c_recordRows = zyr_makeRecordRows<R>();

template <class Self> void RecordWalker<Self>::locate(void* p_record, void** p_fields) {
    Self& record = *static_cast<Self*>(p_record);
    zyr_forEachField<Self>([&](const auto& p_field) { *p_fields++ = &(record.*p_field.m_member); });
}

template <class Self>
constinit RecordTable RecordWalker<Self>::s_table(c_recordRows<Self>.m_items, c_recordFieldCount<Self>, &locate);

template <class Self> const String& RecordWalker<Self>::name() {
    return zyr_getNameAssociatedToType<Self>(nullptr);
}

template <class Self> bool_t RecordWalker<Self>::read(Self& p_record, IDeserializer* p_deserializer) {
    static_assert(zyr_listedSize<Self>() + zyr_inheritedSize<Self>() == sizeof(Self),
                  "the field list misses a member, or the record is not packed");
    static_assert(c_recordFieldCount<Self> <= RecordTable::c_maximum);
    return s_table.read(&p_record, p_deserializer);
}

template <class Self>
bool_t RecordWalker<Self>::write(Self& p_record, ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                 bool_t& p_result) {
    return p_result = s_table.write(&p_record, p_serializer, p_firstPass, p_headerPass);
}

template <class Self> bool_t RecordWalker<Self>::readWhole(Self& p_record, IDeserializer* p_deserializer) {
    return p_record.readSerialized_Backwards(zyr_getTopDeserializer(p_deserializer));
}

template <class Self>
bool_t RecordWalker<Self>::writeWhole(Self& p_record, ISerializer* p_serializer, bool_t p_headerPass,
                                      bool_t& p_result) {
    ISerializer* serializer = zyr_getTopSerializer(p_serializer);
    for (int passes = serializer->isBinaryFormat() ? 1 : 2; passes > 0; --passes) {
        if (!p_record.writeSerialized_Backwards(serializer, passes == 2, p_headerPass, p_result)) {
            return 0;
        }
    }
    return 1;
}

template <class Self>
VariableReference* RecordWalker<Self>::findField(Self& p_record, const String& p_path, bool_t& p_known) {
    return s_table.find(&p_record, p_path, p_known);
}

} // namespace zyr
