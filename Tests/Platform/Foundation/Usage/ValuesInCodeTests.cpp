// Values as a C++ program uses them: literals, comparison, order, hashes, streams and ranges.

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <ranges>
#include <set>
#include <sstream>
#include <unordered_map>

namespace qrv {

namespace {

template <class A, class B>
concept Comparable = requires(const A& a, const B& b) {
    a == b;
};

NSNumber number(long long value) {
    return NSNumber::numberWithInteger(value);
}

} // namespace

// What can never be right does not compile.
static_assert(!std::is_convertible_v<int, id> && !std::is_constructible_v<id, int>);
static_assert(!std::is_convertible_v<bool, id> && !std::is_convertible_v<double, id>);
static_assert(!std::is_convertible_v<NSStringEncoding, id>);
static_assert(!std::is_constructible_v<NSString, int>);
static_assert(!Comparable<NSString, NSArray> && !Comparable<NSArray, NSString>);
static_assert(!Comparable<NSNumber, NSDate> && !Comparable<NSDictionary, NSError>);
static_assert(!Comparable<NSString, int>);
// And this does.
static_assert(Comparable<NSString, id> && Comparable<id, NSArray> && Comparable<NSArray, NSArray>);
static_assert(Comparable<NSString, const char*> && Comparable<NSString, std::nullptr_t>);
static_assert(std::ranges::random_access_range<NSArray> && std::ranges::random_access_range<NSDictionary>);

TEST(Literals, GoWhereATextOrAnObjectGoes) {
    const id wide = u"\u00E9";
    const id narrow = "\xC3\xA9";
    EXPECT_EQ(wide, narrow);
    EXPECT_TRUE(as<NSString>(narrow).isEqualToString("\xC3\xA9"));
    EXPECT_TRUE(id(static_cast<const char*>(nullptr)).isNil());
    EXPECT_TRUE(NSString(static_cast<const char16_t*>(nullptr)).isNil());
    EXPECT_EQ(NSString("a\xFF"), u"a\uFFFD");
    EXPECT_EQ(NSArray({u"a", "b", number(1)}).componentsJoinedByString("-"), "a-b-1");
}

TEST(Literals, MakeAndFindEntries) {
    const NSDictionary one{{u"key", u"value"}};
    ASSERT_EQ(one.count(), 1u);
    EXPECT_EQ(one.objectForKey("key"), id(u"value"));
    const NSDictionary all{{NSLocalizedDescriptionKey, "text"}, {"numbers", NSArray({number(1), number(2)})}};
    const NSError error = NSError::errorWithDomain_code_userInfo(NSCocoaErrorDomain, 4, all);
    EXPECT_EQ(error.userInfo().objectForKey(NSLocalizedDescriptionKey), id("text"));
    EXPECT_EQ(error.localizedDescription(), u"text");
    EXPECT_EQ(error.domain(), NSCocoaErrorDomain);
    NSMutableDictionary changing;
    changing.setObject_forKey(u"b", "a");
    EXPECT_EQ(changing.objectForKey(u"a"), id("b"));
}

TEST(Literals, CompareWithTexts) {
    const NSString text = u"text";
    EXPECT_TRUE(text == u"text" && u"text" == text && text == "text" && text != u"Text" && text != "other");
    EXPECT_TRUE(text == std::string("text") && text == std::string_view("text") &&
                text == std::u16string(u"text"));
    EXPECT_FALSE(NSString() == u"" || NSString() == "" || NSString() == NSString(u""));
    EXPECT_TRUE(NSString() == nullptr && NSString() == NSString());
}

TEST(Literals, ExpandInFormats) {
    EXPECT_EQ(NSString::stringWithFormat("%@ %@ %.2@|", u"wide", "narrow", "cut"), "wide narrow cu|");
    const char* missing = nullptr;
    EXPECT_EQ(NSString::stringWithFormat(u"%@", missing), "(null)");
}

TEST(Values, StandardStringsGoInAndOut) {
    const std::string bytes = "\xC3\xA9";
    const NSString text = bytes;
    EXPECT_EQ(text.length(), 1u);
    EXPECT_EQ(std::string(text), bytes);
    EXPECT_EQ(std::u16string_view(text), u"\u00E9");
    EXPECT_EQ(NSString(std::string_view("ab").substr(1)), u"b");
}

TEST(Values, HaveAnOrder) {
    EXPECT_LT(NSString(u"a"), NSString(u"b"));
    EXPECT_LT(NSString(), NSString(u""));
    EXPECT_TRUE((NSString() <=> NSString()) == 0);
    EXPECT_LT(number(1), NSNumber::numberWithDouble(1.5));
    EXPECT_TRUE(number(1) == NSNumber::numberWithDouble(1));
    EXPECT_LT(NSNumber(), number(-1));
    EXPECT_LT(NSDate::dateWithTimeIntervalSinceReferenceDate(1),
              NSDate::dateWithTimeIntervalSinceReferenceDate(2));
    std::set<NSString> sorted{u"c", "a", u"b"};
    EXPECT_EQ(*sorted.begin(), "a");
}

TEST(Values, AreKeysOfStandardMaps) {
    std::unordered_map<NSString, int> counts;
    ++counts["a"];
    ++counts[u"a"];
    EXPECT_EQ(counts.size(), 1u);
    std::unordered_map<id, int> any{{number(1), 2}};
    EXPECT_EQ(any[NSNumber::numberWithDouble(1)], 2);
}

TEST(Values, AreWrittenToStreams) {
    std::ostringstream stream;
    stream << NSString(u"\u00E9") << ' ' << number(5) << ' ' << id() << ' ' << NSArray({"a"});
    EXPECT_EQ(stream.str(), "\xC3\xA9 5 (null) " + NSArray({"a"}).description().utf8());
}

TEST(Values, AreRanges) {
    const NSArray names({u"b", u"a"});
    const auto lengths =
        names | std::views::transform([](const id& name) { return as<NSString>(name).length(); });
    EXPECT_EQ(std::ranges::count(lengths, 1u), 2);
    for (const auto& [key, value] : NSDictionary{{"k", "v"}}) EXPECT_NE(key, value);
    EXPECT_TRUE(std::ranges::empty(NSArray()));
}

} // namespace qrv
