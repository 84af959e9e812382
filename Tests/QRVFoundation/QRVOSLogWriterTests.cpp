#include "QRVFoundation/Source/QRVOSLogWriter.h"

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Platform/Logging/LogReceiver.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <thread>

namespace qrv {

namespace {

using Lines = std::vector<std::string>;

class OSLogWriter : public testing::Test {
protected:
    OSLogWriter() {
        setenv("TZ", "UTC", 1);
        setJournalSocketForTesting(journal.path());
        NSProcessInfo::processInfo().setProcessNameForTesting(u"tool");
        NSDate::setClockForTesting([] { return 815270400.123; }); // 2026-11-02 00:00:00.123
        testing::internal::CaptureStderr();
    }

    ~OSLogWriter() override {
        if (!taken_) testing::internal::GetCapturedStderr();
        NSDate::setClockForTesting(nullptr);
        unsetenv("QRVIsInXcode");
    }

    /// The messages that the journal got.
    Lines entries() {
        Lines messages;
        while (const auto entry = journal.nextEntry()) messages.push_back(entry->at("MESSAGE"));
        return messages;
    }

    std::string standardError() {
        taken_ = true;
        return testing::internal::GetCapturedStderr();
    }

    LogReceiver journal;

private:
    bool taken_ = false;
};

NSString repeated(char16_t unit, std::size_t count) {
    return NSString(std::u16string(count, unit));
}

std::string joined(const NSArray& pieces) {
    return pieces.componentsJoinedByString(u"|").utf8();
}

std::vector<std::size_t> lengths(const NSArray& pieces) {
    std::vector<std::size_t> all;
    for (const id& piece : pieces) all.push_back(as<NSString>(piece).length());
    return all;
}

} // namespace

TEST_F(OSLogWriter, WriterMadeAfterAChangeOfTheZoneFollowsIt) {
    QRVOSLogWriter().logCString_area("first", {});
    setenv("TZ", "<+0330>-3:30", 1);
    QRVOSLogWriter().logCString_area("second", {});
    const std::string lines = standardError();
    EXPECT_TRUE(
        lines.starts_with("2026-11-02 00:00:00.123 [org.quillvane.tool] first\n2026-11-02 03:30:00.123 "))
        << lines;
}

TEST_F(OSLogWriter, LineGoesToTheUnifiedLogAndToStandardError) {
    QRVOSLogWriter().writePrefix_message_area(u"[Some]", u"100% text %@", u"Some");
    const auto entry = journal.nextEntry();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->at("MESSAGE"), "[Some] 100% text %@");
    EXPECT_EQ(entry->at("SUBSYSTEM"), "org.quillvane.tool");
    EXPECT_EQ(entry->at("CATEGORY"), "QRVLogger.Some");
    EXPECT_EQ(entry->at("PRIORITY"), "3");
    EXPECT_EQ(standardError(), "2026-11-02 00:00:00.123 [org.quillvane.tool] [Some] 100% text %@\n");
}

TEST_F(OSLogWriter, LineWithoutAnAreaHasTheGeneralCategoryAndKeepsTheLeadingBlank) {
    QRVOSLogWriter().writePrefix_message_area(u"", u"text", {});
    const auto entry = journal.nextEntry();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->at("MESSAGE"), " text");
    EXPECT_EQ(entry->at("CATEGORY"), "QRVLogger");
    EXPECT_EQ(standardError(), "2026-11-02 00:00:00.123 [org.quillvane.tool]  text\n");
}

TEST_F(OSLogWriter, LineOfExactly255BytesIsWrittenWhole) {
    QRVOSLogWriter().writePrefix_message_area(u"ab", repeated(u'x', 252), {});
    EXPECT_EQ(entries(), Lines{"ab " + std::string(252, 'x')});
}

TEST_F(OSLogWriter, LineOf256BytesIsSplit) {
    QRVOSLogWriter().writePrefix_message_area(u"ab", repeated(u'x', 253), {});
    EXPECT_EQ(entries(), (Lines{"ab " + std::string(129, 'x'), "ab " + std::string(124, 'x')}));
}

TEST_F(OSLogWriter, LengthIsCountedInBytesNotInUnits) {
    // 126 characters of two bytes, prefix and blank: 255 bytes.
    QRVOSLogWriter().writePrefix_message_area(u"ab", repeated(u'\u00E4', 126), {});
    EXPECT_EQ(entries().size(), 1u);
    QRVOSLogWriter().writePrefix_message_area(u"abc", repeated(u'\u00E4', 130), {});
    EXPECT_EQ(entries().size(), 2u);
}

