#include "Platform/AppKit/PaperSizes.h"

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>

namespace qrv {

namespace {

std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> output(::popen(command.c_str(), "r"), &::pclose);
    std::string text;
    for (int c = std::fgetc(output.get()); c != EOF; c = std::fgetc(output.get()))
        text += static_cast<char>(c);
    return text;
}

} // namespace

TEST(PaperSizes, AreFoundInCapitalAndSmallLetters) {
    EXPECT_EQ(paperSizeNamed("A4"), (NSSize{595, 842}));
    EXPECT_EQ(paperSizeNamed("comm10"), (NSSize{297, 684}));
    EXPECT_EQ(paperSizeNamed("dl"), (NSSize{312, 624}));
}

TEST(PaperSizes, AreNoneForUnknownNames) {
    for (const std::string_view name : {"", "papyrus", "a", "a44", " a4", "a4 "})
        EXPECT_FALSE(paperSizeNamed(name)) << name;
}

/// That of Debian 12: a later one, which comes with the program paper, has some other names and another C4.
TEST(PaperSizes, AreThoseOfPaperconf) {
    const bool isLater = !outputOf("command -v paper").empty();
    std::istringstream names(outputOf("paperconf -a"));
    int count = 0;
    for (std::string name; std::getline(names, name);) {
        const auto size = paperSizeNamed(name);
        if (isLater && (!size || name == "c4")) continue;
        NSSize told;
        std::istringstream(outputOf("paperconf -p '" + name + "' -s")) >> told.width >> told.height;
        EXPECT_EQ(size, (NSSize{std::round(told.width), std::round(told.height)})) << name;
        ++count;
    }
    EXPECT_GE(count, isLater ? 40 : 55);
}

} // namespace qrv
