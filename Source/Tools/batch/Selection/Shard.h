#pragma once

// A part of a batch, for one of several runs that together convert everything once.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qrv::batch {

struct Shard {
    std::uint64_t index = 0; ///< below `count`
    std::uint64_t count = 1;

    /// Whether the archive whose PDF has this path below the output folder belongs to it. That depends on the
    /// path alone, so that it does not matter what else is there.
    bool holds(const std::string& pdf) const;

    /// What its files have in their names: ".3-of-8", or nothing where it is all.
    std::string suffix() const;
};

/// The shard of a text such as "0/8"; nothing for any other text.
std::optional<Shard> shardOfText(std::string_view text);

} // namespace qrv::batch
