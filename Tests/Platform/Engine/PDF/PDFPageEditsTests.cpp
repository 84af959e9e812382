#include "Platform/Engine/PDF/PDFPageEdits.h"

#include "Tests/Platform/Engine/PDF/DrawnPage.h"
#include "Tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace qrv::engine {

namespace {

using testing::HasSubstr;
using testing::Not;

/// Two pages that inherit their size of 100 x 200 from the page tree, with contents, a pattern on the page
/// and one in a form, links of every kind, an outline and named destinations.
std::string richPDF() {
    const std::string shading =
        "<</ShadingType 2 /ColorSpace /DeviceRGB /Coords [0 0 100 0] /Extend [true true] "
        "/Function <</FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [0 0 1] /N 1>>>>";
    return makePDF({
        "<</Type /Catalog /Pages 2 0 R /Outlines 11 0 R /Names <</Dests 13 0 R>> "
        "/Dests <</old [4 0 R /FitH 150]>> /OpenAction [3 0 R /XYZ null 190 2]>>",
        "<</Type /Pages /Kids [3 0 R 4 0 R] /Count 2 /MediaBox [0 0 100 200] "
        "/Resources <</Font <</F 5 0 R>> /Pattern <</P 6 0 R /T 9 0 R>> /XObject <</X 7 0 R>>>>>>",
        "<</Type /Page /Parent 2 0 R /Contents 8 0 R /CropBox [0 0 100 200] /TrimBox [10 10 90 190] "
        "/Annots [10 0 R <</Type /Annot /Subtype /Link /Border [0 0 0] /Rect [10 20 30 40] "
        "/A <</S /GoTo /D [4 0 R /XYZ 10 100 0]>>>> 14 0 R 15 0 R]>>",
        "<</Type /Page /Parent 2 0 R /Contents 8 0 R>>",
        "<</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>",
        "<</Type /Pattern /PatternType 2 /Shading " + shading + ">>",
        makeStream("/Pattern cs /P scn 0 0 100 30 re f",
                   "/Type /XObject /Subtype /Form /BBox [0 0 100 30] "
                   "/Matrix [1 0 0 1 0 60] /Resources <</Pattern <</P 6 0 R>>>>"),
        makeStream("BT /F 20 Tf 10 170 Td (Word) Tj ET q /Pattern cs /P scn 0 100 100 50 re f Q "
                   "q /Pattern cs /T scn 0 0 100 40 re f Q /X Do"),
        makeStream("0 0.5 0 rg 0 0 7 7 re f", "/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 "
                                              "/BBox [0 0 12 12] /XStep 12 /YStep 12 /Resources <<>> "
                                              "/Matrix [1 0 0 1 3 5]"),
        "<</Type /Annot /Subtype /Link /Border [0 0 0] /Rect [10 165 60 190] "
        "/QuadPoints [10 165 60 165 60 190 10 190] /A <</S /URI /URI (http://host.example/a%20b)>>>>",
        "<</Type /Outlines /First 12 0 R /Last 12 0 R /Count 1>>",
        "<</Title (Entry) /Parent 11 0 R /Dest [4 0 R /XYZ 20 120 0]>>",
        "<</Names [(box) [3 0 R /FitR 10 20 30 40] (left) <</D [3 0 R /FitV 40]>> (whole) [3 0 R /Fit]]>>",
        "<</Type /Annot /Subtype /Link /Border [0 0 0] /Rect [0 0 5 5] /A 16 0 R>>",
        "<</Type /Annot /Subtype /Link /Border [0 0 0] /Rect [5 5 9 9] /A 16 0 R>>",
        "<</S /URI /URI (http://shared.example/)>>",
    });
}

/// The share of colour values in the first rows that differ visibly. The widths may differ by a pixel, as the
/// engine rounds its pages.
double difference(const DrawnPage& a, const DrawnPage& b, int rows) {
    if (std::abs(a.width - b.width) > 1 || a.height < rows || b.height < rows) return 1;
    const int values = std::min(a.width, b.width) * 3;
    int differing = 0;
    for (int row = 0; row < rows; ++row) {
        const char* left = a.pixels.data() + row * a.width * 3;
        const char* right = b.pixels.data() + row * b.width * 3;
        for (int i = 0; i < values; ++i) {
            const int step = static_cast<unsigned char>(left[i]) - static_cast<unsigned char>(right[i]);
            if (std::abs(step) > 24) ++differing;
        }
    }
    return static_cast<double>(differing) / (values * rows);
}

PDFPageEdits sized(double width, double height) {
    PDFPageEdits edits;
    edits.size = NSSize{width, height};
    return edits;
}

PDFPageEdits scaled(double factor) {
    PDFPageEdits edits;
    edits.scale = factor;
    return edits;
}

class PDFPageEditsTest : public testing::Test {
protected:
    /// Writes the edited document as out.pdf.
    void apply(const PDFPageEdits& edits, const std::string& pdf = richPDF()) {
        folder_.write("in.pdf", pdf);
        const NSData edited = pdfByApplying(edits, NSData(pdf));
        ASSERT_TRUE(edited);
        folder_.write("out.pdf", edited.bytes());
    }

