#include "Platform/Engine/Print/CanvasBackground.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

TEST(CanvasBackground, RepeatsListsToALength) {
    EXPECT_EQ(itemCount("none"), 1u);
    EXPECT_EQ(itemCount("calc(1px, 2px), b"), 2u);
    EXPECT_EQ(cycled("a", 3), "a,a,a");
    EXPECT_EQ(cycled("min(1px, 2px), b", 3), "min(1px, 2px),b,min(1px, 2px)");
    EXPECT_EQ(cycled("a, b, c", 2), "a,b");
}

TEST(CanvasBackground, MovesPositions) {
    struct {
        const char* positions;
        const char* moved;
    } cases[] = {
        {"0px", "calc(0px + 792px)"},
        {"12px", "calc(12px + 792px)"},
        {"0%, 50%", "calc(0% + 792px),calc(50% + 792px)"},
        {"right 10px", "calc(100% - 10px + 792px)"},
        {"bottom", "calc(100% - 0px + 792px)"},
        {"left 5px, top", "calc(0% + 5px + 792px),calc(0% + 0px + 792px)"},
        {"calc(100% - 10px), 3px", "calc(calc(100% - 10px) + 792px),calc(3px + 792px)"},
        {"min(1px, 2%)", "calc(min(1px, 2%) + 792px)"},
    };

    for (const auto& c : cases) EXPECT_EQ(movedPositions(c.positions, {0, 500}, {0, 500}, 792), c.moved);
}

// An image of 30 px in a box of 100 px that begins at 20 stands at 20 + p * 70; in one of 400 px that begins
// at 5 it has to stand there still.
TEST(CanvasBackground, KeepsPlacesInABoxOfAnotherSize) {
    BackgroundAxis from{20, 100};
    BackgroundAxis to{5, 400};
    EXPECT_EQ(movedPositions("0%", from, to, 0), "calc(0% + 15px)");
    EXPECT_EQ(movedPositions("100%", from, to, 0), "calc(100% + -285px)");
    EXPECT_EQ(movedPositions("25%", from, to, 1), "calc(25% + -59px)");
    EXPECT_EQ(movedPositions("right 10px", from, to, 0), "calc(100% - 10px + -285px)");
    EXPECT_EQ(movedPositions("calc(50% + 3px)", from, to, 0), "calc(calc(50% + 3px) + -135px)");
    EXPECT_EQ(movedPositions("7px", from, to, 0), "calc(7px + 15px)");
}

TEST(CanvasBackground, FixesSizes) {
    struct {
        const char* sizes;
        BackgroundImages images;
        const char* fixed;
    } cases[] = {
        {"auto", {"url", "2"}, "auto auto"},
        {"auto", {"linear-gradient", "0"}, "200px 50px"},
        {"cover", {"radial-gradient", "0"}, "200px 50px"},
        {"contain", {"url", "0"}, "contain"},
        {"50% 20%", {"url", "2"}, "100px 10px"},
        {"50%", {"url", "2"}, "100px auto"},
        {"50%", {"conic-gradient", "0"}, "100px 50px"},
        {"30px 40px", {"linear-gradient", "0"}, "30px 40px"},
        {"calc(50% + 1px) auto", {"url", "2"}, "calc(100px + 1px) auto"},
        {"min(25%, calc(12.5% - 1px)) 1px", {"url", "2"}, "min(50px, calc(25px - 1px)) 1px"},
        {"auto, 10px", {"linear-gradient,url,linear-gradient", "0,1,0"}, "200px 50px,10px auto,200px 50px"},
        {"cover", {"url,url", "5"}, "250px 50px,cover"},
    };

    for (const auto& c : cases) EXPECT_EQ(fixedSizes(c.sizes, c.images, 200, 50), c.fixed);
}

TEST(CanvasBackground, PercentSignsWithoutNumbersCountAsNone) {
    EXPECT_EQ(fixedSizes("%a1 5px", {"url", "0"}, 200, 50), "0pxa1 5px");
    EXPECT_EQ(movedPositions("%1", {0, 100}, {10, 50}, 0), "calc(%1 + -10px)");
}

TEST(CanvasBackground, ImagesOfKnownRatioCoverOrFitTheirBox) {
    struct {
        const char *ratio, *cover, *contain;
    } cases[] = {
        {"4", "200px 50px", "200px 50px"},
        {"8", "400px 50px", "200px 25px"},
        {"1", "200px 200px", "50px 50px"},
        {"0.25", "200px 800px", "12.5px 50px"},
    };

    for (const auto& c : cases) {
        EXPECT_EQ(fixedSizes("cover", {"url", c.ratio}, 200, 50), c.cover) << c.ratio;
        EXPECT_EQ(fixedSizes("contain", {"url", c.ratio}, 200, 50), c.contain) << c.ratio;
    }
}

} // namespace
} // namespace qrv::engine
