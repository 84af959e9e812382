#include "Platform/Foundation/NSURLRequest.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(URLRequest, HasTheAddressThatItWasMadeWith) {
    const NSURL url = NSURL::URLWithString(u"https://a.example/b?c#d");
    const NSURLRequest request = NSURLRequest::requestWithURL(url);
    EXPECT_EQ(request.URL(), url);
    EXPECT_TRUE(request.isKindOfClass(NSURLRequest::classInfo()));
    EXPECT_EQ(as<NSURLRequest>(id(request)).URL(), url);
}

TEST(URLRequest, WithoutAddressIsARequestStill) {
    const NSURLRequest request = NSURLRequest::requestWithURL({});
    EXPECT_FALSE(request.isNil());
    EXPECT_TRUE(request.URL().isNil());
}

TEST(URLRequest, NilHasNoAddress) {
    EXPECT_TRUE(NSURLRequest().URL().isNil());
}

} // namespace qrv
