#include "Platform/Foundation/NSNotificationCenter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace qrv {

class NotificationCenter : public testing::Test {
protected:
    NSNotificationCenter::Handler note(const char* what) {
        return [this, what](const NSNotification&) { heard += what; };
    }

    NSNotificationCenter center;
    int first = 0, second = 0, sender = 0;
    std::string heard;
};

TEST_F(NotificationCenter, DefaultCenterIsOneObject) {
    EXPECT_EQ(&NSNotificationCenter::defaultCenter(), &NSNotificationCenter::defaultCenter());
}

TEST_F(NotificationCenter, HandlerIsToldNameAndSender) {
    NSNotification got;
    center.addObserver_selector_name_object(
        &first, [&](const NSNotification& n) { got = n; }, u"Done", &sender);
    center.postNotificationName_object(u"Done", &sender);
    EXPECT_EQ(got.name, NSString(u"Done"));
    EXPECT_EQ(got.object, &sender);
}

TEST_F(NotificationCenter, OtherNamesAndOtherSendersAreNotHeard) {
    center.addObserver_selector_name_object(&first, note("a"), u"Done", &sender);
    center.postNotificationName_object(u"Undone", &sender);
    center.postNotificationName_object(u"Done", &second);
    center.postNotificationName_object(u"Done", nullptr);
    EXPECT_EQ(heard, "");
}

TEST_F(NotificationCenter, ObserverOfAnySenderHearsAll) {
    center.addObserver_selector_name_object(&first, note("a"), u"Done", nullptr);
    center.postNotificationName_object(u"Done", &sender);
    center.postNotificationName_object(u"Done", nullptr);
    EXPECT_EQ(heard, "aa");
}

TEST_F(NotificationCenter, HandlersRunInTheOrderTheyWereAdded) {
    center.addObserver_selector_name_object(&first, note("a"), u"Done", nullptr);
    center.addObserver_selector_name_object(&second, note("b"), u"Done", nullptr);
    center.addObserver_selector_name_object(&first, note("c"), u"Done", nullptr);
    center.postNotificationName_object(u"Done", nullptr);
    EXPECT_EQ(heard, "abc");
}

TEST_F(NotificationCenter, RemovingAnObserverEndsAllItsObservations) {
    center.addObserver_selector_name_object(&first, note("a"), u"Done", nullptr);
    center.addObserver_selector_name_object(&first, note("b"), u"More", nullptr);
    center.addObserver_selector_name_object(&second, note("c"), u"Done", nullptr);
    center.removeObserver(&first);
    center.postNotificationName_object(u"Done", nullptr);
    center.postNotificationName_object(u"More", nullptr);
    EXPECT_EQ(heard, "c");
}

TEST_F(NotificationCenter, AnObserverRemovedDuringAPostIsNotCalledAnyMore) {
    center.addObserver_selector_name_object(
        &first, [&](const NSNotification&) { center.removeObserver(&second); }, u"Done", nullptr);
    center.addObserver_selector_name_object(&second, note("b"), u"Done", nullptr);
    center.postNotificationName_object(u"Done", nullptr);
    EXPECT_EQ(heard, "");
}

TEST_F(NotificationCenter, AnObserverMayRemoveItselfDuringItsOwnCall) {
    center.addObserver_selector_name_object(
        &first,
        [&](const NSNotification& n) {
            center.removeObserver(&first);
            heard += n.name.utf8();
        },
        u"Done", nullptr);
    center.postNotificationName_object(u"Done", nullptr);
    center.postNotificationName_object(u"Done", nullptr);
    EXPECT_EQ(heard, "Done");
}

TEST_F(NotificationCenter, AnObserverAddedDuringAPostWaitsForTheNext) {
    center.addObserver_selector_name_object(
        &first,
        [&](const NSNotification&) {
            center.addObserver_selector_name_object(&second, note("b"), u"Done", nullptr);
        },
        u"Done", nullptr);
    center.postNotificationName_object(u"Done", nullptr);
    EXPECT_EQ(heard, "");
    center.postNotificationName_object(u"Done", nullptr);
    EXPECT_EQ(heard, "b");
}

TEST_F(NotificationCenter, ThreadsMayPostAddAndRemoveAtOnce) {
    std::atomic<int> calls = 0;
    center.addObserver_selector_name_object(
        &first, [&](const NSNotification&) { ++calls; }, u"Done", nullptr);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            int own = 0;
            for (int i = 0; i < 100; ++i) {
                center.addObserver_selector_name_object(
                    &own, [&](const NSNotification&) { ++own; }, u"Done", &own);
                center.postNotificationName_object(u"Done", &own);
                center.removeObserver(&own);
            }
            EXPECT_EQ(own, 100);
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(calls, 400);
}

} // namespace qrv
