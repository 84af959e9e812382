#include "Platform/PDFKit/PDFDocument.h"

#include "Platform/Foundation/MappedFile.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/PDFKit/PDFAttachment.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace qrv {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string pageTree = "<</Type /Pages /Kids [3 0 R] /Count 1>>";
const std::string page = "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /Resources <<>>>>";

/// One empty page and the given document information.
std::string pdfWithInformation(const std::string& information) {
    return makePDF({"<</Type /Catalog /Pages 2 0 R>>", pageTree, page, information}, "/Info 4 0 R");
}

const std::string usual =
    pdfWithInformation("<</Title (Old) /Producer (Maker) /Trapped /False /Count 7 "
                       "/CreationDate (D:20240229123456+01'00') /ModDate (yesterday)>>");

class PDFDocumentTest : public testing::Test {
protected:
    std::unique_ptr<PDFDocument> open(std::string_view contents) {
        return PDFDocument::initWithURL(NSURL::fileURLWithPath(folder_.write("in.pdf", contents)));
    }

    /// Sets one attribute, writes, reads again.
    NSDictionary afterSetting(const NSString& key, const id& value) {
        const auto document = open(usual);
        NSMutableDictionary attributes = document->documentAttributes().mutableCopy();
        attributes.setObject_forKey(value, key);
        document->setDocumentAttributes(attributes);
        EXPECT_TRUE(document->writeToFile(folder_.pathOf("out.pdf")));
        return reopened();
    }

    NSDictionary reopened() {
        const auto document = PDFDocument::initWithURL(NSURL::fileURLWithPath(folder_.pathOf("out.pdf")));
        return document ? document->documentAttributes() : NSDictionary();
    }

    std::string inspect(const std::string& command) {
        return outputOf(command + " '" + (folder_.path() / "out.pdf").string() + "'");
    }

    const TemporaryFolder folder_;
};

NSString text(const NSDictionary& attributes, const char16_t* key) {
    return as<NSString>(attributes.objectForKey(NSString(key)));
}

} // namespace

TEST_F(PDFDocumentTest, GivesTextsNamesAndDates) {
    const NSDictionary attributes = open(usual)->documentAttributes();
    EXPECT_EQ(text(attributes, PDFDocumentTitleAttribute), NSString(u"Old"));
    EXPECT_EQ(text(attributes, PDFDocumentProducerAttribute), NSString(u"Maker"));
    EXPECT_EQ(text(attributes, u"Trapped"), NSString(u"False"));
    const auto created = as<NSDate>(attributes.objectForKey(NSString(PDFDocumentCreationDateAttribute)));
    EXPECT_EQ(created.timeIntervalSinceReferenceDate(), 1709210096 - 3600 - NSTimeIntervalSince1970);
    EXPECT_EQ(text(attributes, PDFDocumentModificationDateAttribute), NSString(u"yesterday"));
    EXPECT_EQ(attributes.count(), 5u);
}

TEST_F(PDFDocumentTest, HasEmptyAttributesWithoutDocumentInformation) {
    const std::vector<std::string> objects = {"<</Type /Catalog /Pages 2 0 R>>", pageTree, page};
    const NSDictionary none = open(makePDF(objects))->documentAttributes();
    EXPECT_TRUE(none);
    EXPECT_EQ(none.count(), 0u);
    EXPECT_EQ(open(makePDF(objects, "/Info [1 2]"))->documentAttributes().count(), 0u);
}

TEST_F(PDFDocumentTest, MakesDocumentInformationWhereThereIsNone) {
    const auto document = open(makePDF({"<</Type /Catalog /Pages 2 0 R>>", pageTree, page}));
    document->setDocumentAttributes({{NSString(PDFDocumentTitleAttribute), NSString(u"New")}});
    ASSERT_TRUE(document->writeToFile(folder_.pathOf("out.pdf")));
    EXPECT_EQ(text(reopened(), PDFDocumentTitleAttribute), NSString(u"New"));
    EXPECT_THAT(inspect("pdfinfo"), HasSubstr("Title:           New\n"));
}

