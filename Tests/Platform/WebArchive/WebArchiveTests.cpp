#include "Platform/WebArchive/WebArchive.h"

#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Platform/WebArchive/TestArchive.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

const id number = NSNumber::numberWithInteger(5);

/// An archive of a main page, one resource and one frame, with a field of its root replaced (nil: taken
/// away).
WebArchive archiveWith(const char16_t* key, const id& value) {
    NSMutableDictionary list = archiveList({"http://h/"}, {{"http://h/a"}}, {archiveList({"http://h/f"})});
    value.isNil() ? list.removeObjectForKey(NSString(key)) : list.setObject_forKey(value, NSString(key));
    return archiveOf(list);
}

NSDictionary resourceWith(const char16_t* key, const id& value) {
    NSMutableDictionary list = resourceList({"http://h/x"});
    value.isNil() ? list.removeObjectForKey(NSString(key)) : list.setObject_forKey(value, NSString(key));
    return list.copy();
}

TEST(WebArchive, ReadsResourcesAndFramesInOrder) {
    const NSMutableDictionary list = archiveList(
        {.url = "http://h/", .text = "page", .frameName = "top"},
        {{"http://h/1"}, {"http://h/2"}, {"http://h/1"}},
        {archiveList({"http://h/f"}, {}, {archiveList({"http://h/g"})}), archiveList({"http://h/e"})});
    for (const auto format : {NSPropertyListBinaryFormat_v1_0, NSPropertyListXMLFormat_v1_0}) {
        const WebArchive archive = WebArchive::initWithData(archiveFile(list.copy(), format));
        EXPECT_EQ(archive.mainResource().data().bytes(), "page");
        EXPECT_EQ(archive.mainResource().URL().absoluteString(), NSString(u"http://h/"));
        EXPECT_EQ(archive.mainResource().MIMEType(), NSString(u"text/html"));
        EXPECT_EQ(archive.mainResource().textEncodingName(), NSString(u"UTF-8"));
        EXPECT_EQ(archive.mainResource().frameName(), NSString(u"top"));
        ASSERT_EQ(archive.subresources().count(), 3u);
        EXPECT_EQ(resourceAt(archive, 1).URL().absoluteString(), NSString(u"http://h/2"));
        ASSERT_EQ(archive.subframeArchives().count(), 2u);
        ASSERT_EQ(frameAt(archive, 0).subframeArchives().count(), 1u);
        EXPECT_EQ(frameAt(frameAt(archive, 0), 0).mainResource().URL().absoluteString(),
                  NSString(u"http://h/g"));
        EXPECT_EQ(frameAt(archive, 1).mainResource().URL().absoluteString(), NSString(u"http://h/e"));
    }
}

TEST(WebArchive, TellsItsClass) {
    const id archive = archiveOf(archiveList({"http://h/"}));
    EXPECT_TRUE(archive.isKindOfClass(WebArchive::classInfo()));
    EXPECT_FALSE(archive.isKindOfClass(WebResource::classInfo()));
    EXPECT_FALSE(as<WebArchive>(archive).isNil());
}

TEST(WebArchive, IsNilForBytesThatAreNoPropertyList) {
    EXPECT_TRUE(WebArchive::initWithData({}).isNil());
    EXPECT_TRUE(WebArchive::initWithData(NSData::data()).isNil());
    EXPECT_TRUE(WebArchive::initWithData(NSData(std::string("<html></html>"))).isNil());
    EXPECT_TRUE(WebArchive::initWithData(NSData(std::string("bplist00"))).isNil());
    const NSData file = archiveFile(archiveList({"http://h/"}).copy());
    EXPECT_TRUE(WebArchive::initWithData(file.subdataWithRange({0, file.length() - 1})).isNil());
}

TEST(WebArchive, IsNilWhenTheRootIsNoDictionary) {
    EXPECT_TRUE(WebArchive::initWithData(archiveFile(NSArray({archiveList({"http://h/"}).copy()}))).isNil());
    EXPECT_TRUE(WebArchive::initWithData(archiveFile(NSString(u"WebMainResource"))).isNil());
}

