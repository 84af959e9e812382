// What a program with many threads does with the library at the same time. The thread sanitizer sees here
// what these do to each other; without it, the tests see what is lost or mixed up.

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "Platform/Logging/NSLog.h"
#include "Platform/Logging/os_log.h"
#include "QRVFoundation/Source/NSError+QRVDescription.h"
#include "QRVFoundation/Source/NSUserDefaults+QRV.h"
#include "QRVFoundation/Source/QRVLog.h"
#include "QRVFoundation/Source/QRVNSLogWriter.h"
#include "QRVFoundation/Source/QRVOSLogWriter.h"
#include "Tests/Platform/Foundation/PreferencesFolder.h"
#include "Tests/Platform/Logging/LogReceiver.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <latch>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace qrv {

namespace {

constexpr int threadCount = 16;
constexpr int roundCount = 40;

constexpr char16_t changing[] = u"org.example.changing";
constexpr char16_t unreadable[] = u"org.example.unreadable";

class ManyThreads : public testing::Test {
protected:
    ManyThreads() {
        setJournalSocketForTesting(journal.path());
        setSystemLogSocketForTesting(journal.path() + ".missing");
        change(0, 0);
        // No property list, and old enough for the library to remember what it is.
        std::filesystem::create_symlink("/etc/passwd", preferences.path() +
                                                           "/user/preferences/org.example.unreadable.plist");
    }

    ~ManyThreads() override {
        QRVLogger::setSharedLogger(nullptr);
        NSUserDefaults::standardUserDefaults().resetForTesting();
    }

    /// Replaces the settings by others, in one step. A logger that is made of them has all areas on.
    void change(int thread, int value) const {
        const std::string next =
            preferences.write("user", "next" + std::to_string(thread),
                              {{NSString(u"First"), NSNumber::numberWithInteger(value)},
                               {NSString(u"Second"), NSNumber::numberWithInteger(value)},
                               {NSString(QRVLoggerAllAreas), NSNumber::numberWithBool(true)}});
        std::filesystem::rename(next, preferences.path() + "/user/preferences/org.example.changing.plist");
    }

    PreferencesFolder preferences;
    LogReceiver journal;
};

void replaceLogger(int turn) {
    const NSDictionary allAreas{{NSString(QRVLoggerAllAreas), NSNumber::numberWithBool(true)}};
    switch (turn % 4) {
    case 0:
        QRVLogger::setSharedLogger(std::make_shared<QRVLogger>(allAreas, std::make_unique<QRVOSLogWriter>()));
        break;
    case 1:
        QRVLogger::setSharedLogger(std::make_shared<QRVLogger>(allAreas, std::make_unique<QRVNSLogWriter>()));
        break;
    case 2:
        QRVLogger::setUpWithPersistentDomainName(changing);
        break;
    default:
        QRVLogger::setSharedLogger(nullptr);
    }
}

std::string lineOf(int thread, int round) {
    return "line of " + std::to_string(thread) + ", " + std::to_string(round);
}

void readSettings(int thread, int round) {
    const NSUserDefaults defaults = NSUserDefaults::standardUserDefaults();
    const NSDictionary settings = defaults.persistentDomainForName(changing);
    const id first = settings.objectForKey(NSString(u"First"));
    EXPECT_FALSE(first.isNil());
    EXPECT_EQ(first, settings.objectForKey(NSString(u"Second")));
    EXPECT_GE(qrvIntegerForKey_domain_defaultValue(defaults, u"First", changing, -1), 0);
    EXPECT_EQ(qrvIntegerForKey_domain_defaultValue(defaults, u"First", unreadable, -1), -1);

    const NSString own = NSString::stringWithFormat(u"Key%d", thread);
    defaults.registerDefaults({{own, NSNumber::numberWithInteger(round)}});
    EXPECT_EQ(qrvIntegerForKey_defaultValue(defaults, own, -1), round);
}

NSError errorWithChain(int depth) {
    NSError error = NSError::errorWithDomain_code_userInfo(NSPOSIXErrorDomain, 2, {});
    for (int level = 0; level < depth; ++level) {
        error = NSError::errorWithDomain_code_userInfo(NSCocoaErrorDomain, NSFileReadUnknownError,
                                                       {{NSString(NSUnderlyingErrorKey), error}});
    }
    return error;
}

/// All threads look at the same error, and each makes one that is equal.
void describeErrors(const NSError& shared, const NSString& description) {
    EXPECT_EQ(qrvFullDescription(shared), description);
    EXPECT_EQ(qrvFullDescription(qrvArchivableError(errorWithChain(3))), description);
    const NSError caught = qrvErrorFromException(NSException(u"Name", u"Reason"));
    EXPECT_EQ(caught.localizedRecoverySuggestion(), NSString(u"Reason"));
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

} // namespace

TEST_F(ManyThreads, NothingIsLostOrMixedUpWhenAllIsDoneAtOnce) {
    const NSError shared = errorWithChain(3);
    const NSString description = qrvFullDescription(shared);
    std::vector<std::string> expected;
    std::latch begin(threadCount);
    std::atomic<int> running = threadCount;
    testing::internal::CaptureStderr();

    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        for (int round = 0; round < roundCount; ++round) expected.push_back(lineOf(thread, round));
        threads.emplace_back([&, thread] {
            begin.arrive_and_wait();
            for (int round = 0; round < roundCount; ++round) {
                replaceLogger(thread + round);
                QRV_LOG("Tests/Stress/ManyThreadsTests", "TestBody()",
                        NSString::stringWithFormat(u"Area%d", round % 5), u"%s",
                        lineOf(thread, round).c_str());
                change(thread, round);
                readSettings(thread, round);
                describeErrors(shared, description);
            }
            --running;
        });
    }
    std::size_t entries = 0;
    while (running > 0) {
        entries += journal.discard();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    for (std::thread& thread : threads) thread.join();

    std::vector<std::string> lines = linesOf(testing::internal::GetCapturedStderr());
    EXPECT_EQ(std::erase_if(lines,
                            [](const std::string& line) {
                                return line.find("unreadable.plist cannot be read") != std::string::npos;
                            }),
              1u)
        << "once for all threads";
    for (std::string& line : lines) line.erase(0, line.find("line of"));
    std::sort(lines.begin(), lines.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(lines, expected);
    EXPECT_GT(entries, 0u);
}

} // namespace qrv
