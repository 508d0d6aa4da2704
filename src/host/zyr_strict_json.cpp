#include "host/zyr_strict_json.h"

#include <algorithm>
#include <vector>

namespace zyr::host {

namespace {

using nlohmann::json;

constexpr size_t MAX_LEVELS = 128;

/// Builds the value while the text is read.
class Builder : public nlohmann::json_sax<json> {
public:
    explicit Builder(const std::string& p_text) : m_text(p_text) {}

    json take() { return std::move(m_root); }

    bool null() override { return add(nullptr) != nullptr; }
    bool boolean(bool p_value) override { return add(p_value) != nullptr; }
    bool number_integer(number_integer_t p_value) override { return add(p_value) != nullptr; }
    bool number_unsigned(number_unsigned_t p_value) override { return add(p_value) != nullptr; }
    bool number_float(number_float_t p_value, const string_t&) override { return add(p_value) != nullptr; }
    bool string(string_t& p_value) override { return add(std::move(p_value)) != nullptr; }
    bool binary(binary_t&) override { return false; }
    bool start_object(size_t) override { return open(json::object()); }
    bool start_array(size_t) override { return open(json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t& p_key) override {
        if (m_open.back()->contains(p_key)) {
            throw JsonError(makePointer(getPointer(), p_key), "stands twice");
        }
        m_keys.back() = p_key;
        return true;
    }

    bool parse_error(size_t p_position, const std::string&, const nlohmann::detail::exception& p_error) override {
        const size_t place = std::min(p_position == 0 ? 0 : p_position - 1, m_text.size());
        const size_t line = 1 + static_cast<size_t>(std::count(m_text.begin(), m_text.begin() + long(place), '\n'));
        const size_t before = place == 0 ? std::string::npos : m_text.rfind('\n', place - 1);
        const size_t column = before == std::string::npos ? place + 1 : place - before;
        // The library's text begins with its own number and place.
        std::string reason = p_error.what();
        reason.erase(0, std::min(reason.find("] ") + 2, reason.size()));
        if (reason.starts_with("parse error")) {
            reason.erase(0, std::min(reason.find(": ") + 2, reason.size()));
        }
        throw JsonError("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + reason);
    }

private:
    /// The pointer of the innermost open value.
    std::string getPointer() const {
        std::string pointer;
        for (size_t i = 0; i + 1 < m_open.size(); ++i) {
            // An open value is in its array already, as the last one.
            pointer = makePointer(pointer, m_open[i]->is_array() ? std::to_string(m_open[i]->size() - 1) : m_keys[i]);
        }
        return pointer;
    }

    json* add(json&& p_value) {
        if (m_open.empty()) {
            m_root = std::move(p_value);
            return &m_root;
        }
        json& parent = *m_open.back();
        if (parent.is_array()) {
            parent.push_back(std::move(p_value));
            return &parent.back();
        }
        json& member = parent[m_keys.back()];
        member = std::move(p_value);
        return &member;
    }

    bool open(json&& p_value) {
        m_open.push_back(add(std::move(p_value)));
        m_keys.emplace_back();
        if (m_open.size() > MAX_LEVELS) {
            throw JsonError(getPointer().substr(0, 100) + "...",
                            "nested more than " + std::to_string(MAX_LEVELS) + " levels deep");
        }
        return true;
    }

    bool close() {
        m_open.pop_back();
        m_keys.pop_back();
        return true;
    }

    const std::string& m_text;
    json m_root;
    std::vector<json*> m_open; ///< Only the last grows, so the others stay where they are.
    std::vector<std::string> m_keys;
};

} // namespace

json parseStrictJson(const std::string& p_text) {
    if (p_text.find_first_not_of(" \t\r\n") == std::string::npos) {
        throw JsonError("line 1, column 1: there is nothing here");
    }
    Builder builder(p_text);
    json::sax_parse(p_text, &builder);
    return builder.take();
}

std::string makePointer(const std::string& p_parent, const std::string& p_key) {
    std::string pointer = p_parent + "/";
    for (const char letter : p_key) {
        if (letter == '~') {
            pointer += "~0";
        } else if (letter == '/') {
            pointer += "~1";
        } else {
            pointer += letter;
        }
    }
    return pointer;
}

} // namespace zyr::host
