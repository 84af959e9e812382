#include "Source/Tools/batch/Results/ResultsFile.h"

#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/batch/Results/History.h"
#include "Source/Tools/batch/Results/Manifest.h"
#include "Source/Tools/batch/Results/RecordText.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qrv::batch {
namespace {

using ::testing::ElementsAre;

Record recordOf(const std::string& pdf, const std::string& sha256 = "1", const std::string& finished = "1") {
    Record record;
    record.archive = pdf + ".webarchive";
    record.sha256 = sha256;
    record.mode = "print";
    record.pdf = pdf;
    record.pdfSha256 = "hash of " + pdf;
    record.finished = finished;
    return record;
}

class ResultsFileTest : public ::testing::Test {
protected:
    std::string folder() const { return (folder_.path() / "out").string(); }

    std::vector<std::string> read() const {
        std::vector<std::string> pdfs;
        readRecords(folder(), [&pdfs](const Record& record, RecordPlace) { pdfs.push_back(record.pdf); });
        return pdfs;
    }

    static std::string failureOf(const std::function<void()>& work) {
        try {
            work();
        } catch (const Failure& error) {
            return error.what();
        }
        return "";
    }

    TemporaryFolder folder_;
};

TEST_F(ResultsFileTest, IsAppendedTo) {
    EXPECT_THAT(read(), ElementsAre()); // no folder yet
    ResultsFile(folder(), {}).append(recordOf("a"));
    ResultsFile(folder(), {}).append(recordOf("b"));
    ResultsFile(folder(), {1, 3}).append(recordOf("c"));
    EXPECT_THAT(read(), ElementsAre("c", "a", "b")); // by the files' names
    EXPECT_EQ(folder_.read("out/web2pdf-batch.1-of-3.jsonl"), lineOf(recordOf("c")));
}

TEST_F(ResultsFileTest, ALineThatWasCutOffIsPassedBy) {
    folder_.write("out/web2pdf-batch.jsonl", lineOf(recordOf("a")) + lineOf(recordOf("b")).substr(0, 50));
    EXPECT_THAT(read(), ElementsAre("a"));
    ResultsFile(folder(), {}).append(recordOf("c"));
    EXPECT_THAT(read(), ElementsAre("a", "c"));
}

TEST_F(ResultsFileTest, OtherFilesAreNotRead) {
    folder_.write("out/other.jsonl", lineOf(recordOf("a")));
    folder_.write("out/web2pdf-batch.txt", lineOf(recordOf("b")));
    std::filesystem::create_directories(folder() + "/web2pdf-batch.x.jsonl");
    EXPECT_THAT(read(), ElementsAre());
}

TEST_F(ResultsFileTest, OneRunWritesAtATime) {
    const ResultsFile first(folder(), {});
    EXPECT_EQ(failureOf([this] { ResultsFile(folder(), {}); }),
              "another run is writing " + folder() + "/web2pdf-batch.jsonl");
    ResultsFile(folder(), {0, 2}).append(recordOf("a")); // of a shard: another file
}

TEST_F(ResultsFileTest, WhatCannotBeWrittenIsTold) {
    folder_.write("file", "");
    EXPECT_NE(failureOf([this] { ResultsFile((folder_.path() / "file/out").string(), {}); }), "");
    std::filesystem::create_directories(folder() + "/web2pdf-batch.jsonl");
    EXPECT_EQ(failureOf([this] { ResultsFile(folder(), {}); }),
              folder() + "/web2pdf-batch.jsonl: Is a directory");
    ASSERT_EQ(::mkfifo((folder() + "/web2pdf-batch.0-of-2.jsonl").c_str(), 0600), 0);
    EXPECT_EQ(failureOf([this] {
                  ResultsFile(folder(), {0, 2});
              }),
              folder() + "/web2pdf-batch.0-of-2.jsonl is no regular file");
}

TEST_F(ResultsFileTest, TheLastRecordOfAPDFCounts) {
    Record failed = recordOf("a", "1", "2");
    failed.error = {"d", 1, "t"};
    {
        ResultsFile file(folder(), {});
        file.append(failed);
        file.append(recordOf("a", "2", "2")); // in the same second
        file.append(recordOf("b", "3", "5"));
        file.append(recordOf("d", "5", "9"));
        file.append(recordOf("d", "6", "8")); // the clock was put back
    }
    ResultsFile(folder(), {0, 2}).append(recordOf("b", "4", "4")); // of a file that is read before, and older
    const History history(folder(), {});
    EXPECT_EQ(history.of("a")->sha256, "2");
    EXPECT_EQ(history.of("b")->sha256, "3");
    EXPECT_EQ(history.of("c"), nullptr);
    EXPECT_EQ(history.of("d")->sha256, "6");
}

TEST_F(ResultsFileTest, HistoryKnowsItsShardOnly) {
    ResultsFile file(folder(), {});
    for (int i = 0; i < 40; ++i) file.append(recordOf(std::to_string(i)));
    std::size_t known = 0;
    for (std::uint64_t index = 0; index < 4; ++index) known += History(folder(), {index, 4}).all().size();
    EXPECT_EQ(known, 40u);
    EXPECT_LT(History(folder(), {0, 4}).all().size(), 40u);
}

TEST_F(ResultsFileTest, HistoryReadsWhatIsMissingAgain) {
    Record lacking = recordOf("b");
    lacking.missingCount = 2;
    lacking.missing = {{"image", "http://site.example/a.png"}, {"font", "http://site.example/b"}};
    folder_.write("out/web2pdf-batch.0-of-2.jsonl", lineOf(recordOf("b")));
    folder_.write("out/web2pdf-batch.jsonl", "no record\n" + lineOf(recordOf("a")) + lineOf(lacking));
    const History history(folder(), {});
    EXPECT_TRUE(history.of("b")->missing.empty());
    EXPECT_EQ(history.whole(*history.of("b")), lacking);
    EXPECT_EQ(history.whole(*history.of("a")), recordOf("a"));
    // What is not there any more is not made up.
    folder_.write("out/web2pdf-batch.jsonl", lineOf(lacking) + lineOf(recordOf("a")));
    EXPECT_EQ(history.whole(*history.of("b")), *history.of("b"));
    std::filesystem::remove(folder() + "/web2pdf-batch.jsonl");
    EXPECT_EQ(history.whole(*history.of("b")), *history.of("b"));
}

TEST_F(ResultsFileTest, HistoryRemembersTexts) {
    {
        ResultsFile file(folder(), {});
        Record written = recordOf("a");
        written.text = "a.txt";
        file.append(written);
        Record failed = recordOf("a");
        failed.error = {"d", 1, "t"};
        file.append(failed);
        file.append(recordOf("b"));
        written.pdf = "c";
        file.append(written);
        file.append(recordOf("c")); // with which the text has gone
    }
    const History history(folder(), {});
    EXPECT_EQ(history.of("a")->text, "a.txt");
    EXPECT_EQ(history.of("b")->text, "");
    EXPECT_EQ(history.of("c")->text, "");
}

TEST_F(ResultsFileTest, HistoryFindsTheSameContent) {
    {
        ResultsFile file(folder(), {});
        Record failed = recordOf("a", "1");
        failed.error = {"d", 1, "t"};
        file.append(failed);
        file.append(recordOf("b", "1"));
    }
    const History history(folder(), {});
    Record wanted = recordOf("c", "1");
    ASSERT_NE(history.ofContent(wanted), nullptr);
    EXPECT_EQ(history.ofContent(wanted)->pdf, "b");
    wanted.mode = "screen";
    EXPECT_EQ(history.ofContent(wanted), nullptr);
    wanted = recordOf("c", "1");
    wanted.wishes = "xmp";
    EXPECT_EQ(history.ofContent(wanted), nullptr);
    EXPECT_EQ(history.ofContent(recordOf("c", "2")), nullptr);
    EXPECT_FALSE(History::matches(recordOf("a", ""), recordOf("a", ""))); // unreadable then and now
}

TEST_F(ResultsFileTest, TheManifestHasWhatIsThere) {
    {
        ResultsFile file(folder(), {});
        file.append(recordOf("b"));
        file.append(recordOf("a\n\\"));
        Record failed = recordOf("c");
        failed.error = {"d", 1, "t"};
        file.append(failed);
    }
    writeManifest(folder(), {});
    EXPECT_EQ(folder_.read("out/manifest-sha256.txt"), "\\hash of a\n\\  a\\n\\\\\nhash of b  b\n");
    writeManifest(folder(), {0, 1});
}

} // namespace
} // namespace qrv::batch
