/// Reads JSON and tells where it is wrong.
#pragma once

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>

namespace zyr::host {

/// What is wrong with a JSON text, its place first: "line 3, column 7: ..." for what is no JSON, otherwise the pointer
/// of the value: "/root/children/0/x: ...".
class JsonError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    JsonError(const std::string& p_pointer, const std::string& p_reason)
        : std::runtime_error((p_pointer.empty() ? "the whole" : p_pointer) + ": " + p_reason) {}
};

/// Parses a text without comments. Beyond what is no JSON, it refuses keys that stand twice in an object, and more than
/// 128 levels of nesting. Throws JsonError.
nlohmann::json parseStrictJson(const std::string& p_text);

/// The pointer of a member below that of its parent.
std::string makePointer(const std::string& p_parent, const std::string& p_key);

} // namespace zyr::host
