#include "Source/Tools/batch/Report/FirstPages.h"

#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <thread>

namespace qrv::batch {
namespace {

using namespace std::chrono_literals;

std::string pdf(const std::string& box) {
    return "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
           "2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
           "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[" +
           box + "]>>endobj\ntrailer<</Root 1 0 R>>\n";
}

/// Width and height of a JPEG file: of its first frame.
std::pair<int, int> sizeOf(const std::string& jpeg) {
    const auto number = [&jpeg](std::size_t at) {
        return static_cast<unsigned char>(jpeg[at]) * 256 + static_cast<unsigned char>(jpeg[at + 1]);
    };
    std::size_t at = 2;
    while (at + 9 < jpeg.size()) {
        const int mark = number(at);
        if (mark >= 0xFFC0 && mark <= 0xFFC2) return {number(at + 7), number(at + 5)};
        at += 2 + static_cast<std::size_t>(number(at + 2));
    }
    return {0, 0};
}

class FirstPages : public testing::Test {
protected:
    std::string file(const std::string& name, const std::string& contents) {
        return folder.write(name, contents).fileSystemRepresentation();
    }

    /// Stands in for the program that makes the pictures.
    std::string program(const std::string& script) {
        const std::string path = file("program", "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    std::vector<std::string> pictures(const std::vector<std::string>& paths,
                                      const std::stop_token& stop = {}) {
        return picturesOfFirstPages(pictureProgram().value(), paths, 2, stop);
    }

    TemporaryFolder folder;
};

TEST_F(FirstPages, AreSmallAndKeepTheirForm) {
    const auto made = pictures({file("a.pdf", pdf("0 0 600 800")), file("b.pdf", pdf("0 0 800 400"))});
    EXPECT_EQ(sizeOf(made.at(0)), std::pair(192, 256));
    EXPECT_EQ(sizeOf(made.at(1)), std::pair(192, 96));
    EXPECT_LT(made.at(0).size(), 10'000u);
}

TEST_F(FirstPages, OfTallPagesShowTheTop) {
    EXPECT_EQ(sizeOf(pictures({file("a.pdf", pdf("0 0 600 14400"))}).at(0)), std::pair(192, 256));
}

TEST_F(FirstPages, AreEmptyWhereThereAreNone) {
    const auto made = pictures({file("a.pdf", "no PDF"), "", "/nonexistent", file("b.pdf", pdf("0 0 9 9"))});
    EXPECT_EQ(made.at(0), "");
    EXPECT_EQ(made.at(1), "");
    EXPECT_EQ(made.at(2), "");
    EXPECT_NE(made.at(3), "");
}

TEST_F(FirstPages, NamesMayBeAnyBytes) {
    EXPECT_NE(pictures({file("-\xff\n '\"$(x).pdf", pdf("0 0 9 9"))}).at(0), "");
}

TEST_F(FirstPages, WhatIsNoWholePictureIsNotTaken) {
    for (const char* script :
         {"printf no", "printf '\\377\\330 cut off'", "printf '\\377\\330\\377\\331'; exit 1"})
        EXPECT_EQ(picturesOfFirstPages(program(script), {"/x.pdf"}, 1, {}).at(0), "") << script;
    EXPECT_EQ(picturesOfFirstPages(program("printf '\\377\\330\\377\\331'"), {"/x.pdf"}, 1, {}).at(0),
              "\xFF\xD8\xFF\xD9");
}

TEST_F(FirstPages, EndWithTheStop) {
    std::stop_source source;
    std::jthread stopper([&] {
        std::this_thread::sleep_for(100ms);
        source.request_stop();
    });
    // It would take some 10 s for each otherwise.
    const auto start = std::chrono::steady_clock::now();
    const std::vector<std::string> paths(1000, "/x.pdf");
    const auto made = picturesOfFirstPages(program("sleep 600"), paths, 2, source.get_token());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 15s);
    EXPECT_EQ(made, std::vector<std::string>(1000));
}

} // namespace
} // namespace qrv::batch
