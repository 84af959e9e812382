#pragma once

// What scripts read, and what was written for them: JSON. The only access to the library for it.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace qrv {

struct JsonObject;

/// null, a boolean, a number, a text in UTF-8, or a list of objects.
using JsonValue = std::variant<std::monostate, bool, std::int64_t, std::string, std::vector<JsonObject>>;

struct JsonObject {
    /// In the order in which they are written.
    std::vector<std::pair<std::string, JsonValue>> fields;

    /// The value of this name, of this kind; nothing where there is none.
    template <class Value>
    std::optional<Value> value(std::string_view name) const {
        for (const auto& [key, value] : fields) {
            const Value* found = key == name ? std::get_if<Value>(&value) : nullptr;
            if (found) return *found;
        }
        return std::nullopt;
    }
};

/// The object in one line. All of it is printable ASCII: anything else is escaped, so that it can do nothing
/// to a terminal.
std::string jsonText(const JsonObject& object);

/// The object that a text is; nothing for any other text, and for an object with a value that JsonValue has
/// no place for, such as a fraction. Numbers beyond the range of 64 bits are such values, too.
std::optional<JsonObject> objectOfJson(std::string_view text);

} // namespace qrv
