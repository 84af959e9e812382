#include "Platform/Engine/DevTools/Json.h"

#include <algorithm>
#include <cmath>

namespace qrv::engine {

Json::Json(double value) {
    if (std::isfinite(value)) value_ = value;
}

Json::Json(std::string_view value) : value_(std::make_shared<const std::string>(value)) {}

Json::Json(const NSData& bytes) {
    if (!bytes.isNil()) value_ = bytes;
}

Json Json::object(std::vector<Member> members) {
    Json made;
    made.value_ = std::make_shared<const std::vector<Member>>(std::move(members));
    return made;
}

Json Json::array(std::vector<Json> elements) {
    Json made;
    made.value_ = std::make_shared<const std::vector<Json>>(std::move(elements));
    return made;
}

const Json* Json::find(std::string_view key) const {
    const auto& all = members();
    const auto found =
        std::find_if(all.rbegin(), all.rend(), [&](const Member& member) { return member.first == key; });
    return found == all.rend() ? nullptr : &found->second;
}

Json Json::operator[](std::string_view key) const {
    const Json* member = find(key);
    return member ? *member : Json();
}

Json Json::element(std::size_t index) const {
    const auto& all = elements();
    return index < all.size() ? all[index] : Json();
}

double Json::number(double fallback) const {
    if (const auto* integer = std::get_if<std::int64_t>(&value_)) return static_cast<double>(*integer);
    const auto* number = std::get_if<double>(&value_);
    return number ? *number : fallback;
}

std::int64_t Json::integer(std::int64_t fallback) const {
    if (const auto* integer = std::get_if<std::int64_t>(&value_)) return *integer;
    constexpr double limit = 9223372036854775808.0; // 2^63
    const auto* number = std::get_if<double>(&value_);
    const bool fits = number && *number >= -limit && *number < limit && std::trunc(*number) == *number;
    return fits ? static_cast<std::int64_t>(*number) : fallback;
}

bool Json::boolean(bool fallback) const {
    const auto* value = std::get_if<bool>(&value_);
    return value ? *value : fallback;
}

std::string Json::string(std::string_view fallback) const {
    return std::string(isString() ? stringView() : fallback);
}

std::string_view Json::stringView() const {
    const auto* text = std::get_if<Text>(&value_);
    return text ? std::string_view(**text) : std::string_view();
}

NSData Json::data() const {
    const auto* bytes = std::get_if<NSData>(&value_);
    return bytes ? *bytes : NSData();
}

const std::vector<Json>& Json::elements() const& {
    static const std::vector<Json> none;
    const auto* elements = std::get_if<Elements>(&value_);
    return elements ? **elements : none;
}

const std::vector<Json::Member>& Json::members() const& {
    static const std::vector<Member> none;
    const auto* members = std::get_if<Members>(&value_);
    return members ? **members : none;
}

} // namespace qrv::engine
