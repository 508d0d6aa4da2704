/// The framework's text class.
///
/// A String is UTF-8 in every case and is not validated; conversions from and to wide text happen at its edges. Up to
/// 64 bytes, terminator included, sit inside the object; longer text has a heap block of its own, which is never
/// shared: each copy is a deep copy. Ordering is by length first, bytes second, so "b" is less than "aa".
///
/// A String is not thread safe. Positions and lengths are bytes unless a name says characters. An argument may be the
/// receiver itself, or point into it.
///
///     String path("a\\b");
///     path.normalizeDirectoryPath(); // "a/b/"
#pragma once

#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/text/zyr_wrapped_string.h"

#include <cstdarg>
#include <cstddef>
#include <string>
#include <typeinfo>

namespace zyr {

template <typename A, typename B> class Pair;

#pragma pack(push, 1)

/// Text of any length with its terminator. A byte 0 inside of it is allowed and counts.
class String : public RefCountedData {
public:
    /// The capacity of the inline buffer, and the only mark of it: every heap block is larger.
    static constexpr size_t INLINE_SIZE = 64;

    /// Empty; allocates nothing.
    String() { setInlineEmpty(); }
    /// Null gives an empty string; `p_length` 0 takes strlen.
    String(const char* p_text, size_t p_length = 0) {
        initCopy(p_text, p_text == nullptr ? 0 : p_length != 0 ? p_length : strlen(p_text));
    }
    String(std::nullptr_t, size_t = 0) { setInlineEmpty(); }
    String(const std::string& p_text) { initCopy(p_text.data(), p_text.size()); }
    String(const String& p_other) : RefCountedData() { initCopy(p_other.m_data, p_other.getLengthInBytes()); }
    String(const WrappedString& p_text) { initCopy(p_text.getData(), p_text.getSize()); }
    /// From 16-bit units; `p_length` 0 goes up to the zero unit. See pushBackUnicode16SubString.
    String(const short* p_text, size_t p_length = 0);
    /// From UTF-32; `p_length` 0 goes up to the zero unit.
    String(const wchar_t* p_text, size_t p_length = 0);
    /// Gives a heap block back. A subclass with another heap has cleared itself before.
    ~String() override {
        if (!isInline()) {
            freeBuffer(m_data);
        }
    }

    // The order of the virtual operations is a contract between modules.

    /// Back to the empty string, inline.
    virtual void clear();
    /// Sets the number of bytes in use, terminator counted, without writing a terminator. Grows to twice the need and
    /// never shrinks the capacity. The caller fills the new bytes.
    virtual void resize(size_t p_size);

protected:
    // The only route to memory, so that a subclass can give its strings another heap. Constructors run before such an
    // override is in place and the destructor after it is gone: a subclass starts empty and clears itself at its end.
    virtual char* allocateBuffer(size_t p_size);
    virtual char* reallocateBuffer(char* p_buffer, size_t p_size);
    virtual void freeBuffer(char* p_buffer);

public:
    // Access.

    /// The text with its terminator. The address is valid until the string is changed or destroyed.
    const char* getData() const { return m_data; }
    char* getData() { return m_data; }
    /// The bytes in use, terminator counted: 1 for the empty string.
    size_t getSize() const { return m_size; }
    /// The bytes that the text and its terminator can take before it moves; INLINE_SIZE inline.
    size_t getAllocatedSize() const { return m_allocatedSize; }
    /// The bytes in front of the terminator.
    size_t getLengthInBytes() const { return m_size != 0 ? m_size - 1 : 0; }
    /// Whether there is no byte in front of the terminator.
    bool_t isEmpty() const { return m_size <= 1; }
    /// The bytes without the terminator; valid until the string is changed or destroyed.
    WrappedString getWrapped() const;
    /// Process-wide "" and "null".
    static const String& getConstEmpty();
    static const String& getConstNull();

    // Assignment. Null and a length of 0 clear. Text of up to 63 bytes goes inline and gives back a heap block.

    String& operator=(const String& p_other) {
        if (this != &p_other) {
            assignUTF8SubString(p_other.m_data, p_other.getLengthInBytes());
        }
        return *this;
    }
    /// By the assign functions below.
    String& operator=(const char* p_text);
    String& operator=(const short* p_text);
    String& operator=(const wchar_t* p_text);
    void assignUTF8String(const char* p_text);
    /// The "SubString" forms take a length in units and need no terminator; the others go up to it.
    void assignUTF8SubString(const char* p_text, size_t p_length);
    /// From 16-bit units and from UTF-32, as the functions that append them read them.
    void assignUnicode16String(const short* p_text);
    void assignUnicode16SubString(const short* p_text, size_t p_length);
    void assignUnicode32String(const wchar_t* p_text);
    void assignUnicode32SubString(const wchar_t* p_text, size_t p_length);

