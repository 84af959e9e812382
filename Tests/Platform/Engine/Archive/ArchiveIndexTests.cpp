#include "Platform/Engine/Archive/ArchiveIndex.h"

#include "Tests/Platform/WebArchive/TestArchive.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

using Node = ArchiveIndex::Node;
using Frames = std::vector<NSMutableDictionary>;

constexpr Node root = ArchiveIndex::root;

/// A frame's archive; its text is its address unless another is given.
NSMutableDictionary frame(const std::string& url, const std::string& name = {}, const std::string& text = {},
                          const std::vector<TestResource>& resources = {}, const Frames& frames = {}) {
    return archiveList({.url = url, .text = text.empty() ? url : text, .frameName = name}, resources, frames);
}

ArchiveIndex indexOf(const NSMutableDictionary& list) {
    return ArchiveIndex(archiveOf(list));
}

ArchiveIndex indexOfFrames(const Frames& frames) {
    return indexOf(archiveList({"http://h/"}, {}, frames));
}

std::string text(const WebResource& resource) {
    return resource.isNil() ? "none" : std::string(resource.data().bytes());
}

std::string text(const ArchiveIndex& index, Node node, const std::string& url) {
    return text(index.resource(node, url));
}

/// The text of the archive that a frame gets.
std::string taken(ArchiveIndex& index, const std::string& name, const std::string& url, Node parent = root) {
    const auto node = index.takeFrame(parent, name, url);
    return node ? text(index.mainResource(*node)) : "none";
}

std::string takenBlank(ArchiveIndex& index, const std::string& name) {
    const auto node = index.takeBlankFrame(root, name);
    return node ? text(index.mainResource(*node)) : "none";
}

// Resources

TEST(ArchiveIndex, FindsResourcesByNormalisedAddress) {
    const ArchiveIndex index =
        indexOf(archiveList({"HTTP://Example.org", "page"}, {{"http://example.org:80/a/../b c", "b"},
                                                             {"http://m\xC3\xBCnchen.de/", "m"},
                                                             {"http://example.org/css?family=A|B", "css"}}));
    EXPECT_EQ(text(index, root, "http://example.org/"), "page");
    EXPECT_EQ(text(index, root, "http://example.org/b%20c"), "b");
    EXPECT_EQ(text(index, root, "http://xn--mnchen-3ya.de/"), "m");
    EXPECT_EQ(text(index, root, "http://example.org/css?family=A|B"), "css");
    EXPECT_EQ(text(index, root, "http://example.org/c"), "none");
    EXPECT_EQ(text(index, root, ""), "none");
}

TEST(ArchiveIndex, OfDuplicatesTheLastWins) {
    const ArchiveIndex index = indexOf(
        archiveList({"http://h/"}, {{"http://h/a", "first"}, {"http://h/b"}, {"HTTP://h/a", "last"}}));
    EXPECT_EQ(text(index, root, "http://h/a"), "last");
}

TEST(ArchiveIndex, CountsImagesByTheirAddresses) {
    const ArchiveIndex index =
        indexOf(archiveList({"http://h/"},
                            {{"http://h/a", "", "image/png"},
                             {"http://h/a", "", "image/png"},
                             {"http://h/b#c", "", "image/svg+xml"},
                             {"http://h/d", "", "text/css"}},
                            {frame("http://h/f", "", "", {{"http://h/e", "", "image/gif"}})}));
    EXPECT_EQ(index.imageCount(), 3u);
}

TEST(ArchiveIndex, MainResourceBeatsASubresourceOfItsAddress) {
    EXPECT_EQ(text(indexOf(archiveList({"http://h/", "page"}, {{"http://h/", "other"}})), root, "http://h/"),
              "page");
}

TEST(ArchiveIndex, FallsBackBetweenHTTPSchemes) {
    const ArchiveIndex index = indexOf(archiveList(
        {"http://h/"},
        {{"http://h/a", "a"}, {"https://h/b", "b"}, {"http://h/c", "c"}, {"https://h/c", "safe c"}}));
    EXPECT_EQ(text(index, root, "https://h/a"), "a");
    EXPECT_EQ(text(index, root, "http://h/b"), "b");
    EXPECT_EQ(text(index, root, "https://h:443/a"), "a");
    EXPECT_EQ(text(index, root, "http://h/c"), "c");
    EXPECT_EQ(text(index, root, "https://h/c"), "safe c");
    EXPECT_EQ(text(index, root, "ftp://h/a"), "none");
}

