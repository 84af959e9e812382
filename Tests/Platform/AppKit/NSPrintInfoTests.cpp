#include "Platform/AppKit/NSPrintInfo.h"

#include "Platform/AppKit/DefaultPaper.h"
#include "Platform/Foundation/NSNumber.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

double number(const NSDictionary& dictionary, const char16_t* key) {
    const auto value = as<NSNumber>(dictionary.objectForKey(NSString(key)));
    EXPECT_TRUE(value) << NSString(key).utf8();
    return value.doubleValue();
}

} // namespace

TEST(NSPrintInfo, SharedSettingsAreThoseOfThisMachine) {
    const NSPrintInfo& shared = NSPrintInfo::sharedPrintInfo();
    EXPECT_EQ(shared.paperSize(), defaultPaperSize());
    EXPECT_EQ(shared.leftMargin(), 72);
    EXPECT_EQ(shared.rightMargin(), 72);
    EXPECT_EQ(shared.topMargin(), 90);
    EXPECT_EQ(shared.bottomMargin(), 90);
    EXPECT_EQ(shared.horizontalPagination(), NSPrintingPaginationModeClip);
    EXPECT_EQ(shared.verticalPagination(), NSPrintingPaginationModeAutomatic);
    EXPECT_TRUE(shared.isHorizontallyCentered());
    EXPECT_TRUE(shared.isVerticallyCentered());
    EXPECT_EQ(shared.jobDisposition(), NSString(NSPrintSpoolJob));
    EXPECT_TRUE(shared.jobSavingURL().isNil());
}

TEST(NSPrintInfo, EverySettingStandsInTheDictionary) {
    NSPrintInfo info{NSDictionary()};
    info.setTopMargin(1);
    info.setBottomMargin(2);
    info.setLeftMargin(3);
    info.setRightMargin(4.5);
    info.setHorizontalPagination(NSPrintingPaginationModeFit);
    info.setVerticalPagination(NSPrintingPaginationModeClip);
    info.setHorizontallyCentered(false);
    info.setVerticallyCentered(false);
    const NSDictionary dictionary = info.dictionary();
    EXPECT_EQ(number(dictionary, u"NSTopMargin"), 1);
    EXPECT_EQ(number(dictionary, u"NSBottomMargin"), 2);
    EXPECT_EQ(number(dictionary, u"NSLeftMargin"), 3);
    EXPECT_EQ(number(dictionary, u"NSRightMargin"), 4.5);
    EXPECT_EQ(number(dictionary, u"NSHorizontalPagination"), 1);
    EXPECT_EQ(number(dictionary, u"NSVerticalPagination"), 2);
    EXPECT_EQ(number(dictionary, u"NSHorizontallyCentered"), 0);
    EXPECT_EQ(number(dictionary, u"NSVerticallyCentered"), 0);

    const NSPrintInfo again(dictionary);
    EXPECT_EQ(again.topMargin(), 1);
    EXPECT_EQ(again.bottomMargin(), 2);
    EXPECT_EQ(again.leftMargin(), 3);
    EXPECT_EQ(again.rightMargin(), 4.5);
    EXPECT_EQ(again.horizontalPagination(), NSPrintingPaginationModeFit);
    EXPECT_EQ(again.verticalPagination(), NSPrintingPaginationModeClip);
    EXPECT_FALSE(again.isHorizontallyCentered());
    EXPECT_FALSE(again.isVerticallyCentered());
    EXPECT_EQ(again.dictionary(), dictionary);
}

TEST(NSPrintInfo, SavesToAFileWhenTheDictionarySaysSo) {
    const NSURL url = NSURL::fileURLWithPath_isDirectory(u"/a/b.pdf", false);
    NSMutableDictionary settings = NSPrintInfo::sharedPrintInfo().dictionary().mutableCopy();
    settings.setObject_forKey(NSString(NSPrintSaveJob), NSString(NSPrintJobDisposition));
    settings.setObject_forKey(url, NSString(NSPrintJobSavingURL));
    const NSPrintInfo info(settings);
    EXPECT_EQ(info.jobDisposition(), NSString(NSPrintSaveJob));
    EXPECT_EQ(info.jobSavingURL(), url);
    EXPECT_EQ(info.paperSize(), NSPrintInfo::sharedPrintInfo().paperSize());
    EXPECT_EQ(info.leftMargin(), 72);
}

TEST(NSPrintInfo, ChangingACopyChangesNothingElse) {
    const NSDictionary before = NSPrintInfo::sharedPrintInfo().dictionary();
    NSPrintInfo copy = NSPrintInfo::sharedPrintInfo();
    copy.setTopMargin(7);
    copy.setHorizontalPagination(NSPrintingPaginationModeFit);
    NSPrintInfo copyOfCopy = copy;
    copyOfCopy.setTopMargin(8);
    EXPECT_EQ(copy.topMargin(), 7);
    EXPECT_EQ(NSPrintInfo::sharedPrintInfo().dictionary(), before);
}

TEST(NSPrintInfo, TakesThePaperOfTheDictionary) {
    const NSPrintInfo info({{NSString(NSPrintPaperSize), NSStringFromSize({100.5, 200})}});
    EXPECT_EQ(info.paperSize(), (NSSize{100.5, 200}));
}

TEST(NSPrintInfo, KeepsEntriesThatItDoesNotKnow) {
    const NSPrintInfo info({{NSString(u"Mine"), NSString(u"kept")}});
    EXPECT_EQ(info.dictionary().objectForKey(NSString(u"Mine")), NSString(u"kept"));
}

TEST(NSPrintInfo, WrongKindsCountAsNothing) {
    const NSString wrong = u"wrong";
    const NSPrintInfo info({{NSString(NSPrintPaperSize), wrong},
                            {NSString(NSPrintTopMargin), wrong},
                            {NSString(NSPrintVerticallyCentered), wrong},
                            {NSString(NSPrintHorizontalPagination), NSNumber::numberWithInteger(9)},
                            {NSString(NSPrintJobDisposition), NSNumber::numberWithInteger(1)},
                            {NSString(NSPrintJobSavingURL), wrong}});
    EXPECT_EQ(info.paperSize(), NSPrintInfo::sharedPrintInfo().paperSize());
    EXPECT_EQ(info.topMargin(), 0);
    EXPECT_FALSE(info.isVerticallyCentered());
    EXPECT_EQ(info.horizontalPagination(), NSPrintingPaginationModeAutomatic);
    EXPECT_TRUE(info.jobDisposition().isNil());
    EXPECT_TRUE(info.jobSavingURL().isNil());
}

} // namespace qrv
