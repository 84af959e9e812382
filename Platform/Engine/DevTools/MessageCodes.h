#pragma once

// The bytes that a value of a binary message begins with (RFC 8949): three bits of the major type, five of
// more.

#include <cstdint>
#include <string_view>

namespace qrv::engine {

enum class MajorType : std::uint8_t { positive, negative, bytes, text, array, map, tag, other };

/// From here on the five bits say how long the number is that follows: 1, 2, 4 or 8 bytes.
constexpr unsigned firstLongLength = 24;
constexpr unsigned noLength = 31;

constexpr unsigned base64Tag = 22;   ///< bytes that stand for text in base64
constexpr unsigned envelopeTag = 24; ///< bytes that are a value

constexpr char initial(MajorType type, unsigned more) {
    return static_cast<char>(static_cast<unsigned>(type) << 5 | more);
}

constexpr MajorType majorType(char initialByte) {
    return static_cast<MajorType>(static_cast<unsigned char>(initialByte) >> 5);
}

constexpr char indefinite(MajorType type) {
    return initial(type, noLength);
}

constexpr char tag(unsigned number) {
    return initial(MajorType::tag, number);
}

constexpr char simpleFalse = initial(MajorType::other, 20);
constexpr char simpleTrue = initial(MajorType::other, 21);
constexpr char simpleNull = initial(MajorType::other, 22);
constexpr char doubleStart = initial(MajorType::other, 27);
constexpr char stop = initial(MajorType::other, noLength);

/// What an envelope begins with, before its length in 32 bits: its tag (in one more byte), and that of bytes.
constexpr std::string_view envelopeStart = "\xd8\x18\x5a";

} // namespace qrv::engine