TEST_F(OSLogWriter, LongMessageIsOneEntryPerChunkOfEachLineWithoutTheEmptyOnes) {
    const NSString message = NSString::stringWithFormat(u"first\n\n%@\n\nlast\n", repeated(u'x', 300));
    QRVOSLogWriter().writePrefix_message_area(u"[P]", message, {});
    EXPECT_EQ(entries(), (Lines{"[P] first", "[P] " + std::string(129, 'x'), "[P] " + std::string(129, 'x'),
                                "[P] " + std::string(42, 'x'), "[P] last"}));
}

TEST_F(OSLogWriter, EachPieceIsALineOfItsOwnOnStandardError) {
    QRVOSLogWriter().writePrefix_message_area(u"[P]", repeated(u'x', 300), {});
    const std::string head = "2026-11-02 00:00:00.123 [org.quillvane.tool] [P] ";
    EXPECT_EQ(standardError(), head + std::string(129, 'x') + "\n" + head + std::string(129, 'x') + "\n" +
                                   head + std::string(42, 'x') + "\n");
}

TEST_F(OSLogWriter, SingleLineOf300CharactersGivesThreeEntries) {
    EXPECT_EQ(lengths(QRVOSLogWriter().splitMessage(repeated(u'x', 300))),
              (std::vector<std::size_t>{129, 129, 42}));
}

TEST_F(OSLogWriter, ShortMessageWithLineFeedsIsWrittenWhole) {
    QRVOSLogWriter().writePrefix_message_area(u"P", u"a\nb", {});
    EXPECT_EQ(entries(), Lines{"P a\nb"});
}

TEST_F(OSLogWriter, PiecesAreNotCheckedAgain) {
    const std::string prefix(300, 'p');
    QRVOSLogWriter().writePrefix_message_area(NSString::fromUTF8(prefix), u"text", {});
    EXPECT_EQ(entries(), Lines{prefix + " text"});
}

TEST_F(OSLogWriter, LongPrefixWithAnEmptyMessageWritesNothingAtAll) {
    QRVOSLogWriter().writePrefix_message_area(repeated(u'p', 300), u"", {});
    EXPECT_EQ(entries(), Lines{});
    EXPECT_EQ(standardError(), "");
}

TEST_F(OSLogWriter, WithoutCheckingALongLineIsWrittenWhole) {
    QRVOSLogWriter().writePrefix_message_area_checkLength(u"P", repeated(u'x', 1000), {}, false);
    EXPECT_EQ(entries(), Lines{"P " + std::string(1000, 'x')});
}

TEST_F(OSLogWriter, FinishedLineIsWrittenAsItIsWhateverItsLength) {
    const std::string line = "100% %@ " + std::string(1000, 'x');
    QRVOSLogWriter().logCString_area(line, u"Some");
    QRVOSLogWriter().logCString_area("", {});
    const auto entry = journal.nextEntry();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->at("MESSAGE"), line);
    EXPECT_EQ(entry->at("CATEGORY"), "QRVLogger.Some");
    EXPECT_EQ(entries(), Lines{""});
    EXPECT_EQ(standardError(), "2026-11-02 00:00:00.123 [org.quillvane.tool] " + line +
                                   "\n2026-11-02 00:00:00.123 [org.quillvane.tool] \n");
}

TEST_F(OSLogWriter, InTheDevelopmentEnvironmentOnlyStandardErrorIsWritten) {
    setenv("QRVIsInXcode", "1", 1);
    QRVOSLogWriter().writePrefix_message_area(u"P", u"text", u"Area");
    EXPECT_EQ(entries(), Lines{});
    EXPECT_EQ(standardError(), "2026-11-02 00:00:00.123 [org.quillvane.tool] P text\n");
}

TEST_F(OSLogWriter, DevelopmentEnvironmentIsLookedAtOnceAndByItsBooleanValue) {
    QRVOSLogWriter before;
    setenv("QRVIsInXcode", "YES", 1);
    QRVOSLogWriter inside;
    setenv("QRVIsInXcode", "NO", 1);
    QRVOSLogWriter outside;
    before.writePrefix_message_area(u"", u"before", {});
    inside.writePrefix_message_area(u"", u"inside", {});
    outside.writePrefix_message_area(u"", u"outside", {});
    EXPECT_EQ(entries(), (Lines{" before", " outside"}));
}

TEST_F(OSLogWriter, NilPrefixAndMessageAreShownAsNull) {
    QRVOSLogWriter().writePrefix_message_area({}, {}, {});
    EXPECT_EQ(entries(), Lines{"(null) (null)"});
}

TEST_F(OSLogWriter, TextWithoutUTF8FormIsLoggedEscaped) {
    QRVOSLogWriter writer;
    const NSString text = std::u16string(u"a\\\u00E9\u2014") + char16_t(0xD83D);
    EXPECT_EQ(writer.cStringFromString(text), "UTF-8 error: a\\\\\\351\\u2014\\ud83d");
    writer.writePrefix_message_area(u"P", std::u16string(1, char16_t(0xDC00)), {});
    EXPECT_EQ(entries(), Lines{"UTF-8 error: P \\udc00"});
}

