// Any bytes as text in any encoding, and what can then be asked of the text: comparison, search, composed
// characters and lines.

#include "Fuzz/FuzzInput.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/Unicode.h"

#include <array>

using namespace qrv;
using namespace qrv::fuzz;

namespace {

constexpr std::array encodings{
    NSASCIIStringEncoding,          NSJapaneseEUCStringEncoding,
    NSUTF8StringEncoding,           NSISOLatin1StringEncoding,
    NSNonLossyASCIIStringEncoding,  NSShiftJISStringEncoding,
    NSISOLatin2StringEncoding,      NSUTF16StringEncoding,
    NSWindowsCP1251StringEncoding,  NSWindowsCP1252StringEncoding,
    NSWindowsCP1253StringEncoding,  NSWindowsCP1254StringEncoding,
    NSWindowsCP1250StringEncoding,  NSISO2022JPStringEncoding,
    NSMacOSRomanStringEncoding,     NSUTF32StringEncoding,
    NSUTF16BigEndianStringEncoding, NSUTF16LittleEndianStringEncoding,
    NSUTF32BigEndianStringEncoding, NSUTF32LittleEndianStringEncoding,
};

/// What an encoding can represent reads back as the same.
void checkEncoding(const NSString& text, NSStringEncoding encoding) {
    const NSData written = text.dataUsingEncoding(encoding);
    if (written) require(NSString::initWithData_encoding(written, encoding).isEqualToString(text));
}

void checkPieces(const NSString& text) {
    unicode::ComposedSequences sequences(text.view());
    std::size_t at = 0;
    while (const auto next = sequences.next()) {
        require(next->start == at && next->end > at && next->end <= text.length());
        at = next->end;
    }
    require(at == text.length());
    for (at = 0; at < text.length();) {
        std::size_t start = 0;
        std::size_t end = 0;
        std::size_t contents = 0;
        text.getLineStart_end_contentsEnd_forRange(&start, &end, &contents, {at, 0});
        require(start == at && contents >= start && contents <= end && end > at);
        at = end;
    }
    require(unicode::decomposed(text.view()).size() == unicode::decomposedLength(text.view()));
    require(unicode::toFileName(unicode::fromFileName(text.utf8())) == text.utf8());
}

void checkPair(const NSString& text, const NSString& other, unsigned long options) {
    const bool isSearch = (options & (kCFCompareLocalized | NSNumericSearch)) == 0;
    const unsigned long comparing = options & ~(NSLiteralSearch | NSAnchoredSearch);
    if (isSearch) {
        const NSRange found = text.rangeOfString_options(other, options & ~kCFCompareLocalized);
        require(found.location == NSNotFound ||
                (found.location <= text.length() && found.length <= text.length() - found.location));
    }
    require(text.compare_options(other, comparing) == -other.compare_options(text, comparing));
    require(text.compare_options(text, comparing) == NSOrderedSame);
    const NSString same = text.stringByReplacingOccurrencesOfString_withString(other, other);
    require(same.isEqualToString(text));
    require(text.componentsSeparatedByString(other).count() >= 1);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const NSStringEncoding encoding = encodings[input.below(encodings.size())];
    const unsigned long options = input.byte() & (1UL | 2 | 8 | 32 | 64 | 128);
    const std::string charset(input.line());
    const NSString other = NSString::fromUTF8(input.line());
    const std::string rest(input.rest());
    const NSString text = NSString::initWithData_encoding(NSData(rest), encoding);
    require(NSString(unicode::decodeWebText(rest, charset)).length() <= rest.size() + 1);
    unicode::encodingOfCharset(charset);
    for (const NSString& each : {text, NSString::fromUTF8(rest)}) {
        if (!each) continue;
        checkEncoding(each, encoding);
        checkPieces(each);
        checkPair(each, other, options);
    }
    return 0;
}
