#include "Platform/Engine/PDF/PDFElementIDs.h"

#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;

/// A table of two header cells and a cell that has both, as the engine writes it, with these names.
std::string table(const std::string& first, const std::string& second) {
    const std::string names = "(" + first + ") (" + second + ")";
    return makePDF(
        {"<</Type /Catalog\n/Pages 2 0 R\n/StructTreeRoot 4 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
         "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /StructParents 0>>",
         "<</Type /StructTreeRoot\n/K 5 0 R\n/IDTree 9 0 R\n/ParentTreeNextKey 1>>",
         "<</Type /StructElem\n/S /Document\n/P 4 0 R\n/K [6 0 R 7 0 R 8 0 R]>>",
         "<</Type /StructElem\n/S /TH\n/P 5 0 R\n/ID (" + second + ")\n/Alt (" + second + ")>>",
         "<</Type /StructElem\n/S /TH\n/P 5 0 R\n/ID (" + first + ")\n/Alt (a\\) \\(" + first + "\\))>>",
         "<</Type /StructElem\n/S /TD\n/P 5 0 R\n/A [<</O /Table\n/Headers [" + names + "]>>]>>",
         "<</Kids [10 0 R]>>",
         "<</Limits [" + names + "]\n/Names [(" + first + ") 7 0 R (" + second + ") 6 0 R]>>"});
}

/// The values at these paths, a line for each, after the edits.
std::string valuesIn(const std::string& pdf, const std::string& paths, const PDFPageEdits& edits = {}) {
    const TemporaryFolder folder;
    folder.write("out.pdf", pdfByApplying(edits, NSData(pdf)).bytes());
    return outputOf("mutool show '" + (folder.path() / "out.pdf").string() + "' " + paths);
}

constexpr const char* elements = "trailer/Root/StructTreeRoot/K/K/1/ID trailer/Root/StructTreeRoot/K/K/2/ID";
constexpr const char* headers = "trailer/Root/StructTreeRoot/K/K/3/A/1/Headers";
constexpr const char* alternatives =
    "trailer/Root/StructTreeRoot/K/K/1/Alt trailer/Root/StructTreeRoot/K/K/2/Alt";
constexpr const char* names = "trailer/Root/StructTreeRoot/IDTree/Names";

std::string inOneLine(std::string text) {
    std::erase(text, '\n');
    return text;
}

TEST(PDFElementIDs, AreCountedFromOneInTheOrderOfTheElements) {
    const std::string pdf = table("node00000013", "node00000020");
    EXPECT_EQ(valuesIn(pdf, elements), "(node00000001)\n(node00000002)\n");
    EXPECT_THAT(inOneLine(valuesIn(pdf, headers)), HasSubstr("(node00000002) (node00000001)"));
}

TEST(PDFElementIDs, LeadToTheSameElements) {
    const std::string pdf = table("node00000013", "node00000020");
    const std::string first = std::string(names) + "/2/S " + names + "/2/ID " + names + "/1";
    EXPECT_EQ(valuesIn(pdf, first), "/TH\n(node00000001)\n(node00000001)\n");
    EXPECT_EQ(valuesIn(pdf, std::string(names) + "/4/ID " + names + "/3"),
              "(node00000002)\n(node00000002)\n");
}

TEST(PDFElementIDs, AreNotFoundInTextsOfThePage) {
    EXPECT_EQ(valuesIn(table("node00000013", "node00000020"), alternatives),
              "(node00000020)\n(a\\) \\(node00000013\\))\n");
}

TEST(PDFElementIDs, OfAnyOtherFormStay) {
    for (const auto& [first, second] : {std::pair("header-a", "header-b"), std::pair("node1", "node2"),
                                        std::pair("node000000130", "node0000001a")}) {
        const std::string pdf = table(first, second);
        EXPECT_EQ(valuesIn(pdf, elements), "(" + std::string(second) + ")\n(" + first + ")\n");
        EXPECT_EQ(valuesIn(pdf, std::string(names) + "/1"), "(" + std::string(first) + ")\n");
    }
}

TEST(PDFElementIDs, OfPartsAreOneTree) {
    PDFPageEdits edits;
    edits.furtherParts = {{NSData(table("node00000020", "node00000031")), {}}};
    const std::string pdf = table("node00000013", "node00000020");
    const std::string k = "trailer/Root/StructTreeRoot/K/K/";
    // The second part's first name is one of the first part, too: a header that is repeated.
    EXPECT_EQ(valuesIn(pdf, k + "1/ID " + k + "2/ID " + k + "4/ID " + k + "5/ID", edits),
              "(node00000001)\n(node00000002)\n(node00000003)\n(node00000001)\n");
    EXPECT_EQ(
        valuesIn(pdf, std::string(names) + "/1 " + names + "/3 " + names + "/5 " + names + "/6/ID", edits),
        "(node00000001)\n(node00000002)\n(node00000003)\n(node00000003)\n");
    EXPECT_THAT(inOneLine(valuesIn(pdf, k + "6/A/1/Headers", edits)),
                HasSubstr("(node00000001) (node00000003)"));
}

TEST(PDFElementIDs, AreNotMissedWithoutATree) {
    EXPECT_EQ(valuesIn(makeOnePage(), "pages/1/Type"), "/Page\n");
}

} // namespace
} // namespace qrv::engine
