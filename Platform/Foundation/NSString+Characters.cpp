// Characters, lines and sets of characters.

#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/PercentEscapes.h"
#include "Platform/Foundation/Unicode.h"

namespace qrv {

namespace {

bool isLineTerminator(char16_t c) {
    return c == u'\n' || c == u'\r' || c == u'\u0085' || c == u'\u2028' || c == u'\u2029';
}

/// Whether a line starts here: after a terminator, but not in the middle of CR LF.
bool isLineStart(std::u16string_view text, std::size_t index) {
    if (index == 0) return true;
    const bool insidePair = text[index - 1] == u'\r' && index < text.size() && text[index] == u'\n';
    return isLineTerminator(text[index - 1]) && !insidePair;
}

} // namespace

NSRange NSString::rangeOfComposedCharacterSequenceAtIndex(std::size_t index) const {
    static_cast<void>(characterAtIndex(index)); // raises beyond the end
    const unicode::Span span = unicode::composedSequenceAt(view(), index);
    return {span.start, span.end - span.start};
}

NSString NSString::decomposedStringWithCanonicalMapping() const {
    return isNil() ? NSString() : NSString(unicode::decomposed(view()));
}

void NSString::getLineStart_end_contentsEnd_forRange(std::size_t* start, std::size_t* end,
                                                     std::size_t* contentsEnd, NSRange range) const {
    if (range.location > length() || range.length > length() - range.location) {
        throw NSException(
            NSRangeException,
            stringWithFormat(u"-[NSString getLineStart:end:contentsEnd:forRange:]: Range %@ out of "
                             u"bounds; string length %lu",
                             NSStringFromRange(range), length()));
    }
    const std::u16string_view text = view();
    std::size_t first = range.location;
    while (!isLineStart(text, first)) --first;
    // The last unit of the range may be a terminator, whose line then is the last one.
    std::size_t last = range.location + (range.length > 0 ? range.length - 1 : 0);
    while (last < text.size() && !isLineTerminator(text[last])) ++last;
    const bool isSecondOfPair =
        last > first && last < text.size() && text[last] == u'\n' && text[last - 1] == u'\r';
    if (isSecondOfPair) --last;
    std::size_t next = std::min(last + 1, text.size());
    if (last + 1 < text.size() && text[last] == u'\r' && text[last + 1] == u'\n') ++next;
    if (start) *start = first;
    if (contentsEnd) *contentsEnd = last;
    if (end) *end = next;
}

NSString NSString::stringByTrimmingCharactersInSet(const NSCharacterSet& set) const {
    if (isNil()) return {};
    std::u16string_view text = view();
    while (!text.empty() && set.characterIsMember(text.front())) text.remove_prefix(1);
    while (!text.empty() && set.characterIsMember(text.back())) text.remove_suffix(1);
    return NSString(text);
}

NSString NSString::stringByAddingPercentEncodingWithAllowedCharacters(const NSCharacterSet& allowed) const {
    return addPercentEscapes(
        *this, [&](char32_t c) { return c < 0x80 && allowed.characterIsMember(static_cast<char16_t>(c)); });
}

} // namespace qrv
