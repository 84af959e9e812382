#include "Platform/Foundation/Gestalt.h"

#include "Platform/Foundation/NSProcessInfo.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(GestaltSelectors, VersionPiecesAreThePlatforms) {
    NSProcessInfo::processInfo().setVersionForTesting({1.0, {11, 12, 13}});
    std::int32_t value = 0;
    EXPECT_EQ(Gestalt(gestaltSystemVersionMajor, &value), 0);
    EXPECT_EQ(value, 11);
    EXPECT_EQ(Gestalt(gestaltSystemVersionMinor, &value), 0);
    EXPECT_EQ(value, 12);
    EXPECT_EQ(Gestalt(gestaltSystemVersionBugFix, &value), 0);
    EXPECT_EQ(value, 13);
    NSProcessInfo::processInfo().setVersionForTesting();
}

TEST(GestaltSelectors, UnknownSelectorsFailAndLeaveThePlaceAlone) {
    std::int32_t value = 5;
    EXPECT_EQ(Gestalt(0x73797334, &value), gestaltUndefSelectorErr);
    EXPECT_EQ(value, 5);
}

} // namespace qrv
