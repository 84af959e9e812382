#include "Platform/Foundation/NSString.h"

#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

struct PathPieces {
    const char16_t* path;
    const char16_t* last;
    const char16_t* rest;
};

class NSStringPathPieces : public testing::TestWithParam<PathPieces> {};

TEST_P(NSStringPathPieces, LastComponentAndTheRest) {
    EXPECT_EQ(NSString(GetParam().path).lastPathComponent(), NSString(GetParam().last));
    EXPECT_EQ(NSString(GetParam().path).stringByDeletingLastPathComponent(), NSString(GetParam().rest));
}

INSTANTIATE_TEST_SUITE_P(Table, NSStringPathPieces,
                         testing::Values(PathPieces{u"/tmp/scratch.tiff", u"scratch.tiff", u"/tmp"},
                                         PathPieces{u"/tmp/lock/", u"lock", u"/tmp"},
                                         PathPieces{u"/tmp/", u"tmp", u"/"},
                                         PathPieces{u"/tmp", u"tmp", u"/"}, PathPieces{u"/", u"/", u"/"},
                                         PathPieces{u"///", u"/", u"/"},
                                         PathPieces{u"scratch.tiff", u"scratch.tiff", u""},
                                         PathPieces{u"a//b", u"b", u"a"}, PathPieces{u"//a", u"a", u"/"},
                                         PathPieces{u"a/", u"a", u""}, PathPieces{u"", u"", u""}));

TEST(NSStringPaths, FileSystemRepresentationIsUTF8) {
    EXPECT_EQ(NSString(u"/é😀").fileSystemRepresentation(), "/\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(NSStringPaths, TextThatNoPathCanBeHasNoFileSystemRepresentation) {
    EXPECT_EQ(NSString(std::u16string_view(u"a\0b", 3)).fileSystemRepresentation(), "");
    EXPECT_EQ(NSString(std::u16string_view(u"a\xDC00", 2)).fileSystemRepresentation(), "");
}

} // namespace qrv
