#include "Source/Tools/batch/Selection/Shard.h"

#include "Source/Tools/Common/SHA256.h"

#include <charconv>

namespace qrv::batch {

bool Shard::holds(const std::string& pdf) const {
    if (count == 1) return true;
    constexpr std::size_t digits = 15; // as many as are a number of 64 bits in any case
    return std::stoull(sha256(pdf).substr(0, digits), nullptr, 16) % count == index;
}

std::string Shard::suffix() const {
    return count == 1 ? "" : "." + std::to_string(index) + "-of-" + std::to_string(count);
}

std::optional<Shard> shardOfText(std::string_view text) {
    Shard shard;
    const char* const end = text.data() + text.size();
    const auto index = std::from_chars(text.data(), end, shard.index);
    if (index.ec != std::errc() || index.ptr == end || *index.ptr != '/') return std::nullopt;
    const auto count = std::from_chars(index.ptr + 1, end, shard.count);
    if (count.ec != std::errc() || count.ptr != end || shard.index >= shard.count) return std::nullopt;
    return shard;
}

} // namespace qrv::batch
