#include "host/zyr_layout_reader.h"

#include "zyr_common/geometry/zyr_ext_box.h"
#include "zyr_common/geometry/zyr_ext_rect.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <set>

namespace zyr::host {

namespace {

using nlohmann::json;

constexpr size_t MAX_LEVELS = 32;
constexpr size_t MAX_NODES = 10000;
constexpr size_t MAX_SEPARATORS = 16;

/// A value and where it stands.
struct Value {
    const json& m_json;
    std::string m_pointer;

    [[noreturn]] void fail(const std::string& p_reason) const { throw JsonError(m_pointer, p_reason); }

    bool has(const char* p_key) const { return m_json.contains(p_key); }

    /// A member of an object, which must be there.
    Value at(const char* p_key) const {
        if (!has(p_key)) {
            fail("\"" + std::string(p_key) + "\" is missing");
        }
        return {m_json[p_key], makePointer(m_pointer, p_key)};
    }

    Value at(size_t p_index) const { return {m_json[p_index], makePointer(m_pointer, std::to_string(p_index))}; }

    void mustBe(bool p_condition, const char* p_what) const {
        if (!p_condition) {
            fail(std::string("must be ") + p_what + ", not " + m_json.type_name());
        }
    }

    void mustBeArray() const { mustBe(m_json.is_array(), "a list"); }

    /// Refuses what is no object and keys that are not known.
    void mustBeObject(const std::vector<std::string>& p_keys) const {
        mustBe(m_json.is_object(), "an object");
        for (const auto& [key, value] : m_json.items()) {
            if (std::find(p_keys.begin(), p_keys.end(), key) == p_keys.end()) {
                std::string known;
                for (const std::string& one : p_keys) {
                    known += (known.empty() ? "" : ", ") + one;
                }
                throw JsonError(makePointer(m_pointer, key), "unknown key; here may stand " + known);
            }
        }
    }

