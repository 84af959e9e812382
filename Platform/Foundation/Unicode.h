#pragma once

// The only access to the Unicode library: conversions, boundaries, comparison, dates. Plain standard types
// keep the classes above free of it.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qrv::unicode {

/// Returns nullopt if the bytes are not valid UTF-8.
std::optional<std::u16string> fromUTF8(std::string_view bytes);
/// Replaces every invalid sequence by U+FFFD.
std::u16string fromUTF8Lossy(std::string_view bytes);
/// Returns nullopt if the text contains an unpaired surrogate.
std::optional<std::string> toUTF8(std::u16string_view text);
/// Replaces unpaired surrogates by U+FFFD.
std::string toUTF8Lossy(std::u16string_view text);

/// The text of a file's name, which can be any bytes: one that is not part of valid UTF-8 becomes the
/// unpaired surrogate U+DC00 + byte, so that toFileName finds it again.
std::u16string fromFileName(std::string_view bytes);
/// Returns nullopt if the text contains an unpaired surrogate that stands for no byte.
std::optional<std::string> toFileName(std::u16string_view text);

/// The units [start, end) of a text.
struct Span {
    std::size_t start = 0;
    std::size_t end = 0;
};

/// Returns the composed character sequence (one user-perceived character) at the index, which must be inside
/// the text. Looks only as far around as necessary.
Span composedSequenceAt(std::u16string_view text, std::size_t index);

/// Iterates over all composed character sequences of a text, in linear time. The text must outlive it.
class ComposedSequences {
public:
    explicit ComposedSequences(std::u16string_view text);
    ComposedSequences(const ComposedSequences&) = delete;
    ComposedSequences& operator=(const ComposedSequences&) = delete;
    ~ComposedSequences();

    /// nullopt at the end.
    std::optional<Span> next();

private:
    struct Iterator;

    std::u16string_view text_;
    std::size_t at_ = 0;
    std::unique_ptr<Iterator> iterator_;
};

/// Canonical decomposition (form D).
std::u16string decomposed(std::u16string_view text);
/// The length of the canonical decomposition, in linear time.
std::size_t decomposedLength(std::u16string_view text);

/// Compatibility composition (form KC): without ligatures, presentation forms and other variants.
std::u16string compatibilityForm(std::u16string_view text);

/// The text with U+FFFD for every character that is not seen but does something, to a terminal or to the text
/// around it: controls, line breaks, directions, unpaired surrogates. What joins and parts letters stays.
std::u16string withoutControls(std::u16string_view text);
/// The columns that the text takes on a terminal: two for each wide character of East Asia, none for marks.
std::size_t columns(std::u16string_view text);

/// What a comparison ignores. Canonically equivalent texts are always equal.
struct Indifference {
    bool letterCase = false;
    bool diacritics = false;
    bool width = false;
};

/// Returns the first occurrence of the pattern as whole characters (with their marks), in linear time. An
/// empty pattern is never found; `anchored` searches at the start only.
std::optional<Span> find(std::u16string_view text, std::u16string_view pattern, Indifference indifference,
                         bool anchored);
/// Returns a value less than, equal to or greater than 0.
int compare(std::u16string_view a, std::u16string_view b, Indifference indifference);
/// Compares by the rules of the user's language; with `numeric`, numbers inside the texts compare by value.
int compareLocalized(std::u16string_view a, std::u16string_view b, bool caseInsensitive, bool numeric);

/// Returns nullopt if the bytes are not valid in this encoding (a value of NSStringEncoding) or the encoding
/// is unknown.
std::optional<std::u16string> decode(std::string_view bytes, unsigned long encoding);
/// Returns nullopt if the encoding cannot represent the text completely or is unknown.
std::optional<std::string> encode(std::u16string_view text, unsigned long encoding);
/// Returns the encoding of an IANA character set name in any case; nullopt for an unknown name.
std::optional<unsigned long> encodingOfCharset(const std::string& name);

/// Whether decodeWebText knows a character set of this name.
bool isCharset(const std::string& name);
/// Decodes bytes of a named character set. A byte-order mark overrides the name. Without a mark and a known
/// name, valid UTF-8 is read as UTF-8 and anything else as windows-1252. What cannot be decoded becomes
/// U+FFFD.
std::u16string decodeWebText(std::string_view bytes, const std::string& charset);

/// Returns the ASCII form of a host name in UTF-8: lower case, labels of other scripts as "xn--...". nullopt
/// for characters that a name must not contain and for names that are too long. ASCII names are not checked.
std::optional<std::string> domainToASCII(std::string_view name);

/// A date pattern, ready for use by any thread.
class DatePattern {
public:
    explicit DatePattern(std::u16string_view pattern);
    ~DatePattern();

    /// Formats the moment at this distance from GMT; empty for a moment outside the calendar.
    std::u16string format(double secondsSince1970, long secondsFromGMT) const;

private:
    struct Formatter;

    std::unique_ptr<Formatter> formatter_;
};

} // namespace qrv::unicode
