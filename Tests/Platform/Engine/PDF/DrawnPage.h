#pragma once

// The first page of a PDF file as either of two independent programs draws it.

#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace qrv {

struct DrawnPage {
    int width = 0;
    int height = 0;
    std::string pixels; // rows of red, green, blue

    /// Counted from the top left.
    std::array<int, 3> pixel(int x, int y) const {
        const std::string::const_iterator at = pixels.begin() + 3 * (y * width + x);
        const auto level = [at](int channel) { return int{static_cast<unsigned char>(at[channel])}; };
        return {level(0), level(1), level(2)};
    }
};

enum class Reader { poppler, mupdf };

inline DrawnPage drawPage(const std::filesystem::path& pdf, Reader reader, int resolution = 72) {
    const std::string stem = (pdf.parent_path() / "page").string();
    const std::string dots = " -r " + std::to_string(resolution);
    outputOf(reader == Reader::mupdf
                 ? "mutool draw -q" + dots + " -o '" + stem + ".ppm' '" + pdf.string() + "' 1"
                 : "pdftoppm -singlefile -f 1 -l 1" + dots + " '" + pdf.string() + "' '" + stem + "'");
    std::ifstream in(stem + ".ppm", std::ios::binary);
    std::string kind;
    int maximum = 0;
    DrawnPage page;
    in >> kind >> page.width >> page.height >> maximum;
    in.get();
    page.pixels.assign(std::istreambuf_iterator<char>(in), {});
    EXPECT_EQ(kind, "P6");
    EXPECT_EQ(page.pixels.size(), static_cast<std::size_t>(page.width * page.height * 3));
    return page;
}

} // namespace qrv
