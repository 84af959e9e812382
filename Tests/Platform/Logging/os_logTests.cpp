#include "Platform/Logging/os_log.h"

#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Foundation/NSString.h"
#include "Tests/Platform/Logging/LogReceiver.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace qrv {

namespace {

using Entry = std::map<std::string, std::string>;

class OSLog : public testing::Test {
protected:
    OSLog() {
        setJournalSocketForTesting(journal.path());
        NSProcessInfo::processInfo().setProcessNameForTesting(u"some tool");
    }

    LogReceiver journal;
    const os_log_t log = os_log_create("org.example.some", "General");
};

} // namespace

TEST_F(OSLog, EntryCarriesMessagePriorityIdentifierSubsystemAndCategory) {
    os_log_with_type(log, OS_LOG_TYPE_ERROR, "a = b %s \xC3\xA4");
    EXPECT_EQ(journal.nextEntry(), (Entry{{"MESSAGE", "a = b %s \xC3\xA4"},
                                          {"PRIORITY", "3"},
                                          {"SYSLOG_IDENTIFIER", "some tool"},
                                          {"SUBSYSTEM", "org.example.some"},
                                          {"CATEGORY", "General"}}));
    EXPECT_FALSE(journal.next());
}

TEST_F(OSLog, LineFeedsInAMessageCannotForgeFields) {
    os_log_with_type(log, OS_LOG_TYPE_ERROR, "text\nPRIORITY=0\nCATEGORY=Other");
    const auto entry = journal.nextEntry();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->at("MESSAGE"), "text\nPRIORITY=0\nCATEGORY=Other");
    EXPECT_EQ(entry->at("PRIORITY"), "3");
    EXPECT_EQ(entry->at("CATEGORY"), "General");
}

TEST_F(OSLog, LineFeedsInACategoryCannotForgeFields) {
    os_log_with_type(os_log_create("s", "c\nPRIORITY=0"), OS_LOG_TYPE_ERROR, "");
    const auto entry = journal.nextEntry();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->at("CATEGORY"), "c\nPRIORITY=0");
    EXPECT_EQ(entry->at("PRIORITY"), "3");
    EXPECT_EQ(entry->at("MESSAGE"), "");
}

TEST_F(OSLog, EntryTooLongForADatagramIsPassedInAMemoryFile) {
    const std::string text(3'000'000, 'x');
    os_log_with_type(log, OS_LOG_TYPE_ERROR, text);
    const auto entry = journal.nextEntry();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->at("MESSAGE"), text);
    EXPECT_EQ(journal.memoryFiles(), 1u);
}

TEST_F(OSLog, NullHandleLogsNothing) {
    os_log_with_type(nullptr, OS_LOG_TYPE_ERROR, "text");
    EXPECT_FALSE(journal.next());
}

TEST_F(OSLog, WithoutAJournalEntriesAreLostInSilence) {
    setJournalSocketForTesting("/nowhere/at/all");
    os_log_with_type(log, OS_LOG_TYPE_ERROR, "text");
    setJournalSocketForTesting(std::string(1000, 'x'));
    os_log_with_type(log, OS_LOG_TYPE_ERROR, "text");
    setJournalSocketForTesting(journal.path());
    os_log_with_type(log, OS_LOG_TYPE_ERROR, "later");
    EXPECT_EQ(journal.nextEntry().value().at("MESSAGE"), "later");
}

TEST_F(OSLog, JournalStartedAgainIsFoundAgain) {
    os_log_with_type(log, OS_LOG_TYPE_ERROR, "before");
    journal.close();
    os_log_with_type(log, OS_LOG_TYPE_ERROR, "lost");
    journal.listen();
    os_log_with_type(log, OS_LOG_TYPE_ERROR, "after");
    EXPECT_EQ(journal.nextEntry().value().at("MESSAGE"), "after");
    EXPECT_FALSE(journal.next());
}

TEST_F(OSLog, JournalThatReadsNothingIsNotWaitedFor) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 5000; ++i) os_log_with_type(log, OS_LOG_TYPE_ERROR, std::string(1000, 'x'));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    std::size_t received = 0;
    while (journal.next()) ++received;
    EXPECT_GT(received, 0u);
    EXPECT_LT(received, 5000u);
    os_log_with_type(log, OS_LOG_TYPE_ERROR, "again");
    EXPECT_EQ(journal.nextEntry().value().at("MESSAGE"), "again");
}

TEST_F(OSLog, EntriesOfManyThreadsArriveWhole) {
    std::vector<std::thread> threads;
    std::size_t received = 0;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([t] {
            const os_log_t own = os_log_create("s", "c" + std::to_string(t));
            os_log_with_type(own, OS_LOG_TYPE_ERROR, "line of " + std::to_string(t));
        });
    }
    for (std::thread& thread : threads) thread.join();
    while (const auto entry = journal.nextEntry()) {
        EXPECT_EQ("line of " + entry->at("CATEGORY").substr(1), entry->at("MESSAGE"));
        ++received;
    }
    EXPECT_EQ(received, 8u);
}

TEST_F(OSLog, TellsWhetherThereIsAJournal) {
    EXPECT_TRUE(hasJournal());
    setJournalSocketForTesting("/nonexistent/socket");
    EXPECT_FALSE(hasJournal());
}

} // namespace qrv