TEST_F(OSLogWriter, TextIsUTF8UpToTheFirstZero) {
    const QRVOSLogWriter writer;
    EXPECT_EQ(writer.cStringFromString(u"\u00E4\U0001F600"), "\xC3\xA4\xF0\x9F\x98\x80");
    EXPECT_EQ(writer.cStringFromString(std::u16string(u"a\0b", 3)), "a");
    EXPECT_EQ(writer.cStringFromString(u""), "");
    EXPECT_FALSE(writer.cStringFromString({}));
}

TEST_F(OSLogWriter, TextThatCannotEvenBeEscapedGivesTheFixedLine) {
    class Failing : public QRVOSLogWriter {
    public:
        std::optional<std::string> cStringFromString(const NSString&) const override { return std::nullopt; }
    };

    Failing().writePrefix_message_area(u"P", u"text", u"Area");
    const auto entry = journal.nextEntry();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->at("MESSAGE"), "Fallback UTF-8 conversion failed.");
    EXPECT_EQ(entry->at("CATEGORY"), "QRVLogger.Area");
    EXPECT_NE(standardError().find("] Fallback UTF-8 conversion failed.\n"), std::string::npos);
}

TEST_F(OSLogWriter, SubsystemWithoutUTF8FormIsReplacedOnStandardError) {
    NSProcessInfo::processInfo().setProcessNameForTesting(std::u16string(1, char16_t(0xD800)));
    QRVOSLogWriter().writePrefix_message_area(u"P", u"text", {});
    EXPECT_EQ(standardError(), "2026-11-02 00:00:00.123 [QRVLogger] P text\n");
}

TEST_F(OSLogWriter, SubsystemFollowsTheProcessName) {
    const QRVOSLogWriter writer;
    EXPECT_EQ(writer.subsystem(), NSString(u"org.quillvane.tool"));
    NSProcessInfo::processInfo().setProcessNameForTesting(u"other");
    EXPECT_EQ(writer.subsystem(), NSString(u"org.quillvane.other"));
}

TEST_F(OSLogWriter, AreaHasOneHandleForTheLifeOfTheWriter) {
    QRVOSLogWriter writer;
    const os_log_t log = writer.logForArea(u"A");
    EXPECT_EQ(log->category, "QRVLogger.A");
    EXPECT_EQ(log->subsystem, "org.quillvane.tool");
    EXPECT_EQ(writer.logForArea(u"A"), log);
    EXPECT_NE(writer.logForArea(u"B"), log);
    EXPECT_EQ(writer.logForArea({})->category, "QRVLogger");
    EXPECT_EQ(writer.logForArea(u"")->category, "QRVLogger.");
}

