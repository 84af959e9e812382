#include "Platform/Engine/PDF/PDFGlyphTexts.h"

#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;

std::string chars(const std::string& line) {
    return "begincmap\n1 beginbfchar\n" + line + "\nendbfchar\nendcmap\n";
}

std::string ranges(const std::string& line) {
    return "begincmap\n1 beginbfrange\n" + line + "\nendbfrange\nendcmap\n";
}

TEST(PDFGlyphTextsTest, UnusualCharactersBecomeUsualOnes) {
    const struct {
        const char *name, *before, *after;
    } cases[] = {
        {"radical", "<0012> <2F42>", "<0012> <6587>"},
        {"glyph of one byte", "<91> <2F08>", "<91> <4EBA>"},
        {"end of an Arabic word", "<0001> <FEF2>", "<0001> <064A>"},
        {"Arabic ligature", "<0001> <FEFB>", "<0001> <06440627>"},
        {"Latin ligature", "<0001> <FB01>", "<0001> <00660069>"},
        {"vertical sign", "<0001> <FE11>", "<0001> <3001>"},
        {"compatibility ideograph", "<0001> <F900>", "<0001> <8C48>"},
        {"among others", "<0001> <0041FB010042>", "<0001> <0041006600690042>"},
    };

    for (const auto& c : cases) EXPECT_EQ(withUsualCharacters(chars(c.before)), chars(c.after)) << c.name;
}

TEST(PDFGlyphTextsTest, RangesWithUnusualCharactersBecomeLists) {
    EXPECT_EQ(withUsualCharacters(ranges("<0001> <0003> <2F08>")),
              ranges("<0001> <0003> [<4EBA><513F><5165>]"));
    EXPECT_EQ(withUsualCharacters(ranges("<4B> <4C> <FE0F>")), ranges("<4B> <4C> [<FE0F><002C>]"));
}

TEST(PDFGlyphTextsTest, UsualCharactersStay) {
    for (const std::string& mapping :
         {chars("<0001> <0041>"), chars("<0001> <D83DDE00>"), chars("<0001> <FEFF>"), chars("<0001> <00B2>"),
          chars("<0001> <FF21>"), ranges("<0001> <0003> <0041>"), std::string(),
          std::string("<0001> <2F42>\n")}) {
        EXPECT_EQ(withUsualCharacters(mapping), std::nullopt) << mapping;
    }
}

TEST(PDFGlyphTextsTest, WhatIsNoMappingStays) {
    for (const char* line : {"", "<0001>", "<0001> 2F42", "<0001> <2F4>", "<0001> <2F4G>", "<0001> <",
                             "<0001> <2F42> <0001>", "<0001> <>", "0001 <2F42>"}) {
        EXPECT_EQ(withUsualCharacters(chars(line)), std::nullopt) << line;
    }
    for (const char* line : {"<0003> <0001> <2F42>", "<0000> <FFFF> <2F42>", "<000x> <0001> <2F42>",
                             "<> <> <2F42>", "<0001> <0002> [<2F42><0041>]"}) {
        EXPECT_EQ(withUsualCharacters(ranges(line)), std::nullopt) << line;
    }
}

TEST(PDFGlyphTextsTest, FontsOfADocumentAreCorrected) {
    const std::string pdf = makePDF(
        {"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
         "<</Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Resources <</Font <</A 4 0 R /B 6 0 R>>>>>>",
         "<</Type /Font /Subtype /Type1 /BaseFont /Times-Roman /ToUnicode 5 0 R>>",
         makeStream(chars("<01> <2F42>")),
         "<</Type /Font /Subtype /Type1 /BaseFont /Courier /ToUnicode /Identity-H>>"});
    const TemporaryFolder folder;
    folder.write("out.pdf", pdfByApplying({}, NSData(pdf)).bytes());
    const std::string font = "pages/1/Resources/Font/A/ToUnicode";
    const std::string mapping =
        outputOf("mutool show -b '" + (folder.path() / "out.pdf").string() + "' " + font);
    EXPECT_THAT(mapping, HasSubstr("<01> <6587>"));
}

} // namespace
} // namespace qrv::engine
