#include "Platform/Engine/Print/RootBox.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

// A root in a view of 600 x 800 with this content height, margins and borders, and 5 px of padding all
// around.
PageMeasurements root(double height, double margin, double border) {
    PageMeasurements m;
    m.view.width = 600;
    m.view.height = 800;
    m.root.marginTop = m.root.marginBottom = m.root.marginLeft = margin;
    m.root.border.top = m.root.border.right = m.root.border.bottom = m.root.border.left = border;
    m.root.padding.top = m.root.padding.right = m.root.padding.bottom = m.root.padding.left = 5;
    m.root.width = 590 - 2 * (margin + border);
    m.root.height = height;
    return m;
}

TEST(RootBox, WritesItsEdgesInOrder) {
    EXPECT_EQ(lengths({1, 2.5, 3, -4}), "1px 2.5px 3px -4px");
}

TEST(RootBox, OnScreenIsWhatWasMeasured) {
    RootBox box = boxOnScreen(root(200, 20, 3));
    EXPECT_EQ(box.marginLeft, 20);
    EXPECT_EQ(box.top, 20);
    EXPECT_EQ(box.border, (Edges{3, 3, 3, 3}));
    EXPECT_EQ(box.padding, (Edges{5, 5, 5, 5}));
    EXPECT_EQ(box.contentLeft(), 28);
    EXPECT_EQ(box.width(), 560);
    EXPECT_EQ(box.height(), 216);
}

// The content box is where it was, the padding box is the view, and the border box reaches as far as it did.
TEST(RootBox, AsViewHasTheViewForItsPaddingBox) {
    struct {
        const char* name;
        double width, height, margin, border;
        Edges newPadding;
        double newWidth, newHeight, newTop;
        double excessAcross, excessDown;
    } cases[] = {
        {"low", 550, 200, 20, 0, {25, 25, 575, 25}, 550, 200, 0, 0, 0},
        {"high", 550, 2000, 20, 0, {25, 25, 25, 25}, 550, 750, 0, 0, 1230},
        {"low, with a border", 550, 200, 0, 20, {25, 25, 575, 25}, 550, 200, 0, 0, 0},
        {"high, with a border", 550, 2000, 0, 20, {25, 25, 25, 25}, 550, 750, 0, 0, 1250},
        {"narrow", 300, 790, 0, 0, {5, 295, 5, 5}, 300, 790, 0, 0, 0},
        {"wide", 1000, 790, 0, 0, {5, 0, 5, 5}, 595, 790, 0, 410, 0},
        {"with negative margins", 620, 200, -15, 0, {0, 0, 610, 0}, 600, 200, -10, 15, 0},
        {"with negative margins behind a border", 560, 200, -15, 30, {20, 20, 580, 20}, 560, 200, 0, 15, 0},
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        PageMeasurements m = root(c.height, c.margin, c.border);
        m.root.width = c.width;
        RootBox box = boxAsView(m);
        EXPECT_EQ(box.marginLeft, 0);
        EXPECT_EQ(box.top, c.newTop);
        EXPECT_EQ(box.padding, c.newPadding);
        EXPECT_EQ(box.contentWidth, c.newWidth);
        EXPECT_EQ(box.contentHeight, c.newHeight);
        EXPECT_EQ(box.border, (Edges{0, c.excessAcross, c.excessDown, 0}));
        EXPECT_EQ(box.width() - box.border.right, 600);
        EXPECT_EQ(box.top + box.height() - box.border.bottom, 800);
    }
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
