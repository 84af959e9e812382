#include "Platform/Foundation/NSString.h"

#include "Platform/Foundation/NSArray.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace qrv {

struct PathPieces {
    const char16_t* path;
    const char16_t* last;
    const char16_t* rest;
};

void PrintTo(const PathPieces& pieces, std::ostream* out) {
    *out << printed(pieces.path);
}

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

struct ExtensionPieces {
    const char16_t* path;
    const char16_t* extension;
    const char16_t* rest;
};

void PrintTo(const ExtensionPieces& pieces, std::ostream* out) {
    *out << printed(pieces.path);
}

class NSStringPathExtension : public testing::TestWithParam<ExtensionPieces> {};

TEST_P(NSStringPathExtension, ExtensionAndTheRest) {
    EXPECT_EQ(NSString(GetParam().path).pathExtension(), NSString(GetParam().extension));
    EXPECT_EQ(NSString(GetParam().path).stringByDeletingPathExtension(), NSString(GetParam().rest));
}

INSTANTIATE_TEST_SUITE_P(
    Table, NSStringPathExtension,
    testing::Values(ExtensionPieces{u"/tmp/scratch.tiff", u"tiff", u"/tmp/scratch"},
                    ExtensionPieces{u"/tmp/", u"", u"/tmp"},
                    ExtensionPieces{u"scratch.bundle/", u"bundle", u"scratch"},
                    ExtensionPieces{u"scratch..tiff", u"tiff", u"scratch."},
                    ExtensionPieces{u".tiff", u"", u".tiff"}, ExtensionPieces{u"/a/.tiff", u"", u"/a/.tiff"},
                    ExtensionPieces{u"a.b.c", u"c", u"a.b"}, ExtensionPieces{u"a.", u"", u"a."},
                    ExtensionPieces{u"/a.b/c", u"", u"/a.b/c"}, ExtensionPieces{u"/", u"", u"/"},
                    ExtensionPieces{u"", u"", u""}, ExtensionPieces{u"..", u"", u".."},
                    ExtensionPieces{nullptr, nullptr, nullptr}));

TEST(NSStringPaths, AppendsComponents) {
    EXPECT_EQ(NSString(u"/tmp").stringByAppendingPathComponent(u"a"), NSString(u"/tmp/a"));
    EXPECT_EQ(NSString(u"/tmp/").stringByAppendingPathComponent(u"/a/"), NSString(u"/tmp/a"));
    EXPECT_EQ(NSString(u"/").stringByAppendingPathComponent(u"a"), NSString(u"/a"));
    EXPECT_EQ(NSString(u"").stringByAppendingPathComponent(u"a"), NSString(u"a"));
    EXPECT_EQ(NSString(u"").stringByAppendingPathComponent(u"/a"), NSString(u"/a"));
    EXPECT_EQ(NSString(u"/tmp/").stringByAppendingPathComponent(NSString()), NSString(u"/tmp"));
}

TEST(NSStringPaths, AppendsExtensions) {
    EXPECT_EQ(NSString(u"/a/b").stringByAppendingPathExtension(u"c"), NSString(u"/a/b.c"));
    EXPECT_EQ(NSString(u"/a/b/").stringByAppendingPathExtension(u"c"), NSString(u"/a/b.c"));
    EXPECT_EQ(NSString(u"b").stringByAppendingPathExtension(u""), NSString(u"b"));
    EXPECT_EQ(NSString(u"/").stringByAppendingPathExtension(u"c"), NSString(u"/"));
    EXPECT_EQ(NSString(u"").stringByAppendingPathExtension(u"c"), NSString(u""));
}

struct Standardized {
    const char16_t* path;
    const char16_t* result;
};

void PrintTo(const Standardized& test, std::ostream* out) {
    *out << printed(test.path);
}

class NSStringStandardizing : public testing::TestWithParam<Standardized> {};

TEST_P(NSStringStandardizing, GivesThePlainPath) {
    EXPECT_EQ(NSString(GetParam().path).stringByStandardizingPath(), NSString(GetParam().result));
}

INSTANTIATE_TEST_SUITE_P(Table, NSStringStandardizing,
                         testing::Values(Standardized{u"/a//b/./c/", u"/a/b/c"},
                                         Standardized{u"/no/such/../x", u"/no/x"},
                                         Standardized{u"/../../a", u"/a"}, Standardized{u"/", u"/"},
                                         Standardized{u"//", u"/"}, Standardized{u"", u""},
                                         Standardized{u"./a/../b", u"a/../b"}, Standardized{u".", u"."},
                                         Standardized{u"/..", u"/"},
                                         Standardized{u"~nobody-of-this-name/x", u"~nobody-of-this-name/x"},
                                         Standardized{u"/a/~", u"/a/~"}, Standardized{nullptr, nullptr}));

