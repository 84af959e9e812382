#pragma once

// A JSON value: immutable, cheap to copy, safe to read from any thread.
//
//     auto reply = Json::parse(text);
//     double width = (*reply)["result"]["cssContentSize"]["width"].number();
//     Json params = Json::object({{"url", "about:blank"}, {"flatten", true}, {"ids", Json::array({1, 2})}});
//
// Every accessor is defined on every kind of value: a missing member is null, and null reads as the fallback,
// so chains need no checks.

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace boost::json {
class value;
} // namespace boost::json

namespace qrv::engine {

class Json {
public:
    using Member = std::pair<std::string, Json>;

    Json() = default; // null

    Json(std::nullptr_t) {}

    Json(bool value);
    Json(double value); // null if not finite, which JSON cannot represent
    Json(std::string_view value);

    Json(const char* value) : Json(std::string_view(value)) {}

    Json(const std::string& value) : Json(std::string_view(value)) {}

    template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
    Json(Integer value) : Json(fromInteger(static_cast<std::int64_t>(value))) {}

    /// Makes an object; of members with the same key the last one counts.
    static Json object(std::initializer_list<Member> members);
    static Json object(const std::vector<Member>& members);
    static Json array(std::initializer_list<Json> elements);
    static Json array(const std::vector<Json>& elements);

    /// Parses the text; nothing if it is malformed, nested deeper than maxDepth or has a number beyond a
    /// double's range. Bytes that are not UTF-8 are kept; an escaped unpaired surrogate becomes U+FFFD.
    /// Throws only when out of memory.
    static std::optional<Json> parse(std::string_view text);
    static constexpr std::size_t maxDepth = 512;

    std::string serialize() const;

    bool isNull() const;
    bool isBool() const;
    bool isNumber() const;
    bool isString() const;
    bool isArray() const;
    bool isObject() const;

    /// The member or element; null if there is none.
    Json operator[](std::string_view key) const;

    Json operator[](const char* key) const { return (*this)[std::string_view(key)]; }

    template <typename Index, std::enable_if_t<std::is_integral_v<Index>, int> = 0>
    Json operator[](Index index) const {
        return element(static_cast<std::size_t>(index));
    }

    bool contains(std::string_view key) const;
    std::size_t size() const; // of members or elements; 0 for other kinds

    double number(double fallback = 0) const;
    std::int64_t integer(std::int64_t fallback = 0) const; // fallback for fractions and out of range, too
    bool boolean(bool fallback = false) const;
    std::string string(std::string_view fallback = {}) const;
    std::string_view
    stringView() const; // without a copy; empty for other kinds; valid while this value lives

    std::vector<Json> elements() const;

private:
    /// Points into a document, which it keeps alive; empty for null.
    using Node = std::shared_ptr<const boost::json::value>;

    explicit Json(Node node) : node_(std::move(node)) {}

    explicit Json(boost::json::value value);

    static Json fromInteger(std::int64_t value);
    Json element(std::size_t index) const;

    Node node_;
};

} // namespace qrv::engine
