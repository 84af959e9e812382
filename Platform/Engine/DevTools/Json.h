#pragma once

// A value of the engine's messages: what JSON has, and bytes. Immutable, cheap to copy, safe to read from any
// thread.
//
//     double width = reply["result"]["cssContentSize"]["width"].number();
//     Json params = Json::object({{"url", "about:blank"}, {"flatten", true}, {"ids", Json::array({1, 2})}});
//
// Every accessor is defined on every kind of value: a missing member is null, and null reads as the fallback,
// so chains need no checks.

#include "Platform/Foundation/NSData.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace qrv::engine {

class Json {
public:
    using Member = std::pair<std::string, Json>;

    Json() = default; // null

    Json(std::nullptr_t) {}

    Json(bool value) : value_(value) {}

    Json(double value); // null if not finite, which JSON cannot represent
    Json(std::string_view value);

    Json(const char* value) : Json(std::string_view(value)) {}

    Json(const std::string& value) : Json(std::string_view(value)) {}

    /// Shares the bytes. Null for nil.
    Json(const NSData& bytes);

    template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
    Json(Integer value) : value_(static_cast<std::int64_t>(value)) {}

    /// Makes an object; of members with the same key the last one counts.
    static Json object(std::vector<Member> members);
    static Json array(std::vector<Json> elements);

    bool isNull() const { return std::holds_alternative<std::monostate>(value_); }

    bool isBool() const { return std::holds_alternative<bool>(value_); }

    bool isNumber() const { return isInteger() || std::holds_alternative<double>(value_); }

    bool isInteger() const { return std::holds_alternative<std::int64_t>(value_); }

    bool isString() const { return std::holds_alternative<Text>(value_); }

    bool isData() const { return std::holds_alternative<NSData>(value_); }

    bool isArray() const { return std::holds_alternative<Elements>(value_); }

    bool isObject() const { return std::holds_alternative<Members>(value_); }

    /// The member or element; null if there is none. Looking for a member takes time in proportion to their
    /// number.
    Json operator[](std::string_view key) const;

    Json operator[](const char* key) const { return (*this)[std::string_view(key)]; }

    template <typename Index, std::enable_if_t<std::is_integral_v<Index>, int> = 0>
    Json operator[](Index index) const {
        return element(static_cast<std::size_t>(index));
    }

    bool contains(std::string_view key) const { return find(key) != nullptr; }

    std::size_t size() const { return elements().size() + members().size(); } // 0 for other kinds

    double number(double fallback = 0) const;
    std::int64_t integer(std::int64_t fallback = 0) const; // fallback for fractions and out of range, too
    bool boolean(bool fallback = false) const;
    std::string string(std::string_view fallback = {}) const;
    /// Without a copy; empty for other kinds; valid while this value lives.
    std::string_view stringView() const;
    /// Nil for other kinds.
    NSData data() const;

    /// Empty for other kinds; valid while this value lives, a copy of a temporary one's. Members with the
    /// same key are all there.
    const std::vector<Json>& elements() const&;
    const std::vector<Member>& members() const&;

    std::vector<Json> elements() const&& { return elements(); }

    std::vector<Member> members() const&& { return members(); }

private:
    using Text = std::shared_ptr<const std::string>;
    using Elements = std::shared_ptr<const std::vector<Json>>;
    using Members = std::shared_ptr<const std::vector<Member>>;

    Json element(std::size_t index) const;
    const Json* find(std::string_view key) const;

    std::variant<std::monostate, bool, std::int64_t, double, Text, NSData, Elements, Members> value_;
};

} // namespace qrv::engine
