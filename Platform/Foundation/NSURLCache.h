#pragma once

// The process's cache of loaded resources: its capacities. Nothing that is loaded outlives the run of the
// engine that loaded it, so no responses are kept here; whoever starts an engine reads the capacities.

#include <atomic>
#include <cstddef>

namespace qrv {

class NSURLCache {
public:
    NSURLCache() = default;
    NSURLCache(const NSURLCache&) = delete;
    NSURLCache& operator=(const NSURLCache&) = delete;

    // + sharedURLCache
    /// The cache of the process. Every operation may be called from any thread.
    static NSURLCache& sharedURLCache();

    // - removeAllCachedResponses
    void removeAllCachedResponses() { ++removals_; }

    /// How often all responses were removed: what one who keeps some compares with.
    std::size_t removals() const { return removals_; }

    // - setDiskCapacity:
    /// In bytes; 0 keeps nothing.
    void setDiskCapacity(std::size_t bytes) { diskCapacity_ = bytes; }

    // - diskCapacity
    std::size_t diskCapacity() const { return diskCapacity_; }

    // - setMemoryCapacity:
    /// In bytes; 0 keeps nothing.
    void setMemoryCapacity(std::size_t bytes) { memoryCapacity_ = bytes; }

    // - memoryCapacity
    std::size_t memoryCapacity() const { return memoryCapacity_; }

private:
    std::atomic<std::size_t> removals_ = 0;
    std::atomic<std::size_t> diskCapacity_ = std::size_t{10} << 20;
    std::atomic<std::size_t> memoryCapacity_ = std::size_t{512} << 10;
};

} // namespace qrv
