#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/WebArchive/TestArchive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qrv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const id number = NSNumber::numberWithInteger(5);

std::string lossText(WebArchiveProblem::Loss loss) {
    const char* const names[] = {"archive", "frame", "resource", "field", "rest"};
    return names[static_cast<std::size_t>(loss)];
}

/// "place reason (loss)" of each problem.
std::vector<std::string> problemsOf(const NSData& file) {
    WebArchiveProblems problems;
    const WebArchive archive = WebArchive::initWithData(file, &problems);
    EXPECT_EQ(problems.count, problems.kept.size());
    std::vector<std::string> lines;
    for (const auto& [place, reason, loss] : problems.kept) {
        EXPECT_EQ(loss == WebArchiveProblem::Loss::archive, archive.isNil());
        lines.push_back(place + " " + reason + " (" + lossText(loss) + ")");
    }
    return lines;
}

std::vector<std::string> problemsOf(const NSDictionary& list) {
    return problemsOf(archiveFile(list));
}

NSDictionary with(NSMutableDictionary list, const char16_t* key, const id& value) {
    value.isNil() ? list.removeObjectForKey(NSString(key)) : list.setObject_forKey(value, NSString(key));
    return list.copy();
}

NSDictionary archiveWith(const char16_t* key, const id& value) {
    return with(archiveList({"http://h/"}), key, value);
}

NSDictionary resourceWith(const char16_t* key, const id& value) {
    return with(resourceList({"http://h/x"}), key, value);
}

TEST(WebArchiveProblems, GoodArchivesHaveNone) {
    EXPECT_THAT(
        problemsOf(archiveList({"http://h/"}, {{"http://h/a"}}, {archiveList({"http://h/f"})}).copy()),
        IsEmpty());
    EXPECT_THAT(problemsOf(archiveWith(u"WebMainResource", resourceWith(u"WebResourceURL", {}))), IsEmpty());
    EXPECT_THAT(problemsOf(archiveWith(u"WebSubresources", {})), IsEmpty());
}

TEST(WebArchiveProblems, FilesThatAreNoPropertyListSayWhere) {
    EXPECT_THAT(problemsOf(NSData(std::string("<plist><dict><key>a</key></dict></plist>"))),
                ElementsAre(" key without a value at byte 25 (archive)"));
    const std::vector<std::string> none = problemsOf(NSData(std::string("bplist00")));
    ASSERT_EQ(none.size(), 1u);
    EXPECT_THAT(none[0], testing::HasSubstr("(archive)"));
    EXPECT_THAT(problemsOf(archiveFile(NSString(u"text"))),
                ElementsAre(" is a property list, but no dictionary (archive)"));
}

TEST(WebArchiveProblems, WhatMakesNoArchive) {
    EXPECT_THAT(problemsOf(archiveWith(u"WebMainResource", {})),
                ElementsAre("WebMainResource is missing (archive)"));
    EXPECT_THAT(problemsOf(archiveWith(u"WebMainResource", number)),
                ElementsAre("WebMainResource is no dictionary (archive)"));
    EXPECT_THAT(problemsOf(archiveWith(u"WebMainResource", resourceWith(u"WebResourceData", {}))),
                ElementsAre("WebMainResource.WebResourceData is missing (archive)"));
    EXPECT_THAT(problemsOf(archiveWith(u"WebMainResource", resourceWith(u"WebResourceMIMEType", number))),
                ElementsAre("WebMainResource.WebResourceMIMEType is no text (archive)"));
    EXPECT_THAT(problemsOf(archiveWith(u"WebSubresources", number)),
                ElementsAre("WebSubresources is no array (archive)"));
    EXPECT_THAT(
        problemsOf(archiveWith(u"WebSubframeArchives", NSArray({NSDictionary::dictionary(), number}))),
        ElementsAre("WebSubframeArchives[1] is no dictionary (archive)"));
}

