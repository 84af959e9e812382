#include "Platform/PDFKit/PDFDate.h"

#include <chrono>
#include <cmath>
#include <qpdf/QUtil.hh>

namespace qrv {

using namespace std::chrono;

namespace {

constexpr sys_seconds earliest = sys_days(year(0) / January / 1);
constexpr sys_seconds latest = sys_days(year(10000) / January / 1) - seconds(1);

} // namespace

NSDate dateFromPDFText(const std::string& text) {
    QUtil::QPDFTime parts;
    // The library uses a regular expression, whose recursion could exhaust the stack on a long text.
    constexpr std::size_t longestDate = 32;
    if (text.size() > longestDate || !QUtil::pdf_time_to_qpdf_time(text, &parts)) return {};
    const year_month_day day{year(parts.year), month(static_cast<unsigned>(parts.month)),
                             std::chrono::day(static_cast<unsigned>(parts.day))};
    if (!day.ok() || parts.hour > 23 || parts.minute > 59 || parts.second > 59) return {};
    const sys_seconds moment = sys_days(day) + hours(parts.hour) + minutes(parts.minute) +
                               seconds(parts.second) + minutes(parts.tz_delta);
    return NSDate::dateWithTimeIntervalSinceReferenceDate(
        static_cast<double>(moment.time_since_epoch().count()) - NSTimeIntervalSince1970);
}

std::string pdfTextFromDate(const NSDate& date) {
    if (date.isNil()) return {};
    const double unixSeconds = std::floor(date.timeIntervalSinceReferenceDate() + NSTimeIntervalSince1970);
    const auto bound = [](sys_seconds limit) {
        return static_cast<double>(limit.time_since_epoch().count());
    };
    if (!(unixSeconds >= bound(earliest) && unixSeconds <= bound(latest))) return {};
    const sys_seconds moment{seconds(static_cast<long long>(unixSeconds))};
    const year_month_day day(floor<days>(moment));
    const hh_mm_ss time(moment - floor<days>(moment));
    return QUtil::qpdf_time_to_pdf_time(
        {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
         static_cast<int>(static_cast<unsigned>(day.day())), static_cast<int>(time.hours().count()),
         static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()), 0});
}

} // namespace qrv
