#include "Platform/Engine/PDF/PDFPageEdits.h"
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

} // namespace
} // namespace qrv::engine
