#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Tests/Platform/Engine/PDF/DrawnPage.h"
#include "Tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::Ge;
using ::testing::HasSubstr;
using ::testing::Le;

/// From black to white, across the page's 100 points.
std::string gradient(const std::string& first, const std::string& last) {
    return "<</PatternType 2 /Shading <</ShadingType 2 /ColorSpace /DeviceRGB /Coords [0 0 100 0] /Extend "
           "[true true] "
           "/Function <</FunctionType 2 /Domain [0 1] /C0 [" +
           first + "] /C1 [" + last + "] /N 1>>>>>>";
}

class PDFPatternsTest : public testing::Test {
protected:
    /// Black, Fading and Shades are patterns: black, black at half strength, from black to white; there are
    /// stripes, too. In the state Half fills are half translucent, in Lines strokes, in HalfLines both.
    void apply(const std::string& contents, const std::string& form = "", const PDFPageEdits& edits = {}) {
        const std::string resources =
            "/Resources <</Font <</F 7 0 R>> /XObject <</Form 5 0 R /Group1 5 0 R>> "
            "/ExtGState <</Half <</ca 0.5>> /HalfLines <</ca 0.5 /CA 0.5>> /Lines <</CA 0.5>> /Whole <</ca 1 "
            "/CA 1 /LW 9>> /Odd 4 0 R "
            "/Odder 5>> "
            "/Pattern <</Black " +
            gradient("0 0 0", "0 0 0") + " /Fading 6 0 R /Stripes 9 0 R /FadingStripes 11 0 R /Shades " +
            gradient("0 0 0", "1 1 1") + " /Odd 5>>>>";
        const std::string mask =
            makeStream(".5 g 0 0 100 100 re f", "/Type /XObject /Subtype /Form /BBox [0 0 100 100] "
                                                "/Group <</S /Transparency /CS /DeviceGray /I true>>");
        const std::string pdf = makePDF({
            "<</Type /Catalog /Pages 2 0 R>>",
            "<</Type /Pages /Kids [3 0 R] /Count 1>>",
            "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 100] /Contents 4 0 R " + resources + ">>",
            makeStream(contents),
            makeStream(form, "/Type /XObject /Subtype /Form /BBox [0 0 100 100] " + resources),
            makeStream(
                "/Mask gs 0 g 0 0 100 100 re f",
                "/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 100 100] /XStep 100 /YStep 100 "
                "/Resources <</ExtGState <</Mask <</SMask <</Type /Mask /S /Luminosity /G 8 0 R>>>>>>>>"),
            "<</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>",
            mask,
            "<</PatternType 2 /Matrix [.5 0 0 .5 0 0] /Shading <</ShadingType 1 /ColorSpace /DeviceRGB "
            "/Domain [0 200 0 18000] "
            "/Function 10 0 R>>>>",
            makeStream("{exch pop 40 div dup floor sub .5 lt {0} {1} ifelse dup dup}",
                       "/FunctionType 4 /Domain [0 200 0 18000] /Range [0 1 0 1 0 1]"),
            makeStream("/Mask gs /Pattern CS /Pattern cs /P SCN /P scn 0 0 100 100 re f*",
                       "/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 100 100] /XStep 102 /YStep 102 "
                       "/Resources "
                       "<</Pattern <</P 9 0 R>> /ExtGState <</Mask <</SMask <</Type /Mask /S /Luminosity /G "
                       "8 0 R>>>>>>>>"),
        });
        const NSData edited = pdfByApplying(edits, NSData(pdf));
        ASSERT_TRUE(edited);
        folder_.write("out.pdf", edited.bytes());
    }

    /// The levels of red, green and blue at a place in both readers, from the bottom left in points.
    std::vector<int> levels(int x, int y) {
        std::vector<int> found;
        for (const Reader reader : {Reader::poppler, Reader::mupdf}) {
            const DrawnPage page = drawPage(folder_.path() / "out.pdf", reader);
            std::ranges::copy(page.pixel(x, page.height - 1 - y), std::back_inserter(found));
        }
        return found;
    }

    std::string run(const std::string& command, const std::string& arguments = "") {
        return outputOf(command + " '" + (folder_.path() / "out.pdf").string() + "' " + arguments);
    }

    const TemporaryFolder folder_;
};

auto around(int level) {
    return Each(AllOf(Ge(level - 3), Le(level + 3)));
}

TEST_F(PDFPatternsTest, GradientsOfFillsAreTranslucent) {
    apply("/Pattern CS /Pattern cs /Black SCN /Black scn /Half gs 10 10 30 30 re f 60 60 m 90 60 l 90 90 l "
          "60 90 l h f* "
          "10 60 m 10 60 40 60 40 60 c 40 90 l 10 90 l f");
    for (const int x : {12, 25, 38}) EXPECT_THAT(levels(x, 25), around(128)) << x;
    EXPECT_THAT(levels(75, 75), around(128));
    EXPECT_THAT(levels(20, 75), around(128));
    EXPECT_THAT(levels(50, 50), around(255));
}

TEST_F(PDFPatternsTest, PatternsThatAreTranslucentThemselvesAreSoOnceMore) {
    apply("/Pattern cs /Fading scn /Half gs 10 10 80 80 re f");
    EXPECT_THAT(levels(50, 50), around(191));
}

