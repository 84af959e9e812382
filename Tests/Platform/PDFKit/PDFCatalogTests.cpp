#include "Platform/PDFKit/PDFCatalog.h"

#include "Platform/PDFKit/PDFFile.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <gmock/gmock.h>
#include <qpdf/QPDF.hh>

namespace qrv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Of a page and these entries; more objects are numbered from 4.
std::string withEntries(const std::string& entries, const std::vector<std::string>& others = {}) {
    std::vector<std::string> objects{"<</Type /Catalog /Pages 2 0 R " + entries + ">>",
                                     "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                                     "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /Resources <<>>>>"};
    objects.insert(objects.end(), others.begin(), others.end());
    return makePDF(objects);
}

/// In this process and in a confined child.
PDFCatalog catalogOf(const std::string& file) {
    const auto document = openPDF(NSData(file));
    const auto catalog = document ? qrv::catalogOf(*document) : std::nullopt;
    EXPECT_TRUE(catalog);
    EXPECT_EQ(catalogOfPDF(NSData(file)), catalog);
    if (!catalog) return {};
    EXPECT_EQ(catalogFromList(listFromCatalog(*catalog)), catalog);
    return *catalog;
}

TEST(PDFCatalog, HasAllEntriesInTheirForm) {
    const PDFCatalog catalog = catalogOf(withEntries("/Lang (de) /Metadata 3 0 R /A#20name [1 null]"));
    EXPECT_THAT(catalog.entries,
                ElementsAre(Pair("/A#20name", "[ 1 null ]"), Pair("/Lang", "(de)"),
                            Pair("/Metadata", "3 0 R"), Pair("/Pages", "2 0 R"), Pair("/Type", "/Catalog")));
    EXPECT_THAT(catalog.names, IsEmpty());
    EXPECT_THAT(catalog.files, IsEmpty());
    EXPECT_THAT(catalog.associatedFiles, IsEmpty());
}

TEST(PDFCatalog, HasTheFilesOfAWholeTreeAndTheOtherNames) {
    const PDFCatalog catalog = catalogOf(withEntries(
        "/Names 4 0 R", {"<</Dests 8 0 R /EmbeddedFiles 5 0 R>>", "<</Kids [6 0 R 7 0 R]>>",
                         "<</Limits [(a) (b)] /Names [(a) 8 0 R (b) <</Type /Filespec /F (b)>>]>>",
                         "<</Limits [(c) (c)] /Kids [<</Limits [(c) (c)] /Names [<00FF> 8 0 R]>>]>>",
                         "<</Type /Filespec /F (a)>>"}));
    EXPECT_THAT(catalog.names, ElementsAre(Pair("/Dests", "8 0 R")));
    EXPECT_THAT(catalog.files, ElementsAre(Pair(std::string("\0\xFF", 2), "8 0 R"), Pair("a", "8 0 R"),
                                           Pair("b", "<< /F (b) /Type /Filespec >>")));
}

TEST(PDFCatalog, HasTheAssociatedFiles) {
    EXPECT_THAT(catalogOf(withEntries("/AF 4 0 R", {"[5 0 R <</F (x)>>]", "<<>>"})).associatedFiles,
                ElementsAre("5 0 R", "<< /F (x) >>"));
    EXPECT_THAT(catalogOf(withEntries("/AF 4 0 R", {"<</F (x)>>"})).associatedFiles, ElementsAre("4 0 R"));
    EXPECT_THAT(catalogOf(withEntries("/AF 7")).associatedFiles, IsEmpty());
}

TEST(PDFCatalog, LeavesOutWhatIsDamagedInATree) {
    const char* const trees[] = {"7",
                                 "<</Names 7>>",
                                 "<</Kids 7>>",
                                 "<</Names [(a)]>>",
                                 "<</Names [7 5 0 R]>>",
                                 "<</Kids [4 0 R 7 null (x)]>>"};
    for (const char* tree : trees) {
        const PDFCatalog catalog = catalogOf(withEntries("/Names <</EmbeddedFiles 4 0 R>>", {tree, "<<>>"}));
        EXPECT_THAT(catalog.files, IsEmpty()) << tree;
    }
    EXPECT_THAT(catalogOf(withEntries("/Names 7")).names, IsEmpty());
}

TEST(PDFCatalog, FollowsACircleOnceAndADeepTreeToItsEnd) {
    const std::string circle =
        withEntries("/Names <</EmbeddedFiles 4 0 R>>",
                    {"<</Kids [5 0 R]>>", "<</Kids [4 0 R 5 0 R] /Names [(a) 3 0 R]>>"});
    EXPECT_THAT(catalogOf(circle).files, ElementsAre(Pair("a", "3 0 R")));
    std::vector<std::string> nodes;
    for (int number = 5; number < 20'000; ++number)
        nodes.push_back("<</Kids [" + std::to_string(number) + " 0 R]>>");
    nodes.emplace_back("<</Names [(deep) 3 0 R]>>");
    EXPECT_THAT(catalogOf(withEntries("/Names <</EmbeddedFiles 4 0 R>>", nodes)).files,
                ElementsAre(Pair("deep", "3 0 R")));
}

TEST(PDFCatalog, IsNothingForWhatCannotBeOpened) {
    EXPECT_FALSE(catalogOfPDF({}));
    EXPECT_FALSE(catalogOfPDF(NSData("%PDF-1.4\n")));
}

TEST(PDFCatalog, IsNothingWhereItIsNoObjectOfItsOwn) {
    std::string file = withEntries("");
    file.replace(file.find("/Root 1 0 R"), 11, "/Root <</Type /Catalog /Pages 2 0 R>>");
    ASSERT_TRUE(openPDF(NSData(file)));
    EXPECT_FALSE(catalogOfPDF(NSData(file)));
}

} // namespace
} // namespace qrv
