/// The operations of a deserializer of a text format. Input makes the tree and knows what its nodes mean (JsonInput,
/// XmlInput).
///
/// Members are looked for where the last one was found, since they are mostly read in the order of the text. The cache
/// words of the callers are not used.
#pragma once

#include "core_module/serializers/zyr_enumeration_words.h"
#include "core_module/serializers/zyr_field_kind.h"
#include "core_module/serializers/zyr_frame_stack.h"
#include "core_module/serializers/zyr_number_words.h"
#include "core_module/serializers/zyr_serializer_level.h"
#include "core_module/serializers/zyr_text_class.h"
#include "core_module/serializers/zyr_text_scan_error.h"
#include "core_module/serializers/zyr_text_tree.h"
#include "core_module/zyr_text_place.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_permanent.h"

namespace zyr {

template <class Interface, class Input> class TextDeserializerLevel : public DeserializerLevel<Interface> {
public:
    bool_t initialize(const void* p_data, size_t p_size) override {
        const char* text = static_cast<const char*>(p_data);
        TextScanError error;
        m_class.forget();
        m_depth = 0;
        m_frames[0] = Frame();
        if (text == nullptr || !Input::scan(text, p_size, m_tree, error)) {
            report(text, error);
            m_tree.release();
            return 0;
        }
        m_frames[0].m_end = m_tree.getSize();
        return 1;
    }
    bool_t deinitialize() override {
        m_tree.release();
        m_class.forget();
        m_depth = 0;
        m_frames[0] = Frame();
        return 1;
    }
    bool_t isBinaryFormat() const override { return 0; }
    const String& getCurrentObjectTypeName() const override { return getClass().m_name; }
    const String& getCurrentObjectGUIDText() const override { return getClass().m_guidText; }
    uint32_t getArraySize() const override { return m_frames[m_depth].m_count; }

    bool_t enterGroup(const String& p_name, bool_t& p_found) override {
        p_found = find(p_name);
        if (p_found && !Input::isGroup(m_tree, m_node)) {
            p_found = 0;
            return refuse(p_name, "a group");
        }
        return !p_found || enterNode(m_node);
    }
    bool_t leaveGroup() override { return leave(); }

    bool_t enterObject(const String& p_name, bool_t& p_found) override {
        p_found = find(p_name) && !Input::isNull(m_tree, m_node);
        if (p_found && !Input::isGroup(m_tree, m_node)) {
            p_found = 0;
            return refuse(p_name, "an object");
        }
        if (!p_found) {
            return 1;
        }
        if (!enterNode(m_node)) {
            return 0;
        }
        m_frames[m_depth].m_object = m_node;
        return 1;
    }
    bool_t leaveObject() override { return leave(); }

    bool_t enterArray(const String& p_name, bool_t& p_found, uint32_t) override {
        p_found = find(p_name);
        if (p_found && !Input::isArray(m_tree, m_node)) {
            p_found = 0;
            return refuse(p_name, "an array");
        }
        return !p_found || enterItems();
    }
    bool_t leaveArray(uint32_t) override { return leave(); }

    bool_t enterArrayElement(uint32_t p_index, String& p_typeName) override {
        Frame& frame = m_frames[m_depth];
        if (p_index >= frame.m_count) {
            return 0;
        }
        if (p_index < frame.m_nextIndex) {
            frame.m_next = frame.m_first;
            frame.m_nextIndex = 0;
            frame.m_type = c_noNode;
        }
        uint32_t element = c_noNode;
        for (; frame.m_nextIndex <= p_index; frame.m_nextIndex++) {
            element = skipToItem(frame.m_next);
            frame.m_next = m_tree[element].m_next;
            if (findType(element) != c_noNode) {
                frame.m_type = findType(element);
            }
        }
        if (Input::isNull(m_tree, element)) {
            p_typeName.clear();
        } else if (!Input::isGroup(m_tree, element)) {
            return 0;
        } else if (frame.m_type != c_noNode) {
            Input::decode(m_tree, m_tree[frame.m_type], p_typeName);
        } else {
            p_typeName = "record"; // Written by hand: a type is only asked for where there are several.
        }
        return enterNode(element);
    }
    bool_t leaveArrayElement() override { return leave(); }

    bool_t readStringRef(const String& p_name, uint32_t&, String*& p_value, uint32_t) override {
        if (!find(p_name)) {
            return 1;
        }
        if (Input::isNull(m_tree, m_node)) {
            p_value = nullptr;
            return 1;
        }
        String text;
        if (!readText(p_name, text)) {
            return 0;
        }
        p_value = new String(text);
        return 1;
    }
    bool_t readBool(const String& p_name, uint32_t&, bool_t& p_value, uint32_t) override {
        if (!find(p_name)) {
            return 1;
        }
        const bool scalar = Input::isScalar(m_tree, m_node) && Input::isWord(node());
        const size_t length = node().m_valueSize;
        const auto isWord = [&](const char* p_word) {
            return scalar && length == strlen(p_word) && memcmp(value(), p_word, length) == 0;
        };
        if (isWord("true") || isWord("1")) {
            p_value = 1;
            return 1;
        }
        if (isWord("false") || isWord("0")) {
            p_value = 0;
            return 1;
        }
        return refuse(p_name, "a bool");
    }
    bool_t readEnum(const String& p_name, uint32_t&, uint32_t& p_value, EnumerationConverter p_converter) override {
        return readNumber(p_name, p_value, p_converter);
    }
    bool_t readInt32(const String& p_name, uint32_t&, int32_t& p_value, EnumerationConverter p_converter) override {
        return readNumber(p_name, p_value, p_converter);
    }
    bool_t readUInt32(const String& p_name, uint32_t&, uint32_t& p_value, EnumerationConverter p_converter) override {
        return readNumber(p_name, p_value, p_converter);
    }
    bool_t readInt64(const String& p_name, uint32_t&, int64_t& p_value, EnumerationConverter p_converter) override {
        return readNumber(p_name, p_value, p_converter);
    }
    bool_t readUInt64(const String& p_name, uint32_t&, uint64_t& p_value, EnumerationConverter p_converter) override {
        return readNumber(p_name, p_value, p_converter);
    }
    bool_t readFloat(const String& p_name, uint32_t&, float& p_value, EnumerationConverter) override {
        return readNumber(p_name, p_value, nullptr);
    }
    bool_t readDouble(const String& p_name, uint32_t&, double& p_value, EnumerationConverter) override {
        return readNumber(p_name, p_value, nullptr);
    }
    bool_t readString(const String& p_name, uint32_t&, String& p_value, EnumerationConverter) override {
        return !find(p_name) || readText(p_name, p_value);
    }

    bool_t readStringArray(const String& p_name, uint32_t&, Array<String>& p_value, uint32_t) override {
        return readItems(p_name, p_value, [this](String& p_item) {
            if (!Input::isText(node()) || !Input::isScalar(m_tree, m_node)) {
                return false;
            }
            Input::decode(m_tree, node(), p_item);
            return true;
        });
    }
    bool_t readFloatArray(const String& p_name, uint32_t&, Array<float>& p_value, uint32_t) override {
        return readNumbers(p_name, p_value);
    }
    bool_t readDoubleArray(const String& p_name, uint32_t&, Array<double>& p_value, uint32_t) override {
        return readNumbers(p_name, p_value);
    }
    bool_t readUInt32Array(const String& p_name, uint32_t&, Array<uint32_t>& p_value, uint32_t) override {
        return readNumbers(p_name, p_value);
    }
    bool_t readEnumArray(const String& p_name, uint32_t&, Array<uint32_t>& p_value,
                         EnumerationConverter p_converter) override {
        // Numbers may stand without quotes.
        if (find(p_name) && Input::isNumbers(m_tree, m_node, node()) && !Input::isWord(node())) {
            return readNumbers(p_name, p_value);
        }
        return readItems(p_name, p_value,
                         [this, p_converter](uint32_t& p_item) { return parseScalar(p_item, p_converter); });
    }

    void release_This() {
        DeserializerLevel<Interface>::release_This();
        deinitialize();
    }

private:
    static constexpr uint32_t c_noNode = UINT32_MAX;

    /// What was entered: the nodes from m_first to m_end.
    struct Frame {
        uint32_t m_first = 0;
        uint32_t m_end = 0;
        /// Where the next member is expected, or the next element stands.
        uint32_t m_next = 0;
        /// Of an array: number of elements, the index of the next one, and the node of the last type name.
        uint32_t m_count = 0;
        uint32_t m_nextIndex = 0;
        uint32_t m_type = c_noNode;
        /// The node of an object; none for anything else.
        uint32_t m_object = c_noNode;
    };

    const TextNode& node() const { return m_tree[m_node]; }
    const char* value() const { return m_tree.getText() + node().m_value; }

    static void report(const char* p_text, const TextScanError& p_error) {
        if (p_error.m_reason != nullptr) {
            const TextPlace place(p_text, p_error.m_place);
            ZYR_LOG_INFO("Unable to read the document: %s at line %zu, column %zu", p_error.m_reason, place.m_line,
                         place.m_column);
        }
    }

    /// Looks for the member of that name, which m_node is then.
    bool find(const String& p_name) {
        Frame& frame = m_frames[m_depth];
        if (frame.m_next < frame.m_end) {
            const TextNode& next = m_tree[frame.m_next];
            if (next.has(KEY_PLAIN) && m_tree.hasKey(next, p_name)) {
                m_node = frame.m_next;
                frame.m_next = next.m_next;
                return true;
            }
        }
        return search(p_name);
    }
    __attribute__((noinline)) bool search(const String& p_name) {
        const String& key = Input::getKey(p_name, m_key);
        Frame& frame = m_frames[m_depth];
        if (findBetween(key, frame.m_next, frame.m_end) || findBetween(key, frame.m_first, frame.m_next)) {
            frame.m_next = node().m_next;
            return true;
        }
        return false;
    }
    bool findBetween(const String& p_key, uint32_t p_first, uint32_t p_end) {
        for (uint32_t i = p_first; i < p_end; i = m_tree[i].m_next) {
            if (Input::hasKey(m_tree, m_tree[i], p_key)) {
                m_node = i;
                return true;
            }
        }
        return false;
    }
    /// Of the innermost object, empty outside of any.
    const TextClass<Input>& getClass() const {
        uint32_t depth = m_depth;
        while (depth != 0 && m_frames[depth].m_object == c_noNode) {
            depth--;
        }
        m_class.read(m_tree, m_frames[depth].m_object);
        return m_class;
    }
    /// The node of an element's type name. It is the first of the element's, as it is written.
    uint32_t findType(uint32_t p_element) const {
        static const String& typeKey = makePermanent<String>(Input::c_typeKey);
        const uint32_t first = p_element + 1;
        return m_tree[p_element].m_next != first && Input::hasKey(m_tree, m_tree[first], typeKey) &&
                       Input::isScalar(m_tree, first)
                   ? first
                   : c_noNode;
    }
    uint32_t skipToItem(uint32_t p_index) const {
        while (!Input::isItem(m_tree, m_tree[p_index])) {
            p_index = m_tree[p_index].m_next;
        }
        return p_index;
    }

    bool enterNode(uint32_t p_index) {
        if (!m_frames.reach(m_depth + 1)) {
            return false;
        }
        Frame& frame = m_frames[++m_depth];
        frame = Frame();
        frame.m_first = p_index + 1;
        frame.m_next = frame.m_first;
        frame.m_end = m_tree[p_index].m_next;
        return true;
    }
    /// Enters m_node and counts its items.
    bool enterItems() {
        if (!enterNode(m_node)) {
            return false;
        }
        Frame& frame = m_frames[m_depth];
        for (uint32_t i = frame.m_first; i < frame.m_end; i = m_tree[i].m_next) {
            frame.m_count += Input::isItem(m_tree, m_tree[i]);
        }
        return true;
    }
    bool leave() {
        if (m_depth == 0) {
            return false;
        }
        m_depth--;
        return true;
    }

    bool_t refuse(const String& p_name, const char* p_kind) const {
        ZYR_LOG_INFO("Unable to read %s: it is not %s", p_name.getData(), p_kind);
        return 0;
    }
    bool_t readText(const String& p_name, String& p_value) {
        if (!Input::isScalar(m_tree, m_node) || !Input::isText(node())) {
            return refuse(p_name, "a text");
        }
        Input::decode(m_tree, node(), p_value);
        return 1;
    }
    /// Reads m_node as a number or as a word for one. Numbers that are none stand as texts.
    template <typename T> bool parseScalar(T& p_value, EnumerationConverter p_converter) {
        if (!Input::isScalar(m_tree, m_node)) {
            return false;
        }
        if (parseNumber(value(), node().m_valueSize, p_value)) {
            return true;
        }
        uint32_t number = 0;
        if (p_converter == nullptr || !Input::isText(node())) {
            return false;
        }
        if (node().has(VALUE_ESCAPED)) {
            Input::decode(m_tree, node(), m_word);
            if (!m_words.getNumber(p_converter, m_word.getData(), m_word.getLengthInBytes(), number)) {
                return false;
            }
        } else if (!m_words.getNumber(p_converter, value(), node().m_valueSize, number)) {
            return false;
        }
        p_value = static_cast<T>(number);
        return true;
    }
    template <typename T> bool_t readNumber(const String& p_name, T& p_value, EnumerationConverter p_converter) {
        return !find(p_name) || parseScalar(p_value, p_converter) || refuse(p_name, "a number of that kind");
    }
    /// Fills the array from the items of the member, each by the function.
    template <typename T, typename F> bool_t readItems(const String& p_name, Array<T>& p_value, F p_read) {
        bool_t found = 0;
        if (!enterArray(p_name, found, 0)) {
            return 0;
        }
        if (!found) {
            return 1;
        }
        const Frame frame = m_frames[m_depth];
        bool done = resizeExactly(p_value, frame.m_count);
        uint32_t index = 0;
        for (uint32_t i = frame.m_first; i < frame.m_end && done; i = m_tree[i].m_next) {
            if (Input::isItem(m_tree, m_tree[i])) {
                m_node = i;
                done = p_read(p_value[index++]);
            }
        }
        return (leave() && done) || refuse(p_name, "an array of that kind");
    }
    /// Numbers stand as one text; an array with words among them has items.
    template <typename T> bool_t readNumbers(const String& p_name, Array<T>& p_value) {
        if (!find(p_name)) {
            return 1;
        }
        if (!Input::isNumbers(m_tree, m_node, node())) {
            m_frames[m_depth].m_next = m_node;
            return readItems(p_name, p_value, [this](T& p_item) { return parseScalar(p_item, nullptr); });
        }
        const char* place = value();
        const char* end = place + node().m_valueSize;
        p_value.clear();
        if (!resizeExactly(p_value, countNumbers(place, end))) {
            return 0;
        }
        for (size_t i = 0; i < p_value.getSize(); i++) {
            place = skipSeparators(place, end);
            const char* start = place;
            while (place != end && !isSeparator(*place)) {
                place++;
            }
            if (!parseNumber(start, static_cast<size_t>(place - start), p_value[i])) {
                return refuse(p_name, "an array of numbers of that kind");
            }
        }
        return 1;
    }
    static bool isSeparator(char p_character) {
        return static_cast<uint8_t>(p_character) <= ' ' || p_character == Input::c_separator;
    }
    static const char* skipSeparators(const char* p_place, const char* p_end) {
        while (p_place != p_end && isSeparator(*p_place)) {
            p_place++;
        }
        return p_place;
    }
    static size_t countNumbers(const char* p_place, const char* p_end) {
        size_t count = 0;
        for (p_place = skipSeparators(p_place, p_end); p_place != p_end; p_place = skipSeparators(p_place, p_end)) {
            count++;
            while (p_place != p_end && !isSeparator(*p_place)) {
                p_place++;
            }
        }
        return count;
    }

    TextTree m_tree;
    FrameStack<Frame> m_frames;
    uint32_t m_depth = 0;
    /// The node found last.
    uint32_t m_node = 0;
    /// The one that was asked for last.
    mutable TextClass<Input> m_class;
    String m_key;
    String m_word;
    EnumerationWords m_words;
};

} // namespace zyr