TEST_F(PDFDocumentTest, KeepsUntouchedEntriesInTheirForm) {
    const NSDictionary attributes = afterSetting(PDFDocumentTitleAttribute, NSString(u"New"));
    EXPECT_EQ(text(attributes, PDFDocumentTitleAttribute), NSString(u"New"));
    const std::string information =
        inspect("mutool show -e") +
        outputOf("mutool show '" + (folder_.path() / "out.pdf").string() + "' trailer/Info");
    EXPECT_THAT(information, HasSubstr("(D:20240229123456+01'00')"));
    EXPECT_THAT(information, HasSubstr("/ModDate (yesterday)"));
    EXPECT_THAT(information, HasSubstr("/Trapped /False"));
    EXPECT_THAT(information, HasSubstr("/Count 7"));
}

TEST_F(PDFDocumentTest, RemovesEntriesThatAreAbsent) {
    const auto document = open(usual);
    document->setDocumentAttributes({{NSString(u"Title"), NSString(u"Old")}});
    EXPECT_EQ(document->documentAttributes().count(), 1u);
    ASSERT_TRUE(document->writeToFile(folder_.pathOf("out.pdf")));
    EXPECT_EQ(reopened(), NSDictionary({{NSString(u"Title"), NSString(u"Old")}}));
}

TEST_F(PDFDocumentTest, WritesDatesInUniversalTime) {
    const NSDate date = NSDate::dateWithTimeIntervalSinceReferenceDate(1000);
    EXPECT_EQ(afterSetting(PDFDocumentCreationDateAttribute, date).objectForKey(NSString(u"CreationDate")),
              date);
}

TEST_F(PDFDocumentTest, RefusesValuesThatAreNeitherTextNorDate) {
    const auto document = open(usual);
    const NSDictionary before = document->documentAttributes();
    const NSDictionary wrong{{NSString(u"Title"), NSNumber::numberWithInteger(1)}};
    EXPECT_THROW(document->setDocumentAttributes(wrong), NSException);
    EXPECT_THROW(document->setDocumentAttributes({{NSNumber::numberWithInteger(1), NSString(u"x")}}),
                 NSException);
    EXPECT_EQ(document->documentAttributes(), before);
}

class HostileText : public PDFDocumentTest, public testing::WithParamInterface<std::u16string> {};

TEST_P(HostileText, ComesBackAsItWas) {
    const NSDictionary attributes = afterSetting(PDFDocumentTitleAttribute, NSString(GetParam()));
    EXPECT_EQ(text(attributes, PDFDocumentTitleAttribute), NSString(GetParam()));
    EXPECT_THAT(inspect("pdfinfo"), HasSubstr("Pages:           1\n"));
    EXPECT_THAT(inspect("pdfinfo"), Not(HasSubstr("Error")));
}

INSTANTIATE_TEST_SUITE_P(PDFDocument, HostileText,
                         testing::Values(u"", u"a\nb\r\nc\td", std::u16string(u"nul\0in the middle", 17),
                                         std::u16string(u"\0", 1), u"( unbalanced \\ ) ) >> endobj",
                                         u"\u00FE\u00FFlooks like a mark",
                                         u"\u00EF\u00BB\u00BFlooks like another",
                                         u"\u001B\u0018\u001F\u007F\u0080\u009F\u00A0\u00AD",
                                         u"\u02D9\u20AC\u2022\uFB01", u"Grüße 漢字 עברית \U0001F600",
                                         u"\uFEFFmark \uFFFE\uFFFF", std::u16string(1 << 20, u'x'),
                                         std::u16string(1 << 20, u'\u6F22')));

TEST_F(PDFDocumentTest, ReplacesUnpairedSurrogates) {
    const std::u16string broken{u'a', 0xD800, u'b', 0xDC00};
    const NSDictionary attributes = afterSetting(PDFDocumentTitleAttribute, NSString(broken));
    EXPECT_EQ(text(attributes, PDFDocumentTitleAttribute), NSString(u"a\uFFFDb\uFFFD"));
}

TEST_F(PDFDocumentTest, DropsTheMetadataStreamThatWouldContradict) {
    const std::string file =
        makePDF({"<</Type /Catalog /Pages 2 0 R /Metadata 5 0 R>>", pageTree, page, "<</Title (Old)>>",
                 makeStream("<x:xmpmeta/>", "/Type /Metadata /Subtype /XML")},
                "/Info 4 0 R");
    const auto document = open(file);
    document->setDocumentAttributes(document->documentAttributes());
    ASSERT_TRUE(document->writeToFile(folder_.pathOf("out.pdf")));
    EXPECT_THAT(inspect("pdfinfo"), HasSubstr("Metadata Stream: yes"));
    document->setDocumentAttributes({{NSString(u"Title"), NSString(u"New")}});
    ASSERT_TRUE(document->writeToFile(folder_.pathOf("out.pdf")));
    EXPECT_THAT(inspect("pdfinfo"), HasSubstr("Metadata Stream: no"));
}