    /// What a program says about the edited document, runs of blanks as one.
    std::string run(const std::string& command, const std::string& arguments = "") {
        std::string output =
            outputOf(command + " '" + (folder_.path() / "out.pdf").string() + "' " + arguments);
        const auto bothBlank = [](char a, char b) { return a == ' ' && b == ' '; };
        output.erase(std::unique(output.begin(), output.end(), bothBlank), output.end());
        return output;
    }

    /// A page as drawn by either of two independent programs.
    DrawnPage draw(const std::string& name, int resolution, bool second) {
        return drawPage(folder_.path() / name, second ? Reader::mupdf : Reader::poppler, resolution);
    }

    const TemporaryFolder folder_;
};

} // namespace

TEST_F(PDFPageEditsTest, SetsEveryBoxOfEveryPage) {
    apply(sized(100.5, 210.25));
    const std::string boxes = run("pdfinfo -box -l 2");
    for (const char* page : {"1", "2"}) {
        for (const char* box : {"MediaBox", "CropBox", "TrimBox", "BleedBox", "ArtBox"}) {
            EXPECT_THAT(boxes,
                        HasSubstr(std::string("Page ") + page + " " + box + ": 0.00 0.00 100.50 210.25\n"));
        }
    }
}

TEST_F(PDFPageEditsTest, KeepsTheDataOfContentsThatNeedNoEdit) {
    const std::string contents = "302030203530203530207265 % not packed best\n 2066>";
    const std::string pdf =
        makePDF({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                 "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /Contents 4 0 R>>",
                 makeStream(contents, "/Filter /ASCIIHexDecode")});
    for (const PDFPageEdits& edits : {sized(100, 200), sized(50, 60), scaled(2)})
        EXPECT_THAT(std::string(pdfByApplying(edits, NSData(pdf)).bytes()),
                    HasSubstr("\nstream\n" + contents));
}

TEST_F(PDFPageEditsTest, KeepsContentsAtTheTopLeft) {
    for (const bool second : {false, true}) {
        apply(sized(100, 213));
        EXPECT_LT(difference(draw("in.pdf", 72, second), draw("out.pdf", 72, second), 200), 0.001) << second;
        apply(sized(100, 190));
        EXPECT_LT(difference(draw("in.pdf", 72, second), draw("out.pdf", 72, second), 190), 0.001) << second;
    }
}

TEST_F(PDFPageEditsTest, MovesAPageThatDoesNotStartAtZero) {
    std::string pdf = richPDF();
    pdf.replace(pdf.find("[0 0 100 200]"), 13, "[5 50 95 200]"); // the tree's
    pdf.replace(pdf.find("[0 0 100 200]"), 13, "[5 50 95 200]"); // the first page's crop
    apply(sized(90, 150), pdf);
    EXPECT_THAT(run("pdfinfo -box"), HasSubstr("MediaBox: 0.00 0.00 90.00 150.00"));
    for (const bool second : {false, true}) {
        EXPECT_LT(difference(draw("in.pdf", 72, second), draw("out.pdf", 72, second), 150), 0.001) << second;
    }
}

