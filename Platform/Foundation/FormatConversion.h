#pragma once

// A conversion of a format, as written: "%-8.3lf".

#include <optional>
#include <string_view>

namespace qrv {

struct FormatConversion {
    /// Limits the width of a field, so that a format cannot allocate without bound.
    static constexpr int maximumWidth = 4096;

    /// Parses the conversion at the start of the text, which begins with '%'; a letter of 0 means that it is
    /// truncated.
    static FormatConversion parse(std::u16string_view text);

    /// Of an integer: what the length modifier says.
    unsigned lengthInBytes() const;

    std::u16string_view source;
    bool isLeft = false;                 // "-"
    bool hasPlus = false;                // "+"
    bool hasBlank = false;               // " "
    bool isAlternative = false;          // "#"
    bool hasZeros = false;               // "0"
    std::optional<std::size_t> position; // from "n$", counted from 0
    std::optional<int> width;
    std::optional<int> precision;
    bool widthFromArgument = false;
    bool precisionFromArgument = false;
    std::u16string_view length;
    char16_t letter = 0;
};

} // namespace qrv
