#pragma once

// The one door to the Unicode library: conversions, boundaries, comparison, dates. Plain standard types, so
// that the classes above stay free of it.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qrv::unicode {

/// nullopt when the bytes are not valid UTF-8.
std::optional<std::u16string> fromUTF8(std::string_view bytes);
/// Every invalid sequence becomes U+FFFD.
std::u16string fromUTF8Lossy(std::string_view bytes);
/// nullopt when the text holds an unpaired surrogate.
std::optional<std::string> toUTF8(std::u16string_view text);
/// An unpaired surrogate becomes U+FFFD.
std::string toUTF8Lossy(std::u16string_view text);

/// The units [start, end) of a text.
struct Span {
    std::size_t start = 0;
    std::size_t end = 0;
};

/// The composed character sequence (one user-perceived character) that holds the unit, which has to be inside
/// the text. Looks only as far around as the sequence makes necessary.
Span composedSequenceAt(std::u16string_view text, std::size_t index);

/// All composed character sequences of a text from its start on, in linear time. The text has to live as
/// long.
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
/// The length of the canonical decomposition, in linear time for every text.
std::size_t decomposedLength(std::u16string_view text);

/// The compatibility form, composed (form KC): no ligatures, presentation forms or other variants.
std::u16string compatibilityForm(std::u16string_view text);

/// What a comparison takes no notice of. Canonically equivalent texts are the same in any case.
struct Indifference {
    bool letterCase = false;
    bool diacritics = false;
    bool width = false;
};

/// The first place where the pattern stands as whole characters (with their marks), in linear time. An empty
/// pattern is found nowhere; `anchored` looks at the start only.
std::optional<Span> find(std::u16string_view text, std::u16string_view pattern, Indifference indifference,
                         bool anchored);
/// Less than, equal to or greater than 0.
int compare(std::u16string_view a, std::u16string_view b, Indifference indifference);
/// By the rules of the user's language; with `numeric` numbers inside the texts compare by value.
int compareLocalized(std::u16string_view a, std::u16string_view b, bool caseInsensitive, bool numeric);

/// nullopt when the bytes are not text in this encoding (a value of NSStringEncoding) or the encoding is not
/// known.
std::optional<std::u16string> decode(std::string_view bytes, unsigned long encoding);
/// nullopt when the encoding can't hold the text whole or is not known.
std::optional<std::string> encode(std::u16string_view text, unsigned long encoding);
/// The encoding with an IANA character set name, whatever its case; nullopt for one that is not known.
std::optional<unsigned long> encodingOfCharset(const std::string& name);

/// The text in bytes of a named character set. A byte-order mark beats the name; without both, and for a name
/// that is not known, bytes that are UTF-8 are read as that and others as windows-1252. What cannot be
/// decoded becomes U+FFFD.
std::u16string decodeWebText(std::string_view bytes, const std::string& charset);

/// The ASCII form of a host's name in UTF-8, with labels of other scripts as "xn--..." and letters small;
/// nullopt for characters that no name may hold and for names longer than any. ASCII passes unchecked.
std::optional<std::string> domainToASCII(std::string_view name);

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
