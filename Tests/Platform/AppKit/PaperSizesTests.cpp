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

TEST(PaperSizes, AreThoseOfPaperconf) {
    std::istringstream names(outputOf("paperconf -a"));
    int count = 0;
    for (std::string name; names >> name; ++count) {
        NSSize size;
        std::istringstream(outputOf("paperconf -p " + name + " -s")) >> size.width >> size.height;
        EXPECT_EQ(paperSizeNamed(name), (NSSize{std::round(size.width), std::round(size.height)})) << name;
    }
    EXPECT_GE(count, 55);
}

} // namespace qrv
