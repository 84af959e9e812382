#pragma once

// A scope for temporary objects. Values here are reference-counted handles, so a pool has nothing to drain:
// it only marks a scope, and the number of open scopes can be asked for.

#include <cstddef>

namespace qrv {

class NSAutoreleasePool {
public:
    NSAutoreleasePool() { ++openScopes_; }

    ~NSAutoreleasePool() { --openScopes_; }

    NSAutoreleasePool(const NSAutoreleasePool&) = delete;
    NSAutoreleasePool& operator=(const NSAutoreleasePool&) = delete;

    /// Returns how many pools of the calling thread are open.
    static std::size_t openScopes() { return openScopes_; }

private:
    inline static thread_local std::size_t openScopes_ = 0;
};

} // namespace qrv