TEST_F(PDFDocumentTest, WritesAttributesMetadataAndAnAttachmentInOneGo) {
    const NSString path = folder_.write("in.pdf", usual);
    const auto document = PDFDocument::initWithURL(NSURL::fileURLWithPath(path));
    document->setDocumentAttributes({{NSString(PDFDocumentTitleAttribute), NSString(u"New")}});
    const PDFAttachment file{u"a.txt", u"Text", "text/plain", {}, NSData("contents")};
    ASSERT_TRUE(document->setAdditions({NSData("<x:xmpmeta/>"), file}));
    ASSERT_TRUE(document->writeToFile(folder_.pathOf("out.pdf")));
    EXPECT_THAT(folder_.read("out.pdf"), StartsWith(usual));
    EXPECT_EQ(text(reopened(), PDFDocumentTitleAttribute), NSString(u"New"));
    EXPECT_THAT(inspect("pdfinfo"),
                AllOf(HasSubstr("Title:           New"), HasSubstr("Metadata Stream: yes")));
    EXPECT_EQ(inspect("pdfdetach -save 1 -o /dev/stdout"), "contents");
    EXPECT_EQ(inspect("pdfinfo -meta"), "<x:xmpmeta/>\n");
    EXPECT_FALSE(document->writeToFile(folder_.pathOf("missing/out.pdf")));
    EXPECT_EQ(folder_.count(), 2u);
}

TEST_F(PDFDocumentTest, ADamagedTreeOfFilesTakesNoAdditions) {
    const std::string file = makePDF({"<</Type /Catalog /Pages 2 0 R /Names <</EmbeddedFiles 4 0 R>>>>",
                                      pageTree, page, "<</Names [(b) <</#ype /Filespec>>]>>"});
    const auto document = open(file);
    ASSERT_TRUE(document);
    EXPECT_FALSE(document->setAdditions({NSData("<x:xmpmeta/>"), {}}));
    ASSERT_TRUE(document->writeToFile(folder_.pathOf("out.pdf")));
    EXPECT_EQ(folder_.read("out.pdf"), file);
}

TEST_F(PDFDocumentTest, AnAttachmentThatIsCutShortReplacesNothing) {
    const NSString path = folder_.write("large", std::string(4'000'000, 'x'));
    EXPECT_EXIT(
        {
            allowMappedFiles();
            const auto document = open(usual);
            const NSData contents = NSData::initWithContentsOfFile_options_error(path, 0, nullptr);
            document->setAdditions({{}, PDFAttachment{u"large", u"", "text/plain", {}, contents}});
            const bool isWritten = document->writeToFile(folder_.pathOf("whole.pdf"));
            std::filesystem::resize_file(folder_.path() / "large", 100'000);
            contents.forgetPages();
            const bool isRefused = !document->writeToFile(folder_.pathOf("cut.pdf"));
            std::_Exit(isWritten && isRefused ? 7 : 1);
        },
        testing::ExitedWithCode(7), "");
    EXPECT_TRUE(std::filesystem::exists(folder_.path() / "whole.pdf"));
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "cut.pdf"));
}

TEST_F(PDFDocumentTest, WritesTheSameBytesForTheSameDocument) {
    std::string files[2];
    for (std::string& file : files) {
        afterSetting(PDFDocumentTitleAttribute, NSString(u"New"));
        file = folder_.read("out.pdf");
    }
    EXPECT_FALSE(files[0].empty());
    EXPECT_EQ(files[0], files[1]);
}

