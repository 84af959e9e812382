#pragma once

// The process's URL cache, reduced to its settings. No responses are kept: the engine has no cache that
// outlives it. So the capacities are only stored, and removing responses is only counted.

#include <atomic>
#include <cstddef>

namespace qrv {

class NSURLCache {
public:
    NSURLCache() = default;
    NSURLCache(const NSURLCache&) = delete;
    NSURLCache& operator=(const NSURLCache&) = delete;

    // + sharedURLCache
    /// The process's cache. Every operation may be called from any thread.
    static NSURLCache& sharedURLCache();

    // - removeAllCachedResponses
    void removeAllCachedResponses() { ++removals_; }

    /// How often all responses were removed.
    std::size_t removals() const { return removals_; }

    // - setDiskCapacity:
    /// In bytes.
    void setDiskCapacity(std::size_t bytes) { diskCapacity_ = bytes; }

    // - diskCapacity
    std::size_t diskCapacity() const { return diskCapacity_; }

    // - setMemoryCapacity:
    /// In bytes.
    void setMemoryCapacity(std::size_t bytes) { memoryCapacity_ = bytes; }

    // - memoryCapacity
    std::size_t memoryCapacity() const { return memoryCapacity_; }

private:
    std::atomic<std::size_t> removals_ = 0;
    std::atomic<std::size_t> diskCapacity_ = std::size_t{10} << 20;
    std::atomic<std::size_t> memoryCapacity_ = std::size_t{512} << 10;
};

} // namespace qrv
