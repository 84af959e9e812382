#include "QRVFoundation/Source/QRVLogger.h"

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Logging/os_log.h"
#include "QRVFoundation/Source/QRVLog.h"
#include "QRVFoundation/Source/QRVNSLogWriter.h"
#include "QRVFoundation/Source/QRVOSLogWriter.h"
#include "Tests/Platform/Logging/LogReceiver.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <thread>

namespace qrv {

namespace {

struct Line {
    NSString prefix;
    NSString message;
    NSString area;
};

/// Keeps what it is given.
class KeepingWriter : public QRVLogWriter {
public:
    explicit KeepingWriter(std::vector<Line>& lines) : lines_(lines) {}

    void writePrefix_message_area(const NSString& prefix, const NSString& message,
                                  const NSString& area) override {
        lines_.push_back({prefix, message, area});
    }

private:
    std::vector<Line>& lines_;
};

const NSNumber yes = NSNumber::numberWithBool(true);
const NSNumber no = NSNumber::numberWithBool(false);

class Logger : public testing::Test {
protected:
    ~Logger() override { QRVLogger::setSharedLogger(nullptr); }

    std::shared_ptr<QRVLogger> make(const NSDictionary& settings) {
        return std::make_shared<QRVLogger>(settings, std::make_unique<KeepingWriter>(lines));
    }

    /// The prefix of a line of the area under the settings.
    std::string prefix(const NSDictionary& settings, const NSString& area) {
        make(settings)->logFile_line_function_area_format("/src/Some unit", 42, "-[Some go]", area, u"m");
        return lines.back().prefix.utf8();
    }

