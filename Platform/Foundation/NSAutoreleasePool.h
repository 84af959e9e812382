#pragma once

// A scope in which convenience results used to be gathered. Values here are shared handles that go with their
// last holder, so there is nothing to drain: what remains of a pool is its extent, which can be asked for.

#include <cstddef>

namespace qrv {

class NSAutoreleasePool {
public:
    NSAutoreleasePool() { ++openScopes_; }

    ~NSAutoreleasePool() { --openScopes_; }

    NSAutoreleasePool(const NSAutoreleasePool&) = delete;
    NSAutoreleasePool& operator=(const NSAutoreleasePool&) = delete;

    /// How many pools of the calling thread are open.
    static std::size_t openScopes() { return openScopes_; }

private:
    inline static thread_local std::size_t openScopes_ = 0;
};

} // namespace qrv
