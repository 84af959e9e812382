#include "Source/Tools/batch/Conversion/ToolAnswer.h"

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSNumber.h"
#include "Source/Tools/batch/Conversion/BatchError.h"
#include "Source/Tools/web2pdf.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qrv::batch {
namespace {

using ::testing::ElementsAre;

std::string plist(const std::string& contents) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" + contents +
           "</dict></plist>\n";
}

TEST(ToolAnswer, OfSuccess) {
    const auto answer =
        answerOfTool(plist("<key>succeeded</key><true/><key>path</key><string>/a.pdf</string>"));
    ASSERT_TRUE(answer);
    EXPECT_FALSE(answer->error);
}

TEST(ToolAnswer, OfFailureHasTheErrorThatTheToolArchived) {
    NSMutableDictionary result;
    const NSError error = makeBadArchiveError(u"/a/b.webarchive");
    result.setObject_forKey(NSNumber::numberWithBool(false), NSString(u"succeeded"));
    result.setObject_forKey(archiveError(error), NSString(u"errorData"));
    result.setObject_forKey(error.localizedDescription(), NSString(u"errorString"));
    const auto answer = answerOfTool(std::string(dataFromPropertyList(result.copy()).bytes()));
    ASSERT_TRUE(answer && answer->error);
    EXPECT_EQ(*answer->error,
              (ConversionError{
                  "NSCocoaErrorDomain", 259,
                  "The file “b.webarchive” couldn’t be opened because it isn’t in the correct format."}));
}

TEST(ToolAnswer, OfFailureMayLackItsParts) {
    const auto answer =
        answerOfTool(plist("<key>succeeded</key><false/><key>errorData</key><data>AAAA</data>"));
    ASSERT_TRUE(answer && answer->error);
    EXPECT_EQ(*answer->error, (ConversionError{"", 0, ""}));
}

TEST(ToolAnswer, WhatIsNoneIsNothing) {
    for (const std::string& text :
         {std::string(), std::string("garbage"), plist(""), plist("<key>succeeded</key><string>x</string>"),
          std::string("<?xml version=\"1.0\"?><plist version=\"1.0\"><array/></plist>")})
        EXPECT_FALSE(answerOfTool(text)) << text;
}

constexpr char stamp[] = "2026-11-21 15:26:44.852 web2pdf[7612:7612] ";

TEST(MissingInLog, NamesKindsAndAddresses) {
    const MissingResources missing = missingInLog(std::string("line\n") + stamp +
                                                  "the archive does not hold 2 resources that the page asked "
                                                  "for: style sheet http://x.example/a.css, image "
                                                  "http://x.example/b.png\nmore\n");
    EXPECT_EQ(missing.count, 2);
    EXPECT_THAT(missing.named, ElementsAre(MissingResource{"style sheet", "http://x.example/a.css"},
                                           MissingResource{"image", "http://x.example/b.png"}));
}

TEST(MissingInLog, MayBeMore) {
    const MissingResources missing =
        missingInLog(std::string(stamp) + "the archive does not hold at least 1000 resources that the page "
                                          "asked for: font http://x/a, and more");
    EXPECT_EQ(missing.count, 1000);
    EXPECT_THAT(missing.named, ElementsAre(MissingResource{"font", "http://x/a"}));
}

TEST(MissingInLog, IsNothingInOtherLogs) {
    for (const char* log :
         {"", "the archive does not hold 2 resources that the page asked for: a b",
          "] the archive does not hold ", "] the archive does not hold x that the page asked for: "}) {
        EXPECT_EQ(missingInLog(log).count, 0) << log;
        EXPECT_TRUE(missingInLog(log).named.empty()) << log;
    }
}

TEST(BatchError, TellsWhatCanPass) {
    EXPECT_TRUE(canPass(batchError(BatchToolEndedError, "")));
    EXPECT_TRUE(canPass({"NSURLErrorDomain", NSURLErrorNetworkConnectionLost, ""}));
    EXPECT_TRUE(canPass({"NSURLErrorDomain", NSURLErrorTimedOut, "The web engine did not answer in time."}));
    EXPECT_TRUE(canPass({"NSPOSIXErrorDomain", ENOMEM, ""}));
    EXPECT_FALSE(canPass({"NSURLErrorDomain", NSURLErrorTimedOut, "The deadline has passed."}));
    EXPECT_FALSE(canPass({"NSCocoaErrorDomain", 259, ""}));
    EXPECT_FALSE(canPass({"NSPOSIXErrorDomain", ENOSPC, ""}));
    for (const BatchErrorCode code :
         {BatchTimedOutError, BatchNoPDFError, BatchMissingError, BatchFileError, BatchNotStartedError})
        EXPECT_FALSE(canPass(batchError(code, "")));
}

} // namespace
} // namespace qrv::batch