TEST(WebArchive, IsNilWithoutAMainResource) {
    EXPECT_TRUE(archiveWith(u"WebMainResource", {}).isNil());
    EXPECT_TRUE(archiveWith(u"WebMainResource", number).isNil());
    EXPECT_TRUE(archiveWith(u"WebMainResource", NSArray::array()).isNil());
    EXPECT_TRUE(archiveWith(u"WebMainResource", NSDictionary::dictionary()).isNil());
}

TEST(WebArchive, IsNilWhenTheMainResourceHasNoBytes) {
    EXPECT_TRUE(archiveWith(u"WebMainResource", resourceWith(u"WebResourceData", {})).isNil());
    EXPECT_TRUE(archiveWith(u"WebMainResource", resourceWith(u"WebResourceData", NSString(u"text"))).isNil());
}

TEST(WebArchive, IsNilWhenTheMainResourceHasNoType) {
    EXPECT_TRUE(archiveWith(u"WebMainResource", resourceWith(u"WebResourceMIMEType", {})).isNil());
    EXPECT_TRUE(archiveWith(u"WebMainResource", resourceWith(u"WebResourceMIMEType", number)).isNil());
}

TEST(WebArchive, MainResourceMayBeEmptyOrWithoutAddress) {
    const WebArchive empty =
        archiveWith(u"WebMainResource", resourceWith(u"WebResourceData", NSData::data()));
    ASSERT_FALSE(empty.isNil());
    EXPECT_FALSE(empty.mainResource().data().isNil());
    EXPECT_EQ(empty.mainResource().data().length(), 0u);
    for (const id& address : {id(), number, id(NSString(u""))}) {
        const WebArchive archive = archiveWith(u"WebMainResource", resourceWith(u"WebResourceURL", address));
        ASSERT_FALSE(archive.isNil());
        EXPECT_TRUE(archive.mainResource().URL().isNil());
    }
}

TEST(WebArchive, OptionalFieldsOfTheWrongKindAreNil) {
    NSMutableDictionary main = resourceList({"http://h/"});
    main.setObject_forKey(number, NSString(u"WebResourceTextEncodingName"));
    main.setObject_forKey(NSArray::array(), NSString(u"WebResourceFrameName"));
    main.setObject_forKey(number, NSString(u"WebResourceResponse"));
    const WebArchive archive = archiveWith(u"WebMainResource", main.copy());
    ASSERT_FALSE(archive.isNil());
    EXPECT_TRUE(archive.mainResource().textEncodingName().isNil());
    EXPECT_TRUE(archive.mainResource().frameName().isNil());
}

class WebArchiveArrays : public testing::TestWithParam<const char16_t*> {};

TEST_P(WebArchiveArrays, MayBeMissingOrEmpty) {
    EXPECT_FALSE(archiveWith(GetParam(), {}).isNil());
    EXPECT_FALSE(archiveWith(GetParam(), NSArray::array()).isNil());
    EXPECT_EQ(archiveWith(u"WebSubresources", {}).subresources().count(), 0u);
    EXPECT_FALSE(archiveWith(u"WebSubresources", {}).subresources().isNil());
}

TEST_P(WebArchiveArrays, HaveToBeArrays) {
    EXPECT_TRUE(archiveWith(GetParam(), number).isNil());
    EXPECT_TRUE(archiveWith(GetParam(), NSDictionary::dictionary()).isNil());
    EXPECT_TRUE(archiveWith(GetParam(), NSData::data()).isNil());
}

TEST_P(WebArchiveArrays, HaveToHoldDictionariesOnly) {
    EXPECT_TRUE(archiveWith(GetParam(), NSArray({number})).isNil());
    EXPECT_TRUE(archiveWith(GetParam(), NSArray({resourceList({"http://h/"}).copy(), number})).isNil());
    EXPECT_TRUE(archiveWith(GetParam(), NSArray(std::vector<id>{NSArray::array()})).isNil());
}

INSTANTIATE_TEST_SUITE_P(Both, WebArchiveArrays, testing::Values(u"WebSubresources", u"WebSubframeArchives"),
                         [](const auto& instance) { return NSString(instance.param).utf8(); });

