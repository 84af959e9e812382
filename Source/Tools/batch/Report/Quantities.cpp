#include "Source/Tools/batch/Report/Quantities.h"

#include "Source/Tools/batch/Progress/Tally.h"

#include <algorithm>

namespace qrv::batch {

std::string countText(std::int64_t count) {
    std::string text = std::to_string(std::max<std::int64_t>(count, 0));
    for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, ",");
    return text;
}

std::string countOf(std::int64_t count, const std::string& word) {
    return countText(count) + " " + word + (count == 1 ? "" : "s");
}

std::string durationText(std::int64_t milliseconds) {
    constexpr std::int64_t second = 1000;
    constexpr std::int64_t tenSeconds = 10 * second;
    if (milliseconds < second) return countText(milliseconds) + " ms";
    const std::chrono::duration<double> time = std::chrono::milliseconds(milliseconds);
    return milliseconds < tenSeconds ? oneDecimal(time.count()) + " s" : timeText(time);
}

} // namespace qrv::batch
