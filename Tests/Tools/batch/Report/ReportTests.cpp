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
    std::string report(const std::vector<Record>& records) {
        writeReport(path(), contentsOf(records));
        return folder.read("report.html");
    }

    ReportContents contentsOf(const std::vector<Record>& records) const {
        std::vector<ReportItem> items;
        for (const Record& record : records) items.push_back({record.archive, &record});
        const auto whole = [](Record record) {
            if (record.missingCount > 0) record.missing = {{"image", "http://site.example/gone.png"}};
            return record;
        };
        return {std::move(items), whole, (folder.path() / "out").string(), 2};
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

TEST_F(Report, NamesArchivesAsTheyAreNow) {
    const Record record = converted("earlier.webarchive", "a");
    ReportContents contents = contentsOf({});
    contents.items = {{"now.webarchive", &record}};
    writeReport(path(), contents);
    EXPECT_THAT(folder.read("report.html"), HasSubstr("<b>now.webarchive</b>"));
    EXPECT_THAT(folder.read("report.html"), Not(HasSubstr("earlier.webarchive")));
}

TEST_F(Report, OfVeryManyListsThoseWithTheMostToTell) {
    std::vector<Record> records;
    for (int number = 0; number < 30'000; ++number)
        records.push_back(converted("archive" + std::to_string(number), "none.pdf"));
    for (const int number : {7, 20'007, 29'999}) records[number].error = ConversionError{"D", 1, "T"};
    for (const int number : {9, 29'009}) records[number].missingCount = 1;
    const std::string page = report(records);
    std::size_t rows = 0;
    for (std::size_t at = 0; (at = page.find("<tr role=\"row\" class=", at)) != std::string::npos; ++at)
        ++rows;
    EXPECT_EQ(rows, 20'000u);
    for (const char* archive : {"archive7<", "archive20007<", "archive29999<", "archive9<", "archive29009<"})
        EXPECT_THAT(page, HasSubstr(archive));
    EXPECT_THAT(page, HasSubstr("gone.png"));
    EXPECT_THAT(page, HasSubstr("Of 30,000 archives, 20,000 are listed here: "));
    EXPECT_THAT(page, HasSubstr("<title>29,997 of 30,000 converted"));
    EXPECT_THAT(page, HasSubstr("All <b>20,000</b>"));
    EXPECT_LT(page.find("archive20007<"), page.find("archive29009<"));
    EXPECT_THAT(report(std::vector<Record>(20'000, converted("a", "none.pdf"))),
                Not(HasSubstr("are listed here")));
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
    writeReport(path(), contentsOf({}), source.get_token());
    EXPECT_EQ(folder.read("report.html"), "earlier");
}

TEST_F(Report, TellsWhyItCannotBeWritten) {
    const std::string nowhere = (folder.path() / "none/report.html").string();
    try {
        writeReport(nowhere, contentsOf({}));
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.what(), nowhere + ": No such file or directory");
    }
}

} // namespace
} // namespace qrv::batch
