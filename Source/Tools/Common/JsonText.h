#pragma once

// What scripts read: JSON. The only access to the library that writes it.

#include <cstdint>
#include <string>
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
};

/// The object in one line. All of it is printable ASCII: anything else is escaped, so that it can do nothing
/// to a terminal.
std::string jsonText(const JsonObject& object);

} // namespace qrv
