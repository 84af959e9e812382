#include "Platform/Foundation/NSNull.h"

#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(NSNull, IsOneValueThatIsNotNil) {
    EXPECT_FALSE(NSNull::null().isNil());
    EXPECT_TRUE(NSNull::null().isIdenticalTo(NSNull::null()));
    EXPECT_EQ(NSNull::null(), NSNull::null());
    EXPECT_FALSE(NSNull::null() == id());
    EXPECT_EQ(NSNull::null().description(), NSString(u"<null>"));
    EXPECT_TRUE(NSNull::null().isKindOfClass(NSNull::classInfo()));
}

} // namespace qrv
