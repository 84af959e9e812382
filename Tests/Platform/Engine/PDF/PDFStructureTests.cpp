#include "Platform/Engine/PDF/PDFStructure.h"

#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Platform/PDFKit/PDFFile.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string structuredPDF(const std::string& catalog, const std::string& tree) {
    return makePDF({"<</Type /Catalog /Pages 2 0 R " + catalog + ">>",
                    "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                    "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200]>>", tree});
}

/// The values at these paths, a line for each, after the edits.
std::string valuesIn(const std::string& pdf, const PDFPageEdits& edits, const std::string& paths) {
    const TemporaryFolder folder;
    folder.write("out.pdf", pdfByApplying(edits, NSData(pdf)).bytes());
    return outputOf("mutool show '" + (folder.path() / "out.pdf").string() + "' " + paths);
}

constexpr const char* languages = "trailer/Root/Lang trailer/Root/StructTreeRoot/K/Lang";

std::string inLanguage(const char* language) {
    return structuredPDF(std::string("/Lang (en-US) /StructTreeRoot 4 0 R"),
                         std::string("<</K <</S /Document ") + language + ">>>>");
}

TEST(PDFStructureTest, TheLanguageIsTheOneGiven) {
    PDFPageEdits edits;
    edits.language = "de-CH";
    EXPECT_EQ(valuesIn(inLanguage("/Lang (en-US)"), edits, languages), "(de-CH)\n(de-CH)\n");
    EXPECT_EQ(valuesIn(inLanguage(""), edits, languages), "(de-CH)\nnull\n");
    EXPECT_EQ(valuesIn(structuredPDF("", "null"), edits, "trailer/Root/Lang"), "(de-CH)\n");
}

TEST(PDFStructureTest, ADocumentWithoutALanguageHasNone) {
    PDFPageEdits edits;
    edits.language = "";
    EXPECT_EQ(valuesIn(inLanguage("/Lang (en-US)"), edits, languages), "null\nnull\n");
}

TEST(PDFStructureTest, TheLanguageStaysUnlessOneIsGiven) {
    EXPECT_EQ(valuesIn(inLanguage("/Lang (fr)"), {}, languages), "(en-US)\n(fr)\n");
}

TEST(PDFStructureTest, KindsOfPDF2AreMapped) {
    const std::string map =
        valuesIn(structuredPDF("/StructTreeRoot 4 0 R", "<<>>"), {}, "trailer/Root/StructTreeRoot/RoleMap");
    for (const char* role : {"/Em /Span", "/Strong /Span", "/Aside /Sect"}) EXPECT_THAT(map, HasSubstr(role));
}

TEST(PDFStructureTest, AMappingThatIsThereStays) {
    const std::string pdf = structuredPDF("/StructTreeRoot 4 0 R", "<</RoleMap <</Mine /P>>>>");
    EXPECT_THAT(valuesIn(pdf, {}, "trailer/Root/StructTreeRoot/RoleMap"), Not(HasSubstr("/Em")));
}

TEST(PDFStructureTest, NothingIsMappedWithoutATree) {
    EXPECT_EQ(valuesIn(structuredPDF("", "null"), {}, "trailer/Root/StructTreeRoot"), "null\n");
    EXPECT_EQ(valuesIn(structuredPDF("/StructTreeRoot 5", "null"), {}, "trailer/Root/StructTreeRoot"), "5\n");
}

/// A tree as the engine writes it: the top, and below it elements, one of which has something in an order of
/// its own.
std::string treeOfElements() {
    return makePDF({"<</Type /Catalog /Pages 2 0 R /StructTreeRoot 4 0 R /Outlines 8 0 R>>",
                    "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                    "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200]>>",
                    "<</Type /StructTreeRoot\n/K 5 0 R>>",
                    "<</Type /StructElem\n/S /Document\n/Lang (en)\n/P 4 0 R\n/K [6 0 R 7 0 R]>>",
                    "<</Type /StructElem\n/S /P\n/P 5 0 R\n/Alt (4 0 R)>>",
                    "<</Type /StructElem\n/S /Link\n/P 5 0 R\n/K <</Type /OBJR\n/Obj 10 0 R>>>>",
                    "<</Type /Outlines /First 9 0 R /Last 9 0 R /Count 1>>",
                    "<</Title (One) /Parent 8 0 R /Dest [3 0 R /XYZ 0 200 0] /SE 6 0 R>>",
                    "<</Type /Annot /Subtype /Link /Rect [0 0 1 1] /P 3 0 R>>"});
}

TEST(PDFStructureTest, ElementsStayAsTheyAre) {
    const std::string tree = treeOfElements();
    const std::string k = "trailer/Root/StructTreeRoot/K/K/";
    const std::string paths = k + "1/S " + k + "1/P/S " + k + "1/Alt " + k + "2/S " + k +
                              "2/K/Obj/Subtype trailer/Root/Outlines/First/SE/S";
    EXPECT_EQ(valuesIn(tree, {}, paths), "/P\n/Document\n(4 0 R)\n/Link\n/Link\n/P\n");
}

TEST(PDFStructureTest, TheTopmostElementGetsTheLanguageAmongOthers) {
    PDFPageEdits edits;
    edits.language = "de";
    EXPECT_EQ(valuesIn(treeOfElements(), edits, languages), "(de)\n(de)\n");
}

TEST(PDFStructureTest, ElementsAreNotRead) {
    const NSData pdf(treeOfElements());
    const auto document = openPDF(pdf);
    const UnreadObjects elements = unreadElements(*document, pdf);
    EXPECT_EQ(elements.text(5), "");
    EXPECT_THAT(std::string(elements.text(6)), HasSubstr("/S /P\n"));
    EXPECT_THAT(std::string(elements.text(7)), HasSubstr("/S /Link\n"));
}

} // namespace
} // namespace qrv::engine