TEST(WebArchiveProblems, WhatIsLeftOut) {
    NSMutableDictionary frame = archiveList({"http://h/f"});
    frame.setObject_forKey(NSArray({resourceWith(u"WebResourceData", NSString(u"text"))}),
                           NSString(u"WebSubresources"));
    NSMutableDictionary broken = archiveList({"http://h/g"});
    broken.setObject_forKey(NSArray({number}), NSString(u"WebSubresources"));
    NSMutableDictionary list = archiveList({"http://h/"}, {}, {frame, broken, NSMutableDictionary()});
    list.setObject_forKey(
        NSArray({resourceWith(u"WebResourceURL", {}), resourceWith(u"WebResourceURL", NSString(u"")),
                 NSDictionary::dictionary(), resourceWith(u"WebResourceTextEncodingName", number)}),
        NSString(u"WebSubresources"));
    EXPECT_THAT(problemsOf(list.copy()),
                ElementsAre("WebSubresources[0].WebResourceURL is missing (resource)",
                            "WebSubresources[1].WebResourceURL is no address (resource)",
                            "WebSubresources[2].WebResourceData is missing (resource)",
                            "WebSubresources[2].WebResourceMIMEType is missing (resource)",
                            "WebSubresources[3].WebResourceTextEncodingName is no text (field)",
                            "WebSubframeArchives[0].WebSubresources[0].WebResourceData is no data (resource)",
                            "WebSubframeArchives[1].WebSubresources[0] is no dictionary (frame)",
                            "WebSubframeArchives[2].WebMainResource is missing (frame)"));
}

TEST(WebArchiveProblems, FieldsThatAreNotNeededAreLeftOutOfAMainResource) {
    EXPECT_THAT(problemsOf(archiveWith(u"WebMainResource", resourceWith(u"WebResourceURL", number))),
                ElementsAre("WebMainResource.WebResourceURL is no address (field)"));
    EXPECT_THAT(problemsOf(archiveWith(u"WebMainResource", resourceWith(u"WebResourceFrameName", number))),
                ElementsAre("WebMainResource.WebResourceFrameName is no text (field)"));
}

TEST(WebArchiveProblems, SharedResourcesAreToldEachTime) {
    const NSDictionary broken = resourceWith(u"WebResourceData", {});
    EXPECT_THAT(problemsOf(archiveWith(u"WebSubresources", NSArray({broken, broken}))),
                ElementsAre("WebSubresources[0].WebResourceData is missing (resource)",
                            "WebSubresources[1].WebResourceData is missing (resource)"));
}

TEST(WebArchiveProblems, LimitsAreTold) {
    NSDictionary list = archiveList({"http://h/"}).copy();
    for (int i = 0; i < 66; ++i) list = archiveWith(u"WebSubframeArchives", NSArray({list}));
    const std::vector<std::string> deep = problemsOf(list);
    ASSERT_EQ(deep.size(), 1u);
    EXPECT_THAT(deep[0], testing::EndsWith("].WebSubframeArchives[0] is nested more than 64 deep (rest)"));

    const NSDictionary frame = archiveList({"http://h/"}).copy();
    EXPECT_THAT(problemsOf(archiveWith(u"WebSubframeArchives", NSArray(std::vector<id>(10'002, frame)))),
                ElementsAre("WebSubframeArchives[10000] is beyond 10,000 frames (rest)"));

    const NSDictionary resource = resourceList({"h"}).copy();
    EXPECT_THAT(problemsOf(archiveWith(u"WebSubresources", NSArray(std::vector<id>(250'002, resource)))),
                ElementsAre("WebSubresources[250000] is beyond 250,000 resources (rest)"));

    const NSString address = NSString::fromUTF8("http://h/" + std::string(9'000'000, 'a'));
    EXPECT_THAT(
        problemsOf(archiveWith(u"WebSubresources", NSArray({resourceWith(u"WebResourceURL", address),
                                                            resourceWith(u"WebResourceURL", address)}))),
        ElementsAre("WebSubresources[1] is beyond a total of 16 Mi characters of addresses, types and "
                    "names (resource)"));
}

TEST(WebArchiveProblems, OfVeryManyOnlyTheNumberIsKept) {
    WebArchiveProblems problems;
    const NSArray broken(std::vector<id>(2'500, resourceWith(u"WebResourceData", {})));
    EXPECT_FALSE(
        WebArchive::initWithData(archiveFile(archiveWith(u"WebSubresources", broken)), &problems).isNil());
    EXPECT_EQ(problems.kept.size(), 1'000u);
    EXPECT_EQ(problems.count, 2'500u);
    EXPECT_EQ(problems.kept.back().place, "WebSubresources[999].WebResourceData");
}

} // namespace
} // namespace qrv
