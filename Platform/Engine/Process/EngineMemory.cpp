#include "Platform/Engine/Process/EngineMemory.h"

#include "Platform/Engine/Process/Machine.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string_view>
#include <sys/resource.h>

namespace qrv::engine {

namespace {

constexpr char variable[] = "WEB2PDF_MEMORY_LIMIT";
constexpr std::size_t mebibyte = std::size_t{1} << 20;
constexpr std::size_t reserve = std::size_t{1} << 30;
constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// Nothing for a text that is no number, or one that is too large.
std::optional<std::size_t> number(std::string_view text) {
    std::size_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

} // namespace

std::size_t engineMemoryLimit(const std::function<void(const std::string& line)>& log,
                              const std::string& root) {
    if (const char* text = std::getenv(variable)) {
        const std::size_t chosen = number(text).value_or(0);
        if (chosen > 0) return std::min(chosen, none / mebibyte) * mebibyte;
        if (log) log(std::string(variable) + " is no positive number and does not count: " + text);
    }
    return machineMemory(root) / 2;
}

void limitOwnMemory(std::size_t limit) {
    rlimit own{};
    ::getrlimit(RLIMIT_DATA, &own);
    const rlim_t most = std::min<rlim_t>(limit, RLIM_INFINITY - reserve - 1) + reserve;
    own.rlim_cur = std::min(own.rlim_cur, most);
    own.rlim_max = std::min(own.rlim_max, most);
    ::setrlimit(RLIMIT_DATA, &own);
}

} // namespace qrv::engine
