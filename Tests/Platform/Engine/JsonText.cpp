#include "Tests/Platform/Engine/JsonText.h"

#include "Platform/Foundation/Base64.h"

#include <boost/json.hpp>

namespace qrv::engine {

namespace {

namespace json = boost::json;

Json fromLibrary(const json::value& value) {
    switch (value.kind()) {
    case json::kind::null:
        return {};
    case json::kind::bool_:
        return value.get_bool();
    case json::kind::int64:
        return value.get_int64();
    case json::kind::uint64:
        return static_cast<double>(value.get_uint64());
    case json::kind::double_:
        return value.get_double();
    case json::kind::string:
        return std::string_view(value.get_string());
    case json::kind::array: {
        std::vector<Json> elements;
        for (const json::value& element : value.get_array()) elements.push_back(fromLibrary(element));
        return Json::array(std::move(elements));
    }
    case json::kind::object:
        break;
    }
    std::vector<Json::Member> members;
    for (const auto& member : value.get_object())
        members.emplace_back(member.key(), fromLibrary(member.value()));
    return Json::object(std::move(members));
}

json::value toLibrary(const Json& value) {
    if (value.isBool()) return value.boolean();
    if (value.isInteger()) return value.integer();
    if (value.isNumber()) return value.number();
    if (value.isString()) return json::string(value.stringView());
    if (value.isData()) return json::string(base64Encode(value.data().bytes()));
    if (value.isArray()) {
        json::array array;
        for (const Json& element : value.elements()) array.push_back(toLibrary(element));
        return array;
    }
    if (!value.isObject()) return nullptr;
    json::object object;
    for (const auto& [key, member] : value.members()) object.insert_or_assign(key, toLibrary(member));
    return object;
}

} // namespace

Json parseJson(std::string_view text) {
    return fromLibrary(json::parse(text));
}

std::string jsonText(const Json& value) {
    return json::serialize(toLibrary(value));
}

} // namespace qrv::engine
