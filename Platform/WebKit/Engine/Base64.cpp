#include "Platform/WebKit/Engine/Base64.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace qrv::engine {

namespace {

constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> values = [] {
    std::array<std::uint8_t, 256> table{};
    for (auto& entry : table) entry = noDigit;
    for (std::uint8_t i = 0; i < 64; ++i) table[static_cast<unsigned char>(digits[i])] = i;
    return table;
}();

} // namespace

std::string encodeBase64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    const auto byte = [&](std::size_t i) { return std::uint32_t{static_cast<unsigned char>(bytes[i])}; };
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        const std::uint32_t group =
            byte(i) << 16 | (count > 1 ? byte(i + 1) << 8 : 0) | (count > 2 ? byte(i + 2) : 0);
        text.push_back(digits[group >> 18]);
        text.push_back(digits[(group >> 12) & 63]);
        text.push_back(count > 1 ? digits[(group >> 6) & 63] : '=');
        text.push_back(count > 2 ? digits[group & 63] : '=');
    }
    return text;
}

std::optional<NSData> decodeBase64(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with("=") ? 1 : 0;
    text.remove_suffix(padding);
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    std::uint32_t group = 0;
    int bits = 0;
    for (const char c : text) {
        const std::uint8_t value = values[static_cast<unsigned char>(c)];
        if (value == noDigit) return std::nullopt;
        group = group << 6 | value;
        bits += 6;
        if (bits < 8) continue;
        bits -= 8;
        bytes.push_back(static_cast<char>(group >> bits & 0xFF));
    }
    return NSData(std::move(bytes));
}

} // namespace qrv::engine
