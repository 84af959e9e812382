#include "Source/Tools/batch/Progress/Tally.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace qrv::batch {

namespace {

/// "05"
std::string twoDigits(long long number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

} // namespace

void Tally::add(Outcome outcome) {
    switch (outcome) {
    case Outcome::converted:
        ++converted;
        break;
    case Outcome::convertedBefore:
        ++convertedBefore;
        break;
    case Outcome::failed:
        ++failed;
        break;
    case Outcome::failedBefore:
        ++failedBefore;
        break;
    }
}

double Tally::rate(std::chrono::duration<double> elapsed) const {
    return elapsed.count() > 0 ? static_cast<double>(converted + failed) / elapsed.count() : 0;
}

std::string timeText(std::chrono::duration<double> time) {
    constexpr long long minute = 60;
    constexpr long long hour = 60 * minute;
    constexpr long long day = 24 * hour;
    const long long seconds = std::llround(time.count());
    const auto text = [](long long large, const char* unit, long long small, const char* smallUnit) {
        return std::to_string(large) + unit + twoDigits(small) + smallUnit;
    };
    if (seconds < minute) return std::to_string(seconds) + " s";
    if (seconds < hour) return text(seconds / minute, " min ", seconds % minute, " s");
    if (seconds < day) return text(seconds / hour, " h ", seconds % hour / minute, " min");
    return text(seconds / day, " d ", seconds % day / hour, " h");
}

std::string sizeText(std::int64_t bytes) {
    constexpr std::array<const char*, 5> units = {"kB", "MB", "GB", "TB", "PB"};
    constexpr double thousand = 1000;
    if (bytes < 1000) return std::to_string(bytes) + " B";
    double size = static_cast<double>(bytes) / thousand;
    std::size_t unit = 0;
    constexpr double roundedUp = 999.5;
    while (size >= roundedUp && unit + 1 < units.size()) {
        size /= thousand;
        ++unit;
    }
    constexpr double withoutFraction = 9.95;
    return (size < withoutFraction ? oneDecimal(size) : std::to_string(std::llround(size))) + " " +
           units[unit];
}

std::string oneDecimal(double number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", number);
    return text.data();
}

std::string summaryText(const Tally& tally, std::chrono::duration<double> elapsed) {
    std::string text = std::to_string(tally.total) + (tally.total == 1 ? " archive: " : " archives: ") +
                       std::to_string(tally.converted) + " converted";
    const auto add = [&text](std::size_t count, const char* what) {
        if (count > 0) text += ", " + std::to_string(count) + " " + what;
    };
    add(tally.convertedBefore, "converted before");
    add(tally.failed, "failed");
    add(tally.failedBefore, "failed before, which --retry-failed tries again");
    add(tally.total - tally.done(), "left");
    text += "; " + timeText(elapsed);
    const double rate = tally.rate(elapsed);
    return rate > 0 ? text + ", " + oneDecimal(rate) + " a second" : text;
}

} // namespace qrv::batch
