#include "Platform/Foundation/NSString.h"

#include "Platform/Foundation/LiteralSearch.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo stringClassInfo{"NSString", &Object::classInfo};

class StringObject final : public Object,
                           public NSCoding,
                           public BooleanValue,
                           public IntegerValue,
                           public DoubleValue {
public:
    explicit StringObject(std::u16string&& text) : text_(std::move(text)) {}

    explicit StringObject(std::u16string_view text) : text_(text) {}

    const ClassInfo& objectClass() const override { return stringClassInfo; }

    bool isEqual(const Object& other) const override {
        const auto* o = dynamic_cast<const StringObject*>(&other);
        return o && o->text_ == text_;
    }

    std::size_t hash() const override { return std::hash<std::u16string>{}(text_); }

    NSString description() const override { return NSString(std::u16string_view(text_)); }

    bool boolValue() const override { return NSString(std::u16string_view(text_)).boolValue(); }

    long long integerValue() const override { return NSString(std::u16string_view(text_)).integerValue(); }

    double doubleValue() const override { return NSString(std::u16string_view(text_)).doubleValue(); }

    const std::u16string& text() const { return text_; }

private:
    const std::u16string text_;
};

void requireIndex(bool inside, const char16_t* selector, std::size_t index, std::size_t length) {
    if (inside) return;
    throw NSException(NSRangeException, NSString::stringWithFormat(
                                            u"-[NSString %S]: Index %lu out of bounds; string length %lu",
                                            selector, index, length));
}

} // namespace

NSString::NSString(const char16_t* text)
    : NSString(text ? NSString(std::u16string_view(text)) : NSString()) {}

NSString::NSString(std::u16string_view text) : Handle(std::make_shared<StringObject>(text)) {}

NSString::NSString(std::u16string&& text) : Handle(std::make_shared<StringObject>(std::move(text))) {}

NSString::NSString(const char* text) : NSString(text ? fromUTF8(text) : NSString()) {}

NSString::NSString(std::string_view text) : NSString(fromUTF8(text)) {}

const ClassInfo& NSString::classInfo() {
    return stringClassInfo;
}

bool NSString::accepts(const Object& payload) {
    return typeid(payload) == typeid(StringObject);
}

NSString NSString::stringWithUTF8String(const char* bytes) {
    if (!bytes) return {};
    auto text = unicode::fromUTF8(bytes);
    return text ? NSString(std::move(*text)) : NSString();
}

NSString NSString::fromUTF8(std::string_view bytes) {
    return NSString(unicode::fromUTF8Lossy(bytes));
}

std::u16string_view NSString::view() const {
    // The payload of a typed handle always is of its class, so no run-time check is needed.
    return isNil() ? std::u16string_view() : static_cast<const StringObject&>(*shared()).text();
}

std::optional<std::u16string_view> NSString::viewOf(const id& object) {
    const Object* payload = object.shared().get();
    if (!payload || !accepts(*payload)) return std::nullopt;
    return static_cast<const StringObject&>(*payload).text();
}

char16_t NSString::characterAtIndex(std::size_t index) const {
    requireIndex(index < length(), u"characterAtIndex:", index, length());
    return view()[index];
}

std::string NSString::utf8() const {
    return unicode::toUTF8Lossy(view());
}

bool NSString::isEqualToString(const NSString& other) const {
    return isEqual(other);
}

NSComparisonResult NSString::compare(const NSString& other) const {
    const int order = view().compare(other.view());
    return order < 0 ? NSOrderedAscending : order > 0 ? NSOrderedDescending : NSOrderedSame;
}

bool NSString::hasPrefix(const NSString& prefix) const {
    return prefix.length() > 0 && view().starts_with(prefix.view());
}

bool NSString::hasSuffix(const NSString& suffix) const {
    return suffix.length() > 0 && view().ends_with(suffix.view());
}

NSRange NSString::rangeOfString(const NSString& other) const {
    if (other.length() == 0) return {NSNotFound, 0};
    const std::size_t found = LiteralSearch(other.view()).find(view());
    return found == std::u16string_view::npos ? NSRange{NSNotFound, 0} : NSRange{found, other.length()};
}

NSString NSString::substringFromIndex(std::size_t index) const {
    requireIndex(index <= length(), u"substringFromIndex:", index, length());
    return isNil() ? NSString() : NSString(view().substr(index));
}

NSString NSString::substringToIndex(std::size_t index) const {
    requireIndex(index <= length(), u"substringToIndex:", index, length());
    return isNil() ? NSString() : NSString(view().substr(0, index));
}

NSString NSString::substringWithRange(NSRange range) const {
    requireIndex(range.location <= length(), u"substringWithRange:", range.location, length());
    requireIndex(range.length <= length() - range.location, u"substringWithRange:",
                 range.location + range.length, length());
    return isNil() ? NSString() : NSString(view().substr(range.location, range.length));
}

NSString NSString::stringByAppendingString(const NSString& other) const {
    return NSString(std::u16string(view()).append(other.view()));
}

NSString NSString::stringByReplacingOccurrencesOfString_withString(const NSString& search,
                                                                   const NSString& replacement) const {
    if (isNil() || search.length() == 0) return *this;
    const std::u16string_view text = view();
    const LiteralSearch pattern(search.view());
    std::u16string result;
    std::size_t from = 0;
    for (std::size_t at = pattern.find(text); at != std::u16string_view::npos;
         at = pattern.find(text, from)) {
        result.append(text, from, at - from).append(replacement.view());
        from = at + search.length();
    }
    return NSString(std::move(result.append(text.substr(from))));
}

NSArray NSString::componentsSeparatedByString(const NSString& separator) const {
    if (isNil()) return {};
    std::vector<id> pieces;
    const std::u16string_view text = view();
    const LiteralSearch pattern(separator.view());
    std::size_t from = 0;
    while (separator.length() > 0) {
        const std::size_t at = pattern.find(text, from);
        if (at == std::u16string_view::npos) break;
        pieces.push_back(NSString(text.substr(from, at - from)));
        from = at + separator.length();
    }
    pieces.push_back(NSString(text.substr(from)));
    return NSArray(std::move(pieces));
}

} // namespace qrv
