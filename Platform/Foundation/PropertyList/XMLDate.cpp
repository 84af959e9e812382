#include "Platform/Foundation/PropertyList/XMLDate.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace qrv::plist {

namespace {

using std::chrono::sys_days;

constexpr std::string_view pattern = "dddd-dd-ddTdd:dd:ddZ"; // a d stands for a digit
constexpr sys_days referenceDate = std::chrono::year(2001) / 1 / 1;
constexpr sys_days firstDate = std::chrono::year(1) / 1 / 1;
constexpr sys_days endDate = std::chrono::year(10000) / 1 / 1;

constexpr double secondsFromReference(sys_days day) {
    return static_cast<double>(std::chrono::seconds(day - referenceDate).count());
}

bool hasForm(std::string_view text) {
    if (text.size() != pattern.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (pattern[i] == 'd' ? !isDigit : text[i] != pattern[i]) return false;
    }
    return true;
}

} // namespace

std::optional<double> parseXMLDate(std::string_view text) {
    if (!hasForm(text)) return std::nullopt;
    const auto number = [&](std::size_t start, std::size_t length) {
        int value = 0;
        std::from_chars(text.data() + start, text.data() + start + length, value);
        return value;
    };
    const std::chrono::year_month_day date(std::chrono::year(number(0, 4)),
                                           std::chrono::month(static_cast<unsigned>(number(5, 2))),
                                           std::chrono::day(static_cast<unsigned>(number(8, 2))));
    const int hour = number(11, 2);
    const int minute = number(14, 2);
    const int second = number(17, 2);
    if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    return secondsFromReference(sys_days(date)) + hour * 3600 + minute * 60 + second;
}

std::optional<std::string> formatXMLDate(double seconds) {
    const double whole = std::floor(seconds);
    // Written so that NaN fails as well.
    if (!(whole >= secondsFromReference(firstDate) && whole < secondsFromReference(endDate))) {
        return std::nullopt;
    }
    const auto moment = referenceDate + std::chrono::seconds(static_cast<long long>(whole));
    const sys_days day = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(moment - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text;
}

} // namespace qrv::plist
