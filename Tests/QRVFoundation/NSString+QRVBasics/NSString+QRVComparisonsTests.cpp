#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVComparisons.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(CompareForDisplay, NumbersByTheirValue) {
    EXPECT_EQ(qrvCompareForDisplay(u"File 9", u"File 10"), NSOrderedAscending);
    EXPECT_EQ(qrvCompareForDisplay(u"File 10", u"File 9"), NSOrderedDescending);
    EXPECT_EQ(qrvCompareForDisplay(u"File 010", u"File 10"), NSOrderedSame);
}

TEST(CompareForDisplay, WhateverTheCase) {
    EXPECT_EQ(qrvCompareForDisplay(u"FILE", u"file"), NSOrderedSame);
    EXPECT_EQ(qrvCompareForDisplay(u"a", u"B"), NSOrderedAscending);
    EXPECT_EQ(qrvCompareForDisplay(u"B", u"a"), NSOrderedDescending);
}

TEST(CompareForDisplay, LikeAnAlphabet) {
    EXPECT_EQ(qrvCompareForDisplay(u"é", u"f"), NSOrderedAscending);
    EXPECT_EQ(qrvCompareForDisplay(u"e", u"é"), NSOrderedAscending);
    EXPECT_EQ(qrvCompareForDisplay(u"e\u0301", u"\u00E9"), NSOrderedSame);
}

TEST(CompareForDisplay, NilComparesAsTheEmptyText) {
    EXPECT_EQ(qrvCompareForDisplay(NSString(), u"a"), NSOrderedAscending);
    EXPECT_EQ(qrvCompareForDisplay(u"a", NSString()), NSOrderedDescending);
    EXPECT_EQ(qrvCompareForDisplay(NSString(), u""), NSOrderedSame);
}

TEST(CompareLength, ShorterIsAscending) {
    EXPECT_EQ(qrvCompareLength(u"ab", u"xyz"), NSOrderedAscending);
    EXPECT_EQ(qrvCompareLength(u"xyz", u"ab"), NSOrderedDescending);
    EXPECT_EQ(qrvCompareLength(u"ab", u"xy"), NSOrderedSame);
    EXPECT_EQ(qrvCompareLength(NSString(), u""), NSOrderedSame);
    EXPECT_EQ(qrvCompareLength(NSString(), u"a"), NSOrderedAscending);
}

} // namespace qrv
