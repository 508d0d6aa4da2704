/// The bodies of RecordWalker. Only for the source that instantiates a record:
///
///     template class RecordWalker<Rect<float>>;
#pragma once

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/object/zyr_type_names.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/serialization/zyr_record_fields.h"
#include "zyr_common/variable/zyr_variable_reference.h"
#include "zyr_common/variable/zyr_variable_types.h"

#include <utility>

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

/// A dotted path in its two parts, as String::getStringPathRoot cuts it, without copies: the views are valid as long as
/// the path.
struct RecordPath {
    explicit RecordPath(const String& p_path) {
        const char* text = p_path.getData();
        const size_t length = strnlen(text, p_path.getLengthInBytes());
        const void* period = memchr(text, '.', length);
        if (period == nullptr) {
            m_root.bindData(text, p_path.getLengthInBytes());
            return;
        }
        const size_t rootLength = static_cast<size_t>(static_cast<const char*>(period) - text);
        m_root.bindData(text, rootLength);
        m_rest.bindData(text + rootLength + 1, p_path.getLengthInBytes() - rootLength - 1);
    }

    WrappedString m_root;
    WrappedString m_rest;
};

/// The map from the words of one level to their places in the field list.
struct RecordWords {
    explicit RecordWords(HashMap<String, uint32_t>* (*p_make)()) : m_map(p_make()) {}

    /// What String::getCaseFromString gives for the first word of the path; no key has an index in brackets.
    uint32_t find(const RecordPath& p_path) const {
        const WrappedString& root = p_path.m_root;
        const auto* entry = m_map->findByHash(Hash<WrappedString>()(root),
                                              [&](const String& p_word) { return p_word.getWrapped() == root; });
        return entry != nullptr ? entry->m_second : UINT32_MAX;
    }

    HashMap<String, uint32_t>* const m_map;
};

template <RecordLevel R> HashMap<String, uint32_t>* zyr_makeRecordWords() {
    const char* keys[c_recordFieldCount<R> + 1]; // A level may have no fields.
    size_t count = 0;
    zyr_forEachField<R>([&](const auto& p_field) { keys[count++] = p_field.m_key; });
    return String::createMapOfStringCases(static_cast<uint32_t>(count), keys);
}

template <class Self> const String& RecordWalker<Self>::name() {
    return zyr_getNameAssociatedToType<Self>(nullptr);
}

template <class Self> template <size_t I> const String& RecordWalker<Self>::key() {
    static const String& text = makePermanent<String>(std::get<I>(c_recordFields<Self>).m_key);
    return text;
}

template <class Self>
template <size_t I>
bool_t RecordWalker<Self>::readField(Self& p_record, IDeserializer* p_deserializer) {
    static uint32_t cache = 0;
    constexpr auto& field = std::get<I>(c_recordFields<Self>);
    using Member = typename std::decay_t<decltype(field)>::Member;
    return RecordFieldIO<Member>::read(p_deserializer, key<I>(), cache, p_record.*field.m_member, field.m_converter);
}

template <class Self>
template <size_t I>
bool_t RecordWalker<Self>::writeField(Self& p_record, ISerializer* p_serializer, bool_t p_firstPass,
                                      bool_t p_headerPass) {
    constexpr auto& field = std::get<I>(c_recordFields<Self>);
    using IO = RecordFieldIO<typename std::decay_t<decltype(field)>::Member>;
    constexpr bool element = IO::c_element || field.m_element;
    if (p_headerPass) {
        bool_t result = 1;
        return !field.m_declared || IO::declare(p_serializer, key<I>(), p_record.*field.m_member, result);
    }
    if (!p_serializer->isBinaryFormat() && (element ? p_firstPass : !p_firstPass)) {
        return 1;
    }
    return IO::write(p_serializer, key<I>(), p_record.*field.m_member, !element && field.m_attribute,
                     field.m_converter);
}

template <class Self>
template <size_t I>
VariableReference* RecordWalker<Self>::refField(Self& p_record, const RecordPath& p_path) {
    constexpr auto& field = std::get<I>(c_recordFields<Self>);
    using Member = typename std::decay_t<decltype(field)>::Member;
    auto& value = p_record.*field.m_member;
    if (!p_path.m_rest.isEmpty()) {
        if constexpr (RecordLevel<Member>) {
            return value.getVariableReferenceByPath(p_path.m_rest);
        } else {
            return nullptr;
        }
    }
    constexpr VariableTypeEnum type = zyr_getVariableTypeEnum<Member>();
    return type != ZYR_VARIABLE_NONE ? new VariableReference(type, &value) : nullptr;
}

template <class Self> bool_t RecordWalker<Self>::read(Self& p_record, IDeserializer* p_deserializer) {
    static_assert(zyr_listedSize<Self>() + zyr_inheritedSize<Self>() == sizeof(Self),
                  "the field list misses a member, or the record is not packed");
    return [&]<size_t... I>(std::index_sequence<I...>)->bool_t {
        return (readField<I>(p_record, p_deserializer) && ...);
    }
    (std::make_index_sequence<c_recordFieldCount<Self>>());
}

template <class Self>
bool_t RecordWalker<Self>::write(Self& p_record, ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                 bool_t& p_result) {
    return p_result = [&]<size_t... I>(std::index_sequence<I...>)->bool_t {
        return (writeField<I>(p_record, p_serializer, p_firstPass, p_headerPass) && ...);
    }
    (std::make_index_sequence<c_recordFieldCount<Self>>());
}

template <class Self> bool_t RecordWalker<Self>::readWhole(Self& p_record, IDeserializer* p_deserializer) {
    return p_record.readSerialized_Backwards(zyr_getTopDeserializer(p_deserializer));
}

template <class Self>
bool_t RecordWalker<Self>::writeWhole(Self& p_record, ISerializer* p_serializer, bool_t p_headerPass,
                                      bool_t& p_result) {
    ISerializer* serializer = zyr_getTopSerializer(p_serializer);
    bool_t firstPass = !serializer->isBinaryFormat();
    if (!p_record.writeSerialized_Backwards(serializer, firstPass, p_headerPass, p_result)) {
        return 0;
    }
    return !firstPass || p_record.writeSerialized_Backwards(serializer, 0, p_headerPass, p_result);
}

template <class Self>
VariableReference* RecordWalker<Self>::findField(Self& p_record, const String& p_path, bool_t& p_known) {
    static const RecordWords& words = makePermanent<RecordWords>(zyr_makeRecordWords<Self>);
    const RecordPath path(p_path);
    const uint32_t word = words.find(path);
    p_known = word < c_recordFieldCount<Self>;
    VariableReference* reference = nullptr;
    [&]<size_t... I>(std::index_sequence<I...>) {
        ((word == I ? void(reference = refField<I>(p_record, path)) : void()), ...);
    }
    (std::make_index_sequence<c_recordFieldCount<Self>>());
    return reference;
}

} // namespace zyr
