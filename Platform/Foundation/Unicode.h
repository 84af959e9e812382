#pragma once

// The one door to the Unicode library: conversions, boundaries, comparison, dates. Plain standard types, so
// that the classes above stay free of it.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qrv::unicode {

/// nullopt when the bytes are not valid UTF-8.
std::optional<std::u16string> fromUTF8(std::string_view bytes);
/// Every invalid sequence becomes U+FFFD.
std::u16string fromUTF8Lossy(std::string_view bytes);
/// nullopt when the text holds an unpaired surrogate.
std::optional<std::string> toUTF8(std::u16string_view text);
/// An unpaired surrogate becomes U+FFFD.
std::string toUTF8Lossy(std::u16string_view text);

/// Where each composed character sequence (what a reader takes for one character: a letter with its marks, an
/// emoji with modifiers and joiners, a flag) ends, in order, the text's end last. Empty for an empty text.
std::vector<std::size_t> composedSequenceEnds(std::u16string_view text);

/// A date pattern, ready for use by any thread.
class DatePattern {
public:
    explicit DatePattern(std::u16string_view pattern);
    ~DatePattern();

    /// In the local time zone as it was when the pattern was made; empty for a moment that no calendar
    /// reaches.
    std::u16string format(double secondsSince1970) const;

private:
    struct Formatter;

    std::unique_ptr<Formatter> formatter_;
};

} // namespace qrv::unicode