TEST_F(PDFPageEditsTest, ScalesContentsFormsAndPatternsAlike) {
    apply(scaled(2));
    for (const bool second : {false, true}) {
        const DrawnPage original = draw("in.pdf", 144, second);
        EXPECT_EQ(original.height, 400);
        EXPECT_LT(difference(original, draw("out.pdf", 72, second), 400), 0.001) << second;
        // What this compares has colours in it: half the values differ from an empty page.
        DrawnPage empty = original;
        std::fill(empty.pixels.begin(), empty.pixels.end(), '\xFF');
        EXPECT_GT(difference(original, empty, 400), 0.3);
    }
}

TEST_F(PDFPageEditsTest, ScalesBoxesLinksAndDestinations) {
    apply(scaled(0.5));
    const std::string boxes = run("pdfinfo -box");
    EXPECT_THAT(boxes, HasSubstr("MediaBox: 0.00 0.00 50.00 100.00"));
    EXPECT_THAT(boxes, HasSubstr("TrimBox: 5.00 5.00 45.00 95.00"));
    const std::string destinations = run("pdfinfo -dests");
    EXPECT_THAT(destinations, HasSubstr("[ FitR 5 10 15 20] \"box\""));
    EXPECT_THAT(destinations, HasSubstr("[ FitV 20 ] \"left\""));
    EXPECT_THAT(destinations, HasSubstr("[ Fit ] \"whole\""));
    EXPECT_THAT(destinations, HasSubstr("[ FitH 75 ] \"old\""));
    const std::string objects = run("mutool show -g", "grep");
    EXPECT_THAT(objects, HasSubstr("/Rect[5 82.5 30 95]"));
    EXPECT_THAT(objects, HasSubstr("/QuadPoints[5 82.5 30 82.5 30 95 5 95]"));
    EXPECT_THAT(objects, HasSubstr("/Rect[5 10 15 20]"));
    EXPECT_THAT(objects, HasSubstr("/XYZ 5 50 0]"));    // the link's
    EXPECT_THAT(objects, HasSubstr("/XYZ 10 60 0]"));   // the outline's
    EXPECT_THAT(objects, HasSubstr("/XYZ null 95 2]")); // the catalog's
    EXPECT_THAT(run("pdftotext", "-"), HasSubstr("Word"));
}

TEST_F(PDFPageEditsTest, SizeCountsAfterScaling) {
    PDFPageEdits edits = sized(60, 110);
    edits.scale = 0.5;
    apply(edits);
    EXPECT_THAT(run("pdfinfo"), HasSubstr("60 x 110 pts"));
    // The top edge, 200 before, is at 110 now.
    EXPECT_THAT(run("mutool show -g", "grep"), HasSubstr("/Rect[5 92.5 30 105]"));
    EXPECT_THAT(run("pdfinfo -dests"), HasSubstr("[ FitH 85 ] \"old\""));
}

TEST_F(PDFPageEditsTest, MapsEachLinkOnce) {
    PDFPageEdits edits;
    std::vector<std::string> asked;
    edits.mapLink = [&asked](const std::string& address) {
        asked.push_back(address);
        return address + "#(mapped";
    };
    apply(edits);
    EXPECT_THAT(asked, testing::ElementsAre("http://host.example/a%20b", "http://shared.example/",
                                            "http://shared.example/"));
    const std::string links = run("pdfinfo -url");
    EXPECT_THAT(links, HasSubstr("http://host.example/a%20b#(mapped\n"));
    EXPECT_THAT(links, HasSubstr("http://shared.example/#(mapped\n"));
    EXPECT_THAT(run("mutool show -g", "grep"), HasSubstr("/Rect[10 165 60 190]"));
}

