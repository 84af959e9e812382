#include "Source/Tools/Common/JsonText.h"

#include "Platform/Foundation/Unicode.h"

#include <boost/json.hpp>
#include <cstdio>

namespace qrv {

namespace json = boost::json;

namespace {

json::object objectOf(const JsonObject& object);

struct ToLibrary {
    json::value operator()(std::monostate) const { return nullptr; }

    json::value operator()(bool value) const { return value; }

    json::value operator()(std::int64_t value) const { return value; }

    json::value operator()(const std::string& text) const { return json::string(text); }

    json::value operator()(const std::vector<JsonObject>& objects) const {
        json::array array;
        for (const JsonObject& object : objects) array.push_back(objectOf(object));
        return array;
    }
};

json::object objectOf(const JsonObject& object) {
    json::object result;
    for (const auto& [key, value] : object.fields) result[key] = std::visit(ToLibrary(), value);
    return result;
}

struct UnknownValue {};

JsonObject objectFrom(const json::object& object);

JsonValue valueFrom(const json::value& value) {
    switch (value.kind()) {
    case json::kind::null:
        return std::monostate();
    case json::kind::bool_:
        return value.get_bool();
    case json::kind::int64:
        return value.get_int64();
    case json::kind::string:
        return std::string(value.get_string());
    case json::kind::array: {
        std::vector<JsonObject> objects;
        for (const json::value& element : value.get_array()) {
            if (!element.is_object()) throw UnknownValue();
            objects.push_back(objectFrom(element.get_object()));
        }
        return objects;
    }
    default:
        throw UnknownValue();
    }
}

JsonObject objectFrom(const json::object& object) {
    JsonObject result;
    for (const auto& [key, value] : object) result.fields.emplace_back(key, valueFrom(value));
    return result;
}

} // namespace

std::string jsonText(const JsonObject& object) {
    std::string text;
    // What is no ASCII can only stand in strings, where any unit may be written as an escape.
    for (const char16_t unit : unicode::fromUTF8Lossy(json::serialize(objectOf(object)))) {
        if (unit < 0x7F) {
            text += static_cast<char>(unit);
        } else {
            char escape[7];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
            text += escape;
        }
    }
    return text;
}

std::optional<JsonObject> objectOfJson(std::string_view text) {
    boost::system::error_code error;
    const json::value value = json::parse({text.data(), text.size()}, error);
    if (error || !value.is_object()) return std::nullopt;
    try {
        return objectFrom(value.get_object());
    } catch (const UnknownValue&) {
        return std::nullopt;
    }
}

} // namespace qrv
