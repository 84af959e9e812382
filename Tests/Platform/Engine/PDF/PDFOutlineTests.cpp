#include "Platform/Engine/PDF/PDFOutline.h"

#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// The heading that a title is found to be made of, marked when it was drawn twice; "-" for none.
std::string found(HeadingFinder& finder, const std::string& title) {
    const auto heading = finder.find(title);
    return heading ? (heading->wasDrawnTwice ? "2 x " : "") + heading->heading : "-";
}

TEST(HeadingFinderTest, SpacesThatBreaksTookComeBack) {
    HeadingFinder finder({"A long heading\nthat is broken", "Same", "Ends in blanks \t", "Two\u00A0 blanks"});
    EXPECT_EQ(found(finder, "A longheadingthat isbroken"), "A long heading that is broken");
    EXPECT_EQ(found(finder, "Same"), "Same");
    EXPECT_EQ(found(finder, "Ends in blanks"), "Ends in blanks");
    EXPECT_EQ(found(finder, "Two blanks"), "Two blanks");
}

TEST(HeadingFinderTest, HyphensThatBreaksAddedDoNotMatter) {
    HeadingFinder finder({"Co\u00ADoperation", "Well-known"});
    EXPECT_EQ(found(finder, "Co\u00AD\u2010operation"), "Co\u00ADoperation");
    EXPECT_EQ(found(finder, "Well-known"), "Well-known");
}

TEST(HeadingFinderTest, HeadingsThatWereNotDrawnArePassedOver) {
    HeadingFinder finder({"Hidden", "One", "Hidden, too", "Two"});
    EXPECT_EQ(found(finder, "One"), "One");
    EXPECT_EQ(found(finder, "Two"), "Two");
}

TEST(HeadingFinderTest, TitlesOfNoHeadingDoNotUseAnyUp) {
    HeadingFinder finder({"One", "Two"});
    EXPECT_EQ(found(finder, "In a shadow tree"), "-");
    EXPECT_EQ(found(finder, "One"), "One");
    EXPECT_EQ(found(finder, "One"), "-");
    EXPECT_EQ(found(finder, "Two"), "Two");
    EXPECT_EQ(found(finder, "Two"), "-");
}

TEST(HeadingFinderTest, HeadingsDrawnOnTwoPages) {
    HeadingFinder finder({"Back up", "linked heading", "first line second", "漢字"});
    EXPECT_EQ(found(finder, "Back upBack up"), "2 x Back up");
    EXPECT_EQ(found(finder, "linkedlinked heading heading"), "2 x linked heading");
    EXPECT_EQ(found(finder, "first linefirst line second"), "2 x first line second");
    EXPECT_EQ(found(finder, "漢字漢字"), "2 x 漢字");
}

TEST(HeadingFinderTest, LongerTitlesThatAreOthersAreNotTakenForRepeated) {
    HeadingFinder finder({"One", "", "Car"});
    EXPECT_EQ(found(finder, "One and only one"), "-");
    EXPECT_EQ(found(finder, ""), "");
    EXPECT_EQ(found(finder, "Carpets"), "-");
}

TEST(HeadingFinderTest, LooksOnlySoFarAhead) {
    std::vector<std::string> headings(1000, "Hidden");
    headings.emplace_back("Far");
    HeadingFinder finder(headings);
    EXPECT_EQ(found(finder, "Far"), "-");
    EXPECT_EQ(found(finder, "Hidden"), "Hidden");
    EXPECT_EQ(found(finder, "Far"), "Far");
}

/// Two pages of 200 points and this outline, whose objects are numbered from 5.
std::string outlinedPDF(const std::vector<std::string>& outline) {
    std::vector<std::string> objects = {"<</Type /Catalog /Pages 2 0 R /Outlines 5 0 R>>",
                                        "<</Type /Pages /Kids [3 0 R 4 0 R] /Count 2>>",
                                        "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200]>>",
                                        "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200]>>"};
    objects.insert(objects.end(), outline.begin(), outline.end());
    return makePDF(objects);
}

std::string outlineOf(const std::string& pdf, std::vector<std::string> headings, double scale = 1) {
    PDFPageEdits edits;
    edits.headings = std::move(headings);
    edits.scale = scale;
    const TemporaryFolder folder;
    folder.write("out.pdf", pdfByApplying(edits, NSData(pdf)).bytes());
    return outputOf("mutool show '" + (folder.path() / "out.pdf").string() + "' outline");
}

TEST(PDFOutlineTest, EntriesGetTheHeadingsInTheOutlinesOrder) {
    const std::string outline =
        outlineOf(outlinedPDF({"<</Type /Outlines /First 6 0 R /Last 8 0 R /Count 3>>",
                               "<</Title (OneA) /Parent 5 0 R /First 7 0 R /Last 7 0 R /Count 1 /Next 8 0 R "
                               "/Dest [3 0 R /XYZ 1 150 0]>>",
                               "<</Title (TwoB) /Parent 6 0 R /Dest [3 0 R /XYZ 1 100 0]>>",
                               "<</Title (Other) /Parent 5 0 R /Prev 6 0 R /Dest [4 0 R /XYZ 1 50 0]>>"}),
                  {"One A", "Two B", "Three"});
    EXPECT_THAT(outline, HasSubstr("\t\"One A\"\t#page=1&zoom=100,1,50"));
    EXPECT_THAT(outline, HasSubstr("\t\t\"Two B\"\t#page=1&zoom=100,1,100"));
    EXPECT_THAT(outline, HasSubstr("\t\"Other\"\t#page=2&zoom=100,1,150"));
}

TEST(PDFOutlineTest, HeadingsDrawnTwiceAreAtTheStartOfTheSecondPage) {
    const auto doubled = [](const std::string& destination) {
        return outlinedPDF({"<</Type /Outlines /First 6 0 R /Last 6 0 R /Count 1>>",
                            "<</Title (TopTop) /Parent 5 0 R /Dest [" + destination + "]>>"});
    };
    EXPECT_THAT(outlineOf(doubled("3 0 R /XYZ 1 2 0"), {"Top"}), HasSubstr("\"Top\"\t#page=2&zoom=100,1,0"));
    EXPECT_THAT(outlineOf(doubled("3 0 R /XYZ 1 2 0"), {"Top"}, 2), HasSubstr("#page=2&zoom=100,2,0"));
    EXPECT_THAT(outlineOf(doubled("4 0 R /XYZ 1 190 0"), {"Top"}), HasSubstr("#page=2&zoom=100,1,10"));
    EXPECT_THAT(outlineOf(doubled("4 0 R /XYZ 1 2 0"), {"Top"}), HasSubstr("#page=2&zoom=100,1,198"));
    EXPECT_THAT(outlineOf(doubled("3 0 R /Fit"), {"Top"}), HasSubstr("\"Top\""));
}

TEST(PDFOutlineTest, AcceptsOddOutlines) {
    for (const char* entry :
         {"<</Title 5 /Next 6 0 R>>", "<</Title (OneA) /First 5 0 R /Dest (x)>>", "null", "[]",
          "<</Title (OneOne) /Dest [3 0 R /XYZ]>>", "<</Title (OneOne) /Dest [9 /XYZ 1 2]>>"}) {
        const std::string pdf = outlinedPDF({"<</Type /Outlines /First 6 0 R /Last 6 0 R /Count 1>>", entry});
        PDFPageEdits edits;
        edits.headings = {"One"};
        EXPECT_TRUE(pdfByApplying(edits, NSData(pdf))) << entry;
    }
}

} // namespace
} // namespace qrv::engine
