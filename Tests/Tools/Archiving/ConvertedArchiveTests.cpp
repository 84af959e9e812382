#include "Source/Tools/Archiving/ConvertedArchive.h"

#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/Variable.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <utime.h>

namespace qrv {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class ConvertedArchiveTest : public testing::Test {
protected:
    ConvertedArchiveTest() {
        const utimbuf times{1'000'000'000, 1'000'000'000};
        ::utime(archive.path.fileSystemRepresentation().c_str(), &times);
    }

    std::string metadata() const {
        return std::string(metadataOf(archive, {{NSString(u"Title"), NSString(u"T")}}).bytes());
    }

    const TemporaryFolder folder;
    const ConvertedArchive archive{NSData("abc"), folder.write("a \xE9.webarchive", "abc"),
                                   u"http://a.example/", u"Engine/1"};
    const Variable noDate{"SOURCE_DATE_EPOCH", nullptr};
};

TEST_F(ConvertedArchiveTest, MetadataHaveAddressHashEngineAndAttributes) {
    EXPECT_THAT(
        metadata(),
        AllOf(HasSubstr("<dc:source>http://a.example/</dc:source>"), HasSubstr(">T</rdf:li>"),
              HasSubstr("<web2pdf:Engine>Engine/1</web2pdf:Engine>"),
              HasSubstr("<web2pdf:ArchiveSHA256>ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61"
                        "f20015ad</web2pdf:ArchiveSHA256>")));
}

TEST_F(ConvertedArchiveTest, MetadataAreOfNowOrOfTheToldDate) {
    const NSDate::Clock year2100 = [] { return 3155760000.0 - 3600; };
    NSDate::setClockForTesting(year2100);
    const std::string now = metadata();
    NSDate::setClockForTesting(nullptr);
    EXPECT_THAT(now, HasSubstr("<xmp:MetadataDate>2101-01-01T"));
    const Variable told("SOURCE_DATE_EPOCH", "1709210096");
    EXPECT_THAT(metadata(), HasSubstr("<xmp:MetadataDate>2024-02-29T12:34:56Z</xmp:MetadataDate>"));
}

TEST_F(ConvertedArchiveTest, TheAttachmentIsTheFileWithItsNameAndDate) {
    const PDFAttachment file = attachmentOf(archive);
    EXPECT_EQ(file.contents.bytes(), "abc");
    EXPECT_EQ(file.name.utf8(), "a \uFFFD.webarchive");
    EXPECT_EQ(file.type, "application/x-webarchive");
    EXPECT_EQ(file.modified.description().utf8(), "2001-09-09 01:46:40 +0000");
    const Variable told("SOURCE_DATE_EPOCH", "1709210096");
    EXPECT_EQ(attachmentOf(archive).modified.description().utf8(), "2024-02-29 12:34:56 +0000");
}

TEST_F(ConvertedArchiveTest, AFileThatIsGoneHasNoDate) {
    std::filesystem::remove(folder.path() / "a \xE9.webarchive");
    EXPECT_TRUE(attachmentOf(archive).modified.isNil());
}

} // namespace
} // namespace qrv
