#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Tests/Platform/Engine/PDF/DrawnPage.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <vector>

namespace qrv::engine {
namespace {

/// How many pages with these contents are left; each is 100 x 200 points with margins of 10.
int pagesLeft(const std::vector<std::string>& contents) {
    std::vector<std::string> objects = {
        "<</Type /Catalog /Pages 2 0 R>>",
        "",
        makeStream("", "/Type /XObject /Subtype /Image"),
        makeStream("0 0 2 2 re f", "/Type /XObject /Subtype /Form /BBox [0 0 1 1]"),
        makeStream("/Self Do", "/Type /XObject /Subtype /Form /BBox [0 0 100 200] "
                               "/Resources <</XObject <</Self 5 0 R>>>>"),
        makeStream("", "/Type /XObject /Subtype /Form /BBox [0 0 1 1]")};
    std::string kids;
    for (const std::string& text : contents) {
        const std::size_t number = objects.size() + 1;
        kids += std::to_string(number) + " 0 R ";
        objects.push_back(
            "<</Type /Page /Parent 2 0 R /Contents " + std::to_string(number + 1) +
            " 0 R /Resources <</XObject <</Image 3 0 R /Form 4 0 R /Loop 5 0 R /None 6 0 R /Own " +
            std::to_string(number + 2) + " 0 R>>>>>>");
        objects.push_back(makeStream(text));
        objects.push_back(makeStream(std::to_string(number), "/Type /XObject /Subtype /Image"));
    }
    objects[1] = "<</Type /Pages /MediaBox [0 0 100 200] /Kids [" + kids + "] /Count " +
                 std::to_string(contents.size()) + ">>";
    PDFPageEdits edits;
    edits.removesEmptySheetsAtEnd = true;
    edits.destinations.margin = 10;
    const TemporaryFolder folder;
    folder.write("out.pdf", pdfByApplying(edits, NSData(makePDF(objects))).bytes());
    return std::stoi("0" + outputOf("qpdf --show-npages '" + folder.pathOf("out.pdf").utf8() + "'"));
}

TEST(PDFEmptySheets, PagesWithNothingButBackgroundAreRemovedFromTheEnd) {
    for (const std::string empty :
         {"", "q 1 0 0 1 5 5 cm Q", "1 0 0 rg 10 10 80 180 re f", "0 0 100 200 re f*",
          "q .5 0 0 -.5 0 200 cm 0 0 200 400 re f Q", "/Pattern cs /P scn 0 0 100 200 re f",
          "10 10 5 5 re W n 0 0 100 200 re f", "100 200 -100 -200 re f", "q 100 0 0 200 0 0 cm /Image Do Q",
          "1 0 0 rg 0 0 100 200 re f 0 1 0 rg 0 0 100 200 re f", "0 0 m 5 5 l n",
          "q 100 0 0 200 0 0 cm /Form Do Q", "/None Do", "/Missing Do", "Do", "Q Q 0 0 100 200 re f"}) {
        EXPECT_EQ(pagesLeft({"(a) Tj", empty}), 1) << empty;
        EXPECT_EQ(pagesLeft({"(a) Tj", empty, empty, empty}), 1) << empty;
    }
}

TEST(PDFEmptySheets, PagesThatShowSomethingStay) {
    for (const std::string shown : {"BT (a) Tj ET",
                                    "BT [(a)] TJ ET",
                                    "BT (a) ' ET",
                                    "BT 1 1 (a) \" ET",
                                    "10 10 80 170 re f",
                                    "10 10 70 180 re f",
                                    "15 10 80 180 re f",
                                    "0 0 m 100 200 l S",
                                    "0 0 100 200 re S",
                                    "0 0 100 200 re B",
                                    "0 0 m 100 0 l 100 200 l f",
                                    "0 0 100 200 re 5 5 m 9 9 l 9 5 l f",
                                    "/Shade sh",
                                    "q 50 0 0 50 0 0 cm /Image Do Q",
                                    "q 100 0 0 200 0 0 cm /Own Do Q",
                                    "q 50 0 0 100 0 0 cm /Form Do Q",
                                    "/Loop Do",
                                    "f",
                                    "1 2 re f",
                                    "q .5 0 0 .5 0 0 cm 0 0 100 200 re f Q",
                                    "q 2 0 0 2 0 0 cm Q 0 0 50 100 re f"}) {
        EXPECT_EQ(pagesLeft({"", shown}), 2) << shown;
        EXPECT_EQ(pagesLeft({"", "", shown, ""}), 3) << shown;
    }
}

TEST(PDFEmptySheets, TheFirstPageStays) {
    EXPECT_EQ(pagesLeft({""}), 1);
    EXPECT_EQ(pagesLeft({"", "", ""}), 1);
}

} // namespace
} // namespace qrv::engine