TEST(NSStringPaths, ATildeIsTheHomeFolder) {
    ::setenv("HOME", "/home/of/test", 1);
    EXPECT_EQ(NSString(u"~/x").stringByStandardizingPath(), NSString(u"/home/of/test/x"));
    EXPECT_EQ(NSString(u"~").stringByStandardizingPath(), NSString(u"/home/of/test"));
    EXPECT_EQ(NSString(u"~root/x").stringByStandardizingPath(), NSString(u"/root/x"));
    ::unsetenv("HOME");
    EXPECT_TRUE(NSString(u"~/x").stringByStandardizingPath().hasPrefix(u"/"));
}

TEST(NSStringPaths, StandardizingTenMillionUnitsTakesLinearTime) {
    std::u16string path;
    for (int i = 0; i < 1'000'000; ++i) path.append(u"/a");
    const std::size_t names = path.size();
    for (int i = 0; i < 1'000'000; ++i) path.append(u"/..");
    EXPECT_EQ(NSString(path).stringByStandardizingPath(), NSString(u"/"));
    EXPECT_EQ(NSString(path.substr(0, names)).pathComponents().count(), 1'000'001u);
}

TEST(NSStringPaths, ComponentsCountTheSlashesAtTheEnds) {
    const auto joined = [](const char16_t* path) {
        return NSString(path).pathComponents().componentsJoinedByString(u"|");
    };
    EXPECT_EQ(joined(u"tmp/scratch"), NSString(u"tmp|scratch"));
    EXPECT_EQ(joined(u"/tmp//scratch.tiff"), NSString(u"/|tmp|scratch.tiff"));
    EXPECT_EQ(joined(u"/tmp/"), NSString(u"/|tmp|/"));
    EXPECT_EQ(joined(u"a/"), NSString(u"a|/"));
    EXPECT_EQ(joined(u"/"), NSString(u"/"));
    EXPECT_EQ(joined(u""), NSString(u""));
    EXPECT_TRUE(NSString().pathComponents().isNil());
}

TEST(NSStringPaths, FileSystemRepresentationIsUTF8) {
    EXPECT_EQ(NSString(u"/é😀").fileSystemRepresentation(), "/\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(NSString::fromFileSystem("/\xC3\xA9\xF0\x9F\x98\x80"), NSString(u"/é😀"));
    EXPECT_EQ(NSString::fromFileSystem(""), NSString(u""));
}

TEST(NSStringPaths, BytesThatAreNoUTF8StayTheSame) {
    for (int byte = 1; byte < 0x100; ++byte) {
        const std::string alone(1, static_cast<char>(byte));
        for (const std::string& bytes :
             {alone, alone + "a", "é" + alone, alone + alone, alone + "😀" + alone}) {
            const NSString path = NSString::fromFileSystem(bytes);
            EXPECT_EQ(path.fileSystemRepresentation(), bytes) << byte;
            EXPECT_FALSE(NSString::stringWithUTF8String(path.utf8().c_str()).isNil()) << byte;
        }
    }
    for (const char* bytes : {"\xC0\xAF", "\xED\xA0\xBD\xED\xB8\x80", "\xED\xB2\x80", "\xF4\x90\x80\x80",
                              "\xE2\x82", "\xE2\x82\xE2\x82\xAC", "\xF0\x9F\x98", "\xF8\x88\x80\x80\x80"}) {
        EXPECT_EQ(NSString::fromFileSystem(bytes).fileSystemRepresentation(), bytes);
    }
}

TEST(NSStringPaths, AByteThatIsNoUTF8IsAnUnpairedSurrogate) {
    EXPECT_EQ(NSString::fromFileSystem("/a\xFF\x80.pdf"), NSString(u"/a\xDCFF\xDC80.pdf"));
    EXPECT_EQ(NSString::fromFileSystem("/a\xFF.pdf").utf8(), "/a\uFFFD.pdf");
    EXPECT_EQ(NSString(u"/\xD83D\xDC80").fileSystemRepresentation(), "/\xF0\x9F\x92\x80") << "a pair";
    EXPECT_EQ(NSString(u"/\xD83D\xDC80\xDC80").fileSystemRepresentation(), "/\xF0\x9F\x92\x80\x80");
}

TEST(NSStringPaths, TextThatNoPathCanBeHasNoFileSystemRepresentation) {
    EXPECT_EQ(NSString(std::u16string_view(u"a\0b", 3)).fileSystemRepresentation(), "");
    for (const char16_t* text : {u"a\xDC00", u"a\xDC2F", u"a\xDC7F", u"a\xDD00", u"\xD800",
                                 u"\xD800\xD83D\xDC80", u"\xDCFF\xD800", u"\xD800\xFFFF\xDCFF"}) {
        EXPECT_EQ(NSString(text).fileSystemRepresentation(), "") << NSString(text).utf8();
    }
}

} // namespace qrv
