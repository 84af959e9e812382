#pragma once

// Numbers as people read them, in English. Negative ones, which only damaged results hold, are shown as 0.

#include <cstdint>
#include <string>

namespace qrv::batch {

/// "1,234,567".
std::string countText(std::int64_t count);

/// "1 page", "1,234 pages": the word gets an s.
std::string countOf(std::int64_t count, const std::string& word);

/// "5 ms", "2.4 s", "3 min 20 s", "1 h 05 min".
std::string durationText(std::int64_t milliseconds);

} // namespace qrv::batch
