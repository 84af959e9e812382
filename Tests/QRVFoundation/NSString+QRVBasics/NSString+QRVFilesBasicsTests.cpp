#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVFilesBasics.h"

#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Support/TemporaryFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace qrv {

namespace fs = std::filesystem;

namespace {

void setModificationTime(const NSString& path, std::time_t seconds, long nanoseconds = 0) {
    const struct timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.utf8().c_str(), times, 0), 0);
}

/// False, with the reason shown, where the file system keeps no attributes.
bool setTags(const NSString& path, const std::string& tags) {
    return ::setxattr(path.utf8().c_str(), "user.xdg.tags", tags.data(), tags.size(), 0) == 0;
}

} // namespace

struct FileKind {
    const char* name;
    bool path, file, directory, link;
};

void PrintTo(const FileKind& kind, std::ostream* out) {
    *out << kind.name;
}

class FilesBasicsKinds : public testing::TestWithParam<FileKind> {
protected:
    void SetUp() override {
        folder.write("file", "x");
        fs::create_directory(folder.path() / "folder");
        fs::create_symlink("file", folder.path() / "linkToFile");
        fs::create_symlink("folder", folder.path() / "linkToFolder");
        fs::create_symlink("nowhere", folder.path() / "dangling");
        ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    }

    TemporaryFolder folder;
};

TEST_P(FilesBasicsKinds, AreTold) {
    const NSString path = folder.pathOf(GetParam().name);
    EXPECT_EQ(qrvPathExists(path), GetParam().path);
    EXPECT_EQ(qrvFileExists(path), GetParam().file);
    EXPECT_EQ(qrvDirectoryExists(path), GetParam().directory);
    EXPECT_EQ(qrvSymbolicLinkExists(path), GetParam().link);
}

INSTANTIATE_TEST_SUITE_P(NSStringQRV, FilesBasicsKinds,
                         testing::Values(FileKind{"file", true, true, false, false},
                                         FileKind{"folder", true, false, true, false},
                                         FileKind{"linkToFile", true, true, false, true},
                                         FileKind{"linkToFolder", true, false, true, true},
                                         FileKind{"dangling", false, false, false, true},
                                         FileKind{"pipe", true, false, false, false},
                                         FileKind{"missing", false, false, false, false},
                                         FileKind{"file/below", false, false, false, false}),
                         [](const auto& test) {
                             std::string name = test.param.name;
                             std::erase(name, '/');
                             return name;
                         });

class FilesBasics : public testing::Test {
protected:
    TemporaryFolder folder;
};

TEST_F(FilesBasics, NilAndTheEmptyPathNameNothing) {
    for (const NSString& path : {NSString(), NSString(u"")}) {
        EXPECT_FALSE(qrvPathExists(path));
        EXPECT_FALSE(qrvFileExists(path));
        EXPECT_FALSE(qrvDirectoryExists(path));
        EXPECT_FALSE(qrvSymbolicLinkExists(path));
        EXPECT_EQ(qrvFileModificationDateInterval(path), 0.0);
        EXPECT_EQ(qrvSpotlightKeywords(path), NSArray::array());
    }
}

TEST_F(FilesBasics, APathWithANulIsNotCutThere) {
    const NSString path = folder.write("a", "x").stringByAppendingString(std::u16string_view(u"\0b", 2));
    EXPECT_FALSE(qrvPathExists(path));
    EXPECT_FALSE(qrvFileExists(path));
}

TEST_F(FilesBasics, ANameThatIsNoUTF8IsFound) {
    const NSString path = folder.write("caf\xE9", "x");
    EXPECT_TRUE(qrvFileExists(path));
    EXPECT_FALSE(qrvFileExists(folder.pathOf("caf\uFFFD")));
}

