#include "Platform/Foundation/SourceDate.h"

#include "Platform/Logging/NSLog.h"

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace qrv {

namespace {

constexpr long long endOfYear9999 = 253402300799;

} // namespace

NSDate sourceDate() {
    const char* const variable = std::getenv("SOURCE_DATE_EPOCH");
    if (!variable) return {};
    const std::string_view text(variable);
    long long seconds = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error == std::errc() && end == text.data() + text.size() && seconds >= 0 && seconds <= endOfYear9999)
        return NSDate::dateWithTimeIntervalSinceReferenceDate(static_cast<double>(seconds) -
                                                              NSTimeIntervalSince1970);
    NSLog(u"SOURCE_DATE_EPOCH is no number of seconds since 1970 and does not count: %@",
          NSString::fromFileSystem(variable));
    return {};
}

} // namespace qrv
