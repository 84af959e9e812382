#include "Platform/Engine/PDF/PDFFrames.h"

#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

PDFFrame::Content heading(const char* text, int level, std::optional<PDFFrame::Place> place = std::nullopt) {
    return PDFFrame::Heading{{text, level}, place};
}

/// A frame whose view is 100 px wide.
PDFFrame frameAt(const char* path, std::vector<PDFFrame::Content> contents = {}) {
    PDFFrame frame;
    frame.path = path;
    frame.width = 100;
    frame.contents = std::move(contents);
    return frame;
}

/// A link to a frame's marker.
std::string marker(const std::string& path, const std::string& area) {
    return "<</Type /Annot /Subtype /Link /Rect [" + area + "] /A <</S /URI /URI (" + frameMarker + path +
           ")>>>>";
}

/// Two pages of 200 points with these annotations, and an outline of "One" and, below it, "Two".
std::string framedPDF(const std::string& onFirst, const std::string& onSecond = "") {
    const auto page = [](const std::string& annotations) {
        return "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /Annots [" + annotations + "]>>";
    };
    return makePDF(
        {"<</Type /Catalog /Pages 2 0 R /Outlines 5 0 R>>", "<</Type /Pages /Kids [3 0 R 4 0 R] /Count 2>>",
         page(onFirst), page(onSecond), "<</Type /Outlines /First 6 0 R /Last 6 0 R /Count 2>>",
         "<</Title (One) /Parent 5 0 R /First 7 0 R /Last 7 0 R /Count 1 /Dest [3 0 R /XYZ 1 150 0]>>",
         "<</Title (Two) /Parent 6 0 R /Dest [4 0 R /XYZ 1 100 0]>>"});
}

class PDFFramesTest : public ::testing::Test {
protected:
    PDFFramesTest() {
        edits_.headings = {"One", "Two"};
        edits_.frames = {frameAt("", {heading("One", 1), std::size_t{0}, heading("Two", 2)}), frameAt("0")};
    }

    /// What mutool shows of the edited document.
    std::string shown(const std::string& pdf, const std::string& what) {
        folder_.write("out.pdf", pdfByApplying(edits_, NSData(pdf)).bytes());
        return outputOf("mutool show '" + (folder_.path() / "out.pdf").string() + "' " + what);
    }

    PDFFrame& frame() { return edits_.frames[1]; }

    TemporaryFolder folder_;
    PDFPageEdits edits_;
};

TEST_F(PDFFramesTest, HeadingsStandWhereTheFrameStands) {
    frame().contents = {heading("In\nframe", 2, PDFFrame::Place{10, 20})};
    EXPECT_EQ(shown(framedPDF(marker("0", "20 100 70 150")), "outline"),
              "-\t\"One\"\t#page=1&zoom=100,1,50\n"
              "|\t\t\"In frame\"\t#page=1&zoom=nan,25,60\n"
              "|\t\t\"Two\"\t#page=2&zoom=100,1,100\n");
}

TEST_F(PDFFramesTest, ADocumentWithoutAnOutlineGetsOne) {
    edits_.frames[0].contents = {std::size_t{0}};
    frame().contents = {heading("A", 3, PDFFrame::Place{}), heading("B", 6, PDFFrame::Place{}),
                        heading("C", 2, PDFFrame::Place{})};
    const std::string pdf =
        makePDF({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                 "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /Annots [" +
                     marker("0", "0 0 100 200") + "]>>"});
    EXPECT_EQ(shown(pdf, "outline"), "-\t\"A\"\t#page=1&zoom=nan,0,0\n|\t\t\"B\"\t#page=1&zoom=nan,0,0\n"
                                     "|\t\"C\"\t#page=1&zoom=nan,0,0\n");
    edits_.hasOutline = false;
    EXPECT_EQ(shown(pdf, "outline"), "");
}

TEST_F(PDFFramesTest, AFrameThatIsCutGoesOnOnTheNextPage) {
    frame().contents = {heading("Low", 1, PDFFrame::Place{0, 130})};
    EXPECT_THAT(shown(framedPDF(marker("0", "0 0 100 90"), marker("0", "0 100 100 200")), "outline"),
                HasSubstr("\"Low\"\t#page=2&zoom=nan,0,40"));
}

TEST_F(PDFFramesTest, WhatTheFramesAroundDoNotShowIsLeftOut) {
    edits_.frames.push_back(frameAt("0.0"));
    frame().contents = {heading("Unseen", 1), heading("Below", 1, PDFFrame::Place{0, 51}), std::size_t{0}};
    edits_.frames[2].contents = {heading("Outside", 1, PDFFrame::Place{0, 50}),
                                 heading("Inside", 1, PDFFrame::Place{0, 5})};
    const std::string outline =
        shown(framedPDF(marker("0", "0 100 100 150") + marker("0.0", "0 60 100 120")), "outline");
    EXPECT_THAT(outline, HasSubstr("\"Inside\"\t#page=1&zoom=nan,0,85"));
    for (const char* text : {"Unseen", "Below", "Outside"}) EXPECT_THAT(outline, Not(HasSubstr(text)));
}

TEST_F(PDFFramesTest, LinksLeadToTheirPlacesInTheirOwnFrame) {
    frame().anchors = {{"a", PDFFrame::Place{0, 10}}, {"unseen", std::nullopt}};
    const auto link = [](const std::string& name, int bottom) {
        return "<</Type /Annot /Subtype /Link /Rect [10 " + std::to_string(bottom) + " 20 " +
               std::to_string(bottom + 10) + "] /Dest /" + name + ">>";
    };
    const std::string annotations = shown(framedPDF(marker("0", "0 100 100 150") + link("a", 120) +
                                                    link("a", 20) + link("unseen", 120) + link("other", 120)),
                                          "pages/1/Annots");
    EXPECT_THAT(annotations, Not(HasSubstr(frameMarker)));
    EXPECT_THAT(annotations, ::testing::ContainsRegex("XYZ 0 140 null(.|\n)*/Dest /a(.|\n)*XYZ 0 150 null"
                                                      "(.|\n)*/Dest /other"));
}

TEST_F(PDFFramesTest, FramesWithoutAPlaceAddNothing) {
    frame().contents = {heading("A", 1, PDFFrame::Place{})};
    EXPECT_THAT(shown(framedPDF(""), "outline"), Not(HasSubstr("\"A\"")));
    frame().width = 0;
    EXPECT_THAT(shown(framedPDF(marker("0", "0 0 9 9") + marker("7", "0 0 9 9")), "outline"),
                Not(HasSubstr("\"A\"")));
}

} // namespace
} // namespace qrv::engine