    std::vector<Line> lines;
};

NSDictionary with(const char16_t* key, const id& value) {
    return {{NSString(key), value}};
}

} // namespace

TEST_F(Logger, NilAreaIsEnabledEvenWithEverySwitchOff) {
    EXPECT_TRUE(make({})->isEnabledForArea({}));
    EXPECT_TRUE(make(with(QRVLoggerAllAreas, no))->isEnabledForArea({}));
}

TEST_F(Logger, AllAreasEnablesAnAreaWhoseOwnKeyIsFalse) {
    const auto logger = make({{NSString(QRVLoggerAllAreas), yes}, {NSString(u"Area"), no}});
    EXPECT_TRUE(logger->isEnabledForArea(u"Area"));
    EXPECT_TRUE(logger->isEnabledForArea(u"Other"));
}

TEST_F(Logger, AreaWithAFalseValueOrNoKeyIsDisabled) {
    const auto logger = make({{NSString(u"On"), yes}, {NSString(u"Off"), no}});
    EXPECT_TRUE(logger->isEnabledForArea(u"On"));
    EXPECT_FALSE(logger->isEnabledForArea(u"Off"));
    EXPECT_FALSE(logger->isEnabledForArea(u"Unknown"));
    EXPECT_FALSE(logger->isEnabledForArea(u""));
}

TEST_F(Logger, ValuesAreReadThroughTheirBooleanValue) {
    const auto logger = make({{NSString(u"yes"), NSString(u"YES")},
                              {NSString(u"no"), NSString(u"NO")},
                              {NSString(u"two"), NSNumber::numberWithInteger(2)},
                              {NSString(u"list"), NSArray::array()}});
    EXPECT_TRUE(logger->isOptionEnabled(u"yes"));
    EXPECT_FALSE(logger->isOptionEnabled(u"no"));
    EXPECT_TRUE(logger->isOptionEnabled(u"two"));
    EXPECT_FALSE(logger->isOptionEnabled(u"list"));
    EXPECT_FALSE(logger->isOptionEnabled(u"absent"));
    EXPECT_FALSE(logger->isOptionEnabled({}));
}

TEST_F(Logger, OptionsHaveTheirDefaults) {
    const auto logger = make({});
    for (const char16_t* off : {QRVLoggerAllAreas, QRVLoggerIncludeFile, QRVLoggerIncludeLine,
                                QRVLoggerIncludeThread, QRVLoggerIncludeFunction, QRVLoggerPrefix}) {
        EXPECT_FALSE(logger->isOptionEnabled(off));
    }
    EXPECT_TRUE(logger->isOptionEnabled(QRVLoggerIncludeArea));
}

TEST_F(Logger, IncludeLineWithoutIncludeFileAddsNoLineNumber) {
    EXPECT_EQ(prefix(with(QRVLoggerIncludeLine, yes), u"Area"), "[Area]");
}

TEST_F(Logger, IncludeFileShowsTheLastPathComponent) {
    EXPECT_EQ(prefix(with(QRVLoggerIncludeFile, yes), {}), "Some unit");
    EXPECT_EQ(prefix({{NSString(QRVLoggerIncludeFile), yes}, {NSString(QRVLoggerIncludeLine), yes}}, {}),
              "Some unit:42");
}

TEST_F(Logger, IncludeAreaWithANilAreaAddsNoPiece) {
    EXPECT_EQ(prefix(with(QRVLoggerIncludeArea, yes), {}), "");
}

TEST_F(Logger, IncludeAreaSetToFalseRemovesThePiece) {
    EXPECT_EQ(prefix(with(QRVLoggerIncludeArea, no), u"Area"), "");
    EXPECT_EQ(prefix({}, u"Area"), "[Area]");
}

TEST_F(Logger, EntriesOverrideDefaultsWhateverTheirOrder) {
    EXPECT_EQ(prefix({{NSString(QRVLoggerIncludeFunction), yes}, {NSString(QRVLoggerIncludeArea), no}}, u"A"),
              "-[Some go]");
    EXPECT_EQ(prefix({{NSString(QRVLoggerIncludeArea), no}, {NSString(QRVLoggerIncludeFunction), yes}}, u"A"),
              "-[Some go]");
}

TEST_F(Logger, PrefixThatIsANumberIsShownByItsDescriptionFirst) {
    EXPECT_EQ(prefix(with(QRVLoggerPrefix, NSNumber::numberWithInteger(17)), u"Area"), "17 [Area]");
}

TEST_F(Logger, EmptyPrefixTextIsAPieceAllTheSame) {
    EXPECT_EQ(prefix(with(QRVLoggerPrefix, NSString(u"")), u"Area"), " [Area]");
}

TEST_F(Logger, PiecesStandInOrderSeparatedBySingleBlanks) {
    pthread_setname_np(pthread_self(), "main thread");
    EXPECT_EQ(prefix({{NSString(QRVLoggerIncludeFunction), yes},
                      {NSString(QRVLoggerIncludeThread), yes},
                      {NSString(QRVLoggerIncludeLine), yes},
                      {NSString(QRVLoggerIncludeFile), yes},
                      {NSString(QRVLoggerPrefix), NSString(u"Pre")}},
                     u"Area"),
              "Pre [Area] Some unit:42 <main: \"main thread\"> -[Some go]");
}

TEST_F(Logger, OtherThreadsAreNamedByAddressAndName) {
    std::string shown;
    std::thread([&] {
        pthread_setname_np(pthread_self(), "worker 1");
        shown = prefix(with(QRVLoggerIncludeThread, yes), {});
    }).join();
    EXPECT_TRUE(shown.starts_with("<0x")) << shown;
    EXPECT_TRUE(shown.ends_with(": \"worker 1\">")) << shown;
}

TEST_F(Logger, NullFileAndFunctionCountAsEmpty) {
    const auto logger =
        make({{NSString(QRVLoggerIncludeFile), yes}, {NSString(QRVLoggerIncludeFunction), yes}});
    logger->logFile_line_function_area_format(nullptr, 0, nullptr, {}, {});
    EXPECT_EQ(lines.back().prefix, NSString(u" "));
    EXPECT_TRUE(lines.back().message.isNil());
}

TEST_F(Logger, FormatIsExpandedWithItsArguments) {
    make({})->logFile_line_function_area_format("f", 1, "g", u"Area", u"%@ of %d", NSString(u"a"), 3);
    EXPECT_EQ(lines.back().message, NSString(u"a of 3"));
    EXPECT_EQ(lines.back().area, NSString(u"Area"));
    make({})->logFile_line_function_area_format_arguments("f", 1, "g", {}, u"%d", FormatArguments(5));
    EXPECT_EQ(lines.back().message, NSString(u"5"));
    EXPECT_TRUE(lines.back().area.isNil());
}

TEST_F(Logger, MessageWithPercentSignsIsLoggedLiterally) {
    make({})->logFile_line_function_area_message("f", 1, "g", {}, NSString(u"%d %@ 100%"));
    EXPECT_EQ(lines.back().message, NSString(u"%d %@ 100%"));
    make({})->logFile_line_function_area_message("f", 1, "g", {}, NSNumber::numberWithInteger(4));
    EXPECT_EQ(lines.back().message, NSString(u"4"));
    make({})->logFile_line_function_area_message("f", 1, "g", {}, {});
    EXPECT_EQ(lines.back().message, NSString(u"(null)"));
}

TEST_F(Logger, LogPrefixPassesAllThreeUnchanged) {
    make({})->logPrefix_message_area(u" p ", u"%@", {});
    EXPECT_EQ(lines.back().prefix, NSString(u" p "));
    EXPECT_EQ(lines.back().message, NSString(u"%@"));
    EXPECT_TRUE(lines.back().area.isNil());
}

TEST_F(Logger, NilPrefixRaisesAndWritesNothing) {
    const auto logger = make({});
    try {
        logger->logPrefix_message_area({}, u"m", {});
        FAIL();
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), NSString(NSInternalInconsistencyException));
        EXPECT_EQ(exception.reason(), NSString(u"Invalid parameter not satisfying: prefix"));
        EXPECT_TRUE(
            exception.userInfo().description().rangeOfString(u"QRVFoundation/Source/QRVLogger").length > 0);
    }
    EXPECT_TRUE(lines.empty());
}

