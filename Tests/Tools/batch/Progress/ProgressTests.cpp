#include "Source/Tools/Common/TerminalText.h"
#include "Source/Tools/batch/Progress/ProgressBar.h"
#include "Source/Tools/batch/Progress/ProgressLog.h"

#include <gtest/gtest.h>
#include <sstream>

namespace qrv::batch {
namespace {

using namespace std::chrono_literals;

constexpr Terminal plainTerminal{true, false, false};
constexpr Terminal richTerminal{true, true, true};

Tally tallyOf(std::size_t total, std::size_t converted, std::size_t failed) {
    Tally tally;
    tally.total = total;
    tally.converted = converted;
    tally.failed = failed;
    return tally;
}

Record recordOf(const std::string& archive) {
    Record record;
    record.archive = archive;
    record.pages = 3;
    record.pdfSize = 45'000;
    record.milliseconds = 2400;
    return record;
}

Record failedRecordOf(const std::string& archive) {
    Record record = recordOf(archive);
    record.error = {"Domain", 259, "It\nfailed."};
    return record;
}

TEST(Tally, SaysTimesAndSizes) {
    EXPECT_EQ(timeText(0s), "0 s");
    EXPECT_EQ(timeText(59400ms), "59 s");
    EXPECT_EQ(timeText(59600ms), "1 min 00 s");
    EXPECT_EQ(timeText(200s), "3 min 20 s");
    EXPECT_EQ(timeText(3900s), "1 h 05 min");
    EXPECT_EQ(timeText(24h * 3 + 4h), "3 d 04 h");
    EXPECT_EQ(sizeText(0), "0 B");
    EXPECT_EQ(sizeText(999), "999 B");
    EXPECT_EQ(sizeText(1000), "1.0 kB");
    EXPECT_EQ(sizeText(45'678), "46 kB");
    EXPECT_EQ(sizeText(999'499), "999 kB");
    EXPECT_EQ(sizeText(999'600), "1.0 MB");
    EXPECT_EQ(sizeText(9'940'000'000), "9.9 GB");
    EXPECT_EQ(sizeText(9'223'372'036'854'775'807), "9223 PB");
}

TEST(Tally, SumsUp) {
    Tally tally = tallyOf(500, 480, 10);
    tally.convertedBefore = 9;
    tally.failedBefore = 1;
    EXPECT_EQ(summaryText(tally, 200s),
              "500 archives: 480 converted, 9 converted before, 10 failed, 1 failed before, "
              "which --retry-failed tries again; 3 min 20 s, 2.5 a second");
    EXPECT_EQ(summaryText(tallyOf(1, 1, 0), 2s), "1 archive: 1 converted; 2 s, 0.5 a second");
    EXPECT_EQ(summaryText(tallyOf(3, 1, 0), 0s), "3 archives: 1 converted, 2 left; 0 s");
}

TEST(ProgressLog, HasALineForEachArchive) {
    std::ostringstream stream;
    ProgressLog log(stream);
    log.started("a.webarchive");
    log.finished(recordOf("a\x1b[1m\n.webarchive"), Outcome::converted, tallyOf(500, 8, 1));
    log.finished(recordOf("b"), Outcome::convertedBefore, tallyOf(500, 9, 1));
    log.finished(failedRecordOf("c"), Outcome::failed, tallyOf(500, 9, 2));
    log.finished(failedRecordOf("d"), Outcome::failedBefore, tallyOf(500, 498, 2));
    log.passed(tallyOf(500, 498, 2), 1s);
    log.ended("done");
    EXPECT_EQ(stream.str(), "[  9/500] converted a\uFFFD[1m\uFFFD.webarchive (3 pages, 45 kB, 2 s)\n"
                            "[ 10/500] skipped   b (converted before)\n"
                            "[ 11/500] failed    c: It\uFFFDfailed. (Domain 259)\n"
                            "[500/500] failed    d (before): It\uFFFDfailed. (Domain 259)\n"
                            "done\n");
}

TEST(ProgressLog, SaysWhatIsMissing) {
    Record record = recordOf("a");
    record.pages = 1;
    record.missingCount = 2;
    EXPECT_EQ(outcomeText(record, Outcome::converted), "converted a (1 page, 45 kB, 2 s, 2 missing)");
    record.pages.reset();
    EXPECT_EQ(outcomeText(record, Outcome::converted), "converted a (45 kB, 2 s, 2 missing)");
}

TEST(ProgressBar, TellsHowFarItIs) {
    EXPECT_EQ(barText(tallyOf(500, 0, 0), 0s, "", 100, plainTerminal),
              "....................   0 % - 0 of 500");
    EXPECT_EQ(
        barText(tallyOf(500, 307, 3), 100s, "a/b.webarchive", 100, plainTerminal),
        "############........  62 % - 310 of 500 - 3 failed - 3.1/s - 1 min 01 s left - a/b.webarchive");
    EXPECT_EQ(barText(tallyOf(2, 2, 0), 1s, "", 100, richTerminal),
              "\x1b[32m████████████████████\x1b[0m 100 % · 2 of 2 · 2.0/s · 0 s left");
}

TEST(ProgressBar, FitsTheTerminal) {
    for (std::size_t columns = 0; columns < 120; ++columns) {
        const std::string text =
            barText(tallyOf(500, 307, 3), 100s, "日本/größe.webarchive", columns, {true, false, true});
        EXPECT_LE(columnsOf(text), columns) << text;
    }
    EXPECT_EQ(barText(tallyOf(500, 250, 0), 0s, std::string(300, 'x'), 60, plainTerminal).size(),
              62u); // "…" has 3 bytes
}

TEST(ProgressBar, FailuresStandAboveIt) {
    std::ostringstream stream;
    ProgressBar bar(stream, plainTerminal);
    bar.started("a");
    bar.started("b");
    bar.finished(failedRecordOf("a"), Outcome::failed, tallyOf(2, 0, 1));
    bar.passed(tallyOf(2, 0, 1), 10s);
    bar.finished(recordOf("b"), Outcome::converted, tallyOf(2, 1, 1));
    bar.ended("2 archives");
    const std::string text = stream.str();
    EXPECT_TRUE(text.starts_with("\r\x1b[Kfailed    a: It\uFFFDfailed. (Domain 259)\n\r\x1b[K##########...."))
        << text;
    EXPECT_NE(text.find(" - b"), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("\r\x1b[K2 archives\n")) << text;
}

} // namespace
} // namespace qrv::batch
