#include "Platform/Foundation/CFPreferences.h"

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/PreferenceFiles.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

namespace qrv {

namespace {

std::optional<bool> booleanOf(const id& value) {
    if (const auto number = as<NSNumber>(value)) return number.boolValue();
    if (!value.isKindOfClass(NSString::classInfo())) return std::nullopt;
    std::string text = as<NSString>(value).utf8();
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    if (text == "yes" || text == "true" || text == "1") return true;
    if (text == "no" || text == "false" || text == "0") return false;
    return std::nullopt;
}

std::optional<long long> integerOfText(const std::string& text) {
    const std::size_t start = text.starts_with('+') && !text.starts_with("+-") ? 1 : 0;
    long long number = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data() + start, end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

std::optional<long long> integerOf(const id& value) {
    if (const auto string = as<NSString>(value)) return integerOfText(string.utf8());
    const auto number = as<NSNumber>(value);
    if (!number || number.isBeyondSigned()) return std::nullopt;
    if (number.isFloatingPoint()) {
        constexpr double limit = 9223372036854775808.0; // 2^63
        const double real = number.doubleValue();
        // Written so that NaN fails as well.
        if (!(real >= -limit && real < limit) || std::trunc(real) != real) return std::nullopt;
    }
    return number.integerValue();
}

template <class T>
T answer(const std::optional<T>& value, bool* isValid) {
    if (isValid) *isValid = value.has_value();
    return value.value_or(T());
}

id findInFiles(const NSString& key, const PreferencePaths& files) {
    for (const std::string& path : *files) {
        if (id value = readPreferenceFile(path).objectForKey(key)) return value;
    }
    return {};
}

} // namespace

id CFPreferencesCopyAppValue(const NSString& key, const NSString& domain) {
    const PreferencePaths files = preferenceFiles(domain);
    if (!key || files->empty()) return {};
    const id value = findInFiles(key, files);
    return value ? value : findInFiles(key, preferenceFiles(NSGlobalDomain));
}

bool CFPreferencesGetAppBooleanValue(const NSString& key, const NSString& domain,
                                     bool* keyExistsAndHasValidFormat) {
    return answer(booleanOf(CFPreferencesCopyAppValue(key, domain)), keyExistsAndHasValidFormat);
}

long long CFPreferencesGetAppIntegerValue(const NSString& key, const NSString& domain,
                                          bool* keyExistsAndHasValidFormat) {
    return answer(integerOf(CFPreferencesCopyAppValue(key, domain)), keyExistsAndHasValidFormat);
}

NSDictionary preferencesOfDomain(const NSString& domain) {
    bool found = false;
    NSMutableDictionary all;
    const PreferencePaths files = preferenceFiles(domain);
    for (const std::string& path : *files) {
        const NSDictionary contents = readPreferenceFile(path);
        found = found || contents;
        for (const auto& [key, value] : contents) {
            if (!all.objectForKey(key)) all.setObject_forKey(value, key);
        }
    }
    return found ? std::move(all).copy() : NSDictionary();
}

} // namespace qrv
