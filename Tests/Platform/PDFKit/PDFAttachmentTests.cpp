// Files that are embedded in a PDF, and metadata: what is written, and what readers make of it.

#include "Platform/PDFKit/PDFAttachment.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/PDFKit/PDFFile.h"
#include "Platform/PDFKit/PDFUpdate.h"
#include "Platform/PDFKit/PDFWriting.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <gmock/gmock.h>
#include <qpdf/QPDF.hh>
#include <random>

namespace qrv {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string pageTree = "<</Type /Pages /Kids [3 0 R] /Count 1>>";
const std::string page = "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /Resources <<>>>>";
const std::string packet =
    "<?xpacket begin='' id=''?><x:xmpmeta xmlns:x='adobe:ns:meta/'/><?xpacket end='w'?>";

std::string plain(const std::string& entries = "", const std::vector<std::string>& others = {}) {
    std::vector<std::string> objects{"<</Type /Catalog /Pages 2 0 R " + entries + ">>", pageTree, page,
                                     "<</Title (Old)>>"};
    objects.insert(objects.end(), others.begin(), others.end());
    return makePDF(objects, "/Info 4 0 R");
}

std::string withTableInAStream() {
    const NSData bytes(plain());
    return std::string(serializePDF(*openPDF(bytes)).bytes());
}

PDFAttachment attachment(const std::string& contents, const NSString& name = u"page.webarchive") {
    return {name, u"What it was made of", "application/x-webarchive",
            NSDate::dateWithTimeIntervalSinceReferenceDate(1000), NSData(contents)};
}

std::string withAdditions(const std::string& file, const PDFAdditions& additions,
                          const std::vector<PDFAttributeChange>& changes = {}) {
    const NSData bytes(file);
    const auto document = openPDF(bytes);
    if (!document) return "no document";
    std::string result = file;
    const auto catalog = catalogOf(*document);
    if (!catalog) return "no catalog";
    writeUpdateOfPDF(endingOf(*document, bytes), *catalog, file.size(), changes, additions,
                     [&](std::string_view piece) { result += piece; });
    return result;
}

std::string attached(const std::string& file, const std::string& contents,
                     const NSString& name = u"page.webarchive") {
    return withAdditions(file, {{}, attachment(contents, name)});
}

/// The contents as two readers give them back; they have to agree.
std::string contentsOf(const std::string& file, const std::string& name = "page.webarchive") {
    const std::string byPoppler = inspect(file, "pdfdetach -savefile '" + name + "' -o /dev/stdout @");
    EXPECT_EQ(inspect(file, "qpdf --show-attachment='" + name + "' @"), byPoppler);
    return byPoppler;
}

void expectNoFault(const std::string& file) {
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
    EXPECT_THAT(inspect(file, "mutool info @"), Not(HasSubstr("rror")));
}

/// What cannot be compressed.
std::string noise(std::size_t length) {
    std::mt19937 random(1);
    std::string bytes(length, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

class AddedTo : public testing::TestWithParam<std::string> {};

TEST_P(AddedTo, TheFileComesBackAndTheMetadataAreThere) {
    std::string contents = "bytes \n";
    for (int i = 0; i < 256; ++i) contents += static_cast<char>(i);
    const std::string file = withAdditions(GetParam(), {NSData(packet), attachment(contents)});
    EXPECT_THAT(file, StartsWith(GetParam()));
    expectNoFault(file);
    EXPECT_EQ(contentsOf(file), contents);
    EXPECT_EQ(inspect(file, "pdfinfo -meta @"), packet + "\n");
    EXPECT_THAT(inspect(file, "pdfinfo @"), HasSubstr("Pages:           1\n"));
}

TEST_P(AddedTo, BothCanBeAddedAgain) {
    const std::string once = withAdditions(GetParam(), {NSData("old"), attachment("first")});
    const std::string twice = withAdditions(once, {NSData(packet), attachment("second")});
    expectNoFault(twice);
    EXPECT_EQ(contentsOf(twice), "first");
    EXPECT_EQ(contentsOf(twice, "page.webarchive (2)"), "second");
    EXPECT_EQ(inspect(twice, "pdfinfo -meta @"), packet + "\n");
}

INSTANTIATE_TEST_SUITE_P(PDFAttachment, AddedTo,
                         testing::Values(plain(), withTableInAStream(),
                                         makePDF({"<</Type /Catalog /Pages 2 0 R>>", pageTree, page}),
                                         plain() + "and after it"));

TEST(PDFAttachment, CountsFromTheHeader) {
    const std::string file = attached("bytes before it\n" + plain(), "contents");
    EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax or stream encoding errors found"));
    EXPECT_EQ(contentsOf(file), "contents");
}

TEST(PDFAttachment, IsASourceOfTheWholeDocumentWithAllThatIsKnownOfIt) {
    const std::string file = attached(plain(), "contents");
    EXPECT_EQ(inspect(file, "qpdf --show-object=1 @"),
              "<< /AF [ 7 0 R ] /Names << /EmbeddedFiles << /Names [ (page.webarchive) 7 0 R ] >> >> "
              "/Pages 2 0 R /Type /Catalog >>\n");
    EXPECT_EQ(inspect(file, "qpdf --show-object=7 @"),
              "<< /AFRelationship /Source /Desc (What it was made of) /EF << /F 5 0 R /UF 5 0 R >> "
              "/F (page.webarchive) /Type /Filespec /UF (page.webarchive) >>\n");
    EXPECT_THAT(inspect(file, "qpdf --show-object=5 @"),
                AllOf(HasSubstr("/Filter /FlateDecode /Length 6 0 R"),
                      HasSubstr("/Params << /CheckSum <98bf7d8c15784f0a3d63204441e1e2aa> "
                                "/ModDate (D:20010101001640Z) /Size 8 >>"),
                      HasSubstr("/Subtype /application#2fx-webarchive /Type /EmbeddedFile")));
}

TEST(PDFAttachment, ADateThatNobodyKnowsIsLeftOut) {
    PDFAttachment file = attachment("contents");
    file.modified = {};
    EXPECT_THAT(parametersOf(file), Not(HasSubstr("ModDate")));
}

TEST(PDFAttachment, OtherFilesStayAndTheNamesAreInOrder) {
    const std::string file =
        attached(plain("/Names 5 0 R /AF [6 0 R]",
                       {"<</Dests <</Names [(d) [3 0 R /Fit]]>> /EmbeddedFiles <</Kids [<</Limits [(z) (z)] "
                        "/Names [(z) 6 0 R]>>]>>>>",
                        "<</Type /Filespec /F (z) /UF (z) /EF <</F 7 0 R>>>>",
                        makeStream("of old", "/Type /EmbeddedFile")}),
                 "new", u"a");
    expectNoFault(file);
    EXPECT_EQ(contentsOf(file, "a"), "new");
    EXPECT_EQ(contentsOf(file, "z"), "of old");
    EXPECT_THAT(inspect(file, "qpdf --show-object=1 @"),
                AllOf(HasSubstr("/AF [ 6 0 R 10 0 R ]"), HasSubstr("/Names [ (a) 10 0 R (z) 6 0 R ]"),
                      HasSubstr("/Dests << /Names [ (d) [ 3 0 R /Fit ] ] >>")));
}

TEST(PDFAttachment, MetadataThatWouldContradictAreReplacedOrRemoved) {
    const std::string old = plain("/Metadata 5 0 R", {makeStream("<old/>", "/Type /Metadata /Subtype /XML")});
    const std::vector<PDFAttributeChange> changes{{"/Title", PDFAttributeChange::Kind::text, "New"}};
    EXPECT_EQ(inspect(withAdditions(old, {NSData(packet), {}}, changes), "pdfinfo -meta @"), packet + "\n");
    const PDFAdditions onlyAFile{{}, attachment("x")};
    EXPECT_THAT(inspect(withAdditions(old, onlyAFile, changes), "pdfinfo @"),
                AllOf(HasSubstr("Metadata Stream: no"), HasSubstr("Title:           New")));
    EXPECT_EQ(inspect(withAdditions(old, onlyAFile), "pdfinfo -meta @"), "<old/>\n");
}

TEST(PDFAttachment, CanHaveAnyName) {
    const std::u16string unpaired{u'a', 0xDCE9, u'b'};
    const std::pair<NSString, std::string> names[] = {
        {u"Grüße 漢字 \U0001F600.webarchive", "Grüße 漢字 \U0001F600.webarchive"},
        {u"( \\ ) << >> #20 %", "( \\ ) << >> #20 %"},
        {NSString(unpaired), "a\uFFFDb"},
        {u"a\nb", "a\nb"}};
    for (const auto& [given, seen] : names) {
        const std::string file = attached(plain(), "contents", given);
        EXPECT_THAT(inspect(file, "qpdf --check @"), HasSubstr("No syntax")) << seen;
        EXPECT_EQ(inspect(file, "qpdf --show-attachment='" + seen + "' @"), "contents") << seen;
        EXPECT_THAT(inspect(file, "pdfdetach -list -enc UTF-8 @"), HasSubstr("1 embedded files")) << seen;
    }
}

TEST(PDFAttachment, NothingAndMuchComeBack) {
    const std::string nothing =
        attached(plain(), ""); // of which newer readers of poppler's say that it is an error
    EXPECT_EQ(inspect(nothing, "qpdf --show-attachment=page.webarchive @"), "");
    EXPECT_THAT(inspect(nothing, "pdfdetach -list @"), HasSubstr("1 embedded files"));
    expectNoFault(nothing);
    const std::string much = noise(3'000'000);
    EXPECT_TRUE(contentsOf(attached(plain(), much)) == much);
}

TEST(PDFAttachment, IsHandedOutInPieces) {
    std::size_t longest = 0;
    std::size_t total = 0;
    compress(noise(10'000'000), [&](std::string_view piece) {
        longest = std::max(longest, piece.size());
        total += piece.size();
    });
    EXPECT_GT(total, 9'000'000u);
    EXPECT_LE(longest, 1'000'000u);
}

TEST(PDFAttachment, TheSameMakesTheSameBytes) {
    EXPECT_EQ(attached(plain(), "contents"), attached(plain(), "contents"));
}

} // namespace
} // namespace qrv
