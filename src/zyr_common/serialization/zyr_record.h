/// Value records that list their fields once.
///
/// A record derives from `Record<Itself>` and lists its fields, in order, with key and member. From the list come the
/// defaults, copying, comparison, reading, writing and the access to a field by its path:
///
///     #pragma pack(push, 1)
///     template <typename T> class Rect : public Record<Rect<T>> {
///     public:
///         T x, y, width, height;
///
///         Rect() { this->init_This(); }
///
///         static constexpr const char* c_typeName = "Rect";
///         static constexpr auto fields() {
///             return zyr_fields(zyr_field("x", &Rect::x), zyr_field("y", &Rect::y),
///                               zyr_field("width", &Rect::width), zyr_field("height", &Rect::height));
///         }
///     };
///     #pragma pack(pop)
///
/// and in one source, which includes zyr_record_walker.h:
///
///     template class RecordWalker<Rect<float>>;
///
/// A record that extends another one derives from `Record<Itself, Other>` and lists its own fields only: the
/// `_Backwards` functions run the other's level first. `Record<Itself, RefCountedData>` serves classes that are
/// counted; a class with virtual operations declares them itself and forwards (`return
/// Record::readSerialized(p_deserializer);`). A class that needs more than its list at some level defines that `_This`
/// function itself and calls the one of its Record inside.
///
/// How a field is stored follows from its type:
///
/// | Type | Stored as |
/// |---|---|
/// | bool_t, 32-bit and 64-bit integers, float, double | scalar, attribute |
/// | enumeration with an EnumerationTable | number with its converter, attribute |
/// | String, GUID_t | text, attribute |
/// | another record | named group |
/// | T[N], Array<T> of numbers, texts, enumerations or records, List<String> | array |
/// | HashSet of an enumeration | array in the order of insertion; reading adds to what the set holds |
///
/// Not thread safe: a record has one owner at a time.
#pragma once

#include "zyr_common/serialization/zyr_enumeration.h"
#include "zyr_common/zyr_types.h"

#include <cstddef>
#include <tuple>
#include <type_traits>

