#include "Source/Tools/batch/Progress/ProgressBar.h"

#include "Source/Tools/Common/TerminalText.h"
#include "Source/Tools/batch/Progress/ProgressLog.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>

#include <sys/ioctl.h>
#include <unistd.h>

namespace qrv::batch {

namespace {

constexpr char clearLine[] = "\r\x1b[K";
constexpr char red[] = "\x1b[31m";
constexpr char green[] = "\x1b[32m";
constexpr char plain[] = "\x1b[0m";

std::string coloured(const std::string& text, const char* colour, const Terminal& terminal) {
    return terminal.hasColours ? colour + text + plain : text;
}

std::string repeated(const char* sign, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += sign;
    return text;
}

std::size_t terminalColumns() {
    constexpr std::size_t usual = 80;
    winsize size{};
    const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usual;
}

/// "310 of 500", "3 failed", "2.4/s", "1 min 20 s left": what there is to say, most important first.
std::vector<std::string> factsOf(const Tally& tally, std::chrono::duration<double> elapsed) {
    std::vector<std::string> facts = {std::to_string(tally.done()) + " of " + std::to_string(tally.total)};
    if (tally.allFailed() > 0) facts.push_back(std::to_string(tally.allFailed()) + " failed");
    const double rate = tally.rate(elapsed);
    if (rate > 0) {
        facts.push_back(oneDecimal(rate) + "/s");
        facts.push_back(
            timeText(std::chrono::duration<double>(static_cast<double>(tally.total - tally.done()) / rate)) +
            " left");
    }
    return facts;
}

} // namespace

std::string barText(const Tally& tally, std::chrono::duration<double> elapsed, const std::string& archive,
                    std::size_t columns, const Terminal& terminal) {
    constexpr std::size_t width = 20;
    const double share =
        tally.total == 0 ? 1 : static_cast<double>(tally.done()) / static_cast<double>(tally.total);
    const auto filled = static_cast<std::size_t>(share * width);
    const auto percent = static_cast<int>(share * 100);
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), " %3d %%", percent);
    const std::string gap = terminal.hasUnicode ? " · " : " - ";
    const std::size_t gapColumns = 3;

    std::size_t left = columns;
    std::string text;
    const auto add = [&](const std::string& part, std::size_t partColumns, const char* colour) {
        if (partColumns > left) return false;
        text += colour ? coloured(part, colour, terminal) : part;
        left -= partColumns;
        return true;
    };
    add(repeated(terminal.hasUnicode ? "█" : "#", filled), filled, green);
    add(repeated(terminal.hasUnicode ? "░" : ".", width - filled), width - filled, nullptr);
    add(number.data(), std::string_view(number.data()).size(), nullptr);
    for (const std::string& fact : factsOf(tally, elapsed)) {
        const bool tellsFailures = fact.ends_with("failed");
        if (left < gapColumns + fact.size()) return text;
        add(gap, gapColumns, nullptr);
        add(fact, fact.size(), tellsFailures ? red : nullptr);
    }
    constexpr std::size_t leastForName = 8;
    if (archive.empty() || left < gapColumns + leastForName) return text;
    add(gap, gapColumns, nullptr);
    const std::string name = shownWithin(archive, left);
    add(name, columnsOf(name), nullptr);
    return text;
}

void ProgressBar::started(const std::string& archive) {
    underWay_.push_back(archive);
}

void ProgressBar::finished(const Record& record, Outcome outcome, const Tally&) {
    const auto found = std::find(underWay_.begin(), underWay_.end(), record.archive);
    if (found != underWay_.end()) underWay_.erase(found);
    if (outcome == Outcome::failed || outcome == Outcome::failedBefore)
        stream_ << clearLine << coloured(outcomeText(record, outcome), red, terminal_) << '\n';
}

void ProgressBar::passed(const Tally& tally, std::chrono::duration<double> elapsed) {
    // The one that has been under way for longest. One column is left, so that no terminal begins a new line.
    const std::string archive = underWay_.empty() ? "" : underWay_.front();
    stream_ << clearLine << barText(tally, elapsed, archive, terminalColumns() - 1, terminal_) << std::flush;
}

void ProgressBar::ended(const std::string& summary) {
    stream_ << clearLine << shown(summary) << '\n' << std::flush;
}

} // namespace qrv::batch