    std::string getText() const {
        mustBe(m_json.is_string(), "a text");
        return m_json.get<std::string>();
    }
};

[[noreturn]] void failRange(const Value& p_value, const char* p_type) {
    p_value.fail(p_value.m_json.dump() + " is outside the range of " + p_type);
}

template <typename T> T readNumber(const Value& p_value) {
    const json& number = p_value.m_json;
    p_value.mustBe(number.is_number(), "a number");
    if constexpr (std::is_integral_v<T>) {
        constexpr const char* type = sizeof(T) == 4 ? "int32" : "int64";
        if (number.is_number_float()) {
            // 100.0 and 1e3 are whole numbers too, and so are those that are too large for an integer.
            const double value = number.get<double>();
            if (value != std::trunc(value)) {
                p_value.fail(number.dump() + " must be a whole number, since the layout's type is " + type);
            }
            constexpr double limit = -double(std::numeric_limits<T>::min());
            if (value < -limit || value >= limit) {
                failRange(p_value, type);
            }
            return static_cast<T>(value);
        }
        if (number.is_number_unsigned() ? number.get<uint64_t>() > uint64_t(std::numeric_limits<T>::max())
                                        : number.get<int64_t>() < std::numeric_limits<T>::min()) {
            failRange(p_value, type);
        }
        return number.get<T>();
    } else {
        const double value = number.get<double>();
        if (std::abs(value) > double(std::numeric_limits<T>::max())) {
            failRange(p_value, "float");
        }
        return static_cast<T>(value);
    }
}

uint8_t readAnchor(const Value& p_value, std::span<const EnumerationEntry> p_texts) {
    if (p_value.m_json.is_number()) {
        const double value = p_value.m_json.get<double>();
        if (value >= 0 && value <= 255 && value == std::trunc(value)) {
            return static_cast<uint8_t>(value);
        }
    }
    p_value.mustBe(p_value.m_json.is_string(), "an anchor's name, or its number from 0 to 255");
    const std::string text = p_value.getText();
    std::string known;
    for (const EnumerationEntry& entry : p_texts) {
        if (text == entry.m_text) {
            return static_cast<uint8_t>(entry.m_number);
        }
        // Of the sixteen separators the first and the last are named.
        if (entry.m_number <= ZYR_POSITION_X_V_SEPARATOR_1) {
            known += (known.empty() ? "" : ", ") + std::string(entry.m_text);
        } else if (entry.m_number == ZYR_POSITION_X_V_SEPARATOR_16) {
            known += std::string(" to ") + entry.m_text;
        }
    }
    p_value.fail("unknown anchor \"" + text + "\"; the anchors are " + known);
}

template <typename T> class Reader {
public:
    explicit Reader(const json& p_file) : m_file{p_file, ""} {}

    Layout<T> read() {
        m_file.mustBeObject({"type", "space", "view", "title", "marks", "root"});
        if (m_file.has("space")) {
            const Value space = m_file.at("space");
            const std::string text = space.getText();
            if (text != "rect" && text != "box") {
                space.fail("must be \"rect\" or \"box\"");
            }
            m_box = text == "box";
        }
        if (m_box && std::is_integral_v<T>) {
            m_file.at("type").fail("boxes have no integer form: float or double");
        }
        Layout<T> layout;
        layout.m_axisCount = m_box ? 3 : 2;
        layout.m_view = readView();
        layout.m_title = m_file.has("title") ? readPlainText(m_file.at("title")) : "";
        m_axisCount = layout.m_axisCount;
        makeDefaults();
        if (m_file.has("marks")) {
            readMarks(m_file.at("marks"), m_defaults);
        }
        readRoot(m_file.at("root"), layout.m_root);
        return layout;
    }

private:
    LayoutView readView() const {
        if (!m_file.has("view")) {
            return {};
        }
        const Value view = m_file.at("view");
        const std::optional<LayoutView> found = findLayoutView(view.getText());
        if (!found) {
            view.fail("must be \"xy\", \"xz\" or \"zy\"");
        }
        if (!m_box && view.getText() != "xy") {
            view.fail("only boxes can be seen from another side");
        }
        return *found;
    }

    /// What a node is that says nothing: the record's own defaults, and a mark for each of its numbers.
    void makeDefaults() {
        if constexpr (std::is_floating_point_v<T>) {
            if (m_box) {
                const ExtBox<T> box;
                const T limits[LAYOUT_AXES][2] = {
                    {box.minWidth, box.maxWidth}, {box.minHeight, box.maxHeight}, {box.minDepth, box.maxDepth}};
                setLimits(limits);
                return;
            }
        }
        const ExtRect<T> rect;
        const T limits[LAYOUT_AXES][2] = {{rect.minWidth, rect.maxWidth}, {rect.minHeight, rect.maxHeight}, {0, 0}};
        setLimits(limits);
    }

    void setLimits(const T (&p_limits)[LAYOUT_AXES][2]) {
        m_defaults.m_kind = m_box ? LAYOUT_BOX : LAYOUT_RECT;
        for (size_t axis = 0; axis < m_axisCount; ++axis) {
            m_defaults.m_axes[axis].m_min = p_limits[axis][0];
            m_defaults.m_axes[axis].m_max = p_limits[axis][1];
            m_defaults.m_positionMarked[axis] = true;
            m_defaults.m_sizeMarked[axis] = true;
        }
    }

    static std::string readPlainText(const Value& p_value) {
        const std::string text = p_value.getText();
        for (const char letter : text) {
            if (static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F) {
                p_value.fail("must not hold control characters");
            }
        }
        return text;
    }

    std::string readName(const Value& p_node, const std::string& p_default) const {
        if (!p_node.has("name")) {
            return p_default;
        }
        const Value name = p_node.at("name");
        const std::string text = readPlainText(name);
        if (text.empty() || text.find('/') != std::string::npos) {
            name.fail("a name has at least one character, and no \"/\"");
        }
        return text;
    }

    /// The keys that all nodes with an inside have.
    std::vector<std::string> getInnerKeys() const {
        if (m_box) {
            return {"children"};
        }
        return {"border", "vSeparators", "hSeparators", "children"};
    }

    void readRoot(const Value& p_value, LayoutNode<T>& p_root) {
        std::vector<std::string> keys = {"name"};
        for (size_t axis = 0; axis < m_axisCount; ++axis) {
            keys.insert(keys.end(), {LAYOUT_WORDS[axis].m_position, LAYOUT_WORDS[axis].m_size});
        }
        const std::vector<std::string> inner = getInnerKeys();
        keys.insert(keys.end(), inner.begin(), inner.end());
        p_value.mustBeObject(keys);
        p_root.m_name = readName(p_value, "root");
        p_root.m_path = p_root.m_name;
        p_root.m_pointer = p_value.m_pointer;
        p_root.m_kind = m_defaults.m_kind;
        p_root.m_solved = true;
        for (size_t axis = 0; axis < m_axisCount; ++axis) {
            const LayoutWords& words = LAYOUT_WORDS[axis];
            if (p_value.has(words.m_position)) {
                p_root.m_place.m_position[axis] = readNumber<T>(p_value.at(words.m_position));
            }
            p_root.m_place.m_size[axis] = readNumber<T>(p_value.at(words.m_size));
        }
        readInside(p_value, p_root, 1);
    }

    void readInside(const Value& p_value, LayoutNode<T>& p_node, size_t p_level) {
        if (p_value.has("border")) {
            p_node.m_border = readNumber<T>(p_value.at("border"));
        }
        readSeparators(p_value, "vSeparators", p_node.m_separators[0]);
        readSeparators(p_value, "hSeparators", p_node.m_separators[1]);
        if (!p_value.has("children")) {
            return;
        }
        const Value children = p_value.at("children");
        children.mustBeArray();
        if (p_level == MAX_LEVELS) {
            children.fail("nested more than " + std::to_string(MAX_LEVELS) + " levels deep");
        }
        m_nodes += children.m_json.size();
        if (m_nodes > MAX_NODES) {
            children.fail("more than " + std::to_string(MAX_NODES) + " nodes");
        }
        std::set<std::string> names;
        p_node.m_children.resize(children.m_json.size());
        for (size_t i = 0; i < p_node.m_children.size(); ++i) {
            LayoutNode<T>& child = p_node.m_children[i];
            const Value value = children.at(i);
            value.mustBe(value.m_json.is_object(), "an object");
            child = m_defaults;
            child.m_pointer = value.m_pointer;
            child.m_name = readName(value, "#" + std::to_string(i + 1));
            child.m_path = p_node.m_path + "/" + child.m_name;
            if (!names.insert(child.m_name).second) {
                value.fail("two children are called \"" + child.m_name + "\"");
            }
            readChild(value, child, p_level + 1);
        }
    }

    void readSeparators(const Value& p_value, const char* p_key, std::vector<T>& p_separators) const {
        if (!p_value.has(p_key)) {
            return;
        }
        const Value list = p_value.at(p_key);
        list.mustBeArray();
        if (list.m_json.size() > MAX_SEPARATORS) {
            list.fail("holds more than " + std::to_string(MAX_SEPARATORS) + " lines, and no anchor names the others");
        }
        for (size_t i = 0; i < list.m_json.size(); ++i) {
            p_separators.push_back(readNumber<T>(list.at(i)));
        }
    }

    void readChild(const Value& p_value, LayoutNode<T>& p_node, size_t p_level) {
        if (p_value.has("point")) {
            const Value point = p_value.at("point");
            point.mustBe(point.m_json.is_boolean(), "true or false");
            if (point.m_json.get<bool>()) {
                p_node.m_kind = LAYOUT_POINT;
                p_node.m_sizeMarked = {};
            }
        }
        const bool isPoint = p_node.m_kind == LAYOUT_POINT;
        std::vector<std::string> keys = {"name", "point", "marks"};
        for (size_t axis = 0; axis < m_axisCount; ++axis) {
            const LayoutWords& words = LAYOUT_WORDS[axis];
            keys.insert(keys.end(), {words.m_position, words.m_positionAnchor});
            if (!isPoint) {
                keys.insert(keys.end(), {words.m_size, words.m_sizeAnchor, words.m_min, words.m_max});
            }
        }
        if (isPoint) {
            keys.insert(keys.end(), {"previous"});
        } else {
            const std::vector<std::string> inner = getInnerKeys();
            keys.insert(keys.end(), inner.begin(), inner.end());
            if (!m_box) {
                keys.insert(keys.end(), {"content", "contentScale", "previous", "next"});
            }
        }
        p_value.mustBeObject(keys);
        for (size_t axis = 0; axis < m_axisCount; ++axis) {
            readAxis(p_value, LAYOUT_WORDS[axis], p_node.m_axes[axis]);
        }
        if (p_value.has("marks")) {
            readMarks(p_value.at("marks"), p_node);
        }
        p_node.m_previous = readPlace(p_value, "previous", !isPoint);
        p_node.m_next = readPlace(p_value, "next", true);
        if (p_value.has("content")) {
            const Value content = p_value.at("content");
            content.mustBeObject({"width", "height"});
            p_node.m_content = {readNumber<T>(content.at("width")), readNumber<T>(content.at("height"))};
        }
        if (p_value.has("contentScale")) {
            p_node.m_contentScale = readNumber<double>(p_value.at("contentScale"));
        }
        readInside(p_value, p_node, p_level);
    }

    static void readAxis(const Value& p_value, const LayoutWords& p_words, LayoutAxis<T>& p_axis) {
        const std::pair<const char*, T*> numbers[] = {{p_words.m_position, &p_axis.m_position},
                                                      {p_words.m_size, &p_axis.m_size},
                                                      {p_words.m_min, &p_axis.m_min},
                                                      {p_words.m_max, &p_axis.m_max}};
        for (const auto& [key, number] : numbers) {
            if (p_value.has(key)) {
                *number = readNumber<T>(p_value.at(key));
            }
        }
        if (p_value.has(p_words.m_positionAnchor)) {
            p_axis.m_positionAnchor = readAnchor(p_value.at(p_words.m_positionAnchor), p_words.m_positionTexts);
        }
        if (p_value.has(p_words.m_sizeAnchor)) {
            p_axis.m_sizeAnchor = readAnchor(p_value.at(p_words.m_sizeAnchor), p_words.m_sizeTexts);
        }
    }

    std::optional<LayoutPlace<T>> readPlace(const Value& p_value, const char* p_key, bool p_withSize) const {
        if (!p_value.has(p_key)) {
            return std::nullopt;
        }
        const Value place = p_value.at(p_key);
        std::vector<std::string> keys;
        for (size_t axis = 0; axis < m_axisCount; ++axis) {
            keys.push_back(LAYOUT_WORDS[axis].m_position);
            if (p_withSize) {
                keys.push_back(LAYOUT_WORDS[axis].m_size);
            }
        }
        place.mustBeObject(keys);
        LayoutPlace<T> result;
        for (size_t axis = 0; axis < m_axisCount; ++axis) {
            result.m_position[axis] = readNumber<T>(place.at(LAYOUT_WORDS[axis].m_position));
            if (p_withSize) {
                result.m_size[axis] = readNumber<T>(place.at(LAYOUT_WORDS[axis].m_size));
            }
        }
        return result;
    }

    void readMarks(const Value& p_value, LayoutNode<T>& p_node) const {
        p_value.mustBeArray();
        p_node.m_positionMarked = {};
        p_node.m_sizeMarked = {};
        for (size_t i = 0; i < p_value.m_json.size(); ++i) {
            const Value word = p_value.at(i);
            if (!setMark(word.getText(), p_node)) {
                word.fail("must be the name of a position or a size");
            }
        }
    }

    bool setMark(const std::string& p_text, LayoutNode<T>& p_node) const {
        for (size_t axis = 0; axis < m_axisCount; ++axis) {
            if (p_text == LAYOUT_WORDS[axis].m_position) {
                p_node.m_positionMarked[axis] = true;
                return true;
            }
            if (p_text == LAYOUT_WORDS[axis].m_size && p_node.m_kind != LAYOUT_POINT) {
                p_node.m_sizeMarked[axis] = true;
                return true;
            }
        }
        return false;
    }

    const Value m_file;
    LayoutNode<T> m_defaults;
    size_t m_axisCount = 2;
    size_t m_nodes = 1; ///< The root is one.
    bool m_box = false;
};

} // namespace

std::string readLayoutType(const json& p_file) {
    const Value file{p_file, ""};
    file.mustBe(p_file.is_object(), "an object");
    if (!file.has("type")) {
        return "float";
    }
    const Value type = file.at("type");
    const std::string text = type.getText();
    if (text != "int32" && text != "int64" && text != "float" && text != "double") {
        type.fail("must be \"int32\", \"int64\", \"float\" or \"double\"");
    }
    return text;
}

template <typename T> Layout<T> readLayout(const json& p_file) {
    Layout<T> layout = Reader<T>(p_file).read();
    layout.m_type = readLayoutType(p_file);
    return layout;
}

template Layout<int32_t> readLayout<int32_t>(const json& p_file);
template Layout<int64_t> readLayout<int64_t>(const json& p_file);
template Layout<float> readLayout<float>(const json& p_file);
template Layout<double> readLayout<double>(const json& p_file);

} // namespace zyr::host
