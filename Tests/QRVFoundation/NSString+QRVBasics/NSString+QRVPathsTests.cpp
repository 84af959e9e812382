#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVPaths.h"

#include "QRVFoundation/Source/QRVFunctions.h"
#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

std::size_t decomposedLength(const NSString& text) {
    return text.decomposedStringWithCanonicalMapping().length();
}

} // namespace

TEST(QRVPaths, Limits) {
    EXPECT_EQ(qrvMaxFileNameCharacters(), 255u);
    EXPECT_EQ(qrvMaxPathLength(), 1024u);
}

TEST(FileNames, SlashesBecomeColons) {
    EXPECT_EQ(qrvMakeFileNameValid(u"a/b.txt"), NSString(u"a:b.txt"));
    EXPECT_EQ(qrvMakeFileNameCharactersValid(u"/a//b/"), NSString(u":a::b:"));
    EXPECT_EQ(qrvMakeFileNameValidForCarbon(u"a:b"), NSString(u"a/b"));
}

TEST(FileNames, ALongNameIsTrimmedToTheTotalAndKeepsItsExtension) {
    for (const char16_t letter : {u'x', u'é', u'가'}) {
        const NSString name = NSString(std::u16string(300, letter)).stringByAppendingString(u".pdf");
        const NSString valid = qrvMakeFileNameValid(name);
        EXPECT_LE(decomposedLength(valid), 255u);
        EXPECT_GE(decomposedLength(valid), 252u);
        EXPECT_TRUE(valid.hasSuffix(u".pdf"));
    }
}

TEST(FileNames, AnEmptyExtensionAddsNoDot) {
    EXPECT_EQ(qrvMakeFileNameValidWithExtension(u"name", u""), NSString(u"name"));
    EXPECT_EQ(qrvMakeFileNameValidWithExtension(u"name", NSString()), NSString(u"name"));
    EXPECT_EQ(qrvMakeFileNameValidWithExtension(u"name", u"pdf"), NSString(u"name.pdf"));
    EXPECT_EQ(qrvMakeFileNameValid(u"name"), NSString(u"name"));
}

TEST(FileNames, ObjectReplacementCharactersGoAfterTrimming) {
    EXPECT_EQ(qrvMakeFileNameValidWithExtension_maxLength(u"ab\uFFFCcdef", u"x", 6), NSString(u"abc.x"));
    EXPECT_EQ(qrvMakeFileNameCharactersValid(u"a\uFFFC\uFFFC/"), NSString(u"a:"));
}

TEST(FileNames, AnExtensionLongerThanTheTotalFailsAnAssertion) {
    struct : QRVLoggingDelegate {
        void logString(const NSString&) override {}
    } log;

    QRVFunctions::setLoggingDelegate(&log);
    EXPECT_THROW(qrvMakeFileNameValidWithExtension_maxLength(u"a", u"html", 4), QRVException);
    QRVFunctions::setLoggingDelegate(nullptr);
}

TEST(FileNames, NilGivesNil) {
    EXPECT_TRUE(qrvMakeFileNameCharactersValid(NSString()).isNil());
    EXPECT_TRUE(qrvMakeFileNameValid(NSString()).isNil());
    EXPECT_TRUE(qrvMakeFileNameValidWithExtension(NSString(), u"pdf").isNil());
    EXPECT_TRUE(qrvMakeFileNameValidForCarbon(NSString()).isNil());
}

TEST(QRVPaths, PiecesAndAdditions) {
    EXPECT_EQ(qrvParent(u"/a/b.c"), NSString(u"/a"));
    EXPECT_EQ(qrvName(u"/a/b.c"), NSString(u"b.c"));
    EXPECT_EQ(qrvBasename(u"/a/b.c"), NSString(u"b"));
    EXPECT_EQ(qrvPathExtension(u"/a/b.c"), NSString(u"c"));
    EXPECT_EQ(qrvChild(u"/a", u"b"), NSString(u"/a/b"));
    EXPECT_EQ(qrvWithExtension(u"/a/b", u"c"), NSString(u"/a/b.c"));
}

TEST(QRVPaths, PiecesOfNilAreNil) {
    const NSString nothing;
    EXPECT_TRUE(qrvParent(nothing).isNil());
    EXPECT_TRUE(qrvName(nothing).isNil());
    EXPECT_TRUE(qrvBasename(nothing).isNil());
    EXPECT_TRUE(qrvPathExtension(nothing).isNil());
    EXPECT_TRUE(qrvChild(nothing, u"a").isNil());
    EXPECT_TRUE(qrvWithExtension(nothing, u"a").isNil());
    EXPECT_EQ(qrvChild(u"/a", nothing), NSString(u"/a"));
    EXPECT_EQ(qrvWithExtension(u"/a", nothing), NSString(u"/a"));
}

struct Containment {
    const char16_t* outer;
    const char16_t* inner;
    bool contained;
};

void PrintTo(const Containment& test, std::ostream* out) {
    *out << printed(test.outer) << " " << printed(test.inner);
}

class PathContainment : public testing::TestWithParam<Containment> {};

TEST_P(PathContainment, IsByWholeComponents) {
    EXPECT_EQ(qrvPathContainsPath(GetParam().outer, GetParam().inner), GetParam().contained);
}

INSTANTIATE_TEST_SUITE_P(
    NSStringQRV, PathContainment,
    testing::Values(Containment{u"/a/b", u"/a/b/", true}, Containment{u"/a/b", u"/a/b/c", true},
                    Containment{u"/a/b", u"/a/bc", false}, Containment{u"/a/b", u"/a", false},
                    Containment{u"/a/b", nullptr, false}, Containment{nullptr, u"/a", false},
                    Containment{u"/", u"/a", true}, Containment{u"/a/b", u"/c/a/b", false},
                    Containment{u"/a/./b", u"/a//b/c/../d", true}, Containment{u"a", u"a/b", true},
                    Containment{u"a", u"/a/b", false}, Containment{u"/aaaa", u"/b/c/d", false}));

TEST(QRVPaths, EqualityIsThatOfStandardisedPaths) {
    EXPECT_TRUE(qrvPathIsEqual(u"/a//b/.", u"/a/b/"));
    EXPECT_FALSE(qrvPathIsEqual(u"/a/b", u"/a/B"));
    EXPECT_FALSE(qrvPathIsEqual(u"/a", NSString()));
    EXPECT_FALSE(qrvPathIsEqual(NSString(), NSString()));
}

TEST(QRVPaths, AStepUpOutOfALinkLeadsToTheRealParent) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.path() / "real/deep");
    std::filesystem::create_symlink("real/deep", folder.path() / "link");
    const NSString real = NSString::fromUTF8(std::filesystem::canonical(folder.path() / "real").string());
    EXPECT_TRUE(qrvPathIsEqual(folder.pathOf("link/.."), real));
    EXPECT_FALSE(qrvPathContainsPath(folder.pathOf("link"), folder.pathOf("link/../x")));
}

} // namespace qrv