TEST_F(PDFPageEditsTest, AnEmptyAddressRemovesThatLink) {
    PDFPageEdits edits;
    edits.mapLink = [](const std::string& address) {
        return address == "http://shared.example/" ? std::string() : address;
    };
    apply(edits);
    EXPECT_THAT(run("pdfinfo -url"), HasSubstr("http://host.example/a%20b\n"));
    const std::string objects = run("mutool show -g", "grep");
    EXPECT_THAT(objects, Not(HasSubstr("shared.example")));
    EXPECT_THAT(objects, HasSubstr("/GoTo"));
}

TEST_F(PDFPageEditsTest, NoEditsKeepThePages) {
    apply({});
    EXPECT_EQ(difference(draw("in.pdf", 72, false), draw("out.pdf", 72, false), 200), 0);
    EXPECT_THAT(run("pdfinfo"), HasSubstr("Pages: 2"));
    EXPECT_THAT(run("pdfinfo"), Not(HasSubstr("Error")));
}

TEST_F(PDFPageEditsTest, SetsTheDatesAndNothingElseOfTheInformation) {
    const std::string pdf =
        makePDF({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                 "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200]>>",
                 "<</Producer (p) /CreationDate (D:20200101000000Z)>>"},
                "/Info 4 0 R");
    PDFPageEdits edits;
    edits.date = NSDate::dateWithTimeIntervalSinceReferenceDate(1709210096 - NSTimeIntervalSince1970);
    apply(edits, pdf);
    EXPECT_EQ(run("mutool show", "trailer/Info/Producer trailer/Info/CreationDate trailer/Info/ModDate"),
              "(p)\n(D:20240229123456Z)\n(D:20240229123456Z)\n");
    apply({}, pdf);
    EXPECT_EQ(run("mutool show", "trailer/Info/CreationDate trailer/Info/ModDate"),
              "(D:20200101000000Z)\nnull\n");
    apply(edits); // which has no information
}

TEST_F(PDFPageEditsTest, EmptyContentsStayReadable) {
    const std::string pdf =
        makePDF({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                 "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /Contents 4 0 R>>", makeStream("")});
    apply({}, pdf);
    EXPECT_THAT(run("mutool draw -q -o /dev/null -F txt"), Not(HasSubstr("flate")));
    apply({}, folder_.read("out.pdf"));
    EXPECT_THAT(run("mutool draw -q -o /dev/null -F txt"), Not(HasSubstr("flate")));
}

TEST_F(PDFPageEditsTest, RefusesWhatIsNoPDF) {
    EXPECT_TRUE(pdfByApplying(sized(1, 1), NSData()).isNil());
    EXPECT_TRUE(pdfByApplying(sized(1, 1), NSData::data()).isNil());
    EXPECT_TRUE(pdfByApplying(sized(1, 1), NSData("<html></html>")).isNil());
    const std::string whole = richPDF();
    EXPECT_TRUE(pdfByApplying(sized(1, 1), NSData(whole.substr(0, whole.size() / 2))).isNil());
    const std::vector<std::string> boundless = {"<</Type /Catalog /Pages 2 0 R>>",
                                                "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                                                "<</Type /Page /Parent 2 0 R /Resources <<>>>>"};
    EXPECT_TRUE(pdfByApplying(sized(1, 1), NSData(makePDF(boundless))).isNil());
}

TEST_F(PDFPageEditsTest, RefusesAbsurdNumbers) {
    const NSData pdf(richPDF());
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double value : {0.0, -1.0, 1e9, infinity, -infinity, std::nan("")}) {
        EXPECT_TRUE(pdfByApplying(sized(value, 100), pdf).isNil()) << value;
        EXPECT_TRUE(pdfByApplying(sized(100, value), pdf).isNil()) << value;
        EXPECT_TRUE(pdfByApplying(scaled(value), pdf).isNil()) << value;
    }
    EXPECT_TRUE(pdfByApplying(scaled(1e7), pdf).isNil());
    EXPECT_TRUE(pdfByApplying(sized(612, 200000), pdf));
}