TEST(ArchiveIndex, AtLastFindsAnAddressThatMeansTheSame) {
    const ArchiveIndex index = indexOf(
        archiveList({"http://h/"},
                    {{"http://h/%7Ea", "tilde"}, {"http://h/%C3%A4", "ae"}, {"http://h/a%2Fb", "escaped"}}));
    EXPECT_EQ(text(index, root, "http://h/~a"), "tilde");
    EXPECT_EQ(text(index, root, "https://h/a%cc%88#x"), "ae");
    EXPECT_EQ(text(index, root, "http://h/a/b"), "escaped");
    EXPECT_EQ(text(index, root, "http://h/A"), "none");
}

TEST(ArchiveIndex, TriesOnceMoreWithoutTheFragment) {
    const ArchiveIndex index = indexOf(
        archiveList({"http://h/"}, {{"http://h/a", "a"}, {"http://h/a#x", "x"}, {"http://h/b#y", "y"}}));
    EXPECT_EQ(text(index, root, "http://h/a#x"), "x");
    EXPECT_EQ(text(index, root, "http://h/a#z"), "a");
    EXPECT_EQ(text(index, root, "http://h/a"), "a");
    EXPECT_EQ(text(index, root, "https://h/a#z"), "a");
    EXPECT_EQ(text(index, root, "http://h/b"), "y");
    EXPECT_EQ(text(index, root, "http://h/b#z"), "y");
}

TEST(ArchiveIndex, ResourceWithoutFragmentBeatsOneWith) {
    for (const std::vector<TestResource>& order :
         {std::vector<TestResource>{{"http://h/a", "a"}, {"http://h/a#x", "x"}},
          std::vector<TestResource>{{"http://h/a#x", "x"}, {"http://h/a", "a"}}}) {
        EXPECT_EQ(text(indexOf(archiveList({"http://h/"}, order)), root, "http://h/a"), "a");
    }
}

TEST(ArchiveIndex, LooksInTheOwnArchiveThenTheAncestorsThenEverywhere) {
    const std::string a = "http://h/a";
    const std::string b = "http://h/b";
    const std::string c = "http://h/c";
    const std::string d = "http://h/d";
    const NSMutableDictionary inner = frame("http://h/inner", {}, {}, {{a, "inner a"}});
    const NSMutableDictionary outer =
        frame("http://h/outer", {}, {}, {{a, "outer a"}, {b, "outer b"}}, {inner});
    const NSMutableDictionary sibling =
        frame("http://h/sibling", {}, {}, {{a, "sibling a"}, {b, "sibling b"}, {c, "sibling c"}, {d, "d"}});
    ArchiveIndex index =
        indexOf(archiveList({"http://h/"}, {{a, "root a"}, {b, "root b"}, {c, "root c"}}, {outer, sibling}));
    const auto outerNode = index.takeFrame(root, "", "http://h/outer");
    ASSERT_TRUE(outerNode);
    const auto innerNode = index.takeFrame(*outerNode, "", "http://h/inner");
    ASSERT_TRUE(innerNode);
    EXPECT_EQ(text(index, *innerNode, a), "inner a");
    EXPECT_EQ(text(index, *innerNode, b), "outer b");
    EXPECT_EQ(text(index, *innerNode, c), "root c");
    EXPECT_EQ(text(index, *innerNode, d), "d");
    EXPECT_EQ(text(index, *outerNode, a), "outer a");
    EXPECT_EQ(text(index, root, a), "root a");
    EXPECT_EQ(text(index, root, d), "d");
}

TEST(ArchiveIndex, MainResourcesOfFramesAreResources) {
    const ArchiveIndex index =
        indexOfFrames({frame("http://h/f", {}, {}, {}, {frame("http://h/g", {}, "inner")})});
    EXPECT_EQ(text(index, root, "http://h/f"), "http://h/f");
    EXPECT_EQ(text(index, root, "https://h/g"), "inner");
}

// Frames

TEST(ArchiveIndexFrames, AreMatchedByNameFirst) {
    ArchiveIndex index = indexOfFrames({frame("http://h/a", "one", "1"), frame("http://h/b", "two", "2")});
    EXPECT_EQ(taken(index, "two", "http://h/a"), "2");
    EXPECT_EQ(taken(index, "one", "http://h/a"), "1");
}

TEST(ArchiveIndexFrames, AreMatchedByGeneratedNames) {
    for (const std::string name : {"<!--frame1-->", "<!--framePath //<!--frame1-->-->"}) {
        ArchiveIndex index =
            indexOfFrames({frame("http://h/a", "<!--frame0-->", "0"), frame("http://h/a", name, "1")});
        EXPECT_EQ(taken(index, name, "http://h/a"), "1");
        EXPECT_EQ(taken(index, "", "http://h/a"), "0");
    }
}