TEST_F(PDFPatternsTest, StrokesAreDrawnToTheirEdges) {
    apply("/Pattern CS /Fading SCN /Whole gs 20 w /HalfLines gs 10 50 m 90 50 l S");
    EXPECT_THAT(levels(50, 50), around(191));
    EXPECT_THAT(levels(50, 42), around(191));
    EXPECT_THAT(levels(50, 58), around(191));
}

TEST_F(PDFPatternsTest, StrokesMoreTranslucentThanFillsStay) {
    apply("/Pattern CS /Black SCN 20 w /Lines gs 10 50 m 90 50 l S");
    EXPECT_THAT(levels(50, 50), around(128));
}

TEST_F(PDFPatternsTest, TextsStayTexts) {
    apply("/Pattern CS /Pattern cs /Black SCN /Black scn /Half gs BT /F 100 Tf 20 20 Td (I) Tj ET");
    EXPECT_THAT(levels(34, 50), around(128));
    EXPECT_THAT(run("pdftotext", "-"), HasSubstr("I"));
}

TEST_F(PDFPatternsTest, PatternsStayWhereTheyAre) {
    const std::string drawing = "q .5 .5 -.5 .5 50 0 cm 2 0 0 2 0 0 cm /Pattern cs /Shades scn /Half gs "
                                "0 0 50 50 re f Q";
    for (const bool isInForm : {false, true}) {
        apply(isInForm ? "1 0 0 1 0 0 cm /Form Do" : drawing, isInForm ? drawing : "");
        EXPECT_THAT(levels(30, 50), around(128 + 76 / 2));
        EXPECT_THAT(levels(70, 50), around(128 + 179 / 2));
        EXPECT_THAT(levels(5, 5), around(255));
    }
}

TEST_F(PDFPatternsTest, PatternsOfAScaledPageAreScaledOnce) {
    PDFPageEdits edits;
    edits.scale = 2;
    apply("/Pattern cs /Shades scn /Half gs 0 0 100 100 re f", "", edits);
    EXPECT_THAT(run("pdfinfo"), HasSubstr("200 x 200 pts"));
    EXPECT_THAT(levels(50, 50), around(128 + 64 / 2));
    apply("/Pattern cs /FadingStripes scn 10 10 80 80 re f", "", edits);
    EXPECT_THAT(levels(50, 90), around(128));
    EXPECT_THAT(levels(50, 70), around(255));
}

TEST_F(PDFPatternsTest, WhatIsSavedComesBack) {
    apply("/Half gs q /Pattern cs /Black scn /Whole gs 0 0 50 50 re f Q 1 0 0 rg 50 50 50 50 re f "
          "/Pattern cs /Black scn 0 50 50 50 re f 0 g 50 0 50 50 re f");
    EXPECT_THAT(levels(25, 25), around(0));
    EXPECT_THAT(levels(25, 75), around(128));
    EXPECT_THAT(levels(75, 25), around(128));
    EXPECT_THAT(levels(75, 75), testing::ElementsAre(255, Ge(126), Ge(126), 255, Ge(126), Ge(126)));
}

TEST_F(PDFPatternsTest, APathThatClipsStillDoes) {
    apply("/Pattern cs /Black scn /Half gs 0 0 50 100 re W f 0 g /Whole gs 0 0 100 100 re f");
    EXPECT_THAT(levels(25, 50), around(0));
    EXPECT_THAT(levels(75, 50), around(255));
}

TEST_F(PDFPatternsTest, GradientsThatAreFunctionsAreFineHoweverLargeTheyAre) {
    for (const std::string name : {"/Stripes", "/FadingStripes"}) {
        apply("/Pattern cs " + name + " scn 20 20 60 60 re f");
        const int black = name == "/Stripes" ? 0 : 128;
        for (const int y : {25, 45, 65}) EXPECT_THAT(levels(50, y), around(black)) << y;
        for (const int y : {35, 55, 75}) EXPECT_THAT(levels(50, y), around(255)) << y;
        EXPECT_THAT(levels(50, 10), around(255));
    }
}

TEST_F(PDFPatternsTest, TranslucentTilesAreSoOnceMore) {
    apply("/Pattern cs /FadingStripes scn /Half gs 20 20 60 60 re f");
    EXPECT_THAT(levels(50, 45), around(191));
    EXPECT_THAT(levels(50, 55), around(255));
}

TEST_F(PDFPatternsTest, OddContentsStayAsTheyAre) {
    for (const char* odd :
         {"Q Q", "/Odd gs /Odder gs /None gs gs",
          "0 0 0 0 0 0 cm /Pattern cs /Black scn /Half gs 0 0 9 9 re f",
          "/Pattern cs /Missing scn /Half gs 0 0 9 9 re f", "/Pattern cs /Odd scn /Half gs 0 0 9 9 re f",
          "/Pattern cs /Black scn /Half gs f", "/Pattern cs /Black scn /Half gs (a) /b re h f",
          "/Pattern cs /Black scn /Half gs BT /F 9 Tf (x) Tj BT ET", "/Half gs scn cm w M q",
          "/Pattern cs /Black scn /Half gs 1e999 0 9 9 re f", "BI /W 1 /H 1 /BPC 8 /CS /G ID x EI"}) {
        apply(std::string("q 0 1 0 rg 0 0 100 100 re f Q ") + odd);
        EXPECT_THAT(levels(50, 50), testing::ElementsAre(0, 255, 0, 0, 255, 0)) << odd;
    }
}

} // namespace
} // namespace qrv::engine
