#pragma once

// What fuzz targets share: choices made by the fuzzer's bytes, and what has to hold.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace qrv::fuzz {

/// Ends the program, which the fuzzer and its seeds' test report, unless the condition holds.
inline void require(bool condition, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    if (condition) return;
    std::fprintf(stderr, "%s:%d: does not hold\n", file, line);
    std::abort();
}

/// Gives out the bytes from first to last. What is asked for after the last is 0 or empty.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* bytes, std::size_t size)
        : rest_(reinterpret_cast<const char*>(bytes), size) {}

    bool isEmpty() const { return rest_.empty(); }

    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const char first = rest_.front();
        rest_.remove_prefix(1);
        return static_cast<std::uint8_t>(first);
    }

    /// A number below `count`, which is 256 at most and not 0.
    std::size_t below(std::size_t count) { return byte() % count; }

    bool flag() { return byte() % 2 == 1; }

    /// The text to the end of the line, so that seeds can be written by hand.
    std::string_view line() {
        const std::size_t end = std::min(rest_.find('\n'), rest_.size());
        const std::string_view text = rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        return text;
    }

    std::string_view rest() {
        const std::string_view all = rest_;
        rest_ = {};
        return all;
    }

private:
    std::string_view rest_;
};

} // namespace qrv::fuzz