TEST_F(FilesBasics, APathWithAnUnpairedSurrogateNamesNothing) {
    folder.write("\xEF\xBF\xBD", "x"); // U+FFFD, what a lossy conversion would look for
    EXPECT_TRUE(qrvFileExists(folder.pathOf("\xEF\xBF\xBD")));
    EXPECT_FALSE(qrvFileExists(folder.pathOf("").stringByAppendingString(std::u16string_view(u"\xD800", 1))));
}

TEST_F(FilesBasics, APathOfTenMillionUnitsNamesNothing) {
    EXPECT_FALSE(qrvPathExists(NSString(std::u16string(10'000'000, u'a'))));
}

TEST_F(FilesBasics, ModificationTimeIsWholeSecondsSinceTheReferenceDate) {
    const NSString path = folder.write("file", "x");
    setModificationTime(path, 978307200 + 1000, 900'000'000);
    EXPECT_EQ(qrvFileModificationDateInterval(path), 1000.0);
    EXPECT_EQ(qrvFileModificationDate(path), NSDate::dateWithTimeIntervalSinceReferenceDate(1000));
    setModificationTime(path, 0);
    EXPECT_EQ(qrvFileModificationDateInterval(path), -978307200.0);
}

TEST_F(FilesBasics, ModificationTimeFollowsLinks) {
    setModificationTime(folder.write("file", "x"), 978307200 + 5);
    fs::create_symlink("file", folder.path() / "link");
    EXPECT_EQ(qrvFileModificationDateInterval(folder.pathOf("link")), 5.0);
}

TEST_F(FilesBasics, ModificationDateOfAMissingPathIsTheReferenceDate) {
    EXPECT_EQ(qrvFileModificationDate(folder.pathOf("missing")),
              NSDate::dateWithTimeIntervalSinceReferenceDate(0));
    EXPECT_FALSE(qrvFileModificationDate(NSString()).isNil());
}

TEST_F(FilesBasics, ModificationDatesCompare) {
    const NSString older = folder.write("older", "x");
    const NSString newer = folder.write("newer", "x");
    setModificationTime(older, 978307200 + 1);
    setModificationTime(newer, 978307200 + 2);
    EXPECT_EQ(qrvCompareFileModificationDate(older, newer), NSOrderedAscending);
    EXPECT_EQ(qrvCompareFileModificationDate(newer, older), NSOrderedDescending);
    EXPECT_EQ(qrvCompareFileModificationDate(newer, newer), NSOrderedSame);
    EXPECT_EQ(qrvCompareFileModificationDate(folder.pathOf("missing"), older), NSOrderedAscending);
    EXPECT_EQ(qrvCompareFileModificationDate(NSString(), NSString()), NSOrderedSame);
}

TEST_F(FilesBasics, KeywordsOfAPathWithoutAnyAreAnEmptyArrayNeverNil) {
    EXPECT_EQ(qrvSpotlightKeywords(folder.write("file", "x")), NSArray::array());
    EXPECT_EQ(qrvSpotlightKeywords(folder.pathOf("missing")), NSArray::array());
    // A file system that knows no such attributes.
    EXPECT_EQ(qrvSpotlightKeywords(u"/proc/self/status"), NSArray::array());
}

TEST_F(FilesBasics, KeywordsAreTheTagsBetweenCommas) {
    const NSString path = folder.write("file", "x");
    if (!setTags(path, "one, two words ,,\xC3\xA9t\xC3\xA9,")) {
        // Not here; then they can't be read either.
        ASSERT_EQ(errno, EOPNOTSUPP);
        EXPECT_EQ(qrvSpotlightKeywords(path), NSArray::array());
        return;
    }
    EXPECT_EQ(qrvSpotlightKeywords(path),
              NSArray({NSString(u"one"), NSString(u"two words"), NSString(u"été")}));
    fs::create_symlink("file", folder.path() / "link");
    EXPECT_EQ(qrvSpotlightKeywords(folder.pathOf("link")), qrvSpotlightKeywords(path));
    ASSERT_TRUE(setTags(path, ""));
    EXPECT_EQ(qrvSpotlightKeywords(path), NSArray::array());
}

} // namespace qrv
