#include "Platform/PDFKit/PDFFonts.h"

#include "Platform/PDFKit/PDFFile.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <gmock/gmock.h>
#include <qpdf/QPDF.hh>

namespace qrv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// In this process and in a confined child.
std::vector<std::vector<std::string>> fontsOf(const std::string& file) {
    const auto document = openPDF(NSData(file));
    if (!document) return {{"not opened"}};
    const auto fonts = fontsIn(*document);
    EXPECT_EQ(fontsFromList(listFromFonts(fonts)), fonts);
    EXPECT_EQ(fontsOfPages(NSData(file)), fonts);
    return fonts;
}

TEST(FontsOfPages, AreNamedForEachPageOnceAndInOrder) {
    const std::string file = makePDF({
        "<</Type/Catalog/Pages 2 0 R>>",
        "<</Type/Pages/Kids[3 0 R 4 0 R 5 0 R]/Count 3/MediaBox[0 0 9 9]/Resources<</Font<</A 6 0 R>>>>>>",
        "<</Type/Page/Parent 2 0 R/Resources<</Font<</A 7 0 R/B 6 0 R/C 6 0 R>>>>>>",
        "<</Type/Page/Parent 2 0 R/Resources<<>>>>",
        "<</Type/Page/Parent 2 0 R>>",
        "<</Type/Font/Subtype/TrueType/BaseFont/ABCDEF+SomeSerif>>",
        "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>",
    });
    EXPECT_THAT(fontsOf(file),
                ElementsAre(ElementsAre("Helvetica", "SomeSerif"), IsEmpty(), ElementsAre("SomeSerif")));
}

TEST(FontsOfPages, FontsOfDrawingsAreNamedByTheirDescriptor) {
    const std::string file = makePDF({
        "<</Type/Catalog/Pages 2 0 R>>",
        "<</Type/Pages/Kids[3 0 R]/Count 1>>",
        "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Resources<</Font<</A 4 0 R/B 5 0 R>>>>>>",
        "<</Type/Font/Subtype/Type3/FontDescriptor<</FontName/GHIJKL+Emoji>>>>",
        "<</Type/Font/Subtype/Type3>>",
    });
    EXPECT_THAT(fontsOf(file), ElementsAre(ElementsAre("Emoji")));
}

TEST(FontsOfPages, WhatIsNoPDFHasNone) {
    EXPECT_THAT(fontsOfPages(NSData(std::string("<html>"))), IsEmpty());
    EXPECT_THAT(fontsOfPages({}), IsEmpty());
}

} // namespace
} // namespace qrv