    // Append. Null appends nothing.

    /// One byte, whatever it is.
    void pushBackAsciiCharacter(char p_character) {
        if (fits(1)) {
            m_data[m_size - 1] = p_character;
            m_data[m_size] = 0;
            m_size++;
        } else {
            appendAndGrow(__PRETTY_FUNCTION__, &p_character, 1);
        }
    }
    /// 16-bit text is UCS-2 below 0x8000, and relied upon as such: a unit from 0x8000 on gives its low byte, and
    /// surrogates are not combined.
    void pushBackUnicode16Character(short p_character);
    /// Values above 0x10FFFF are dropped; surrogate values are not.
    void pushBackUnicode32Character(wchar_t p_character);
    /// Up to the terminator. The text may be a part of this string.
    void pushBackUTF8String(const char* p_text) {
        if (p_text != nullptr && *p_text != 0) {
            append(__PRETTY_FUNCTION__, p_text, strlen(p_text));
        }
    }
    void pushBackUTF8SubString(const char* p_text, size_t p_length) { append(__PRETTY_FUNCTION__, p_text, p_length); }
    void pushBackUnicode16String(const short* p_text);
    void pushBackUnicode16SubString(const short* p_text, size_t p_length);
    void pushBackUnicode32String(const wchar_t* p_text);
    void pushBackUnicode32SubString(const wchar_t* p_text, size_t p_length);
    String& operator+=(const String& p_text) {
        pushBackUTF8SubString(p_text.m_data, p_text.getLengthInBytes());
        return *this;
    }
    String& operator+=(const char* p_text) {
        pushBackUTF8String(p_text);
        return *this;
    }
    String& operator+=(const short* p_text);
    String& operator+=(const wchar_t* p_text);
    /// A new string; this one stays.
    String operator+(const String& p_text) const;
    String operator+(const char* p_text) const;
    String operator+(const short* p_text) const;
    String operator+(const wchar_t* p_text) const;

    // Insert and delete. A position beyond the end is ignored; a position at the end appends.

    /// Positions are in bytes here too.
    void insertAsciiCharacter(char p_character, size_t p_position);
    void insertUnicode16Character(short p_character, size_t p_position);
    void insertUnicode32Character(wchar_t p_character, size_t p_position);
    /// Positions are in bytes, and one inside of a sequence cuts it.
    void insertString(const String& p_text, size_t p_position);
    /// Deletes the UTF-8 sequence at the position.
    void deleteCharacter(size_t p_position);
    /// Deletes the byte at the position if it is the given one.
    void deleteAsciiCharacter(char p_character, size_t p_position);
    /// Deletes up to `p_length` bytes.
    void deleteRange(size_t p_position, size_t p_length);

    // Characters. Well-formed UTF-8 is expected; a byte that can't lead a sequence ends a forward walk.

    /// Counts the sequences; with `p_skipLineBreaks` the bytes 10 and 13 are not counted.
    size_t getLengthInCharacters(bool_t p_skipLineBreaks = 0) const;
    /// The sequence at the position and its size as its first byte says, 1 to 4; 0 for a byte that can't lead one. Null
    /// beyond the end, with `p_sizeInBytes` 0.
    const char* getCharacter(size_t p_position, size_t& p_sizeInBytes) const;
    /// The same as a string; empty where there is none.
    String getCharacterString(size_t p_position) const;
    /// Where the character begins, counted from the start, or backward from the end.
    size_t getCharacterPositionInBytes(size_t p_character, bool_t p_fromEnd = 0) const;
    /// The position behind the sequence, or the same position where that would pass the end.
    size_t getNextCharacterPositionInBytes(size_t p_position) const;
    /// The position of the sequence before, or the same position where there is none.
    size_t getPrevCharacterPositionInBytes(size_t p_position) const;

    // Search and replace.

    /// True when found; `p_position` is set then only. Forward gives the first match, backward the last; the backward
    /// search never looks at position 0, which is relied upon. With `p_skipBrackets` only bytes outside all balanced
    /// (), [] and {} count, or the bracket that closes (backward: opens) the outermost pair.
    bool_t searchCharacter(char p_character, bool_t p_fromEnd, bool_t p_skipBrackets, size_t& p_position) const;
    /// As searchCharacter, for a text. The backward search has the same gap at position 0.
    bool_t searchString(const String& p_text, bool_t p_fromEnd, size_t& p_position) const;
    /// Replaces the first match of searchCharacter. The result is always false, found or not.
    bool_t replaceCharacter(char p_character, char p_replacement, bool_t p_fromEnd, bool_t p_skipBrackets);
    /// Replaces one occurrence; true if there was one.
    bool_t replaceString(const String& p_text, const String& p_replacement, bool_t p_fromEnd);

    // Split. Outputs may be null and may be the receiver; they stay untouched when the separator is absent.