TEST_F(OSLogWriter, ThreadsLoggingToTheSameNewAreasLeaveOneHandleEach) {
    setenv("QRVIsInXcode", "1", 1);
    QRVOSLogWriter writer;
    std::vector<std::vector<os_log_t>> seen(8);
    std::vector<std::thread> threads;
    for (auto& mine : seen) {
        threads.emplace_back([&writer, &mine] {
            for (int i = 0; i < 50; ++i) {
                const NSString area = NSString::stringWithFormat(u"Area%d", i);
                writer.writePrefix_message_area(u"[P]", u"text", area);
                mine.push_back(writer.logForArea(area));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const auto& mine : seen) EXPECT_EQ(mine, seen[0]);
    EXPECT_EQ(std::set<os_log_t>(seen[0].begin(), seen[0].end()).size(), 50u);
    const std::string written = standardError();
    const std::string line = "2026-11-02 00:00:00.123 [org.quillvane.tool] [P] text\n";
    std::string expected;
    for (int i = 0; i < 400; ++i) expected += line;
    EXPECT_EQ(written, expected) << "lines stay whole";
}

struct VersionCase {
    PlatformVersion version;
    bool available;
};

void PrintTo(const VersionCase& test, std::ostream* out) {
    *out << "foundation " << test.version.foundation << " system "
         << testing::PrintToString(test.version.system);
}

class OSLogAvailability : public testing::TestWithParam<VersionCase> {};

TEST_P(OSLogAvailability, NeedsFoundation1057AndSystem10_12) {
    NSProcessInfo::processInfo().setVersionForTesting(GetParam().version);
    EXPECT_EQ(QRVOSLogWriter::isOSLogAvailable(), GetParam().available);
    NSProcessInfo::processInfo().setVersionForTesting();
}

INSTANTIATE_TEST_SUITE_P(QRVOSLogWriter, OSLogAvailability,
                         testing::Values(VersionCase{{1677.104, {10, 15, 7}}, true},
                                         VersionCase{{1057.0, {10, 12, 0}}, true},
                                         VersionCase{{1056.9, {10, 12, 0}}, false},
                                         VersionCase{{1057.0, {10, 11, 6}}, false},
                                         VersionCase{{1056.0, {11, 0, 0}}, false}));

TEST_F(OSLogWriter, OnlyLineFeedsEndALineOfAMessage) {
    EXPECT_EQ(joined(QRVOSLogWriter().splitMessage(u"a\r\nb\u2028c\rd\n\ne\n")), "a\r|b\xE2\x80\xA8"
                                                                                 "c\rd|e");
}

TEST_F(OSLogWriter, EmptyAndNilMessagesHaveNoPieces) {
    EXPECT_EQ(QRVOSLogWriter().splitMessage(u"").count(), 0u);
    EXPECT_EQ(QRVOSLogWriter().splitMessage(u"\n\n").count(), 0u);
    EXPECT_EQ(QRVOSLogWriter().splitMessage({}).count(), 0u);
    EXPECT_EQ(QRVOSLogWriter().splitLine_length({}, 128).count(), 0u);
}

TEST_F(OSLogWriter, ChunkIsClosedOnlyOnceItIsLongerThanTheLimit) {
    const QRVOSLogWriter writer;
    EXPECT_EQ(joined(writer.splitLine_length(u"abcdefg", 2)), "abc|def|g");
    EXPECT_EQ(joined(writer.splitLine_length(u"abcdef", 2)), "abc|def");
    EXPECT_EQ(joined(writer.splitLine_length(u"abc", 0)), "a|b|c");
    EXPECT_EQ(lengths(writer.splitLine_length(repeated(u'x', 128), 128)), std::vector<std::size_t>{128});
    EXPECT_EQ(lengths(writer.splitLine_length(repeated(u'x', 129), 128)), std::vector<std::size_t>{129});
    EXPECT_EQ(lengths(writer.splitLine_length(repeated(u'x', 130), 128)), (std::vector<std::size_t>{129, 1}));
}

struct SequenceCase {
    const char* name;
    const char16_t* sequence;
};

void PrintTo(const SequenceCase& test, std::ostream* out) {
    *out << test.name;
}

class ComposedSequence : public testing::TestWithParam<SequenceCase> {};

TEST_P(ComposedSequence, IsNeverCut) {
    const NSString sequence = GetParam().sequence;
    std::u16string text;
    for (int i = 0; i < 200; ++i) text.append(sequence.view());
    const QRVOSLogWriter writer;
    for (unsigned long limit : {0ul, 1ul, 2ul, 7ul, 128ul}) {
        std::u16string together;
        const NSArray chunks = writer.splitLine_length(text, limit);
        for (std::size_t i = 0; i < chunks.count(); ++i) {
            const NSString chunk = as<NSString>(chunks.objectAtIndex(i));
            EXPECT_EQ(chunk.length() % sequence.length(), 0u);
            if (i + 1 < chunks.count()) {
                EXPECT_GT(chunk.length(), limit);
                EXPECT_LE(chunk.length() - sequence.length(), limit);
            }
            together.append(chunk.view());
        }
        EXPECT_EQ(together, text);
    }
}

INSTANTIATE_TEST_SUITE_P(QRVOSLogWriter, ComposedSequence,
                         testing::Values(SequenceCase{"Emoji", u"\U0001F600"},
                                         SequenceCase{"EmojiWithSkinTone", u"\U0001F44D\U0001F3FD"},
                                         SequenceCase{"FamilyOfJoinedEmoji",
                                                      u"\U0001F468\u200D\U0001F469\u200D\U0001F467"},
                                         SequenceCase{"EmojiWithVariationSelector", u"\u2764\uFE0F"},
                                         SequenceCase{"Flag", u"\U0001F1E9\U0001F1EA"},
                                         SequenceCase{"LetterWithCombiningMarks", u"a\u0308\u0323"},
                                         SequenceCase{"DecomposedHangul", u"\u1112\u1161\u11AB"}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(OSLogWriter, UnpairedSurrogatesAndLongSequencesAreSplitWithoutLoss) {
    std::u16string text;
    std::mt19937 random(7);
    constexpr std::u16string_view units = u"ab\u0301\u200D\xD83D\xDE00\xD800\xDC00\u1161";
    for (int i = 0; i < 3000; ++i) text.push_back(units[random() % units.size()]);
    text.append(5000, u'\u0301');
    std::u16string together;
    for (const id& chunk : QRVOSLogWriter().splitLine_length(text, 128)) {
        together.append(as<NSString>(chunk).view());
    }
    EXPECT_EQ(together, text);
}

} // namespace qrv
