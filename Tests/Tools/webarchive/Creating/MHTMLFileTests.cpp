#include "Source/Tools/webarchive/Creating/MHTMLFile.h"

#include "Platform/MHTML/MIMEMessage.h"
#include "Source/Tools/Common/Failure.h"
#include "Tests/Platform/WebArchive/TestArchive.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

class MHTMLFileTest : public testing::Test {
protected:
    WebArchive archiveOf(std::vector<MIMEPart> parts) const {
        const NSString path = disk_.write("page.mhtml", writeMIMEMessage({std::move(parts), 0}));
        return archiveOfMHTMLFile(path.utf8(), NSURL::URLWithString(u"file:///page.mhtml"));
    }

    static std::string urlOf(const WebResource& resource) { return resource.URL().absoluteString().utf8(); }

    TemporaryFolder disk_;
};

TEST_F(MHTMLFileTest, AreKnownByTheirNames) {
    EXPECT_TRUE(isMHTMLFile("a/b.MHTML"));
    EXPECT_TRUE(isMHTMLFile("b.mht"));
    EXPECT_FALSE(isMHTMLFile("mht"));
    EXPECT_FALSE(isMHTMLFile("a.html"));
}

TEST_F(MHTMLFileTest, ReferencesByIdentifierBecomeAddresses) {
    const WebArchive archive =
        archiveOf({{"http://h/", "", "text/html", "",
                    "<iframe src=cid:a@x></iframe><img src='cid:b%40x'><img src=\"cid:c@x\">"},
                   {"http://h/f", "a@x", "text/html", "", "frame"},
                   {"", "b@x", "image/png", "", "cid:a@x"},
                   {"http://h/s", "", "text/css", "", "p{background:url(cid:b@x)}"}});
    EXPECT_EQ(archive.mainResource().data().bytes(),
              "<iframe src=http://h/f></iframe><img src='http://cid.invalid/b@x'><img src=\"cid:c@x\">");
    EXPECT_EQ(urlOf(resourceAt(archive, 0)), "http://h/f");
    EXPECT_EQ(urlOf(resourceAt(archive, 1)), "http://cid.invalid/b@x");
    EXPECT_EQ(resourceAt(archive, 1).data().bytes(), "cid:a@x");
    EXPECT_EQ(resourceAt(archive, 2).data().bytes(), "p{background:url(http://cid.invalid/b@x)}");
}

TEST_F(MHTMLFileTest, TextsWithoutIdentifiersStay) {
    const std::string page = "<p>cid:a@x</p><p>a cid:b</p><a href=http://h/acid:a@x>";
    EXPECT_EQ(archiveOf({{"http://h/", "a@x", "text/html", "", page}}).mainResource().data().bytes(), page);
}

TEST_F(MHTMLFileTest, APageWithoutAnAddressGetsThatOfTheFile) {
    EXPECT_EQ(urlOf(archiveOf({{"http://h/p", "", "text/html", "", ""}}).mainResource()), "http://h/p");
    EXPECT_EQ(urlOf(archiveOf({{"", "", "text/html", "", ""}}).mainResource()), "file:///page.mhtml");
    EXPECT_EQ(urlOf(archiveOf({{"", "root@x", "text/html", "", ""}}).mainResource()), "file:///page.mhtml");
}

TEST_F(MHTMLFileTest, FilesThatAreNoneFail) {
    EXPECT_THROW(archiveOfMHTMLFile(disk_.pathOf("missing.mhtml").utf8(), {}), Failure);
    EXPECT_THROW(archiveOfMHTMLFile(disk_.write("text.mhtml", "text").utf8(), {}), Failure);
}

TEST_F(MHTMLFileTest, UnusedPartsAreKept) {
    const WebArchive file =
        makeArchive({{"http://h/"}, {{"http://h/used"}, {"http://H/frame"}, {"http://h/unused"}}});
    const WebArchive page = makeArchive({{"http://h/"}, {}, {{{"http://h/frame"}, {{"http://h/used"}}}}});
    const WebArchive all = withUnusedParts(page, file);
    ASSERT_EQ(all.subresources().count(), 1u);
    EXPECT_EQ(urlOf(resourceAt(all, 0)), "http://h/unused");
    EXPECT_EQ(all.subframeArchives().count(), 1u);
}

} // namespace
} // namespace qrv::webarchive
