#include "Platform/Foundation/Base64.h"

#include <array>
#include <cstdint>

namespace qrv {

namespace {

constexpr char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t space = 64;
constexpr std::uint8_t padding = 65;
constexpr std::uint8_t invalid = 66;

constexpr std::array<std::uint8_t, 256> makeValues() {
    std::array<std::uint8_t, 256> values{};
    for (auto& value : values) value = invalid;
    for (std::uint8_t i = 0; i < 64; ++i) values[static_cast<std::uint8_t>(letters[i])] = i;
    for (const char c : {' ', '\t', '\n', '\r'}) values[static_cast<std::uint8_t>(c)] = space;
    values[static_cast<std::uint8_t>('=')] = padding;
    return values;
}

constexpr std::array<std::uint8_t, 256> values = makeValues();

} // namespace

std::string base64Encode(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t there = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            group = group << 8 | (j < there ? static_cast<std::uint8_t>(bytes[i + j]) : 0U);
        }
        for (std::size_t j = 0; j < 4; ++j) {
            text.push_back(j <= there ? letters[group >> (18 - 6 * j) & 63] : '=');
        }
    }
    return text;
}

std::optional<std::string> base64Decode(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    std::uint32_t group = 0;
    std::size_t count = 0; // letters so far
    std::size_t padded = 0;
    for (const char c : text) {
        const std::uint8_t value = values[static_cast<std::uint8_t>(c)];
        if (value == space) continue;
        if (value == padding) {
            ++padded;
            continue;
        }
        if (value == invalid || padded > 0) return std::nullopt;
        group = group << 6 | value;
        if (++count % 4 == 0) {
            bytes.append(
                {static_cast<char>(group >> 16), static_cast<char>(group >> 8), static_cast<char>(group)});
        }
    }
    const std::size_t rest = count % 4;
    if (rest == 1 || padded > (4 - rest) % 4) return std::nullopt;
    if (rest == 2) bytes.push_back(static_cast<char>(group >> 4));
    if (rest == 3) bytes.append({static_cast<char>(group >> 10), static_cast<char>(group >> 2)});
    return bytes;
}

} // namespace qrv
