#include "Platform/AppKit/NSPrintOperation.h"

#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <memory>

namespace qrv {

namespace {

/// Prints its settings' top margin.
struct PrintableView : NSView {
    NSData dataForPrinting(const NSPrintInfo& settings) override {
        ++prints;
        return NSData("top margin " + std::to_string(settings.topMargin()));
    }

    int prints = 0;
};

NSPrintInfo savingTo(const NSURL& url) {
    return NSPrintInfo(
        {{NSString(NSPrintJobDisposition), NSString(NSPrintSaveJob)}, {NSString(NSPrintJobSavingURL), url}});
}

bool print(NSView& view, const NSPrintInfo& settings) {
    NSPrintOperation operation = NSPrintOperation::printOperationWithView_printInfo(view, settings);
    operation.setShowsPrintPanel(false);
    operation.setShowsProgressPanel(false);
    return operation.runOperation();
}

} // namespace

TEST(NSPrintOperation, WritesWhatTheViewPrints) {
    const TemporaryFolder folder;
    PrintableView view;
    NSPrintInfo settings = savingTo(NSURL::fileURLWithPath(folder.write("a b.pdf", "old")));
    settings.setTopMargin(36);
    EXPECT_TRUE(print(view, settings));
    EXPECT_EQ(folder.read("a b.pdf"), "top margin 36.000000");
    EXPECT_EQ(folder.count(), 1u);
}

TEST(NSPrintOperation, UsesTheSettingsItWasMadeWith) {
    const TemporaryFolder folder;
    PrintableView view;
    NSPrintInfo settings = savingTo(NSURL::fileURLWithPath(folder.pathOf("a.pdf")));
    NSPrintOperation operation = NSPrintOperation::printOperationWithView_printInfo(view, settings);
    settings.setTopMargin(1);
    EXPECT_TRUE(operation.runOperation());
    EXPECT_EQ(folder.read("a.pdf"), "top margin 90.000000");
}

TEST(NSPrintOperation, PrintsOnlyToFiles) {
    PrintableView view;
    EXPECT_FALSE(print(view, NSPrintInfo::sharedPrintInfo()));
    EXPECT_FALSE(print(view, savingTo(NSURL::URLWithString(u"http://host.example/a.pdf"))));
    EXPECT_FALSE(print(view, savingTo(NSURL::URLWithString(u"file:"))));
    EXPECT_FALSE(print(view, NSPrintInfo({{NSString(NSPrintJobDisposition), NSString(NSPrintSaveJob)}})));
    EXPECT_EQ(view.prints, 0);
}

TEST(NSPrintOperation, AnOldFileStaysWhenNothingIsPrinted) {
    const TemporaryFolder folder;
    NSView plain;
    EXPECT_FALSE(print(plain, savingTo(NSURL::fileURLWithPath(folder.write("a.pdf", "old")))));
    EXPECT_EQ(folder.read("a.pdf"), "old");
}

TEST(NSPrintOperation, FailsWhereTheFileCannotBeWritten) {
    const TemporaryFolder folder;
    PrintableView view;
    EXPECT_FALSE(print(view, savingTo(NSURL::fileURLWithPath(folder.pathOf("missing/a.pdf")))));
    EXPECT_FALSE(print(view, savingTo(NSURL::fileURLWithPath_isDirectory(folder.pathOf("."), false))));
    EXPECT_EQ(folder.count(), 0u);
}

} // namespace qrv
