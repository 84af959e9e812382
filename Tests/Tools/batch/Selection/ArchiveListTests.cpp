#include "Source/Tools/batch/Selection/ArchiveList.h"

#include "Source/Tools/Common/Failure.h"
#include "Tests/Support/ErrorBehind.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace qrv::batch {
namespace {

using ::testing::ElementsAre;

class ArchiveListTest : public ::testing::Test {
protected:
    std::string file(const std::string& name) { return folder_.write(name, "x").fileSystemRepresentation(); }

    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }

    static std::vector<std::string> pdfs(ArchiveList list) {
        std::vector<std::string> names;
        for (const Item& item : std::move(list).items()) names.push_back(item.pdf);
        return names;
    }

    static std::vector<Item> listed(const std::string& text, char end = '\n',
                                    const std::optional<std::string>& base = {}) {
        std::istringstream stream(text);
        ArchiveList list;
        list.addListed(stream, end, base);
        return std::move(list).items();
    }

    TemporaryFolder folder_;
};

TEST_F(ArchiveListTest, OfAFolderKeepsItsTree) {
    file("in/b.webarchive");
    file("in/a/c.WebArchive");
    file("in/a/other.txt");
    file("in/.hidden/d.webarchive");
    ArchiveList list;
    list.addSource(path("in"));
    EXPECT_THAT(std::move(list).items(), ElementsAre(Item{path("in/.hidden/d.webarchive"), ".hidden/d.pdf"},
                                                     Item{path("in/a/c.WebArchive"), "a/c.pdf"},
                                                     Item{path("in/b.webarchive"), "b.pdf"}));
}

TEST_F(ArchiveListTest, OfAFileKeepsItsName) {
    ArchiveList list;
    list.addSource(file("in/a page.webarchive"));
    list.addSource(file("in/page"));
    list.addSource(file("in/.webarchive"));
    list.addSource(file("in/x\xff\n.webarchive"));
    EXPECT_THAT(pdfs(std::move(list)), ElementsAre(".pdf", "a page.pdf", "page.pdf", "x\xff\n.pdf"));
}

TEST_F(ArchiveListTest, LinksToFoldersAreNotFollowed) {
    file("in/real/a.webarchive");
    std::filesystem::create_directory_symlink(path("in"), path("in/real/loop"));
    std::filesystem::create_symlink(path("in/real/a.webarchive"), path("in/link.webarchive"));
    ArchiveList list;
    list.addSource(path("in"));
    EXPECT_THAT(pdfs(std::move(list)), ElementsAre("link.pdf", "real/a.pdf"));
}

TEST_F(ArchiveListTest, AFolderNamedLikeAnArchiveIsSearched) {
    file("in/a.webarchive/b.webarchive");
    ArchiveList list;
    list.addSource(path("in"));
    EXPECT_THAT(pdfs(std::move(list)), ElementsAre("a.webarchive/b.pdf"));
}

TEST_F(ArchiveListTest, ASourceHasToBeThere) {
    ArchiveList list;
    EXPECT_THROW(list.addSource(path("missing")), Failure);
    EXPECT_THROW(list.addSource(""), Failure);
}

TEST_F(ArchiveListTest, ListedPathsAreKeptFromTheirFirstFolder) {
    EXPECT_THAT(listed("a/b.webarchive\n\n./c.webarchive\n/x/y/../d.webarchive\n"),
                ElementsAre(Item{"a/b.webarchive", "a/b.pdf"}, Item{"./c.webarchive", "c.pdf"},
                            Item{"/x/y/../d.webarchive", "x/d.pdf"}));
}

TEST_F(ArchiveListTest, NoListedPathLeavesTheOutputFolder) {
    for (const char* text : {"../../../../../../../../a.webarchive", "b/../../a.webarchive", "..", "."}) {
        for (const Item& item : listed(text)) {
            EXPECT_FALSE(item.pdf.starts_with("..")) << item.pdf;
            EXPECT_FALSE(item.pdf.starts_with("/")) << item.pdf;
        }
    }
}

TEST_F(ArchiveListTest, ListsMayBeSeparatedByNul) {
    EXPECT_THAT(listed(std::string("a\nb.webarchive\0c.webarchive", 27), '\0'),
                ElementsAre(Item{"a\nb.webarchive", "a\nb.pdf"}, Item{"c.webarchive", "c.pdf"}));
}

TEST_F(ArchiveListTest, ListedPathsKeepTheirWayFromABase) {
    EXPECT_THAT(listed("/x/y/a.webarchive\n/x/b.webarchive", '\n', "/x"),
                ElementsAre(Item{"/x/b.webarchive", "b.pdf"}, Item{"/x/y/a.webarchive", "y/a.pdf"}));
    EXPECT_THAT(listed("/x/y/a.webarchive", '\n', "/x/"), ElementsAre(Item{"/x/y/a.webarchive", "y/a.pdf"}));
    EXPECT_THROW(listed("/z/a.webarchive", '\n', "/x"), Failure);
    EXPECT_THROW(listed("/x/../z/a.webarchive", '\n', "/x"), Failure);
}

TEST_F(ArchiveListTest, AListedFolderIsSearched) {
    file("in/b.webarchive");
    EXPECT_THAT(listed(path("in") + "\n", '\n', folder_.path().string()),
                ElementsAre(Item{path("in/b.webarchive"), "in/b.pdf"}));
}

TEST_F(ArchiveListTest, WhatIsListedTwiceIsOne) {
    EXPECT_EQ(listed("a.webarchive\na.webarchive\n").size(), 1u);
    EXPECT_EQ(listed("a.webarchive\n./a.webarchive\nb/../a.webarchive\n").size(), 1u);
}

TEST_F(ArchiveListTest, TwoArchivesAreNotOnePDF) {
    std::istringstream stream("a.webarchive\na.WEBARCHIVE\n");
    ArchiveList list;
    list.addListed(stream, '\n', {});
    try {
        std::move(list).items();
        FAIL();
    } catch (const Failure& error) {
        EXPECT_STREQ(error.what(), "a.WEBARCHIVE and a.webarchive would both become a.pdf");
    }
}

} // namespace
} // namespace qrv::batch
