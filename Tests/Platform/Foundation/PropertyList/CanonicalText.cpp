#include "Tests/Platform/Foundation/PropertyList/CanonicalText.h"

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSKeyedArchiveUID.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSURL.h"

#include <bit>
#include <cstdint>
#include <cstdio>

namespace qrv {

namespace {

std::string hex(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        text += pair;
    }
    return text;
}

std::string hex(std::u16string_view units) {
    std::string text;
    for (const char16_t unit : units) {
        char four[5];
        std::snprintf(four, sizeof four, "%04x", static_cast<unsigned>(unit));
        text += four;
    }
    return text;
}

std::string bits(double value) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx",
                  static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(value)));
    return text;
}

std::string numberText(const NSNumber& number) {
    if (number.isBoolean()) return number.boolValue() ? "true" : "false";
    if (number.isFloatingPoint()) return "r" + bits(number.doubleValue());
    return "i" + number.description().utf8();
}

} // namespace

std::string canonicalText(const id& object) {
    if (const auto string = as<NSString>(object)) return "s" + hex(string.view());
    if (const auto data = as<NSData>(object)) return "d" + hex(data.bytes());
    if (const auto date = as<NSDate>(object)) return "t" + bits(date.timeIntervalSinceReferenceDate());
    if (const auto uid = as<NSKeyedArchiveUID>(object)) return "u" + std::to_string(uid.value());
    if (const auto number = as<NSNumber>(object)) return numberText(number);
    if (const auto array = as<NSArray>(object)) {
        std::string text = "[";
        for (const id& element : array) text += canonicalText(element) + ",";
        return text + "]";
    }
    if (const auto dictionary = as<NSDictionary>(object)) {
        std::string text = "{";
        for (const auto& [key, value] : dictionary) {
            text += canonicalText(key) + "=" + canonicalText(value) + ",";
        }
        return text + "}";
    }
    if (const auto url = as<NSURL>(object)) return "l" + hex(url.absoluteString().view());
    if (const auto error = as<NSError>(object)) {
        return "e" + std::to_string(error.code()) + canonicalText(error.domain()) +
               canonicalText(error.userInfo());
    }
    if (as<NSNull>(object)) return "null";
    return object ? "?" : "nil";
}

std::string runPlistsHelper(const std::string& arguments) {
    std::string text;
    std::FILE* pipe = popen(("/usr/bin/python3 " PLISTS_HELPER " " + arguments + " 2>&1").c_str(), "r");
    if (!pipe) return "cannot start";
    char buffer[4096];
    while (std::fgets(buffer, sizeof buffer, pipe)) text += buffer;
    pclose(pipe);
    return text;
}

} // namespace qrv