    /// Cuts at a character position, counted as in getCharacterPositionInBytes.
    void getLeftAndRight(size_t p_character, String* p_left, String* p_right, bool_t p_fromEnd) const;
    bool_t getSeparatedStrings(const String& p_separator, String* p_left, String* p_right, bool_t p_fromEnd) const;
    bool_t getSeparatedStrings(char p_separator, String* p_left, String* p_right, bool_t p_fromEnd,
                               bool_t p_skipBrackets) const;
    /// Gives the left part; empty when the separator is absent.
    String getSeparatedStringLeft(char p_separator, String* p_right, bool_t p_fromEnd, bool_t p_skipBrackets) const;
    /// Gives the right part; empty when the separator is absent.
    String getSeparatedStringRight(char p_separator, String* p_left, bool_t p_fromEnd, bool_t p_skipBrackets) const;

    // Parsing.

    /// The text inside the first balanced pair of brackets, and the text before it in the optional `p_prefix`. Empty,
    /// with the prefix untouched, when there is no such pair or nothing inside.
    String parseBracketsString(char p_open, char p_close, String* p_prefix) const;
    /// The number inside the first balanced pair; 0 when there is none.
    uint32_t parseBracketsUInt32(char p_open, char p_close) const;
    /// Appends the non-empty pieces to the list. One blank behind a separator is dropped.
    void parseCsvString(char p_separator, List<String>& p_list) const;
    /// "3..7" gives 3 and 7, "9" gives 9 and 9; an empty side of ".." gives INDEX_NONE.
    Pair<unsigned int, unsigned int> parseRangeUInt32() const;
    /// For `name[text,range]`: gives the text, and the range in the optional `p_range`; (INDEX_NONE, INDEX_NONE) where
    /// there is no comma. Empty when what precedes the brackets isn't `p_name`.
    String parseBracketsStringAndIndexRange(const String& p_name, char p_open, char p_close,
                                            Pair<unsigned int, unsigned int>* p_range) const;
    static constexpr unsigned int INDEX_NONE = 0xFFFFFFFE;
    /// Wildcard match against a pattern in which "*" stands for any text.
    bool_t compareTruncatedString(const String& p_pattern) const;

    // Lines. Both 10 and 13 end a line.

    /// The position of the first byte of the line that holds the position.
    size_t getLineStartInBytes(size_t p_position) const;
    /// The number of characters from there to the position.
    size_t getLineStartInCharacters(size_t p_position) const;
    /// The position of the line's terminator, or the end. For 13 followed by 10 it is that of the 10.
    size_t getLineEndInBytes(size_t p_position) const;

    // Case: ASCII letters only.

    void convertToUpperCase();
    void convertToLowerCase();

    // Paths. Both slashes separate; a backslash anywhere wins over a slash.

    /// Everything up to and with the last separator; empty without one.
    String getDirectoryPath() const;
    /// What follows the last separator, or the whole text; `p_directory` takes the rest with its separator, and is left
    /// alone without one.
    String getFileName(String* p_directory) const;
    /// The name of the last directory; `p_directory` takes the path of its parent. Empty, with `p_directory` cleared,
    /// without a separator.
    String getDirectoryName(String* p_directory) const;
    /// True when the text begins with "/".
    bool_t isAbsolutePath() const;
    /// Turns each backslash into a slash.
    void setCoherentPathSlashes();
    /// Adds a slash to the end where there is none, and turns each backslash into a slash.
    void normalizeDirectoryPath();
    /// Puts each level of a directory path in front of the list's items, the outermost first: "a/", "a/b/", "a/b/c/".
    void getNestedDirectories(List<String>& p_list) const;
    /// Cuts a dotted path at its first period. Without one the root is the whole path, and the rest is cleared.
    static void getStringPathRoot(const String& p_path, String& p_root, String& p_rest);

    // Format, as printf does. A failure leaves the target unchanged.

    /// A new text. Numbers are written with a point, whatever locale the host has set.
    static String newFormatted(const char* p_format, ...) __attribute__((format(printf, 1, 2)));
    static String newFormatted(const wchar_t* p_format, ...);
    /// Into a string that is there.
    static void newFormatted(String& p_target, const char* p_format, ...) __attribute__((format(printf, 2, 3)));
    static void newFormatted(String& p_target, const wchar_t* p_format, ...);
    static String newArgList(const char* p_format, va_list p_arguments) __attribute__((format(printf, 1, 0)));
    static String newArgList(const wchar_t* p_format, va_list p_arguments);
    static void newArgList(String& p_target, const char* p_format, va_list p_arguments)
        __attribute__((format(printf, 2, 0)));
    static void newArgList(String& p_target, const wchar_t* p_format, va_list p_arguments);
    /// The lower-case text form of a GUID.
    static String newFromGUID(const GUID_t& p_guid);
    /// Writes to the standard output. The text is the format of a wide printf, so a "%" in it is a conversion.
    static void print(const String& p_text);

