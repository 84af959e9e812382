#include "Source/Tools/webarchive/Creating/PageFile.h"

#include "Source/Tools/Common/Failure.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

class PageFileTest : public testing::Test {
protected:
    /// The name of the page in a folder with these files.
    std::string pageAmong(const std::vector<std::string>& names) const {
        for (const std::string& name : names) disk_.write(name, "");
        return std::filesystem::path(pageFileAt(disk_.path())).filename();
    }

    TemporaryFolder disk_;
};

TEST_F(PageFileTest, AFileIsThePage) {
    EXPECT_EQ(pageFileAt("nowhere.txt"), "nowhere.txt");
    EXPECT_EQ(pageFileAt(disk_.write("a.txt", "").utf8()), disk_.path() / "a.txt");
}

TEST_F(PageFileTest, OfOnePageThatOne) {
    EXPECT_EQ(pageAmong({"Page.HTM", "a.png", "sub/index.html"}), "Page.HTM");
}

TEST_F(PageFileTest, OfSeveralTheIndex) {
    EXPECT_EQ(pageAmong({"a.html", "index.htm", "z.xhtml", "a_files/x.png"}), "index.htm");
}

TEST_F(PageFileTest, OfSeveralTheOneWithAFolderOfItsFiles) {
    EXPECT_EQ(pageAmong({"a.html", "My page.html", "My page_files/x.png"}), "My page.html");
}

TEST_F(PageFileTest, WhatIsNotClearFails) {
    EXPECT_THROW(pageAmong({}), Failure);
    EXPECT_THROW(pageAmong({"a.txt", "b.html/inner.html"}), Failure);
    EXPECT_THROW(pageAmong({"a.html", "c.html"}), Failure);
}

} // namespace
} // namespace qrv::webarchive
