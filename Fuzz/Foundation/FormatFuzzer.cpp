// Any format with arguments of every kind, any date pattern, and any text as a number or date.

#include "Fuzz/FuzzInput.h"
#include "Platform/Foundation/NSDateFormatter.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/PDFKit/PDFDate.h"

#include <cmath>

using namespace qrv;
using namespace qrv::fuzz;

namespace {

// A field has 4,096 characters at most, and of a double's 309 digits each takes one.
constexpr std::size_t longestField = 6000;

void checkFormat(const NSString& format, double real, long long integer, const std::string& text) {
    const NSString string = NSString::fromUTF8(text);
    const std::u16string units(string.view()); // whose address is printed
    const auto once = [&] {
        return NSString::stringWithFormat(format, integer, real, text.c_str(), NSNull::null(),
                                          static_cast<short>(integer), static_cast<long double>(real),
                                          units.c_str(), string, id(), nullptr);
    };
    const NSString made = once();
    require(!made.isNil());
    require(made.length() <= (format.length() + 1) * (longestField + text.size()));
    require(made == once());
}

void checkDates(const NSString& pattern, double seconds) {
    NSDateFormatter formatter;
    formatter.setDateFormat(pattern);
    const NSDate date = NSDate::dateWithTimeIntervalSinceReferenceDate(seconds);
    require(!formatter.stringFromDate(date).isNil());
    const std::string written = pdfTextFromDate(date);
    if (written.empty()) return;
    const NSDate back = dateFromPDFText(written);
    require(std::abs(back.timeIntervalSinceReferenceDate() - seconds) <= 1);
}

void checkNumbers(const NSString& text) {
    const double real = text.doubleValue();
    require(!std::isnan(real));
    const NSNumber number = NSNumber::numberWithDouble(real);
    require(number.compare(NSNumber::numberWithDouble(real)) == NSOrderedSame);
    const NSNumber integer = NSNumber::numberWithInteger(text.integerValue());
    require(integer.compare(number) == -number.compare(integer));
    require(!number.description().isNil() && !integer.description().isNil());
    if (const NSDate date = dateFromPDFText(text.utf8()))
        require(std::isfinite(date.timeIntervalSinceReferenceDate()));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const NSString format = NSString::fromUTF8(input.line());
    const NSString number = NSString::fromUTF8(input.line());
    const std::string text(input.line());
    checkFormat(format, number.doubleValue(), number.integerValue(), text);
    checkDates(format, number.doubleValue());
    checkNumbers(number);
    checkNumbers(format);
    return 0;
}
