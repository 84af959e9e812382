#include "Platform/AppKit/NSWindow.h"

#include "Platform/AppKit/NSApplication.h"
#include "Platform/Foundation/NSException.h"

#include <gtest/gtest.h>
#include <memory>

namespace qrv {

TEST(NSWindow, HoldsAViewInContentsOfItsOwnSize) {
    ASSERT_TRUE(NSApplicationLoad());
    NSView view;
    auto window = std::make_unique<NSWindow>(NSRect{{5, 6}, {812, 992}}, NSWindowStyleMaskBorderless,
                                             NSBackingStoreRetained, false);
    EXPECT_EQ(window->contentView().frame(), (NSRect{{0, 0}, {812, 992}}));
    window->contentView().addSubview(view);
    EXPECT_EQ(view.superview(), &window->contentView());
    window.reset();
    EXPECT_EQ(view.superview(), nullptr);
}

TEST(NSWindow, NeedsTheApplication) {
    applicationIsLoaded = false;
    EXPECT_THROW(NSWindow({}, NSWindowStyleMaskBorderless, NSBackingStoreRetained, false), NSException);
}

} // namespace qrv