TEST(ArchiveIndexFrames, AreMatchedByAddressSecond) {
    ArchiveIndex index =
        indexOfFrames({frame("http://h/a", "<!--frame0-->"), frame("HTTP://H:80/b", "<!--frame1-->"),
                       frame("https://h/c#f", "<!--frame2-->")});
    EXPECT_EQ(taken(index, "unknown", "http://h/c"), "https://h/c#f");
    EXPECT_EQ(taken(index, "", "http://h/b#x"), "HTTP://H:80/b");
    EXPECT_EQ(taken(index, "", "https://h/a"), "http://h/a");
}

TEST(ArchiveIndexFrames, AreMatchedByOrderLast) {
    ArchiveIndex index = indexOfFrames({frame("http://h/1"), frame("http://h/2", "<!--frame1-->"),
                                        frame("http://h/3", "<!--framePath //<!--frame2-->-->")});
    EXPECT_EQ(taken(index, "", "http://h/x"), "http://h/1");
    EXPECT_EQ(taken(index, "unknown", "http://h/y"), "http://h/2");
    EXPECT_EQ(taken(index, "", "http://h/z"), "http://h/3");
    EXPECT_EQ(taken(index, "", "http://h/z"), "none");
}

TEST(ArchiveIndexFrames, OfSeveralWithOneAddressAreTakenInOrder) {
    ArchiveIndex index = indexOfFrames({frame("http://h/a", {}, "1"), frame("http://h/a", {}, "2")});
    EXPECT_EQ(taken(index, "", "http://h/a"), "1");
    EXPECT_EQ(taken(index, "", "http://h/a"), "2");
    EXPECT_EQ(taken(index, "", "http://h/a"), "none");
}

TEST(ArchiveIndexFrames, OrderPassesOverOtherFramesNames) {
    ArchiveIndex index = indexOfFrames({frame("http://h/1", "menu"), frame("http://h/2")});
    EXPECT_EQ(taken(index, "", "http://h/x"), "http://h/2");
    EXPECT_EQ(taken(index, "", "http://h/x"), "none");
    EXPECT_EQ(taken(index, "menu", "http://h/x"), "http://h/1");
}

TEST(ArchiveIndexFrames, OfAnAddressPreferThoseWithoutAnotherFramesName) {
    ArchiveIndex index = indexOfFrames({frame("http://h/a", "menu", "1"), frame("http://h/a", {}, "2")});
    EXPECT_EQ(taken(index, "", "http://h/a"), "2");
    EXPECT_EQ(taken(index, "", "http://h/a"), "1");
}

TEST(ArchiveIndexFrames, NamesMatterWhileOneThatCarriesANameIsLeft) {
    ArchiveIndex index = indexOfFrames(
        {frame("http://h/a", "<!--frame1-->"), frame("http://h/b", "menu"), frame("http://h/c")});
    EXPECT_TRUE(index.hasNamedFramesLeft(root));
    EXPECT_EQ(taken(index, "menu", "http://h/b"), "http://h/b");
    EXPECT_FALSE(index.hasNamedFramesLeft(root));
    EXPECT_TRUE(index.hasFramesLeft(root));
}

TEST(ArchiveIndexFrames, AreTakenOnce) {
    ArchiveIndex index = indexOfFrames({frame("http://h/a", "one")});
    EXPECT_TRUE(index.hasFramesLeft(root));
    EXPECT_EQ(taken(index, "one", "http://h/a"), "http://h/a");
    EXPECT_FALSE(index.hasFramesLeft(root));
    EXPECT_EQ(taken(index, "one", "http://h/a"), "none");
}

TEST(ArchiveIndexFrames, BelongToTheirParent) {
    ArchiveIndex index = indexOfFrames({frame("http://h/a", {}, {}, {}, {frame("http://h/b", "inner")})});
    EXPECT_EQ(taken(index, "inner", "http://h/a"), "http://h/a");
    EXPECT_FALSE(index.hasFramesLeft(root));
    EXPECT_TRUE(index.hasFramesLeft(1));
    EXPECT_EQ(taken(index, "inner", "http://h/x", 1), "http://h/b");
}

TEST(ArchiveIndexFrames, NestThreeLevels) {
    ArchiveIndex index = indexOfFrames(
        {frame("http://h/1", {}, {}, {}, {frame("http://h/2", {}, {}, {}, {frame("http://h/3")})})});
    Node parent = root;
    for (const std::string url : {"http://h/1", "http://h/2", "http://h/3"}) {
        const auto node = index.takeFrame(parent, "", url);
        ASSERT_TRUE(node) << url;
        EXPECT_EQ(text(index.mainResource(*node)), url);
        parent = *node;
    }
    EXPECT_FALSE(index.hasFramesLeft(parent));
}

