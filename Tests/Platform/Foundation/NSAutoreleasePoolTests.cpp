#include "Platform/Foundation/NSAutoreleasePool.h"

#include <gtest/gtest.h>

#include <thread>

namespace qrv {

TEST(AutoreleasePool, CountsTheOpenScopesOfItsThread) {
    EXPECT_EQ(NSAutoreleasePool::openScopes(), 0u);
    {
        const NSAutoreleasePool outer;
        {
            const NSAutoreleasePool inner;
            EXPECT_EQ(NSAutoreleasePool::openScopes(), 2u);
            std::thread([] { EXPECT_EQ(NSAutoreleasePool::openScopes(), 0u); }).join();
        }
        EXPECT_EQ(NSAutoreleasePool::openScopes(), 1u);
    }
    EXPECT_EQ(NSAutoreleasePool::openScopes(), 0u);
}

} // namespace qrv
