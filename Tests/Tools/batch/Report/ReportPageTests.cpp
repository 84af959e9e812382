#include "Source/Tools/batch/Report/ReportPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qrv::batch {
namespace {

using testing::HasSubstr;
using testing::Not;

ReportRow converted(const std::string& archive) {
    ReportRow row;
    row.record.archive = archive;
    row.record.pages = 3;
    row.record.pdfSize = 45'678;
    row.record.milliseconds = 1234;
    row.record.attempts = 1;
    row.record.finished = "2026-11-23T10:05:00Z";
    row.pdfAddress = "./a.pdf";
    return row;
}

ReportRow failed(const std::string& archive, const ConversionError& error) {
    ReportRow row;
    row.record.archive = archive;
    row.record.error = error;
    row.record.attempts = 3;
    return row;
}

std::string pageOf(const std::vector<ReportRow>& rows, const std::vector<std::string>& notes = {}) {
    Totals totals;
    for (const ReportRow& row : rows) totals.add(row.record);
    return reportPage(totals, rows, notes);
}

/// What stands in the first row of the table.
std::string rowOf(const ReportRow& row) {
    const std::string page = pageOf({row});
    const std::size_t start = page.find("<tbody");
    return page.substr(start, page.find("</tbody>") - start);
}

TEST(ReportPage, ARowOfAConvertedArchive) {
    const std::string row = rowOf(converted("news/2019/a.webarchive"));
    EXPECT_THAT(row, HasSubstr("<bdi><span>news/2019/</span><b>a.webarchive</b></bdi>"));
    EXPECT_THAT(row, HasSubstr("<strong>Complete</strong>"));
    EXPECT_THAT(row, HasSubstr("<a href=\"./a.pdf\">PDF<span class=\"unseen\"> of a.webarchive</span></a>"));
    EXPECT_THAT(row, HasSubstr("data-value=\"3\">3<"));
    EXPECT_THAT(row, HasSubstr("data-value=\"45678\">46 kB<"));
    EXPECT_THAT(row, HasSubstr("data-value=\"1234\">1.2 s<"));
    EXPECT_THAT(row, Not(HasSubstr("<details>")));
    EXPECT_THAT(row, Not(HasSubstr(">Text<")));
    EXPECT_THAT(row, HasSubstr("No picture"));
}

TEST(ReportPage, ARowOfAFailedOneTellsWhyAndHasNoPagesOrSize) {
    const std::string row = rowOf(failed("a", {"Some.Domain", -25, "It is broken."}));
    EXPECT_THAT(row, HasSubstr("<strong>Failed</strong>"));
    EXPECT_THAT(row, HasSubstr("<bdi>It is broken.</bdi>"));
    EXPECT_THAT(row, HasSubstr("<bdi>Some.Domain</bdi> -25"));
    EXPECT_THAT(row, HasSubstr("class=\"pages\" data-value=\"\"></td>"));
    EXPECT_THAT(row, HasSubstr("class=\"size\" data-value=\"\"></td>"));
    EXPECT_THAT(row, HasSubstr("class=\"attempts\" data-value=\"3\">3<"));
    EXPECT_THAT(row, Not(HasSubstr("<a ")));
}

TEST(ReportPage, MissingResourcesAreListedAndTheOthersCounted) {
    ReportRow row = converted("a");
    row.record.missingCount = 1002;
    row.record.missing = {{"image", "https://site.example/a.png"}, {"style sheet", "javascript:alert(1)"}};
    const std::string text = rowOf(row);
    EXPECT_THAT(text, HasSubstr("<strong>Incomplete</strong>"));
    EXPECT_THAT(text, HasSubstr("<summary>1,002 resources missing</summary>"));
    EXPECT_THAT(text, HasSubstr("<li>image: <bdi>https://site.example/a.png</bdi></li>"));
    EXPECT_THAT(text, HasSubstr("<li>style sheet: <bdi>javascript:alert(1)</bdi></li>"));
    EXPECT_THAT(text, HasSubstr("and 1,000 more"));
    row.record.missingCount = 2;
    EXPECT_THAT(rowOf(row), Not(HasSubstr(" more")));
}

TEST(ReportPage, LongTextsAreCut) {
    ReportRow row = failed("a", {"D", 1, std::string(1'000'000, 'x')});
    row.record.missingCount = 1;
    row.record.missing = {{"image", "data:" + std::string(1'000'000, 'A')}};
    EXPECT_LT(rowOf(row).size(), 5000u);
}

TEST(ReportPage, PicturesAndTextsAreThereWhereTheRowHasThem) {
    ReportRow row = converted("dir/a\"b");
    row.picture = "abc";
    row.textAddress = "./a.txt";
    const std::string text = rowOf(row);
    EXPECT_THAT(text, HasSubstr("<img src=\"data:image/jpeg;base64,YWJj\" alt=\"First page of a&quot;b\""));
    EXPECT_THAT(text, HasSubstr("<a href=\"./a.txt\">Text<"));
    EXPECT_THAT(text, Not(HasSubstr("No picture")));
}

TEST(ReportPage, NothingOfARecordIsMarkup) {
    const std::string evil = "\"'><script>evil()</script><img src=x onerror=evil()>&{{{script}}}\u202E\n";
    ReportRow row = failed(evil + "/" + evil, {evil, 1, evil});
    row.record.finished = evil;
    row.record.missingCount = 1;
    row.record.missing = {{evil, evil}};
    const std::string page = pageOf({row}, {evil});
    EXPECT_THAT(page, Not(HasSubstr("<script>evil")));
    EXPECT_THAT(page, Not(HasSubstr("<img")));
    EXPECT_THAT(page, Not(HasSubstr("\u202E")));
    EXPECT_THAT(page, HasSubstr("&lt;script&gt;evil()&lt;/script&gt;"));
    const std::size_t script = page.find("<script>");
    EXPECT_EQ(page.find("<script>", script + 1), std::string::npos);
}

TEST(ReportPage, TotalsAreOfAllRows) {
    ReportRow incomplete = converted("b");
    incomplete.record.missingCount = 2;
    const std::string page = pageOf({converted("a"), incomplete, failed("c", {"D", 1, "T"})});
    EXPECT_THAT(page, HasSubstr("<title>2 of 3 converted"));
    EXPECT_THAT(page, HasSubstr("<dt>Converted</dt><dd>2</dd>"));
    EXPECT_THAT(page, HasSubstr("<dt>Failed</dt><dd>1</dd>"));
    EXPECT_THAT(page, HasSubstr("<dt>Missing resources</dt><dd>2</dd>"));
    EXPECT_THAT(page, HasSubstr("<dt>Pages</dt><dd>6</dd>"));
    EXPECT_THAT(page, HasSubstr("<dd>91 kB</dd>"));
    EXPECT_THAT(page, HasSubstr("3 archives, 1 converted without some resources. "
                                "The last was done on 2026-11-23 10:05 UTC."));
    EXPECT_THAT(page, HasSubstr("<rect class=\"complete\" x=\"0\" width=\"333\""));
    EXPECT_THAT(page, HasSubstr("<rect class=\"incomplete\" x=\"333\" width=\"333\""));
    EXPECT_THAT(page, HasSubstr("<rect class=\"failed\" x=\"666\" width=\"334\""));
}

TEST(ReportPage, OfNothingIsAPage) {
    const std::string page = pageOf({});
    EXPECT_THAT(page, HasSubstr("0 archives</p>"));
    EXPECT_THAT(page, Not(HasSubstr("<rect")));
    EXPECT_TRUE(page.ends_with("</html>\n"));
}

TEST(ReportPage, OfMoreArchivesThanAreListedHasAllTotals) {
    Totals totals;
    totals.archives = 5000;
    totals.complete = 4900;
    totals.failed = 100;
    const std::string page = reportPage(totals, {converted("a"), failed("c", {"D", 1, "T"})});
    EXPECT_THAT(page, HasSubstr("<title>4,900 of 5,000 converted"));
    EXPECT_THAT(page, HasSubstr("<dt>Failed</dt><dd>100</dd>"));
    for (const char* choice : {"All <b>2</b>", "Complete <b>1</b>", "Incomplete <b>0</b>", "Failed <b>1</b>"})
        EXPECT_THAT(page, HasSubstr(choice));
}

TEST(ReportPage, NotesAreShown) {
    const std::string page = pageOf({}, {"Some note.", "Another."});
    EXPECT_THAT(page, HasSubstr("<p class=\"note\">Some note.</p>\n<p class=\"note\">Another.</p>"));
    EXPECT_THAT(pageOf({}), Not(HasSubstr("class=\"note\"")));
}

} // namespace
} // namespace qrv::batch