    // Enumerations by name.

    /// A new map from each name to its index; the caller owns it. A repeated name keeps its first index.
    static HashMap<String, uint32_t>* createMapOfStringCases(uint32_t p_count, const char** p_names);
    /// The value of the text in the map, or 0xFFFFFFFF. A text such as "item[3]" also matches the name "item[i]", and
    /// `p_index` is set to the number then only.
    static uint32_t getCaseFromString(const String& p_text, uint32_t& p_index, const HashMap<String, uint32_t>& p_map);

    // Wide output. Both end with a zero unit, which the array's size counts.

    /// A four-byte sequence gives one unit, the low 16 bits of its value: surrogate pairs are not made.
    void convertToUnicode16(Array<short>& p_units) const;
    void convertToUnicode32(Array<wchar_t>& p_units) const;

private:
    /// Whether the text stands in this object itself.
    bool isInline() const { return m_allocatedSize == INLINE_SIZE; }
    /// Whether the argument is a part of this text, and would move with it.
    bool pointsInside(const char* p_text) const {
        return reinterpret_cast<uintptr_t>(p_text) - reinterpret_cast<uintptr_t>(m_data) < m_size;
    }
    void setInlineEmpty() {
        m_data = m_internalBuffer;
        m_size = 1;
        m_allocatedSize = INLINE_SIZE;
        m_internalBuffer[0] = 0;
    }
    /// Whether so many more bytes, at least one, can be written behind the text without asking the virtual operations.
    /// A subclass may have changed how a string grows.
    bool fits(size_t p_length) const {
        return m_size != 0 && p_length - 1 < m_allocatedSize - m_size && typeid(*this) == typeid(String);
    }
    /// The short way of all that append; null appends nothing.
    void append(const char* p_caller, const char* p_text, size_t p_length) {
        if (p_text != nullptr && fits(p_length)) {
            memmove(m_data + m_size - 1, p_text, p_length);
            m_size += p_length;
            m_data[m_size - 1] = 0;
        } else {
            appendAndGrow(p_caller, p_text, p_length);
        }
    }
    /// `p_caller` is the function that reports a string without a terminator.
    void appendAndGrow(const char* p_caller, const char* p_text, size_t p_length);
    /// For constructors: the first content, inline where it fits.
    void initCopy(const char* p_text, size_t p_length);
    /// Makes room at the position, up to the end, and fills it.
    void insertBytes(const char* p_text, size_t p_length, size_t p_position);
    void assignSeparated(size_t p_leftLength, size_t p_rightPosition, String* p_left, String* p_right) const;
    /// The separator that path functions cut at. False without one.
    bool searchLastSlash(size_t& p_position) const;

    /// the inline buffer, or a heap block; never null
    char* m_data;
    /// bytes in use, terminator counted
    size_t m_size;
    /// bytes of the block
    size_t m_allocatedSize;
    char m_internalBuffer[INLINE_SIZE];
};

#pragma pack(pop)

static_assert(sizeof(String) == 112 && alignof(String) == 1);

inline WrappedString String::getWrapped() const {
    WrappedString wrapped;
    wrapped.bindData(m_data, getLengthInBytes());
    return wrapped;
}

// The order of text for each pair of types: below 0, 0 or above 0. Wide text is converted first; null is empty text.

inline int compareText(const String& p_a, const String& p_b) {
    return zyr_memcmp(p_a.getData(), p_a.getLengthInBytes(), p_b.getData(), p_b.getLengthInBytes());
}
inline int compareText(const String& p_a, const char* p_b) {
    return zyr_memcmp(p_a.getData(), p_a.getLengthInBytes(), p_b, p_b != nullptr ? strlen(p_b) : 0);
}
inline int compareText(const String& p_a, const WrappedString& p_b) {
    return zyr_memcmp(p_a.getData(), p_a.getLengthInBytes(), p_b.getData(), p_b.getSize());
}
inline int compareText(const WrappedString& p_a, const String& p_b) {
    return compareText(p_a, p_b.getWrapped());
}
inline int compareText(const String& p_a, const short* p_b) {
    return compareText(p_a, String(p_b));
}
inline int compareText(const String& p_a, const wchar_t* p_b) {
    return compareText(p_a, String(p_b));
}

ZYR_TEXT_COMPARISONS(String&, String&)
ZYR_TEXT_COMPARISONS(String&, char*)
ZYR_TEXT_COMPARISONS(String&, short*)
ZYR_TEXT_COMPARISONS(String&, wchar_t*)
ZYR_TEXT_COMPARISONS(String&, WrappedString&)
ZYR_TEXT_COMPARISONS(WrappedString&, String&)
#undef ZYR_TEXT_COMPARISONS

} // namespace zyr
