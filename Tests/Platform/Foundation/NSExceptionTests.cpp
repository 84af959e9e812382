#include "Platform/Foundation/NSException.h"

#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(NSException, CarriesNameReasonAndUserInfo) {
    const NSException e(NSRangeException, u"too far", {{NSString(u"k"), NSString(u"v")}});
    EXPECT_EQ(e.name(), NSString(u"NSRangeException"));
    EXPECT_EQ(e.reason(), NSString(u"too far"));
    EXPECT_EQ(e.userInfo().objectForKey(NSString(u"k")), id(NSString(u"v")));
    EXPECT_STREQ(e.what(), "NSRangeException: too far");
}

TEST(NSException, IsDefinedWithoutNameReasonAndUserInfo) {
    const NSException e{NSString(), NSString()};
    EXPECT_TRUE(e.name().isNil());
    EXPECT_TRUE(e.reason().isNil());
    EXPECT_TRUE(e.userInfo().isNil());
    EXPECT_STREQ(e.what(), ": ");
}

TEST(NSException, IsCaughtAsAStandardException) {
    EXPECT_THROW(throw NSException(NSInternalInconsistencyException, u"x"), std::exception);
}

TEST(NSException, AnUnknownSelectorRaisesAnInvalidArgument) {
    try {
        NSException::doesNotRecognizeSelector(u"Thing", u"doIt:");
        FAIL();
    } catch (const NSException& e) {
        EXPECT_EQ(e.name(), NSString(NSInvalidArgumentException));
        EXPECT_EQ(e.reason(), NSString(u"-[Thing doIt:]: unrecognized selector sent to instance"));
    }
}

} // namespace qrv
