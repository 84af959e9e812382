#include "Platform/Engine/PDF/PDFDestinations.h"

#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;

constexpr const char* catalog = "<</Type /Catalog /Pages 2 0 R /Dests 5 0 R>>";

/// Two pages of 400 points, and these destinations.
std::string twoPages(const std::string& destinations, const std::string& root = catalog) {
    return makePDF({root, "<</Type /Pages /Kids [3 0 R 4 0 R] /Count 2>>",
                    "<</Type /Page /Parent 2 0 R /MediaBox [0 0 300 400]>>",
                    "<</Type /Page /Parent 2 0 R /MediaBox [0 0 300 400]>>", destinations});
}

std::string placed(const DestinationLayout& layout, const std::string& pdf, double scale = 1) {
    PDFPageEdits edits;
    edits.destinations = layout;
    edits.scale = scale;
    const TemporaryFolder folder;
    folder.write("out.pdf", pdfByApplying(edits, NSData(pdf)).bytes());
    return outputOf("pdfinfo -dests '" + (folder.path() / "out.pdf").string() + "'");
}

/// A margin of 20 points, half a point a px: 720 px on a page; and 500 px on the page that is not there.
DestinationLayout halved() {
    return {500, 720, 0.5, 20, {}};
}

// 400 pt less 100 px, at 0.75 pt a px, is 325.
TEST(PDFDestinationsTest, PlacesAreCountedInTheDocument) {
    const std::string pdf = twoPages("<</near [3 0 R /XYZ 75 325 0] /far [3 0 R /XYZ 75 100 0]>>");
    const std::string places = placed(halved(), pdf);
    // 500 + 100 px: half as many points below the margin.
    EXPECT_THAT(places, HasSubstr("1 [ XYZ   70   80 null      ] \"near\""));
    // 500 + 400 px: 180 px into the second page.
    EXPECT_THAT(places, HasSubstr("2 [ XYZ   70  290 null      ] \"far\""));
}

TEST(PDFDestinationsTest, ThePageOfAPlaceCounts) {
    const std::string pdf = twoPages("<</start [4 0 R /XYZ 0 565 0] /end [4 0 R /XYZ 0 -1000 0]>>");
    const std::string places = placed(halved(), pdf);
    // 500 + 720 - 220 px, and beyond the end of the last page.
    EXPECT_THAT(places, HasSubstr("2 [ XYZ   20  240 null      ] \"start\""));
    EXPECT_THAT(places, HasSubstr("2 [ XYZ   20 -803 null      ] \"end\""));
}

TEST(PDFDestinationsTest, MissingPlacesAreAdded) {
    DestinationLayout layout = halved();
    layout.missing = {{"", 0}, {"n%C3%A4me", 300}, {"next", 719.8}, {"known", 10}};
    const std::string places = placed(layout, twoPages("<</known [3 0 R /XYZ 0 400 0]>>"));
    EXPECT_THAT(places, HasSubstr("1 [ XYZ   20  380 null      ] \"\""));
    EXPECT_THAT(places, HasSubstr("1 [ XYZ   20  230 null      ] \"n%C3%A4me\""));
    EXPECT_THAT(places, HasSubstr("2 [ XYZ   20  380 null      ] \"next\""));
    EXPECT_THAT(places, HasSubstr("1 [ XYZ   20  130 null      ] \"known\""));
}

TEST(PDFDestinationsTest, MissingPlacesNeedNoOthers) {
    DestinationLayout layout = halved();
    layout.missing = {{"top", 0}};
    EXPECT_THAT(placed(layout, twoPages("null", "<</Type /Catalog /Pages 2 0 R>>")), HasSubstr("\"top\""));
}

TEST(PDFDestinationsTest, PlacesAreScaledWithTheirPages) {
    const std::string pdf = twoPages("<</near [3 0 R /XYZ 75 325 0]>>");
    EXPECT_THAT(placed(halved(), pdf, 0.5), HasSubstr("1 [ XYZ   35   40 null      ] \"near\""));
}

TEST(PDFDestinationsTest, WithoutALayoutPlacesStay) {
    const std::string pdf = twoPages("<</near [3 0 R /XYZ 75 325 0]>>");
    EXPECT_THAT(placed({}, pdf), HasSubstr("1 [ XYZ   75  325 null      ] \"near\""));
}

TEST(PDFDestinationsTest, AcceptsOddDestinations) {
    for (const char* destinations :
         {"5", "<</a 5 /b []>>", "<</a [3 0 R /Fit]>>", "<</a [3 0 R /XYZ null null null]>>",
          "<</a [9 0 R /XYZ 1 2 3]>>", "<</a [3 0 R /XYZ (x) 2 3]>>", "<</a <</D [3 0 R /XYZ 1 2 3]>>>>"}) {
        PDFPageEdits edits;
        edits.destinations = halved();
        EXPECT_TRUE(pdfByApplying(edits, NSData(twoPages(destinations)))) << destinations;
    }
}

} // namespace
} // namespace qrv::engine
