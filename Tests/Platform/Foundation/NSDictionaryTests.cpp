#include "Platform/Foundation/NSDictionary.h"

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

NSString s(const char16_t* text) {
    return text;
}

NSNumber n(long long value) {
    return NSNumber::numberWithInteger(value);
}

} // namespace

TEST(NSDictionary, FindsValuesByEqualKeys) {
    const NSDictionary d = {{s(u"a"), n(1)}, {n(2), s(u"two")}};
    EXPECT_EQ(d.count(), 2u);
    EXPECT_EQ(d.objectForKey(s(u"a")), id(n(1)));
    EXPECT_EQ(d.objectForKey(NSNumber::numberWithDouble(2.0)), id(s(u"two")));
    EXPECT_TRUE(d.objectForKey(s(u"b")).isNil());
    EXPECT_TRUE(d.objectForKey(id()).isNil());
}

TEST(NSDictionary, EnumeratesInTheOrderOfFirstSetting) {
    const NSDictionary d = {{s(u"z"), n(1)}, {s(u"a"), n(2)}, {s(u"z"), n(3)}};
    EXPECT_EQ(d.allKeys(), NSArray({s(u"z"), s(u"a")}));
    EXPECT_EQ(d.objectForKey(s(u"z")), id(n(3)));
    EXPECT_EQ(d.begin()->first, id(s(u"z")));
}

TEST(NSDictionary, NilIsEmpty) {
    const NSDictionary nothing;
    EXPECT_EQ(nothing.count(), 0u);
    EXPECT_EQ(nothing.begin(), nothing.end());
    EXPECT_TRUE(nothing.objectForKey(s(u"a")).isNil());
    EXPECT_EQ(nothing.allKeys(), NSArray::array());
    EXPECT_EQ(nothing.mutableCopy().count(), 0u);
}

TEST(NSDictionary, EqualityDisregardsTheOrder) {
    const NSDictionary a = {{s(u"a"), n(1)}, {s(u"b"), n(2)}};
    const NSDictionary b = {{s(u"b"), n(2)}, {s(u"a"), n(1)}};
    EXPECT_EQ(a, b);
    EXPECT_EQ(a.hash(), b.hash());
    EXPECT_FALSE(a == (NSDictionary{{s(u"a"), n(1)}, {s(u"b"), n(3)}}));
    EXPECT_FALSE(a == (NSDictionary{{s(u"a"), n(1)}, {s(u"c"), n(2)}}));
    EXPECT_FALSE(a == NSDictionary::dictionary());
}

TEST(NSDictionary, NilKeysAndValuesRaise) {
    NSMutableDictionary d;
    EXPECT_THROW(d.setObject_forKey(id(), s(u"a")), NSException);
    EXPECT_THROW(d.setObject_forKey(n(1), id()), NSException);
    EXPECT_THROW((NSDictionary{{s(u"a"), id()}}), NSException);
    EXPECT_EQ(d.count(), 0u);
}

TEST(NSMutableDictionary, SetsReplacesAndRemoves) {
    NSMutableDictionary d;
    d.setObject_forKey(n(1), s(u"a"));
    d.setObject_forKey(n(2), s(u"b"));
    d.setObject_forKey(n(3), s(u"c"));
    d.setObject_forKey(n(9), s(u"b"));
    d.removeObjectForKey(s(u"a"));
    d.removeObjectForKey(s(u"not there"));
    EXPECT_EQ(d.count(), 2u);
    EXPECT_EQ(d.objectForKey(s(u"b")), id(n(9)));
    EXPECT_EQ(d.objectForKey(s(u"c")), id(n(3)));
    EXPECT_TRUE(d.objectForKey(s(u"a")).isNil());
    EXPECT_EQ(d.copy().allKeys(), NSArray({s(u"b"), s(u"c")}));
}

TEST(NSMutableDictionary, ACopyIsNotTouchedByLaterChanges) {
    NSMutableDictionary d;
    d.setObject_forKey(n(1), s(u"a"));
    const NSDictionary copy = d;
    d.setObject_forKey(n(2), s(u"a"));
    EXPECT_EQ(copy.objectForKey(s(u"a")), id(n(1)));
    NSMutableDictionary other = copy.mutableCopy();
    other.setObject_forKey(n(3), s(u"a"));
    EXPECT_EQ(copy.objectForKey(s(u"a")), id(n(1)));
}

TEST(NSMutableDictionary, IsEmptyAfterItsContentsWereTaken) {
    NSMutableDictionary d;
    d.setObject_forKey(n(1), s(u"a"));
    const NSDictionary taken = std::move(d).copy();
    EXPECT_EQ(taken.count(), 1u);
    EXPECT_EQ(d.count(), 0u); // NOLINT: that is what is tested
    d.setObject_forKey(n(2), s(u"a"));
    EXPECT_EQ(d.objectForKey(s(u"a")), id(n(2)));
}

TEST(NSMutableDictionary, AddsEntriesOfAnother) {
    NSMutableDictionary d;
    d.setObject_forKey(n(1), s(u"a"));
    d.addEntriesFromDictionary({{s(u"a"), n(5)}, {s(u"b"), n(6)}});
    d.addEntriesFromDictionary(NSDictionary());
    EXPECT_EQ(d.copy(), (NSDictionary{{s(u"a"), n(5)}, {s(u"b"), n(6)}}));
}

} // namespace qrv
