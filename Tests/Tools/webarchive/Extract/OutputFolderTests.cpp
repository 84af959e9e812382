#include "Source/Tools/webarchive/Extract/OutputFolder.h"

#include "Source/Tools/Common/Failure.h"
#include "Tests/Support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t plenty = 1000;

class OutputFolderTest : public testing::Test {
protected:
    std::string read(const std::string& name) const {
        std::ifstream stream(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    void put(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name) << text;
    }

    TemporaryFolder temporary_;
    fs::path folder_ = fs::path(temporary_.path()) / "out";
};

TEST_F(OutputFolderTest, FilesAreWrittenInItAndInItsFolder) {
    OutputFolder output(folder_, false, plenty);
    output.makeFolder("files");
    output.write("a", "text");
    output.write("files/b", std::string_view("\0\n", 2));
    EXPECT_EQ(read("a"), "text");
    EXPECT_EQ(read("files/b"), std::string("\0\n", 2));
}

TEST_F(OutputFolderTest, HasToBeEmpty) {
    fs::create_directory(folder_);
    OutputFolder(folder_, false, plenty).write("a", "1");
    EXPECT_THROW(OutputFolder(folder_, false, plenty), Failure);
    OutputFolder replacing(folder_, true, plenty);
    put("b", "stays");
    replacing.write("a", "2");
    EXPECT_EQ(read("a"), "2");
    EXPECT_EQ(read("b"), "stays");
}

TEST_F(OutputFolderTest, NoNameIsWrittenTwice) {
    OutputFolder output(folder_, false, plenty);
    output.write("a", "1");
    EXPECT_THROW(output.write("a", "2"), Failure);
    EXPECT_EQ(read("a"), "1");
}

TEST_F(OutputFolderTest, LinksInItAreNotFollowed) {
    fs::create_directory(folder_);
    const fs::path other = folder_.parent_path() / "other";
    fs::create_directory(other);
    std::ofstream(other / "victim") << "unharmed";
    fs::create_symlink(other / "victim", folder_ / "a");
    fs::create_symlink(other, folder_ / "files");
    OutputFolder output(folder_, true, plenty);
    output.write("a", "mine");
    EXPECT_EQ(read("a"), "mine");
    EXPECT_FALSE(fs::is_symlink(folder_ / "a"));
    EXPECT_THROW(output.makeFolder("files"), Failure);
    EXPECT_EQ(std::distance(fs::directory_iterator(other), {}), 1);
    EXPECT_EQ(fs::file_size(other / "victim"), 8u);
}

TEST_F(OutputFolderTest, WhatIsNoFolderIsRefused) {
    std::ofstream(folder_) << "file";
    EXPECT_THROW(OutputFolder(folder_, true, plenty), Failure);
    EXPECT_THROW(OutputFolder(folder_ / "in" / "none", false, plenty), Failure);
}

TEST_F(OutputFolderTest, NoMoreIsWrittenThanWasSaid) {
    OutputFolder output(folder_, false, 5);
    output.write("a", "123");
    EXPECT_THROW(output.write("b", "456"), Failure);
    EXPECT_FALSE(fs::exists(folder_ / "b"));
    output.write("c", "45");
}

} // namespace
} // namespace qrv::webarchive
