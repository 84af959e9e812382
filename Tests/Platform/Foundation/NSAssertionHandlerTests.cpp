#include "Platform/Foundation/NSAssertionHandler.h"

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNumber.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(AssertionHandler, AFailureInAFunctionRaisesWithTheFormattedDescription) {
    try {
        NSAssertionHandler::currentHandler().handleFailureInFunction_file_lineNumber_description(
            u"int f(void)", u"Source/f", 12, u"Invalid parameter not satisfying: %@", NSString(u"err == 0"));
    } catch (const NSException& e) {
        EXPECT_EQ(e.name(), NSString(NSInternalInconsistencyException));
        EXPECT_EQ(e.reason(), NSString(u"Invalid parameter not satisfying: err == 0"));
        EXPECT_EQ(e.userInfo().objectForKey(NSString(u"NSAssertPlace")), NSString(u"int f(void)"));
        EXPECT_EQ(e.userInfo().objectForKey(NSString(u"NSAssertFile")), NSString(u"Source/f"));
        EXPECT_EQ(e.userInfo().objectForKey(NSString(u"NSAssertLine")), NSNumber::numberWithInteger(12));
        EXPECT_TRUE(e.userInfo().objectForKey(NSString(u"NSAssertObject")).isNil());
    }
}

TEST(AssertionHandler, AFailureInAMethodNamesItsObject) {
    try {
        NSAssertionHandler::currentHandler().handleFailureInMethod_object_file_lineNumber_description(
            u"doIt:", NSString(u"receiver"), u"Source/f", 1, u"%d of %d", 1, 2);
    } catch (const NSException& e) {
        EXPECT_EQ(e.reason(), NSString(u"1 of 2"));
        EXPECT_EQ(e.userInfo().objectForKey(NSString(u"NSAssertObject")), NSString(u"receiver"));
    }
}

TEST(AssertionHandler, NilPlacesStillRaise) {
    EXPECT_THROW(
        NSAssertionHandler::currentHandler().handleFailureInMethod_object_file_lineNumber_description(
            {}, {}, {}, 0, {}),
        NSException);
}

} // namespace qrv
