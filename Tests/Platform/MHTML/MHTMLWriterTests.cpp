#include "Platform/MHTML/MHTMLWriter.h"

#include "Platform/MHTML/MIMEMessage.h"
#include "Tests/Platform/WebArchive/TestArchive.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using ::testing::ElementsAre;

/// The parts as "location identifier charset bytes".
std::vector<std::string> partsOf(const WebArchive& archive) {
    std::vector<std::string> parts;
    const auto message = readMIMEMessage(MHTMLFromArchive(archive).bytes());
    for (const MIMEPart& part : message ? message->parts : std::vector<MIMEPart>())
        parts.push_back(part.location + " " + part.identifier + " " + part.charset + " " + part.bytes);
    return parts;
}

TEST(MHTMLWriter, WritesEveryPageAndResource) {
    const WebArchive archive = makeArchive({{"http://h/", "page"},
                                            {{"http://h/a.png", "picture", "image/png", "", ""}},
                                            {{{"http://h/f", "frame", "text/html", "name", "KOI8-R"},
                                              {{"http://h/f.png", "inner", "image/png", "", ""}},
                                              {{{"http://h/g", "deep"}}}},
                                             {{"", "blank"}}}});
    EXPECT_THAT(partsOf(archive),
                ElementsAre("http://h/  UTF-8 page", "http://h/a.png   picture",
                            "http://h/f frame-1@webarchive.invalid KOI8-R frame", "http://h/f.png   inner",
                            "http://h/g frame-2@webarchive.invalid UTF-8 deep",
                            " frame-3@webarchive.invalid UTF-8 blank"));
}

TEST(MHTMLWriter, FilesGetTheAddressesOfAHost) {
    EXPECT_THAT(partsOf(makeArchive(
                    {{"file:///d/page.html", "page"}, {{"file:///d/a", "a"}, {"http://file/", "b"}}})),
                ElementsAre("http://file.invalid/d/page.html  UTF-8 page", "http://file.invalid/d/a  UTF-8 a",
                            "http://file/  UTF-8 b"));
}

TEST(MHTMLWriter, WritesWhatFramesShareOnce) {
    const WebArchive archive = makeArchive(
        {{"http://h/", "page"},
         {{"http://h/a", "same"}, {"http://h/b", "one"}},
         {{{"http://h/f", "f"}, {{"http://h/a", "same"}, {"http://h/b", "two"}}}, {{"http://h/f", "f"}}}});
    EXPECT_THAT(partsOf(archive),
                ElementsAre("http://h/  UTF-8 page", "http://h/a  UTF-8 same", "http://h/b  UTF-8 one",
                            "http://h/f frame-1@webarchive.invalid UTF-8 f", "http://h/b  UTF-8 two",
                            "http://h/f frame-2@webarchive.invalid UTF-8 f"));
}

TEST(MHTMLWriter, IsNilForNil) {
    EXPECT_TRUE(MHTMLFromArchive({}).isNil());
}

// A thousand resources that are the same megabyte of the file.
TEST(MHTMLWriter, IsNilWhereTheFileWouldBeFarLarger) {
    const NSData shared(std::string(std::size_t{1} << 20, 'x'));
    std::vector<id> resources;
    for (int i = 0; i < 1000; ++i) {
        resources.push_back(WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
            shared, NSURL::URLWithString(NSString::fromUTF8("http://h/" + std::to_string(i))), u"image/png",
            {}, {}));
    }
    const auto first = as<WebResource>(resources.front());
    const auto archive = WebArchive::initWithMainResource_subresources_subframeArchives(
        first, NSArray(std::move(resources)), {});
    EXPECT_TRUE(MHTMLFromArchive(archive).isNil());
}

} // namespace
} // namespace qrv
