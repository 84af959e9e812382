#include "Source/Tools/batch/Report/FileLinks.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace qrv::batch {
namespace {

TEST(FileLinks, AddressesAreRelativeToThePage) {
    EXPECT_EQ(addressFrom("/out/report.html", "/out/a/b.pdf"), "./a/b.pdf");
    EXPECT_EQ(addressFrom("/report.html", "/out/b.pdf"), "./out/b.pdf");
    EXPECT_EQ(addressFrom("/reports/new/r.html", "/out/b.pdf"), "./../../out/b.pdf");
    EXPECT_EQ(addressFrom("/out/./x/../r.html", "/out//a/b.pdf"), "./a/b.pdf");
}

TEST(FileLinks, RelativePathsAreOfTheWorkingFolder) {
    EXPECT_EQ(addressFrom("r.html", "out/b.pdf"), "./out/b.pdf");
    EXPECT_EQ(addressFrom("r.html", (std::filesystem::current_path() / "b.pdf").string()), "./b.pdf");
    EXPECT_EQ(addressFrom("../r.html", "b.pdf"),
              "./" + std::filesystem::current_path().filename().string() + "/b.pdf");
}

TEST(FileLinks, EveryByteThatCouldMeanSomethingIsEscaped) {
    EXPECT_EQ(addressFrom("/r.html", "/a b?#%&\"'<>\\:;@.pdf"),
              "./a%20b%3F%23%25%26%22%27%3C%3E%5C%3A%3B%40.pdf");
    EXPECT_EQ(addressFrom("/r.html", "/javascript:alert(1)"), "./javascript%3Aalert%281%29");
    EXPECT_EQ(addressFrom("/r.html", "/\xff\n\xC3\xA9~"), "./%FF%0A%C3%A9~");
}

TEST(FileLinks, OnlyWhatIsBelowTheFolderIsTaken) {
    EXPECT_EQ(pathBelow("/out", "a/b.pdf"), "/out/a/b.pdf");
    EXPECT_EQ(pathBelow("/out", "a/../b.pdf"), "/out/b.pdf");
    EXPECT_EQ(pathBelow("/out", "..b/c.pdf"), "/out/..b/c.pdf");
    EXPECT_EQ(pathBelow("-out", "a.pdf"), (std::filesystem::current_path() / "-out/a.pdf").string());
    for (const char* name : {"", ".", "..", "../b.pdf", "a/../../b.pdf", "/etc/passwd", "a/"})
        EXPECT_FALSE(pathBelow("/out", name)) << name;
}

} // namespace
} // namespace qrv::batch
