#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;

/// Two pages, of which the second has a link and is what `place` leads to; an outline of one entry below
/// another; and a structure of one paragraph on each page and one for the link.
std::string part(const std::string& name, const std::string& place, int width) {
    const std::string page =
        "<</Type /Page /Parent 2 0 R /MediaBox [0 0 " + std::to_string(width) + " 100] /StructParents ";
    const auto paragraph = [](const char* parentPage, const char* number) {
        return std::string("<</S /P /P 9 0 R /Pg ") + parentPage + " /K " + number + ">>";
    };
    return makePDF(
        {"<</Type /Catalog /Pages 2 0 R /Dests 5 0 R /Outlines 6 0 R /StructTreeRoot 8 0 R>>",
         "<</Type /Pages /Kids [3 0 R 4 0 R] /Count 2>>", page + "0>>", page + "1 /Annots [14 0 R]>>",
         "<</" + place + " [4 0 R /XYZ 0 50 0] /shared [3 0 R /XYZ 0 " + std::to_string(width) + " 0]>>",
         "<</First 7 0 R /Last 7 0 R /Count 2>>",
         "<</Title (" + name + ") /Parent 6 0 R /First 13 0 R /Last 13 0 R /Count 1 /Dest [3 0 R /Fit]>>",
         "<</Type /StructTreeRoot /K 9 0 R /ParentTree <</Nums [0 [10 0 R] 1 [11 0 R] 2 12 0 R]>> "
         "/ParentTreeNextKey 3>>",
         "<</S /Document /P 8 0 R /K [10 0 R 11 0 R 12 0 R]>>", paragraph("3 0 R", "0"),
         paragraph("4 0 R", "1"), paragraph("4 0 R", "2"),
         "<</Title (below " + name + ") /Parent 7 0 R /Dest [4 0 R /Fit]>>",
         "<</Type /Annot /Subtype /Link /Rect [0 0 9 9] /Dest /" + place + " /StructParent 2>>"});
}

class PDFPartsTest : public ::testing::Test {
protected:
    void apply(const PDFPageEdits& edits) {
        folder_.write("out.pdf", pdfByApplying(edits, NSData(part("one", "first", 100))).bytes());
    }

    /// The values at these paths of the edited document; elements of arrays count from 1.
    std::string values(const std::string& paths) const {
        return outputOf("mutool show '" + (folder_.path() / "out.pdf").string() + "' " + paths);
    }

    PDFPageEdits threeParts() const {
        PDFPageEdits edits;
        edits.furtherParts = {{NSData(part("two", "second", 200)), {}},
                              {NSData(part("three", "third", 300)), {{"late", 20}}}};
        return edits;
    }

    TemporaryFolder folder_;
};

TEST_F(PDFPartsTest, PagesFollowEachOther) {
    apply(threeParts());
    std::string widths;
    for (int page = 1; page <= 6; ++page)
        widths += values("pages/" + std::to_string(page) + "/MediaBox/3") + " ";
    EXPECT_EQ(widths, "100\n 100\n 200\n 200\n 300\n 300\n ");
    EXPECT_EQ(values("trailer/Root/Pages/Count"), "6\n");
}

TEST_F(PDFPartsTest, LinksLeadIntoOtherParts) {
    apply(threeParts());
    EXPECT_EQ(values("trailer/Root/Dests/first/1/MediaBox/3"), "100\n");
    EXPECT_EQ(values("trailer/Root/Dests/second/1/MediaBox/3"), "200\n");
    EXPECT_EQ(values("trailer/Root/Dests/third/1/MediaBox/3"), "300\n");
    EXPECT_EQ(values("trailer/Root/Dests/third/1/StructParents"), "7\n");
    EXPECT_EQ(values("trailer/Root/Dests/shared/4"), "100\n");
    EXPECT_EQ(values("pages/4/Annots/1/Dest"), "/second\n");
}

TEST_F(PDFPartsTest, OutlinesFollowEachOther) {
    apply(threeParts());
    const std::string outlines = "trailer/Root/Outlines";
    EXPECT_EQ(values(outlines + "/Count"), "6\n");
    EXPECT_EQ(values(outlines + "/First/Title"), "(one)\n");
    EXPECT_EQ(values(outlines + "/First/Next/Title"), "(two)\n");
    EXPECT_EQ(values(outlines + "/First/Next/First/Title"), "(below two)\n");
    EXPECT_EQ(values(outlines + "/First/Next/Next/Title"), "(three)\n");
    EXPECT_EQ(values(outlines + "/First/Next/Next/Next"), "null\n");
    EXPECT_EQ(values(outlines + "/Last/Prev/Prev/Title"), "(one)\n");
    EXPECT_EQ(values(outlines + "/Last/Parent/Count"), "6\n");
    EXPECT_EQ(values(outlines + "/Last/Dest/1/MediaBox/3"), "300\n");
}

