#include "Source/Tools/webarchive/Creating/PageFolder.h"

#include "Source/Tools/Common/Failure.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace qrv::webarchive {
namespace {

namespace fs = std::filesystem;

NSURL url(const std::string& text) {
    return NSURL::URLWithString(NSString::fromUTF8(text));
}

class PageFolderTest : public testing::Test {
protected:
    PageFolderTest() {
        disk_.write("site/sub/page.html", "page");
        disk_.write("site/sub/files/a.png", "a");
        disk_.write("site/top.png", "top");
        disk_.write("outside.png", "outside");
    }

    PageFolder folder(const std::string& address, const std::string& root = {}) const {
        const std::string top = root.empty() ? root : (disk_.path() / root).string();
        return {disk_.path() / "site/sub/page.html", top, url(address)};
    }

    /// What is at an address: the file's contents, or the refusal in brackets.
    static std::string at(const PageFolder& folder, const std::string& address) {
        const PageFolder::File file = folder.fileAt(url(address));
        return file.bytes ? std::string(file.bytes.bytes()) : "(" + file.refusal + ")";
    }

    void link(const std::string& target, const std::string& name) const {
        fs::create_symlink(target, disk_.path() / name);
    }

    static constexpr char missing[] = "(there is no such file)";
    static constexpr char out[] = "(it is out of the folder)";
    static constexpr char linkedOut[] = "(it leads out of the folder)";
    static constexpr char noName[] = "(its name cannot be a file's)";

    TemporaryFolder disk_;
};

TEST_F(PageFolderTest, FilesAreWhereTheAddressIsBesideThePages) {
    const PageFolder files = folder("http://Host:80/x/y/page.html?a=/b/");
    EXPECT_EQ(at(files, "http://host/x/y/files/a.png"), "a");
    EXPECT_EQ(at(files, "http://host/x/y/files/a.png?v=1#f"), "a");
    EXPECT_EQ(at(files, "http://host/x/y/other"), missing);
    EXPECT_EQ(at(files, "http://host/x/y/files/a.png/more"), missing);
    EXPECT_EQ(at(files, "http://host/x/y/files/"), "(it is a folder)");
    EXPECT_EQ(at(files, "http://host/x/y/"), "(it is a folder)");
    EXPECT_EQ(files.fileAt(url("http://host/x/y/files/a.png")).name, "files/a.png");
}

TEST_F(PageFolderTest, OtherOriginsAreNotOnTheDisk) {
    const PageFolder files = folder("http://host/page.html");
    for (const char* address : {"https://host/files/a.png", "http://other/files/a.png",
                                "http://host:81/files/a.png", "file:///files/a.png", "cid:a"}) {
        EXPECT_EQ(at(files, address), "(it is not on this disk)") << address;
    }
}

TEST_F(PageFolderTest, NothingAboveTheRootIsReached) {
    const PageFolder own = folder("file:///d/sub/page.html");
    EXPECT_EQ(at(own, "file:///d/top.png"), out);
    EXPECT_EQ(at(own, "file:///outside.png"), out);
    EXPECT_EQ(at(own, "file:///etc/passwd"), out);
    const PageFolder wide = folder("file:///d/sub/page.html", "site");
    EXPECT_EQ(at(wide, "file:///d/top.png"), "top");
    EXPECT_EQ(at(wide, "file:///d/sub/files/a.png"), "a");
    EXPECT_EQ(at(wide, "file:///outside.png"), out);
}

TEST_F(PageFolderTest, EscapesMakeNoPath) {
    const PageFolder files = folder("file:///d/sub/page.html");
    EXPECT_EQ(at(files, "file:///d/sub/..%2ftop.png"), noName);
    EXPECT_EQ(at(files, "file:///d/sub/files%2Fa.png"), noName);
    EXPECT_EQ(at(files, "file:///d/sub/a%00.png"), noName);
    EXPECT_EQ(at(files, "file:///d/sub/%2e%2e/top.png"), out);
    EXPECT_EQ(at(files, "file:///d/sub/files/%252e%252e/a.png"), missing);
}

TEST_F(PageFolderTest, NamesMayHaveAnyBytes) {
    const PageFolder files = folder("file:///d/page.html");
    for (const std::string name :
         {"a b", "a\nb", "a%41", "a#b", "a?b", "a\\b", "\xFF\xE9", "\xC3\xA4", "..."}) {
        disk_.write("site/sub/" + name, name);
    }
    EXPECT_EQ(at(files, "file:///d/a%20b"), "a b");
    EXPECT_EQ(at(files, "file:///d/a%0Ab"), "a\nb");
    EXPECT_EQ(at(files, "file:///d/a%2541"), "a%41");
    EXPECT_EQ(at(files, "file:///d/a%23b"), "a#b");
    EXPECT_EQ(at(files, "file:///d/a%3Fb"), "a?b");
    EXPECT_EQ(at(files, "file:///d/a%5Cb"), "a\\b");
    EXPECT_EQ(at(files, "file:///d/%FF%E9"), "\xFF\xE9");
    EXPECT_EQ(at(files, "file:///d/\xC3\xA4"), "\xC3\xA4");
    EXPECT_EQ(at(files, "file:///d/..."), "...");
}

TEST_F(PageFolderTest, LinksStayInside) {
    link("files/a.png", "site/sub/inside");
    link("../top.png", "site/sub/up");
    link("/etc/passwd", "site/sub/away");
    link(disk_.path() / "site/sub/files/a.png", "site/sub/absolute");
    link("..", "site/sub/parent");
    link("nowhere", "site/sub/broken");
    const PageFolder own = folder("file:///d/sub/page.html");
    EXPECT_EQ(at(own, "file:///d/sub/inside"), "a");
    EXPECT_EQ(at(own, "file:///d/sub/up"), linkedOut);
    EXPECT_EQ(at(own, "file:///d/sub/away"), linkedOut);
    EXPECT_EQ(at(own, "file:///d/sub/absolute"), linkedOut);
    EXPECT_EQ(at(own, "file:///d/sub/parent/top.png"), linkedOut);
    EXPECT_EQ(at(own, "file:///d/sub/broken"), missing);
    EXPECT_EQ(at(folder("file:///d/sub/page.html", "site"), "file:///d/sub/up"), "top");
}

TEST_F(PageFolderTest, OnlyFilesAreRead) {
    ASSERT_EQ(::mkfifo((disk_.path() / "site/sub/pipe").c_str(), 0600), 0);
    EXPECT_EQ(at(folder("file:///d/page.html"), "file:///d/pipe"), "(it is no file)");
}

TEST_F(PageFolderTest, ThePageIsBelowTheRoot) {
    disk_.write("other/file", "");
    EXPECT_THROW(folder("file:///d/page.html", "other"), Failure);
    EXPECT_THROW(folder("file:///d/page.html", "nowhere"), Failure);
    EXPECT_THROW(folder("file:///d/page.html", "outside.png"), Failure);
}

} // namespace
} // namespace qrv::webarchive
