#include "Source/Tools/batch/Report/Report.h"

#include "Source/Tools/Common/Failure.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/Variable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qrv::batch {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char aPDF[] = "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
                        "2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
                        "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 60 80]>>endobj\n"
                        "trailer<</Root 1 0 R>>\n";

Record converted(const std::string& archive, const std::string& pdf) {
    Record record;
    record.archive = archive;
    record.pdf = pdf;
    return record;
}

class Report : public testing::Test {
protected:
    std::string report(std::vector<Record> records) {
        writeReport(path(), {std::move(records), (folder.path() / "out").string(), 2});
        return folder.read("report.html");
    }

    std::string path() const { return (folder.path() / "report.html").string(); }

    TemporaryFolder folder;
};

TEST_F(Report, HasLinksAndPicturesOfThePDFsThatAreThere) {
    folder.write("out/d/a b.pdf", aPDF);
    folder.write("out/d/a b.txt", "text");
    Record record = converted("a", "d/a b.pdf");
    record.text = "d/a b.txt";
    const std::string page = report({record});
    EXPECT_THAT(page, HasSubstr("href=\"./out/d/a%20b.pdf\""));
    EXPECT_THAT(page, HasSubstr("href=\"./out/d/a%20b.txt\""));
    EXPECT_THAT(page, HasSubstr("src=\"data:image/jpeg;base64,/9j/"));
}

TEST_F(Report, IsMadeWhateverThePDFsAre) {
    folder.write("out/broken.pdf", "%PDF-1.7\nbroken");
    const std::string page = report({converted("a", "broken.pdf"), converted("b", "gone.pdf")});
    EXPECT_THAT(page, HasSubstr("href=\"./out/broken.pdf\""));
    EXPECT_THAT(page, Not(HasSubstr("gone.pdf")));
    EXPECT_THAT(page, Not(HasSubstr("data:image")));
}

TEST_F(Report, HasNothingOfFilesOutsideTheFolder) {
    folder.write("secret.pdf", aPDF);
    folder.write("out/a.pdf", aPDF);
    Record record = converted("c", "gone.pdf");
    record.text = "../secret.txt";
    const std::string page =
        report({converted("a", "../secret.pdf"), converted("b", path() + "/../secret.pdf"), record});
    EXPECT_THAT(page, Not(HasSubstr("href=\"./")));
    EXPECT_THAT(page, Not(HasSubstr("data:image")));
}

TEST_F(Report, OfAFailedArchiveHasNoLinkToAnEarlierPDF) {
    folder.write("out/a.pdf", aPDF);
    Record record = converted("a", "a.pdf");
    record.error = ConversionError{"D", 1, "T"};
    EXPECT_THAT(report({record}), Not(HasSubstr("a.pdf")));
}

TEST_F(Report, IsInTheOrderOfTheArchivesPaths) {
    const std::string page = report({converted("b.webarchive", "b"), converted("a.webarchive", "a")});
    EXPECT_LT(page.find("a.webarchive"), page.find("b.webarchive"));
}

TEST_F(Report, TellsThatThereCanBeNoPictures) {
    folder.write("out/a.pdf", aPDF);
    const Variable noPrograms("PATH", "/nonexistent");
    EXPECT_THAT(report({converted("a", "a.pdf")}), HasSubstr("pdftoppm is not installed"));
    EXPECT_THAT(report({}), Not(HasSubstr("pdftoppm")));
}

TEST_F(Report, PicturesAreOfTheFirstThousand) {
    folder.write("out/0000.pdf", aPDF);
    folder.write("bin/pdftoppm", "#!/bin/sh\nprintf '\\377\\330\\377\\331'\n");
    std::filesystem::permissions(folder.path() / "bin/pdftoppm", std::filesystem::perms::owner_all);
    const Variable standIn("PATH", (folder.path() / "bin").c_str());
    std::vector<Record> records(1001, converted("a", "0000.pdf"));
    const std::string page = report(records);
    std::size_t count = 0;
    for (std::size_t at = 0; (at = page.find("data:image", at)) != std::string::npos; ++at) ++count;
    EXPECT_EQ(count, 1000u);
    EXPECT_THAT(page, HasSubstr("Only the first 1,000 PDFs have a picture here."));
}

TEST_F(Report, IsNotWrittenAfterAStop) {
    folder.write("report.html", "earlier");
    std::stop_source source;
    source.request_stop();
    writeReport(path(), {{converted("a", "a.pdf")}, folder.path().string(), 1}, source.get_token());
    EXPECT_EQ(folder.read("report.html"), "earlier");
}

TEST_F(Report, TellsWhyItCannotBeWritten) {
    const std::string nowhere = (folder.path() / "none/report.html").string();
    try {
        writeReport(nowhere, {{}, folder.path().string(), 1});
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.what(), nowhere + ": No such file or directory");
    }
}

} // namespace
} // namespace qrv::batch
