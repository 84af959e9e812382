#include "Platform/Foundation/NSData.h"

#include "Platform/Foundation/NSException.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(NSData, HoldsBytesNulIncluded) {
    const NSData data(std::string("a\0b", 3));
    EXPECT_EQ(data.length(), 3u);
    EXPECT_EQ(data.bytes(), std::string_view("a\0b", 3));
    EXPECT_EQ(data.span()[2], 'b');
    EXPECT_EQ(data, NSData(std::string("a\0b", 3)));
    EXPECT_EQ(data.hash(), NSData(std::string("a\0b", 3)).hash());
    EXPECT_FALSE(data == NSData("a"));
}

TEST(NSData, NilIsEmpty) {
    const NSData nothing;
    EXPECT_EQ(nothing.length(), 0u);
    EXPECT_TRUE(nothing.bytes().empty());
    EXPECT_TRUE(nothing.span().empty());
    EXPECT_TRUE(nothing.subdataWithRange({0, 0}).isNil());
    EXPECT_FALSE(NSData::data() == nothing);
}

TEST(NSData, PartsShareTheBytesAndRaiseBeyondTheEnd) {
    const NSData data("abcdef");
    const NSData part = data.subdataWithRange({2, 3});
    EXPECT_EQ(part, NSData("cde"));
    EXPECT_EQ(part.bytes().data(), data.bytes().data() + 2);
    EXPECT_EQ(part.subdataWithRange({1, 1}), NSData("d"));
    EXPECT_EQ(data.subdataWithRange({6, 0}), NSData::data());
    EXPECT_THROW(data.subdataWithRange({7, 0}), NSException);
    EXPECT_THROW(data.subdataWithRange({1, static_cast<std::size_t>(-1)}), NSException);
}

TEST(NSData, APartOutlivesTheWhole) {
    NSData part;
    {
        const NSData whole(std::string(1000, 'x'));
        part = whole.subdataWithRange({10, 5});
    }
    EXPECT_EQ(part.bytes(), "xxxxx");
}

TEST(NSData, DescriptionShowsLengthAndHex) {
    EXPECT_EQ(NSData("\x01\xFF").description(), NSString(u"{length = 2, bytes = 0x01ff}"));
    EXPECT_EQ(NSData(std::string(100, 'a') + "bcdefghi").description(),
              NSString(u"{length = 108, bytes = 0x61616161616161616161616161616161 ... 6263646566676869}"));
}

} // namespace qrv
