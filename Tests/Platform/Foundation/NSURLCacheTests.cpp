#include "Platform/Foundation/NSURLCache.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(URLCache, SharedCacheIsOneObject) {
    EXPECT_EQ(&NSURLCache::sharedURLCache(), &NSURLCache::sharedURLCache());
}

TEST(URLCache, CapacitiesStartAboveZeroAndKeepWhatIsSet) {
    NSURLCache cache;
    EXPECT_GT(cache.diskCapacity(), 0u);
    EXPECT_GT(cache.memoryCapacity(), 0u);
    cache.setDiskCapacity(0);
    cache.setMemoryCapacity(1);
    EXPECT_EQ(cache.diskCapacity(), 0u);
    EXPECT_EQ(cache.memoryCapacity(), 1u);
}

TEST(URLCache, RemovalsAreCounted) {
    NSURLCache cache;
    cache.removeAllCachedResponses();
    cache.removeAllCachedResponses();
    EXPECT_EQ(cache.removals(), 2u);
}

} // namespace qrv