TEST(WebArchive, DropsMalformedSubresources) {
    const WebArchive archive = archiveWith(
        u"WebSubresources",
        NSArray({resourceWith(u"WebResourceData", {}), resourceWith(u"WebResourceMIMEType", number),
                 resourceWith(u"WebResourceURL", {}), resourceWith(u"WebResourceURL", number),
                 NSDictionary::dictionary(), resourceList({"http://h/good"}).copy()}));
    ASSERT_EQ(archive.subresources().count(), 1u);
    EXPECT_EQ(resourceAt(archive, 0).URL().absoluteString(), NSString(u"http://h/good"));
}

TEST(WebArchive, SkipsInvalidFrames) {
    NSMutableDictionary broken = archiveList({"http://h/broken"});
    broken.setObject_forKey(NSArray({number}), NSString(u"WebSubresources"));
    const WebArchive archive = archiveOf(
        archiveList({"http://h/"}, {}, {broken, NSMutableDictionary(), archiveList({"http://h/f"})}));
    ASSERT_EQ(archive.subframeArchives().count(), 1u);
    EXPECT_EQ(frameAt(archive, 0).mainResource().URL().absoluteString(), NSString(u"http://h/f"));
}

TEST(WebArchive, NilHasNothing) {
    EXPECT_TRUE(WebArchive().mainResource().isNil());
    EXPECT_TRUE(WebArchive().subresources().isNil());
    EXPECT_TRUE(WebArchive().subframeArchives().isNil());
}

// Writing

WebResource resourceOf(const char* url, std::string bytes, const char16_t* type = u"text/html",
                       const NSString& encoding = {}, const NSString& frameName = {}) {
    return WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
        NSData(std::move(bytes)), NSURL::URLWithString(NSString::fromUTF8(url)), NSString(type), encoding,
        frameName);
}

WebArchive archiveFrom(const WebResource& main, const std::vector<id>& resources = {},
                       const std::vector<id>& frames = {}) {
    return WebArchive::initWithMainResource_subresources_subframeArchives(main, NSArray(resources),
                                                                          NSArray(frames));
}

void expectSame(const WebResource& one, const WebResource& other) {
    EXPECT_EQ(one.data().isNil(), other.data().isNil());
    EXPECT_EQ(one.data().bytes(), other.data().bytes());
    EXPECT_EQ(one.URL().absoluteString(), other.URL().absoluteString());
    EXPECT_EQ(one.MIMEType(), other.MIMEType());
    EXPECT_EQ(one.textEncodingName(), other.textEncodingName());
    EXPECT_EQ(one.frameName(), other.frameName());
}

void expectSame(const WebArchive& one, const WebArchive& other) {
    expectSame(one.mainResource(), other.mainResource());
    ASSERT_EQ(one.subresources().count(), other.subresources().count());
    for (std::size_t i = 0; i < one.subresources().count(); ++i)
        expectSame(resourceAt(one, i), resourceAt(other, i));
    ASSERT_EQ(one.subframeArchives().count(), other.subframeArchives().count());
    for (std::size_t i = 0; i < one.subframeArchives().count(); ++i)
        expectSame(frameAt(one, i), frameAt(other, i));
}

class WrittenWebArchive : public testing::TestWithParam<NSPropertyListFormat> {
protected:
    static void expectReadBack(const WebArchive& archive) {
        ASSERT_FALSE(archive.isNil());
        const WebArchive readBack = WebArchive::initWithData(archive.dataInFormat(GetParam()));
        ASSERT_FALSE(readBack.isNil());
        expectSame(readBack, archive);
    }
};

INSTANTIATE_TEST_SUITE_P(Formats, WrittenWebArchive,
                         testing::Values(NSPropertyListBinaryFormat_v1_0, NSPropertyListXMLFormat_v1_0),
                         [](const auto& instance) {
                             return instance.param == NSPropertyListXMLFormat_v1_0 ? "XML" : "Binary";
                         });

TEST_P(WrittenWebArchive, HasEveryField) {
    const std::string allBytes("\0\r\n<\xFF\xFE&]]>", 11);
    expectReadBack(archiveFrom(
        resourceOf("http://h/", "page", u"text/html", NSString(u"UTF-8"), NSString(u"top")),
        {resourceOf("http://h/1", allBytes, u"image/png"), resourceOf("http://h/1", "again", u"text/css")},
        {archiveFrom(resourceOf("http://h/f", "frame", u"text/html", {}, NSString(u"a")),
                     {resourceOf("http://h/2", "in the frame")},
                     {archiveFrom(resourceOf("http://h/g", "inner"))}),
         archiveFrom(resourceOf("http://h/e", "second"))}));
}

