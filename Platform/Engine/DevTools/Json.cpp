#include "Platform/Engine/DevTools/Json.h"

#include <algorithm>
#include <boost/json.hpp>
#include <cmath>

namespace qrv::engine {

namespace json = boost::json;

namespace {

/// Returns the code unit of a \uXXXX escape at `at`, or nothing.
std::optional<unsigned> escapedUnit(std::string_view text, std::size_t at) {
    if (at + 6 > text.size() || text[at] != '\\' || text[at + 1] != 'u') return std::nullopt;
    unsigned unit = 0;
    for (char digit : text.substr(at + 2, 4)) {
        unit *= 16;
        if (digit >= '0' && digit <= '9')
            unit += static_cast<unsigned>(digit - '0');
        else if (digit >= 'a' && digit <= 'f')
            unit += static_cast<unsigned>(digit - 'a') + 10;
        else if (digit >= 'A' && digit <= 'F')
            unit += static_cast<unsigned>(digit - 'A') + 10;
        else
            return std::nullopt;
    }
    return unit;
}

bool isLead(std::optional<unsigned> unit) {
    return unit && *unit >= 0xD800 && *unit < 0xDC00;
}

bool isTrail(std::optional<unsigned> unit) {
    return unit && *unit >= 0xDC00 && *unit < 0xE000;
}

/// Replaces escaped unpaired surrogates: a page's strings may contain them, and the parser would reject the
/// whole message.
std::string withoutLoneSurrogates(std::string_view text) {
    std::string repaired(text);
    for (std::size_t at = repaired.find('\\'); at != std::string::npos; at = repaired.find('\\', at)) {
        auto unit = escapedUnit(repaired, at);
        if (isLead(unit) && isTrail(escapedUnit(repaired, at + 6))) {
            at += 12;
        } else if (isLead(unit) || isTrail(unit)) {
            repaired.replace(at, 6, "\\uFFFD");
            at += 6;
        } else {
            at += 2; // an escaped backslash must not count as the start of the next escape
        }
    }
    return repaired;
}

json::value parseText(std::string_view text, boost::system::error_code& error) {
    json::parse_options options;
    options.max_depth = Json::maxDepth;
    options.allow_invalid_utf8 = true;
    return json::parse(json::string_view(text.data(), text.size()), error, {}, options);
}

/// The library reads a number beyond a double's range as infinity, and writes that as a word that is no JSON.
bool isFinite(const json::value& value) {
    if (const double* number = value.if_double()) return std::isfinite(*number);
    if (const json::array* array = value.if_array())
        return std::all_of(array->begin(), array->end(), isFinite);
    const json::object* object = value.if_object();
    return !object || std::all_of(object->begin(), object->end(),
                                  [](const auto& member) { return isFinite(member.value()); });
}

std::string_view view(json::string_view text) {
    return {text.data(), text.size()};
}

} // namespace

Json::Json(json::value value) : node_(std::make_shared<const json::value>(std::move(value))) {}

Json::Json(bool value) : Json(json::value(value)) {}

Json::Json(double value) {
    if (std::isfinite(value)) node_ = std::make_shared<const json::value>(value);
}

Json::Json(std::string_view value) : Json(json::value(json::string_view(value.data(), value.size()))) {}

Json Json::fromInteger(std::int64_t value) {
    return Json(json::value(value));
}

Json Json::object(std::initializer_list<Member> members) {
    return object(std::vector<Member>(members));
}

Json Json::object(const std::vector<Member>& members) {
    json::object object;
    object.reserve(members.size());
    for (const auto& [key, value] : members)
        object.insert_or_assign(key, value.node_ ? *value.node_ : json::value());
    return Json(json::value(std::move(object)));
}

Json Json::array(std::initializer_list<Json> elements) {
    return array(std::vector<Json>(elements));
}

Json Json::array(const std::vector<Json>& elements) {
    json::array array;
    array.reserve(elements.size());
    for (const auto& element : elements) array.push_back(element.node_ ? *element.node_ : json::value());
    return Json(json::value(std::move(array)));
}

std::optional<Json> Json::parse(std::string_view text) {
    boost::system::error_code error;
    json::value value = parseText(text, error);
    if (error) value = parseText(withoutLoneSurrogates(text), error);
    if (error || !isFinite(value)) return std::nullopt;
    return Json(std::move(value));
}

std::string Json::serialize() const {
    return node_ ? json::serialize(*node_) : "null";
}

bool Json::isNull() const {
    return !node_ || node_->is_null();
}

bool Json::isBool() const {
    return node_ && node_->is_bool();
}

bool Json::isNumber() const {
    return node_ && node_->is_number();
}

bool Json::isString() const {
    return node_ && node_->is_string();
}

bool Json::isArray() const {
    return node_ && node_->is_array();
}

bool Json::isObject() const {
    return node_ && node_->is_object();
}

Json Json::operator[](std::string_view key) const {
    const json::object* object = node_ ? node_->if_object() : nullptr;
    const json::value* member =
        object ? object->if_contains(json::string_view(key.data(), key.size())) : nullptr;
    return member ? Json(Node(node_, member)) : Json();
}

Json Json::element(std::size_t index) const {
    const json::array* array = node_ ? node_->if_array() : nullptr;
    const json::value* element = array ? array->if_contains(index) : nullptr;
    return element ? Json(Node(node_, element)) : Json();
}

bool Json::contains(std::string_view key) const {
    const json::object* object = node_ ? node_->if_object() : nullptr;
    return object && object->contains(json::string_view(key.data(), key.size()));
}

std::size_t Json::size() const {
    if (isObject()) return node_->get_object().size();
    if (isArray()) return node_->get_array().size();
    return 0;
}

double Json::number(double fallback) const {
    if (!isNumber()) return fallback;
    boost::system::error_code error;
    double value = node_->to_number<double>(error);
    return error ? fallback : value;
}

std::int64_t Json::integer(std::int64_t fallback) const {
    if (!isNumber()) return fallback;
    boost::system::error_code error;
    auto value = node_->to_number<std::int64_t>(error);
    return error ? fallback : value;
}

bool Json::boolean(bool fallback) const {
    return isBool() ? node_->get_bool() : fallback;
}

std::string Json::string(std::string_view fallback) const {
    return std::string(isString() ? stringView() : fallback);
}

std::string_view Json::stringView() const {
    return isString() ? view(node_->get_string()) : std::string_view();
}

std::vector<Json> Json::elements() const {
    std::vector<Json> elements;
    if (!isArray()) return elements;
    elements.reserve(size());
    for (std::size_t index = 0; index < size(); ++index) elements.push_back(element(index));
    return elements;
}

} // namespace qrv::engine
