#include "Platform/AppKit/NSView.h"

#include "Platform/AppKit/NSPrintInfo.h"
#include "Platform/Foundation/NSException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace qrv {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NSView, BoundsHaveTheSizeOfTheFrameAtZero) {
    NSView view(NSRect{{10, 20}, {30, 40}});
    EXPECT_EQ(view.frame(), (NSRect{{10, 20}, {30, 40}}));
    EXPECT_EQ(view.bounds(), (NSRect{{0, 0}, {30, 40}}));
    view.setFrameSize({50, 60});
    EXPECT_EQ(view.frame(), (NSRect{{10, 20}, {50, 60}}));
    view.setFrame({{1, 2}, {3, 4}});
    EXPECT_EQ(view.bounds(), (NSRect{{0, 0}, {3, 4}}));
}

TEST(NSView, SettingTheSizeGoesThroughTheFrame) {
    struct Watching : NSView {
        void setFrame(NSRect frame) override {
            NSView::setFrame(frame);
            ++changes;
        }

        int changes = 0;
    } view;

    view.setFrameSize({1, 2});
    EXPECT_EQ(view.changes, 1);
}

TEST(NSView, ASubviewStandsInOneView) {
    NSView first;
    NSView second;
    NSView child;
    NSView other;
    first.addSubview(child);
    first.addSubview(other);
    EXPECT_THAT(first.subviews(), ElementsAre(&child, &other));
    first.addSubview(child);
    EXPECT_THAT(first.subviews(), ElementsAre(&other, &child));
    second.addSubview(child);
    EXPECT_THAT(first.subviews(), ElementsAre(&other));
    EXPECT_EQ(child.superview(), &second);
    child.removeFromSuperview();
    child.removeFromSuperview();
    EXPECT_EQ(child.superview(), nullptr);
    EXPECT_THAT(second.subviews(), IsEmpty());
}

TEST(NSView, EitherSideOfALinkMayGoFirst) {
    NSView lasting;
    {
        NSView child;
        lasting.addSubview(child);
    }
    EXPECT_THAT(lasting.subviews(), IsEmpty());
    {
        NSView parent;
        parent.addSubview(lasting);
    }
    EXPECT_EQ(lasting.superview(), nullptr);
}

TEST(NSView, CannotStandInItself) {
    NSView view;
    NSView child;
    view.addSubview(child);
    EXPECT_THROW(view.addSubview(view), NSException);
    EXPECT_THROW(child.addSubview(view), NSException);
    EXPECT_THAT(view.subviews(), ElementsAre(&child));
}

TEST(NSView, APlainViewDrawsNothing) {
    NSView view(NSRect{{0, 0}, {10, 10}});
    view.layout();
    EXPECT_TRUE(view.dataWithPDFInsideRect(view.bounds()).isNil());
    EXPECT_TRUE(view.dataForPrinting(NSPrintInfo::sharedPrintInfo()).isNil());
}

} // namespace qrv