TEST_F(PDFPartsTest, StructuresBecomeOne) {
    apply(threeParts());
    const std::string tree = "trailer/Root/StructTreeRoot";
    EXPECT_EQ(values(tree + "/K/S"), "/Document\n");
    EXPECT_EQ(values(tree + "/ParentTreeNextKey"), "9\n");
    for (const int page : {0, 1, 2, 3, 4, 5}) {
        const std::string number = std::to_string(page);
        const std::string key = values("pages/" + std::to_string(page + 1) + "/StructParents");
        EXPECT_EQ(key, std::to_string(page / 2 * 3 + page % 2) + "\n");
        // The elements of the page, and where they are in the document.
        const std::string entry = tree + "/ParentTree/Nums/" + std::to_string(2 * std::stoi(key) + 2) + "/1";
        EXPECT_EQ(values(entry + "/K"), std::to_string(page % 2) + "\n");
        EXPECT_EQ(values(entry + "/Pg/StructParents"), key);
        EXPECT_EQ(values(entry + "/P/S"), "/Document\n");
        EXPECT_EQ(values(entry + "/P/P/ParentTreeNextKey"), "9\n");
        const std::string child = std::to_string(page / 2 * 3 + page % 2 + 1);
        EXPECT_EQ(values(tree + "/K/K/" + child + "/Pg/StructParents"), key);
    }
    EXPECT_EQ(values("pages/6/Annots/1/StructParent"), "8\n");
    EXPECT_EQ(values(tree + "/K/K/10"), "null\n");
}

TEST_F(PDFPartsTest, WhatOnePartLacksTheOthersKeep) {
    PDFPageEdits edits;
    const std::string plain =
        makePDF({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                 "<</Type /Page /Parent 2 0 R /MediaBox [0 0 200 100]>>"});
    edits.furtherParts = {{NSData(plain), {}}, {NSData(part("three", "third", 300)), {}}};
    apply(edits);
    EXPECT_EQ(values("pages/3/MediaBox/3"), "200\n");
    EXPECT_EQ(values("trailer/Root/Outlines/First/Next/Title"), "(three)\n");
    EXPECT_EQ(values("trailer/Root/StructTreeRoot/K/K/6/Pg/MediaBox/3"), "300\n");
}

TEST_F(PDFPartsTest, TheFirstOutlineMayComeLater) {
    PDFPageEdits edits;
    edits.furtherParts = {{NSData(part("two", "second", 200)), {}}};
    const std::string plain =
        makePDF({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                 "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 100]>>"});
    folder_.write("out.pdf", pdfByApplying(edits, NSData(plain)).bytes());
    EXPECT_EQ(values("trailer/Root/Outlines/First/Title"), "(two)\n");
    EXPECT_EQ(values("trailer/Root/Outlines/First/Dest/1/MediaBox/3"), "200\n");
}

TEST_F(PDFPartsTest, DestinationsCountFromTheStartOfTheirPart) {
    PDFPageEdits edits = threeParts();
    edits.destinations.firstPageLength = 0;
    edits.destinations.pageLength = 100 / 0.75;
    edits.destinations.unit = 0.75;
    edits.destinations.missing = {{"early", 10}};
    apply(edits);
    EXPECT_EQ(values("trailer/Root/Dests/third/1/StructParents"), "7\n");
    EXPECT_EQ(values("trailer/Root/Dests/third/4"), "50\n");
    EXPECT_EQ(values("trailer/Root/Dests/early/1/StructParents"), "0\n");
    EXPECT_EQ(values("trailer/Root/Dests/late/1/StructParents"), "6\n");
    EXPECT_EQ(values("trailer/Root/Dests/late/4"), "85\n");
}

TEST_F(PDFPartsTest, EachPartLosesItsEmptySheets) {
    PDFPageEdits edits = threeParts();
    edits.removesEmptySheetsAtEnd = true;
    apply(edits);
    EXPECT_EQ(values("pages/2/MediaBox/3"), "200\n");
}

TEST_F(PDFPartsTest, ABrokenPartIsNotLeftOut) {
    const std::string whole = part("two", "second", 200);
    for (const std::string& bytes : {std::string(), std::string("text"), whole.substr(0, whole.size() / 2)}) {
        PDFPageEdits edits;
        edits.furtherParts = {{NSData(bytes), {}}};
        EXPECT_TRUE(pdfByApplying(edits, NSData(part("one", "first", 100))).isNil());
    }
}

} // namespace
} // namespace qrv::engine
