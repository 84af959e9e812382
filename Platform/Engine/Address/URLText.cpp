#include "Platform/Engine/Address/URLText.h"

#include <algorithm>

namespace qrv::engine {

namespace {

constexpr std::string_view capitalDigits = "0123456789ABCDEF";

bool isAlphanumeric(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

/// Returns 16 or more for anything but a hexadecimal digit.
std::size_t digitValue(char c) {
    return capitalDigits.find(c >= 'a' && c <= 'f' ? static_cast<char>(c - 32) : c);
}

} // namespace

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return result;
}

std::string percentEscaped(std::string_view text) {
    constexpr std::string_view kept = "-._~:/?#[]@!$&'()*+,;=%";
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        if (isAlphanumeric(c) || kept.find(c) != std::string_view::npos) {
            result.push_back(c);
        } else {
            const auto byte = static_cast<unsigned char>(c);
            result.append({'%', capitalDigits[byte >> 4], capitalDigits[byte & 15]});
        }
    }
    return result;
}

std::string percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escape = text[i] == '%' && i + 2 < text.size() && digitValue(text[i + 1]) < 16 &&
                            digitValue(text[i + 2]) < 16;
        result.push_back(escape ? static_cast<char>(digitValue(text[i + 1]) << 4 | digitValue(text[i + 2]))
                                : text[i]);
        i += escape ? 2 : 0;
    }
    return result;
}

} // namespace qrv::engine
