#include "Platform/Foundation/NSArray.h"

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

const NSArray& sample() {
    static const NSArray array({NSString(u"a"), NSNumber::numberWithInteger(2)});
    return array;
}

} // namespace

TEST(NSArray, HoldsItsElementsInOrder) {
    EXPECT_EQ(sample().count(), 2u);
    EXPECT_EQ(sample().objectAtIndex(0), id(NSString(u"a")));
    EXPECT_EQ(sample().objectAtIndex(1), id(NSNumber::numberWithInteger(2)));
    std::size_t seen = 0;
    for (const id& element : sample()) EXPECT_EQ(element, sample().objectAtIndex(seen++));
    EXPECT_EQ(seen, 2u);
}

TEST(NSArray, BracesMakeElements) {
    const NSArray nested({sample()});
    ASSERT_EQ(nested.count(), 1u);
    EXPECT_EQ(nested.objectAtIndex(0), id(sample()));
    EXPECT_EQ(NSArray({NSArray({sample()})}).description(), NSArray({nested}).description());
    EXPECT_EQ(NSArray({}).count(), 0u);
    EXPECT_THROW(NSArray({id()}), NSException);
}

TEST(NSArray, EndsHoweverDeepItIsNested) {
    constexpr int depth = 500'000;
    NSArray arrays = NSArray({NSString(u"innermost")});
    id mixed = arrays;
    for (int i = 0; i < depth; ++i) {
        arrays = NSArray({arrays});
        mixed = i % 2 ? id(NSArray({NSString(u"beside"), mixed})) : NSDictionary{{NSString(u"key"), mixed}};
    }
    const id kept = arrays.objectAtIndex(0);
    arrays = NSArray();
    mixed = id();
    EXPECT_EQ(as<NSArray>(kept).count(), 1u); // what is held elsewhere stays
}

TEST(NSArray, RaisesBeyondTheEndAndForNilElements) {
    EXPECT_THROW(sample().objectAtIndex(2), NSException);
    EXPECT_THROW(NSArray().objectAtIndex(0), NSException);
    EXPECT_THROW(NSArray({NSString(u"a"), id()}), NSException);
    EXPECT_THROW(sample().arrayByAddingObject(id()), NSException);
}

TEST(NSArray, NilIsEmpty) {
    const NSArray nothing;
    EXPECT_EQ(nothing.count(), 0u);
    EXPECT_EQ(nothing.begin(), nothing.end());
    EXPECT_FALSE(nothing.containsObject(NSString(u"a")));
    EXPECT_TRUE(nothing.componentsJoinedByString(u",").isNil());
    EXPECT_EQ(nothing.arrayByAddingObject(NSString(u"a")), NSArray({NSString(u"a")}));
}

TEST(NSArray, EqualityComparesElements) {
    EXPECT_EQ(NSArray({NSString(u"a")}), NSArray({NSString(u"a")}));
    EXPECT_EQ(NSArray({NSString(u"a")}).hash(), NSArray({NSString(u"a")}).hash());
    EXPECT_FALSE(NSArray({NSString(u"a")}) == NSArray({NSString(u"b")}));
    EXPECT_FALSE(NSArray::array() == NSArray());
    EXPECT_FALSE(NSArray::array() == id(NSString(u"")));
}

TEST(NSArray, ContainsByEqualityNeverNil) {
    EXPECT_TRUE(sample().containsObject(NSNumber::numberWithDouble(2.0)));
    EXPECT_FALSE(sample().containsObject(NSString(u"2")));
    EXPECT_FALSE(sample().containsObject(id()));
}

TEST(NSArray, AddingLeavesTheReceiver) {
    EXPECT_EQ(sample().arrayByAddingObject(NSString(u"c")).count(), 3u);
    EXPECT_EQ(sample().count(), 2u);
}

TEST(NSArray, JoinsDescriptions) {
    EXPECT_EQ(sample().componentsJoinedByString(u", "), NSString(u"a, 2"));
    EXPECT_EQ(sample().componentsJoinedByString(NSString()), NSString(u"a2"));
    EXPECT_EQ(NSArray::array().componentsJoinedByString(u","), NSString(u""));
}

} // namespace qrv
