#include "Platform/WebKit/Engine/RootBox.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

// A root in a view of 600 x 800 with these margins and borders, 5 px of padding all around.
PageMeasurements root(double height, double margin, double border) {
    PageMeasurements m;
    m.viewWidth = 600;
    m.viewHeight = 800;
    m.rootMarginTop = m.rootMarginBottom = m.rootMarginLeft = margin;
    m.rootBorderTop = m.rootBorderRight = m.rootBorderBottom = m.rootBorderLeft = border;
    m.rootPaddingTop = m.rootPaddingRight = m.rootPaddingBottom = m.rootPaddingLeft = 5;
    m.rootWidth = 590 - 2 * (margin + border);
    m.rootHeight = height;
    return m;
}

TEST(RootBox, WritesItsEdgesInOrder) {
    EXPECT_EQ(lengths({1, 2.5, 3, -4}), "1px 2.5px 3px -4px");
}

TEST(RootBox, OnScreenIsWhatWasMeasured) {
    PageMeasurements m = root(200, 20, 3);
    RootBox box = boxOnScreen(m);
    EXPECT_EQ(box.marginLeft, 20);
    EXPECT_EQ(box.top, 20);
    EXPECT_EQ(box.border, (Edges{3, 3, 3, 3}));
    EXPECT_EQ(box.padding, (Edges{5, 5, 5, 5}));
    EXPECT_EQ(box.width(m.rootWidth), 560);
    EXPECT_EQ(box.height(), 216);
}

TEST(RootBox, AsViewFillsTheView) {
    PageMeasurements m = root(200, 20, 0);
    RootBox box = boxAsView(m);
    EXPECT_EQ(box.top, 0);
    EXPECT_EQ(box.padding, (Edges{25, 25, 570 + 5, 25}));
    EXPECT_EQ(box.contentHeight, 200);
    EXPECT_EQ(box.width(m.rootWidth), 600);
    EXPECT_EQ(box.height(), 800);
}

TEST(RootBox, AsViewReachesBeyondItByItsBorder) {
    PageMeasurements m = root(2000, 20, 0);
    RootBox box = boxAsView(m);
    EXPECT_EQ(box.padding, (Edges{25, 25, 5, 25}));
    EXPECT_EQ(box.contentHeight, 770);
    EXPECT_EQ(box.border, (Edges{0, 0, 1250, 0}));
    EXPECT_EQ(box.height(), 2050); // the end of the bottom margin
}

TEST(RootBox, AsContainerStaysAsItIs) {
    RootBox box = boxAsContainer(root(2000, 20, 3));
    EXPECT_EQ(box.marginLeft, 20);
    EXPECT_EQ(box.top, 20);
    EXPECT_EQ(box.border, (Edges{3, 3, 3, 3}));
    EXPECT_EQ(box.padding, (Edges{5, 5, 5, 5}));
    EXPECT_EQ(box.contentHeight, 2000);
    EXPECT_EQ(boxAsContainer(root(200, 20, 0)).border, (Edges{0, 0, 590, 0}));
}

} // namespace
} // namespace qrv::engine
