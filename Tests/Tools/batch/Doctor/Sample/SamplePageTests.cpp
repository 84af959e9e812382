#include "Source/Tools/batch/Doctor/Sample/SamplePage.h"

#include "Platform/WebArchive/WebArchive.h"

#include <gmock/gmock.h>

namespace qrv::batch {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// A number for each sheet, of which the first is this one.
std::string numbers(const std::string& first) {
    std::string text = first;
    for (std::size_t i = 1; i < writingSystems().size(); ++i) text += ",0";
    return text;
}

TEST(SamplePage, IsAnArchiveThatTellsItsScriptThePort) {
    const WebArchive archive = WebArchive::initWithData(sampleArchive(4321));
    ASSERT_FALSE(archive.isNil());
    EXPECT_THAT(std::string(archive.mainResource().data().bytes()), HasSubstr("http://127.0.0.1:4321/"));
}

TEST(SamplePage, ReportIsReadFromTheTitle) {
    const auto report = reportInTitle("web2pdf-batch/1 156.0.1.2 7 - " + numbers("3"));
    ASSERT_TRUE(report);
    EXPECT_EQ(report->version, "156.0.1.2");
    EXPECT_EQ(report->tried, 7);
    EXPECT_THAT(report->reached, IsEmpty());
    EXPECT_THAT(report->missing, SizeIs(writingSystems().size()));
    EXPECT_EQ(report->missing[0], 3);
}

TEST(SamplePage, AddressesThatWereReachedAreNamed) {
    const auto report = reportInTitle("web2pdf-batch/1 1 2 http://a/,http://b/ " + numbers("0"));
    ASSERT_TRUE(report);
    EXPECT_THAT(report->reached, ElementsAre("http://a/", "http://b/"));
}

TEST(SamplePage, OtherTitlesAreNoReport) {
    for (const std::string& title :
         {std::string(), std::string("web2pdf-batch/1"), "web2pdf-batch/2 1 7 - " + numbers("0"),
          "web2pdf-batch/1 1 x - " + numbers("0"), "web2pdf-batch/1 1 7 - " + numbers("-1"),
          std::string("web2pdf-batch/1 1 7 - 0,0"), "web2pdf-batch/1 1 7 - " + numbers("0") + " more"})
        EXPECT_FALSE(reportInTitle(title)) << title;
}

} // namespace
} // namespace qrv::batch