TEST_F(PDFDocumentTest, IsNullForWhatCannotBeRead) {
    EXPECT_EQ(PDFDocument::initWithURL(NSURL()), nullptr);
    EXPECT_EQ(PDFDocument::initWithURL(NSURL::URLWithString(u"file:")), nullptr);
    EXPECT_EQ(PDFDocument::initWithURL(NSURL::URLWithString(u"http://host.example/a.pdf")), nullptr);
    EXPECT_EQ(PDFDocument::initWithURL(NSURL::fileURLWithPath(folder_.pathOf("missing.pdf"))), nullptr);
    EXPECT_EQ(PDFDocument::initWithURL(NSURL::fileURLWithPath(folder_.pathOf("."))), nullptr);
    for (const char* contents : {"", "%PDF-1.4", "%PDF-1.4\n%%EOF\n", "<html>no</html>"}) {
        EXPECT_EQ(open(contents), nullptr) << contents;
    }
}

TEST_F(PDFDocumentTest, IsNullForEveryTruncation) {
    testing::internal::CaptureStderr();
    const std::size_t trailerEnd = usual.rfind("%%EOF");
    for (std::size_t length = 0; length < trailerEnd - 8; length += 7) {
        EXPECT_EQ(open(usual.substr(0, length)), nullptr) << length;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(PDFDocumentTest, DamageIsSilentAndNeverWrittenOver) {
    testing::internal::CaptureStderr();
    for (std::size_t place = 0; place < usual.size(); ++place) {
        std::string damaged = usual;
        damaged[place] = static_cast<char>(damaged[place] ^ 0x15);
        const auto document = open(damaged);
        if (!document) continue;
        NSMutableDictionary attributes = document->documentAttributes().mutableCopy();
        attributes.setObject_forKey(NSString(u"New"), NSString(u"Title"));
        document->setDocumentAttributes(attributes);
        if (document->writeToFile(folder_.pathOf("out.pdf"))) {
            EXPECT_EQ(text(reopened(), PDFDocumentTitleAttribute), NSString(u"New")) << place;
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(PDFDocumentTest, IsNullForAnEncryptedFile) {
    const std::string plain = folder_.write("plain.pdf", usual).utf8();
    const std::string locked = folder_.pathOf("locked.pdf").utf8();
    outputOf("mutool clean -E rc4-128 -O owner '" + plain + "' '" + locked + "'");
    ASSERT_THAT(folder_.read("locked.pdf"), HasSubstr("/Encrypt"));
    EXPECT_EQ(PDFDocument::initWithURL(NSURL::fileURLWithPath(folder_.pathOf("locked.pdf"))), nullptr);
}

TEST_F(PDFDocumentTest, TheFilesOwnBytesStay) {
    std::string file =
        makePDF({"<</Type /Catalog /Pages 2 0 R /Other 4 0 R>>", pageTree, page, makeStream("contents")});
    file.replace(file.find("/Length 8"), 9, "/Length 3"); // damage that readers mend
    const auto document = open(file);
    ASSERT_TRUE(document);
    ASSERT_TRUE(document->writeToFile(folder_.pathOf("out.pdf")));
    EXPECT_EQ(folder_.read("out.pdf"), file);
    document->setDocumentAttributes({{NSString(u"Title"), NSString(u"New")}});
    ASSERT_TRUE(document->writeToFile(folder_.pathOf("out.pdf")));
    EXPECT_THAT(folder_.read("out.pdf"), StartsWith(file));
    EXPECT_EQ(text(reopened(), PDFDocumentTitleAttribute), NSString(u"New"));
}

TEST_F(PDFDocumentTest, WritesOverTheFileItCameFromWithTheUsualPermissions) {
    const NSString path = folder_.write("in.pdf", usual);
    const auto document = PDFDocument::initWithURL(NSURL::fileURLWithPath(path));
    document->setDocumentAttributes({{NSString(u"Title"), NSString(u"New")}});
    const mode_t mask = ::umask(022);
    EXPECT_TRUE(document->writeToFile(path));
    EXPECT_TRUE(document->writeToFile(path));
    ::umask(mask);

    struct stat status {};

    ASSERT_EQ(::stat(path.utf8().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0644u);
    EXPECT_EQ(folder_.count(), 1u);
}

TEST_F(PDFDocumentTest, LeavesNothingBehindWhereItCannotWrite) {
    const auto document = open(usual);
    EXPECT_FALSE(document->writeToFile(folder_.pathOf("missing/out.pdf")));
    std::filesystem::create_directory(folder_.path() / "out.pdf");
    EXPECT_FALSE(document->writeToFile(folder_.pathOf("out.pdf")));
    EXPECT_FALSE(document->writeToFile({}));
    EXPECT_EQ(folder_.count(), 2u);
}

} // namespace qrv
