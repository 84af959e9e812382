#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Tests/Platform/Engine/PDF/DrawnPage.h"
#include "Tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::Each;
using ::testing::Ge;
using ::testing::Le;

constexpr const char* group = "/Type /XObject /Subtype /Form /Group <</S /Transparency /I true>> ";

class PDFMasksTest : public testing::Test {
protected:
    /// Draws a red area through an inverted mask, in units of half a point, as the engine does.
    void apply(const std::string& mask, const std::string& maskBox = "[3 3 97 97]",
               const std::string& areaBox = "[3 3 97 97]", const std::string& before = "/Inverted gs ",
               const std::string& function = "{1 exch sub}") {
        const std::string resources = "/Resources <</ExtGState <</Plain 7 0 R /Half <</ca 0.5>>>>>>";
        const std::string pdf = makePDF({
            "<</Type /Catalog /Pages 2 0 R>>",
            "<</Type /Pages /Kids [3 0 R] /Count 1>>",
            "<</Type /Page /Parent 2 0 R /MediaBox [0 0 60 60] /Contents 4 0 R /Resources "
            "<</XObject <</Area 5 0 R>> /ExtGState <</Inverted 6 0 R /None <</SMask /None>>>>>>>>",
            makeStream("q .5 0 0 .5 0.3 0.3 cm " + before + "/Area Do /None gs Q"),
            makeStream("1 0 0 rg 0 0 200 200 re f", group + ("/BBox " + areaBox)),
            "<</Type /ExtGState /SMask <</Type /Mask /S /Alpha /G 8 0 R /TR 9 0 R>>>>",
            "<</Type /ExtGState /BM /Normal /ca 1>>",
            makeStream(mask, group + ("/BBox " + maskBox + " " + resources)),
            makeStream(function, "/FunctionType 4 /Domain [0 1] /Range [0 1]"),
        });
        const NSData edited = pdfByApplying({}, NSData(pdf));
        ASSERT_TRUE(edited);
        folder_.write("out.pdf", edited.bytes());
    }

    /// How red a place is in both readers, from the bottom left in points: 0 for white, 255 for red.
    std::array<int, 2> redness(int x, int y) {
        std::array<int, 2> found{};
        std::ranges::transform(std::array{Reader::poppler, Reader::mupdf}, found.begin(), [&](Reader reader) {
            return 255 - drawPage(folder_.path() / "out.pdf", reader).pixel(x, 59 - y)[1];
        });
        return found;
    }

    void expectNothing() {
        for (const Reader reader : {Reader::poppler, Reader::mupdf}) {
            const std::string pixels = drawPage(folder_.path() / "out.pdf", reader).pixels;
            EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(pixels, '\xFF')), pixels.size());
        }
    }

    const TemporaryFolder folder_;
};

TEST_F(PDFMasksTest, NothingIsDrawnWhereTheMaskLetsNothingThrough) {
    apply("0 0 0 RG 0 0 0 rg /Plain gs 3 3 94 94 re f");
    expectNothing();
}

TEST_F(PDFMasksTest, WhatTheMaskIsNotOpaqueInIsDrawn) {
    apply("0 0 0 rg /Plain gs 3 3 47 94 re f");
    EXPECT_THAT(redness(15, 25), Each(0));
    EXPECT_THAT(redness(35, 25), Each(255));
    EXPECT_THAT(redness(55, 25), Each(0)); // beyond the area
}

TEST_F(PDFMasksTest, TranslucentMasksAreInvertedByDegrees) {
    apply("0 0 0 rg /Half gs 3 3 94 94 re f");
    EXPECT_THAT(redness(25, 25), Each(Ge(125)));
    EXPECT_THAT(redness(25, 25), Each(Le(131)));
}

TEST_F(PDFMasksTest, AnAreaBeyondTheMaskIsDrawn) {
    apply("0 0 0 rg /Plain gs 3 3 50 94 re f", "[3 3 53 97]");
    EXPECT_THAT(redness(15, 25), Each(0));
    EXPECT_THAT(redness(40, 25), Each(255));
}

TEST_F(PDFMasksTest, AnAreaThatIsMovedAgainstTheMaskIsDrawn) {
    apply("0 0 0 rg /Plain gs 3 3 47 94 re f", "[3 3 50 97]", "[3 3 50 97]", "/Inverted gs 1 0 0 1 47 0 cm ");
    EXPECT_THAT(redness(35, 25), Each(255));
}

TEST_F(PDFMasksTest, MasksWithOtherContentsAreNotTakenForOpaque) {
    for (const char* mask : {"0 0 0 rg /Plain gs 0 0 1 1 re f", "/Plain gs 3 3 94 94 re W n",
                             "/Plain gs (x) 3 94 re f", "/Missing gs 3 3 94 94 re n", "", "3 3 m f", "q Q"}) {
        apply(mask);
        EXPECT_THAT(redness(25, 25), Each(255)) << mask;
    }
}

TEST_F(PDFMasksTest, OtherFunctionsStay) {
    apply("0 0 0 rg /Plain gs 3 3 94 94 re f", "[3 3 97 97]", "[3 3 97 97]", "/Inverted gs ", "{1 mul}");
    EXPECT_THAT(redness(25, 25), Each(255));
}

} // namespace
} // namespace qrv::engine