TEST_F(Logger, LineWithDefaultSettingsAndNilAreaBeginsWithABlank) {
    EXPECT_EQ(prefix({}, {}), "");
    testing::internal::CaptureStderr();
    QRVLogger(NSDictionary()).logFile_line_function_area_format("f", 1, "g", {}, u"text");
    EXPECT_TRUE(testing::internal::GetCapturedStderr().ends_with("]  text\n"));
}

TEST_F(Logger, SettingsAreASnapshot) {
    NSMutableDictionary settings;
    settings.setObject_forKey(yes, NSString(u"Area"));
    const auto logger = make(settings);
    settings.setObject_forKey(no, NSString(u"Area"));
    EXPECT_TRUE(logger->isEnabledForArea(u"Area"));
}

TEST_F(Logger, WriterIsChosenByTheAvailabilityOfTheUnifiedLog) {
    EXPECT_TRUE(dynamic_cast<const QRVOSLogWriter*>(&QRVLogger(NSDictionary()).writer()));
    NSProcessInfo::processInfo().setVersionForTesting({1349.0, {10, 11, 0}});
    EXPECT_TRUE(dynamic_cast<const QRVNSLogWriter*>(&QRVLogger(NSDictionary()).writer()));
    NSProcessInfo::processInfo().setVersionForTesting();
}

TEST_F(Logger, SharedLoggerIsADifferentOneEachTimeWhileNoneIsInstalled) {
    const auto first = QRVLogger::sharedLogger();
    const auto second = QRVLogger::sharedLogger();
    EXPECT_NE(first, second);
    EXPECT_NE(&first->writer(), &second->writer());
    EXPECT_TRUE(first->isEnabledForArea(u"any area"));
    EXPECT_TRUE(first->isOptionEnabled(QRVLoggerIncludeArea));
    EXPECT_FALSE(first->isOptionEnabled(QRVLoggerIncludeFile));
}