namespace zyr {

/// The end of a chain of records. Empty, and a class of its own for each record: a record that begins with another one
/// would otherwise hold two of the same class at one address, for which the compiler inserts a byte.
template <class Self> class RecordRoot {};

/// A level of a record: a class with a field list.
template <typename R>
concept RecordLevel = requires {
    R::fields();
};

/// The default of a field that has no number: its own cleared state.
/// It stands where a number would stand, so that the field list stays a constant.
struct RecordFieldCleared {};

/// The type of the default of a field.
template <typename M>
using RecordFieldDefault = std::conditional_t<std::is_arithmetic_v<M> || std::is_enum_v<M>, M, RecordFieldCleared>;

/// One entry of a field list. Made by zyr_field and refined by the with... functions, which give changed copies.
template <typename Owner, typename M> struct RecordField {
    using Member = M;

    /// the word in streams and paths
    const char* m_key;
    /// the field
    M Owner::*m_member;
    /// what init_This gives it
    RecordFieldDefault<M> m_default;
    /// shows its number as a word; null for none
    EnumerationConverter m_converter;
    /// a text format gives it an element of its own
    bool m_element;
    /// it is written with the mark of an attribute
    bool m_attribute;
    /// it stands in the header section
    bool m_declared;

    /// The value that init_This gives to a number or enumeration; 0 without it.
    constexpr RecordField withDefault(RecordFieldDefault<M> p_default) const {
        RecordField field = *this;
        field.m_default = p_default;
        return field;
    }
    /// A converter that shows certain values of an integer as words, or one that differs from the enumeration's own.
    constexpr RecordField withConverter(EnumerationConverter p_converter) const {
        RecordField field = *this;
        field.m_converter = p_converter;
        return field;
    }
    /// A long text: a text format writes it as an element and not as an attribute.
    constexpr RecordField asElement() const {
        RecordField field = withoutAttributeMark();
        field.m_element = true;
        return field;
    }
    /// Written with the attributes, but without the mark of one, which readers of such fields rely upon.
    constexpr RecordField withoutAttributeMark() const {
        RecordField field = *this;
        field.m_attribute = false;
        return field;
    }
    /// Written and read, but left out of the header section.
    constexpr RecordField withoutDeclaration() const {
        RecordField field = *this;
        field.m_declared = false;
        return field;
    }
};

/// The converter of a field's type, null for types without texts.
/// An enumeration finds its own by its table; a field can replace it by withConverter.
template <typename M> constexpr EnumerationConverter zyr_fieldConverter() {
    if constexpr (EnumerationWithTexts<M>) {
        return &zyr_convertEnumeration<M>;
    } else {
        return nullptr;
    }
}

/// A field with its key, which is also its word in paths. The key is a literal.
template <typename Owner, typename M> constexpr RecordField<Owner, M> zyr_field(const char* p_key, M Owner::*p_member) {
    return {p_key, p_member, RecordFieldDefault<M>{}, zyr_fieldConverter<M>(), false, true, true};
}

/// The field list of one level.
template <typename... Fields> constexpr std::tuple<Fields...> zyr_fields(Fields... p_fields) {
    return {p_fields...};
}

/// The field list of R as a constant.
template <RecordLevel R> inline constexpr auto c_recordFields = R::fields();

/// The number of fields of R's own level.
template <RecordLevel R> inline constexpr size_t c_recordFieldCount = std::tuple_size_v<decltype(R::fields())>;

/// Calls p_function for each field of R's own level, in order.
/// The calls are unrolled by the compiler, each with the field's own type:
///
///     zyr_forEachField<Rect<float>>([&](const auto& p_field) { sum += rect.*p_field.m_member; });
template <RecordLevel R, typename F> constexpr void zyr_forEachField(F&& p_function) {
    std::apply([&](const auto&... p_field) { (p_function(p_field), ...); }, c_recordFields<R>);
}

/// Whether p_function gives true for each field of R's own level; stops at the first that doesn't.
template <RecordLevel R, typename F> constexpr bool zyr_allFields(F&& p_function) {
    return std::apply([&](const auto&... p_field) { return (p_function(p_field) && ...); }, c_recordFields<R>);
}

class RecordTable;

/// The part of a record that is compiled once: streaming, paths and the name. Defined in zyr_record_walker.h and
/// instantiated in the record's source.
template <class Self> class RecordWalker {
public:
    /// The fields of this level, in order; 0 at the first failure, and what was read until then stays.
    static bool_t read(Self& p_record, IDeserializer* p_deserializer);
    /// The fields of this level that the pass is about. Text formats see attributes in the first pass and elements in
    /// the second; the header pass declares all.
    static bool_t write(Self& p_record, ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                        bool_t& p_result);
    /// All levels, through the outermost layer of the deserializer.
    static bool_t readWhole(Self& p_record, IDeserializer* p_deserializer);
    /// All levels, through the outermost layer of the serializer and in as many passes as its format has.
    static bool_t writeWhole(Self& p_record, ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result);
    /// p_known tells whether the first word is one of this level; if not, the result is null.
    static VariableReference* findField(Self& p_record, const String& p_path, bool_t& p_known);
    /// The record's type name; lives as long as the process.
    static const String& name();

private:
    /// Stores the addresses of the fields, for the table.
    static void locate(void* p_record, void** p_fields);
    /// What the loops over the fields go by.
    static RecordTable s_table;
};

/// The base of a record; see the top of this header. Adds no data.
template <class Self, class Base = RecordRoot<Self>> class Record : public Base {
public:
    /// The level below: another record, RefCountedData, or RecordRoot.
    using RecordBase = Base;

    /// Leaves the fields as they are: the record's own constructor calls init_This.
    Record() = default;
    /// Takes over the levels below; the fields of this one are left as they are.
    explicit Record(const Base& p_base) : Base(p_base) {}

    /// Sets the fields of this level to their defaults.
    void init_This() {
        zyr_forEachField<Self>([this](const auto& p_field) { reset(self().*p_field.m_member, p_field.m_default); });
    }

    /// Frees what this level owns beyond its fields: nothing, unless the class defines its own.
    void release_This() {}

    /// Back to the state of a new record, on all levels.
    /// What this level owns is freed first, then the levels below are cleared, and this one gets its defaults last.
    void clear() {
        self().release_This();
        if constexpr (requires(Base & p_base) { p_base.clear(); }) {
            Base::clear();
        }
        self().init_This();
    }

    /// Takes over the fields of this level.
    /// A class with members outside of its list defines this function itself and copies them as well.
    void copy_This(const Self& p_src) {
        zyr_forEachField<Self>([&](const auto& p_field) { assign(self().*p_field.m_member, p_src.*p_field.m_member); });
    }

    /// Takes over the fields of all levels, the base's first.
    void copy_Backwards(const Self& p_src) {
        if constexpr (RecordLevel<Base>) {
            Base::copy_Backwards(p_src);
        }
        self().copy_This(p_src);
    }

    /// Whether the fields of this level are equal; numbers are compared exactly.
    bool_t compare_This(const Self& p_other) const {
        return zyr_allFields<Self>(
            [&](const auto& p_field) { return equal(self().*p_field.m_member, p_other.*p_field.m_member); });
    }

    /// Whether the fields of all levels are equal.
    bool_t compare_Backwards(const Self& p_other) const {
        if constexpr (RecordLevel<Base>) {
            if (!Base::compare_Backwards(p_other)) {
                return 0;
            }
        }
        return self().compare_This(p_other);
    }

    /// As compare_Backwards. Records that hold not-a-number differ from themselves.
    friend bool operator==(const Self& p_left, const Self& p_right) { return p_left.compare_Backwards(p_right) != 0; }

    /// Reads the fields of this level in order. Stops at the first failure; the fields read until then stay as read, a
    /// group that isn't there leaves its field as it is.
    bool_t readSerialized_This(IDeserializer* p_deserializer) {
        return RecordWalker<Self>::read(self(), p_deserializer);
    }

    /// The same for all levels, the base's first.
    bool_t readSerialized_Backwards(IDeserializer* p_deserializer) {
        if constexpr (RecordLevel<Base>) {
            if (!Base::readSerialized_Backwards(p_deserializer)) {
                return 0;
            }
        }
        return self().readSerialized_This(p_deserializer);
    }

    /// Writes the fields of this level, or declares them in the header pass. p_result takes what is returned.
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result) {
        return RecordWalker<Self>::write(self(), p_serializer, p_firstPass, p_headerPass, p_result);
    }