TEST_F(PDFPageEditsTest, AcceptsOddAnnotationsAndResources) {
    const auto page = [](const std::string& entries) {
        return makePDF({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                        "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] " + entries + ">>"});
    };
    for (const char* entries :
         {"/Annots 7", "/Annots [null 7 (a) []]", "/Annots [<<>>]", "/Annots [<</Rect [/a (b) 3]>>]",
          "/Annots [<</Rect 5 /A (x)>>]", "/Annots [<</A <</URI 5>>>>]", "/Resources 5", "/Resources []",
          "/Resources <</Pattern 5>>", "/Resources <</Pattern <</P 5 /Q <<>> /R null>>>>", "/Contents []",
          "/Annots [[3 0 R /XYZ] [3 0 R /XYZ (a)] [3 0 R /FitR 1 2] [3 0 R 5 6]]"}) {
        PDFPageEdits edits = sized(50, 60);
        edits.scale = 3;
        edits.mapLink = [](const std::string& address) { return address; };
        apply(edits, page(entries));
        EXPECT_THAT(run("mutool show", "pages/1/MediaBox"), HasSubstr("[ 0 0 50 60 ]")) << entries;
    }
}

TEST_F(PDFPageEditsTest, AConfinedChildEditsAlike) {
    const NSData pdf(richPDF());
    const NSData edited = pdfByApplying(sized(50, 60), pdf);
    ASSERT_TRUE(edited);
    EXPECT_EQ(confinedPDFByApplying(sized(50, 60), pdf), edited);
}

TEST_F(PDFPageEditsTest, EditsThatCrashGiveNothingAndTheLogSaysSo) {
    PDFPageEdits edits;
    edits.mapLink = [](const std::string&) -> std::string { __builtin_trap(); };
    testing::internal::CaptureStderr();
    EXPECT_TRUE(confinedPDFByApplying(edits, NSData(richPDF())).isNil());
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("editing the engine's PDF was ended by signal 4 (Illegal instruction)\n"));
}

TEST_F(PDFPageEditsTest, ServesTheEnginesPages) {
    const NSString html = folder_.write(
        "page.html",
        "<!doctype html><style>@page{size:400pt 500pt;margin:0}div{width:300px;height:120px}</style>"
        "<h1>Heading</h1><a href='http://host.example/x'>away</a> <a href='#end'>down</a>"
        "<div style='background:linear-gradient(90deg,red,blue)'></div>"
        "<div style='background:repeating-linear-gradient(45deg,green 0 10px,yellow 10px 20px);"
        "opacity:.6'></div><div style='height:700px'></div><p id=end>End</p>");
    const std::string printed = (folder_.path() / "engine.pdf").string();
    outputOf("timeout 60 chromium-headless-shell --no-sandbox --disable-gpu --disable-breakpad "
             "--no-pdf-header-footer '--print-to-pdf=" +
             printed + "' 'file://" + html.utf8() + "'");
    PDFPageEdits edits = sized(200, 250);
    edits.scale = 0.5;
    edits.mapLink = [](const std::string& address) { return address + "mapped"; };
    apply(edits, folder_.read("engine.pdf"));
    EXPECT_THAT(run("pdfinfo"), HasSubstr("Page size: 200 x 250 pts"));
    EXPECT_THAT(run("pdfinfo"), HasSubstr("Tagged: yes"));
    EXPECT_THAT(run("pdfinfo -url"), HasSubstr("http://host.example/xmapped"));
    EXPECT_THAT(run("pdftotext", "-"), HasSubstr("Heading"));
    for (const bool second : {false, true}) {
        const DrawnPage original = draw("in.pdf", 72, second);
        const DrawnPage result = draw("out.pdf", 144, second);
        EXPECT_EQ(result.width, 400);
        EXPECT_LT(difference(original, result, 499), 0.02) << second;
    }
}

} // namespace qrv::engine