TEST_P(WrittenWebArchive, LeavesOutWhatIsNil) {
    const WebArchive archive = archiveFrom(resourceOf("", ""));
    expectReadBack(archive);
    const NSDictionary root =
        as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(archive.dataInFormat(GetParam())));
    EXPECT_EQ(root.allKeys(), NSArray({NSString(u"WebMainResource")}));
    const NSDictionary main = as<NSDictionary>(root.objectForKey(NSString(u"WebMainResource")));
    EXPECT_EQ(main.allKeys(), NSArray({NSString(u"WebResourceData"), NSString(u"WebResourceMIMEType")}));
}

TEST_P(WrittenWebArchive, KeepsTextsOfAllKinds) {
    expectReadBack(archiveFrom(resourceOf("http://h/\xC3\xA4?%C3%A4#\xF0\x9F\x98\x80", "", u"text/\u00E4;<&>",
                                          NSString(u""), NSString(u"\u65E5\u672C \U0001F600"))));
}

TEST_P(WrittenWebArchive, IsNestedAsDeepAsIsRead) {
    WebArchive archive = archiveFrom(resourceOf("http://h/65", "innermost"));
    for (int depth = 64; depth > 0; --depth)
        archive = archiveFrom(resourceOf("http://h/", std::to_string(depth)), {}, {archive});
    expectReadBack(archive);
}

TEST(WebArchive, IsMadeOfItsPartsOnly) {
    const WebResource main = resourceOf("http://h/", "page");
    const auto archive = WebArchive::initWithMainResource_subresources_subframeArchives(main, {}, {});
    EXPECT_FALSE(archive.subresources().isNil());
    EXPECT_FALSE(archive.subframeArchives().isNil());
    EXPECT_TRUE(archiveFrom({}).isNil());
    EXPECT_TRUE(archiveFrom(main, {number}).isNil());
    EXPECT_TRUE(archiveFrom(main, {archive}).isNil());
    EXPECT_TRUE(archiveFrom(main, {}, {main}).isNil());
    EXPECT_EQ(archiveFrom(main, {resourceOf("", "lost"), main}).subresources().count(), 1u);
}

TEST(WebArchive, DataIsBinaryAndNilForNil) {
    EXPECT_TRUE(archiveFrom(resourceOf("http://h/", "page")).data().bytes().starts_with("bplist00"));
    EXPECT_TRUE(WebArchive().data().isNil());
}

TEST(WebArchive, IsNoXMLWithATextThatXMLLacks) {
    const WebArchive archive =
        archiveFrom(resourceOf("http://h/", "page", u"text/html", {}, NSString(u"a\u0001")));
    EXPECT_TRUE(archive.dataInFormat(NSPropertyListXMLFormat_v1_0).isNil());
    expectSame(WebArchive::initWithData(archive.data()), archive);
}

// Hostile files: a small one stands for more than could ever be read.

std::size_t countFrames(const WebArchive& archive) {
    std::size_t count = 0;
    for (const id& frame : archive.subframeArchives()) count += 1 + countFrames(as<WebArchive>(frame));
    return count;
}

std::size_t countResources(const WebArchive& archive) {
    std::size_t count = archive.subresources().count();
    for (const id& frame : archive.subframeArchives()) count += countResources(as<WebArchive>(frame));
    return count;
}

NSDictionary withArray(const char16_t* key, const NSArray& array) {
    NSMutableDictionary list = archiveList({"http://h/"});
    list.setObject_forKey(array, NSString(key));
    return list.copy();
}

TEST(HostileWebArchive, FramesEndAtADepthOf64) {
    NSDictionary list = archiveList({"http://h/"}).copy();
    for (int i = 0; i < 200; ++i) list = withArray(u"WebSubframeArchives", NSArray({list}));
    const WebArchive archive = WebArchive::initWithData(archiveFile(list));
    ASSERT_FALSE(archive.isNil());
    EXPECT_EQ(countFrames(archive), 64u);
}