TEST_F(Logger, InstalledLoggerIsSharedUntilItIsReplaced) {
    const auto logger = make({});
    const std::weak_ptr<QRVLogger> watched = make({});
    QRVLogger::setSharedLogger(logger);
    EXPECT_EQ(QRVLogger::sharedLogger(), logger);
    EXPECT_EQ(QRVLogger::sharedLogger(), logger);
    QRVLogger::setSharedLogger(make({}));
    EXPECT_NE(QRVLogger::sharedLogger(), logger);
    EXPECT_EQ(logger.use_count(), 1);
    QRVLogger::setSharedLogger(nullptr);
    EXPECT_NE(QRVLogger::sharedLogger(), QRVLogger::sharedLogger());
}

TEST_F(Logger, FetchingAndInstallingFromManyThreadsIsSafe) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 100; ++i) {
                if (t % 2 == 0) {
                    QRVLogger::setSharedLogger(std::make_shared<QRVLogger>(with(QRVLoggerAllAreas, yes)));
                }
                EXPECT_TRUE(QRVLogger::sharedLogger()->isEnabledForArea(u"A"));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

TEST_F(Logger, ManyThreadsLoggingToNewAreasWriteWholeLines) {
    LogReceiver journal;
    setJournalSocketForTesting(journal.path());
    testing::internal::CaptureStderr();
    QRVLogger::setSharedLogger(std::make_shared<QRVLogger>(with(QRVLoggerAllAreas, yes)));
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 30; ++i) {
                QRV_LOG("unit", "f", NSString::stringWithFormat(u"Area%d", i), u"line %d of %d", i, t);
            }
        });
    }
    std::size_t entries = 0;
    for (std::thread& thread : threads) thread.join();
    while (const auto entry = journal.nextEntry()) {
        const std::string area = entry->at("CATEGORY").substr(std::string("QRVLogger.").size());
        EXPECT_TRUE(entry->at("MESSAGE").starts_with("[" + area + "] line "));
        ++entries;
    }
    EXPECT_GT(entries, 0u);
    std::istringstream written(testing::internal::GetCapturedStderr());
    std::size_t count = 0;
    for (std::string line; std::getline(written, line); ++count) {
        EXPECT_NE(line.find("] [Area"), std::string::npos) << line;
        EXPECT_NE(line.find("] line "), std::string::npos) << line;
    }
    EXPECT_EQ(count, 240u);
}

TEST_F(Logger, ShorthandSuppliesTheLineAndPassesUnitFunctionAndArea) {
    QRVLogger::setSharedLogger(make({{NSString(u"Area"), yes},
                                     {NSString(QRVLoggerIncludeFile), yes},
                                     {NSString(QRVLoggerIncludeLine), yes},
                                     {NSString(QRVLoggerIncludeFunction), yes}}));
    const int line = __LINE__ + 1;
    QRV_LOG("Source/Unit", "-[Some go]", u"Area", u"%d", 5);
    EXPECT_EQ(lines.back().prefix, NSString::stringWithFormat(u"[Area] Unit:%d -[Some go]", line));
    EXPECT_EQ(lines.back().message, NSString(u"5"));
    EXPECT_EQ(lines.back().area, NSString(u"Area"));
}

TEST_F(Logger, ShorthandEvaluatesNothingForADisabledArea) {
    QRVLogger::setSharedLogger(make({}));
    int evaluations = 0;
    const auto evaluate = [&] { return ++evaluations; };
    QRV_LOG("U", "f", u"Area", u"%d", evaluate());
    EXPECT_EQ(evaluations, 0);
    QRV_LOG("U", "f", NSString(), u"%d", evaluate());
    EXPECT_EQ(evaluations, 1);
    EXPECT_EQ(lines.size(), 1u);
}

} // namespace qrv