// Blank frames

TEST(ArchiveIndexBlankFrames, GetOnlyArchivesWithoutAnAddress) {
    ArchiveIndex index = indexOfFrames({frame("http://h/a"), frame("about:blank", {}, "1"),
                                        frame("", {}, "2"), frame("ABOUT:srcdoc", {}, "3")});
    EXPECT_EQ(takenBlank(index, ""), "1");
    EXPECT_EQ(takenBlank(index, ""), "2");
    EXPECT_EQ(takenBlank(index, ""), "3");
    EXPECT_EQ(takenBlank(index, ""), "none");
    EXPECT_TRUE(index.hasFramesLeft(root));
}

TEST(ArchiveIndexBlankFrames, AreMatchedByNameFirst) {
    ArchiveIndex index = indexOfFrames({frame("about:blank", "<!--frame0-->", "0"),
                                        frame("about:blank", "two", "2"), frame("http://h/", "page")});
    EXPECT_EQ(takenBlank(index, "two"), "2");
    EXPECT_EQ(takenBlank(index, "page"), "0");
}

TEST(ArchiveIndexBlankFrames, PassOverOtherFramesNames) {
    ArchiveIndex index = indexOfFrames({frame("about:blank", "menu", "1")});
    EXPECT_EQ(takenBlank(index, "other"), "none");
    EXPECT_EQ(takenBlank(index, ""), "none");
}

TEST(ArchiveIndexBlankFrames, AreNotGivenToFramesWithAnAddress) {
    ArchiveIndex index = indexOfFrames({frame("about:blank"), frame("", {}, "unknown")});
    EXPECT_EQ(taken(index, "", "http://h/a"), "none");
    EXPECT_EQ(taken(index, "", "file:///a"), "none");
    EXPECT_EQ(taken(index, "", "x-foo:a"), "none");
}

// Hostile archives

TEST(HostileArchiveIndex, ThousandsOfFramesAreEachTakenOnce) {
    Frames frames;
    for (int i = 0; i < 3'000; ++i) frames.push_back(frame("http://h/" + std::to_string(i)));
    ArchiveIndex index = indexOfFrames(frames);
    for (int i = 2'999; i >= 0; --i) {
        const std::string url = "http://h/" + std::to_string(i);
        ASSERT_EQ(taken(index, "", url), url);
    }
    EXPECT_FALSE(index.hasFramesLeft(root));
}

TEST(HostileArchiveIndex, ManyResourcesAreFound) {
    std::vector<TestResource> resources;
    for (int i = 0; i < 20'000; ++i)
        resources.push_back({"http://h/" + std::to_string(i), std::to_string(i)});
    const ArchiveIndex index = indexOf(archiveList({"http://h/"}, resources));
    EXPECT_EQ(text(index, root, "http://h/0"), "0");
    EXPECT_EQ(text(index, root, "https://h/19999#f"), "19999");
    EXPECT_EQ(text(index, root, "http://h/20000"), "none");
}

TEST(HostileArchiveIndex, SharedFramesAndResourcesAreIndexed) {
    NSMutableDictionary list = archiveList({"http://h/leaf", "leaf"});
    const NSArray resources(std::vector<id>(1'000, resourceList({"http://h/a", "a"}).copy()));
    for (int i = 0; i < 50; ++i) {
        const NSDictionary shared = list.copy();
        list = archiveList({"http://h/" + std::to_string(i)});
        list.setObject_forKey(resources, NSString(u"WebSubresources"));
        list.setObject_forKey(NSArray({shared, shared}), NSString(u"WebSubframeArchives"));
    }
    const ArchiveIndex index = indexOf(list);
    EXPECT_EQ(text(index, root, "http://h/a"), "a");
    EXPECT_EQ(text(index, root, "http://h/leaf"), "leaf");
}

TEST(HostileArchiveIndex, ResourceCopiesShareTheirBytes) {
    const WebArchive archive = archiveOf(archiveList({"http://h/"}, {{"http://h/a"}}));
    const ArchiveIndex index(archive);
    const ArchiveIndex copy = index;
    EXPECT_TRUE(index.resource(root, "http://h/a").isIdenticalTo(resourceAt(archive, 0)));
    EXPECT_TRUE(copy.resource(root, "http://h/a").isIdenticalTo(resourceAt(archive, 0)));
}

} // namespace
} // namespace qrv::engine