    /// The same for all levels, the base's first.
    bool_t writeSerialized_Backwards(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                     bool_t& p_result) {
        if constexpr (RecordLevel<Base>) {
            if (!Base::writeSerialized_Backwards(p_serializer, p_firstPass, p_headerPass, p_result)) {
                return 0;
            }
        }
        return self().writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result);
    }

    /// Reads the whole record through the outermost layer of the deserializer.
    bool_t readSerialized(IDeserializer* p_deserializer) {
        return RecordWalker<Self>::readWhole(self(), p_deserializer);
    }

    /// Writes the whole record through the outermost layer of the serializer: in one pass into a binary format, in two
    /// into a text format.
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return RecordWalker<Self>::writeWhole(self(), p_serializer, p_headerPass, p_result);
    }

    /// A reference to the field that the path reaches ("origin.x"), or null; the caller releases it. Whole arrays, and
    /// whole records outside the type table, can't be referred to.
    VariableReference* getVariableReferenceByPath(const String& p_path) {
        bool_t known = 0;
        VariableReference* reference = RecordWalker<Self>::findField(self(), p_path, known);
        if constexpr (RecordLevel<Base>) {
            if (!known) {
                return Base::getVariableReferenceByPath(p_path);
            }
        }
        return reference;
    }

    /// The type name, with the word of the template argument in braces: "Rect{int32}".
    static const String& getRecordName() { return RecordWalker<Self>::name(); }
    /// The same, under the name that objects have for it. A class with virtual operations declares its own.
    const String& getClassName() const { return RecordWalker<Self>::name(); }

private:
    /// The record itself.
    Self& self() { return static_cast<Self&>(*this); }
    const Self& self() const { return static_cast<const Self&>(*this); }

    /// What init_This does to one field: its number, its own clear(), or what its type's constructor gives.
    template <typename M, typename D> static void reset(M& p_value, const D& p_default) {
        if constexpr (std::is_array_v<M>) {
            for (auto& item : p_value) {
                item = {};
            }
        } else if constexpr (std::is_same_v<M, D>) {
            p_value = p_default;
        } else if constexpr (requires { p_value.clear(); }) {
            p_value.clear();
        } else {
            p_value = M();
        }
    }

    /// What copy_This does to one field; arrays item by item.
    template <typename M> static void assign(M& p_value, const M& p_src) {
        if constexpr (std::is_array_v<M>) {
            for (size_t i = 0; i < std::extent_v<M>; ++i) {
                p_value[i] = p_src[i];
            }
        } else {
            p_value = p_src;
        }
    }

    /// What compare_This asks of one field. Types without operator== are compared by what they hold.
    template <typename M> static bool equal(const M& p_left, const M& p_right) {
        if constexpr (std::is_array_v<M>) {
            for (size_t i = 0; i < std::extent_v<M>; ++i) {
                if (!(p_left[i] == p_right[i])) {
                    return false;
                }
            }
            return true;
        } else if constexpr (requires { bool(p_left == p_right); }) {
            return p_left == p_right;
        } else if constexpr (requires { p_left.getData(); }) {
            return equalItems(p_left.getData(), p_left.getSize(), p_right.getData(), p_right.getSize());
        } else {
            return equalKeys(p_left, p_right);
        }
    }

    /// Sets are equal when they hold the same keys in the same order of insertion, lists when they hold equal items.
    template <typename M> static bool equalKeys(const M& p_left, const M& p_right) {
        auto left = p_left.beginConst();
        auto right = p_right.beginConst();
        while (left != p_left.endConst() && right != p_right.endConst()) {
            if (!equalEntries(*left, *right)) {
                return false;
            }
            ++left;
            ++right;
        }
        return left == p_left.endConst() && right == p_right.endConst();
    }

    /// Entries of a set count by their keys.
    template <typename Entry> static bool equalEntries(const Entry& p_left, const Entry& p_right) {
        if constexpr (requires { p_left.m_first; }) {
            return p_left.m_first == p_right.m_first;
        } else {
            return p_left == p_right;
        }
    }

    /// Arrays are equal when their sizes and all items are.
    template <typename T> static bool equalItems(const T* p_left, size_t p_leftSize, const T* p_right, size_t p_size) {
        if (p_leftSize != p_size) {
            return false;
        }
        for (size_t i = 0; i < p_size; ++i) {
            if (!(p_left[i] == p_right[i])) {
                return false;
            }
        }
        return true;
    }
};

} // namespace zyr