TEST(HostileWebArchive, FramesSharedExponentiallyEndAtTenThousand) {
    NSDictionary list = archiveList({"http://h/"}).copy();
    for (int i = 0; i < 60; ++i) list = withArray(u"WebSubframeArchives", NSArray({list, list, list}));
    const NSData file = archiveFile(list);
    ASSERT_LT(file.length(), 20'000u);
    EXPECT_EQ(countFrames(WebArchive::initWithData(file)), 10'000u);
}

TEST(HostileWebArchive, InvalidFramesCountToo) {
    NSDictionary list = NSDictionary::dictionary();
    for (int i = 0; i < 60; ++i) list = withArray(u"WebSubframeArchives", NSArray({list, list, list}));
    const WebArchive archive = WebArchive::initWithData(archiveFile(list));
    ASSERT_FALSE(archive.isNil());
    EXPECT_LT(countFrames(archive), 10'000u);
}

TEST(HostileWebArchive, HundredThousandResourcesAreRead) {
    std::vector<TestResource> resources;
    for (int i = 0; i < 100'000; ++i) resources.push_back({"http://h/" + std::to_string(i)});
    const WebArchive archive = archiveOf(archiveList({"http://h/"}, resources));
    ASSERT_EQ(archive.subresources().count(), 100'000u);
    EXPECT_EQ(resourceAt(archive, 99'999).URL().absoluteString(), NSString(u"http://h/99999"));
}

// Ten thousand frames with one array of a hundred thousand resources would be a thousand million.
TEST(HostileWebArchive, ResourcesSharedByFramesEndAtABound) {
    const NSArray resources(std::vector<id>(100'000, resourceList({"http://h/a"}).copy()));
    const NSDictionary frame = withArray(u"WebSubresources", resources);
    const NSDictionary list = withArray(u"WebSubframeArchives", NSArray(std::vector<id>(10'000, frame)));
    const WebArchive archive = WebArchive::initWithData(archiveFile(list));
    EXPECT_EQ(countFrames(archive), 10'000u);
    EXPECT_EQ(countResources(archive), 250'000u);
    EXPECT_EQ(frameAt(archive, 0).subresources().count(), 100'000u);
}

TEST(HostileWebArchive, ArraysSharedByFramesAreCheckedOnce) {
    std::vector<id> elements(100'000, NSDictionary::dictionary());
    elements.push_back(number);
    const NSDictionary frame = withArray(u"WebSubresources", NSArray(std::move(elements)));
    const NSDictionary list = withArray(u"WebSubframeArchives", NSArray(std::vector<id>(10'000, frame)));
    const WebArchive archive = WebArchive::initWithData(archiveFile(list));
    ASSERT_FALSE(archive.isNil());
    EXPECT_EQ(countFrames(archive), 0u);
}

// One address of a million characters in twenty thousand resources would be 40 GB.
TEST(HostileWebArchive, SharedTextEndsAtABound) {
    const NSString address = NSString::fromUTF8("http://h/" + std::string(1'000'000, 'a'));
    std::vector<id> elements;
    for (int i = 0; i < 20'000; ++i) elements.push_back(resourceWith(u"WebResourceURL", address));
    elements.push_back(resourceList({"http://h/short"}).copy());
    const WebArchive archive =
        WebArchive::initWithData(archiveFile(withArray(u"WebSubresources", NSArray(std::move(elements)))));
    ASSERT_EQ(archive.subresources().count(), 17u);
    EXPECT_EQ(resourceAt(archive, 16).URL().absoluteString(), NSString(u"http://h/short"));
}

TEST(HostileWebArchive, SharedResourcesTakeTextEachTime) {
    const NSString address = NSString::fromUTF8("http://h/" + std::string(1'000'000, 'a'));
    const NSArray elements(std::vector<id>(1'000, resourceWith(u"WebResourceURL", address)));
    const WebArchive archive = WebArchive::initWithData(archiveFile(withArray(u"WebSubresources", elements)));
    EXPECT_EQ(archive.subresources().count(), 16u);
}

} // namespace
} // namespace qrv
