#include "Platform/MHTML/MHTMLReader.h"

#include "Platform/MHTML/MIMEMessage.h"
#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Platform/WebArchive/TestArchive.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

NSData messageOf(std::vector<MIMEPart> parts) {
    return NSData(writeMIMEMessage({std::move(parts), 0}));
}

MHTMLPage pageOf(std::vector<MIMEPart> parts) {
    prepareForMIMEMessages();
    return pageFromList(listFromMHTML(messageOf(std::move(parts))));
}

std::string addressAt(const WebArchive& archive, std::size_t index) {
    return resourceAt(archive, index).URL().absoluteString().utf8();
}

TEST(MHTMLReader, PutsAllPartsBesideEachOther) {
    const MHTMLPage page = pageOf({{"http://h/", "", "text/html", "Shift_JIS", "page"},
                                   {"http://h/a.png", "", "image/png", "", "picture"},
                                   {"http://h/f", "f@x", "text/html", "", ""}});
    const WebResource main = page.archive.mainResource();
    EXPECT_EQ(main.data().bytes(), "page");
    EXPECT_EQ(main.URL().absoluteString(), NSString(u"http://h/"));
    EXPECT_EQ(main.textEncodingName(), NSString(u"Shift_JIS"));
    ASSERT_EQ(page.archive.subresources().count(), 2u);
    EXPECT_EQ(addressAt(page.archive, 0), "http://h/a.png");
    EXPECT_TRUE(resourceAt(page.archive, 0).textEncodingName().isNil());
    EXPECT_EQ(resourceAt(page.archive, 1).data().length(), 0u);
    EXPECT_EQ(page.addresses, (std::map<std::string, std::string>{{"f@x", "http://h/f"}}));
}

TEST(MHTMLReader, PartsWithoutALocationOfTheirOwnGoByTheirIdentifier) {
    const MHTMLPage page = pageOf({{"", "", "text/html", "", "page"},
                                   {"http://h/", "1@x", "text/html", "", "one"},
                                   {"http://h/", "2@x", "text/html", "", "two"},
                                   {"about:blank", "3@x", "text/html", "", "three"},
                                   {"a.png", "4@x", "image/png", "", "four"},
                                   {"cid:5@x", "", "text/css", "", "five"},
                                   {"", "", "image/png", "", "lost"}});
    EXPECT_TRUE(page.archive.mainResource().URL().isNil());
    ASSERT_EQ(page.archive.subresources().count(), 5u);
    EXPECT_EQ(addressAt(page.archive, 0), "http://h/");
    EXPECT_EQ(addressAt(page.archive, 1), "cid:2@x");
    EXPECT_EQ(addressAt(page.archive, 2), "cid:3@x");
    EXPECT_EQ(addressAt(page.archive, 3), "cid:4@x");
    EXPECT_EQ(addressAt(page.archive, 4), "cid:5@x");
    EXPECT_EQ(page.addresses.at("1@x"), "http://h/");
    EXPECT_EQ(page.addresses.at("5@x"), "cid:5@x");
    EXPECT_EQ(page.addresses.at("2@x"), "cid:2@x");
}

TEST(MHTMLReader, TheHostThatStandsForFilesIsTakenBack) {
    const MHTMLPage page = pageOf({{"http://file.invalid/d/page.html", "", "text/html", "", "page"},
                                   {"http://file.invalid/d/f", "f@x", "text/html", "", "frame"}});
    EXPECT_EQ(page.archive.mainResource().URL().absoluteString(), NSString(u"file:///d/page.html"));
    EXPECT_EQ(addressAt(page.archive, 0), "file:///d/f");
    EXPECT_EQ(page.addresses.at("f@x"), "file:///d/f");
}

TEST(MHTMLReader, AConfinedChildReadsAlike) {
    const std::vector<MIMEPart> parts{{"http://h/", "", "text/html", "Shift_JIS", "page"},
                                      {"http://h/f", "f@x", "text/html", "", "frame"}};
    const MHTMLPage here = pageOf(parts);
    const MHTMLPage there = pageFromMHTML(messageOf(parts), nullptr);
    ASSERT_TRUE(there.archive);
    EXPECT_EQ(there.archive.data(), here.archive.data());
    EXPECT_EQ(there.addresses, here.addresses);
}

TEST(MHTMLReader, SaysWhyItIsNone) {
    std::string reason;
    EXPECT_TRUE(pageFromMHTML(NSData(std::string("text")), &reason).archive.isNil());
    EXPECT_EQ(reason, "has no page in it");
    EXPECT_TRUE(pageFromMHTML({}, nullptr).archive.isNil());
}

// Without an end each level would need room on the stack of whoever takes it apart.
TEST(MHTMLReader, PartsNestedTooDeepDoNoHarm) {
    std::string text = "MIME-Version: 1.0\r\n";
    for (int depth = 0; depth < 50'000; ++depth) {
        const std::string boundary = std::to_string(depth);
        text += "Content-Type: multipart/mixed; boundary=\"" + boundary + "\"\r\n\r\n--" + boundary + "\r\n";
    }
    text += "Content-Type: text/html\r\n\r\npage";
    std::string reason;
    const MHTMLPage page = pageFromMHTML(NSData(text), &reason);
    EXPECT_NE(page.archive.isNil(), reason.empty());
}

} // namespace
} // namespace qrv
