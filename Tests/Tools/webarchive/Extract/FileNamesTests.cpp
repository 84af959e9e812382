#include "Source/Tools/webarchive/Extract/FileNames.h"

#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

using engine::MIMEType;

std::string nameOf(std::string_view address, std::string_view type = "image/png") {
    return FileNames().take(address, MIMEType(type));
}

TEST(FileNames, AreReadable) {
    EXPECT_EQ(nameOf("http://h/a/photo.png"), "photo.png");
    EXPECT_EQ(nameOf("http://h/a/photo.php?x=1#y", "image/jpeg"), "photo.jpg");
    EXPECT_EQ(nameOf("http://h/a/My%20photo%20(1).png"), "My-photo-1.png");
    EXPECT_EQ(nameOf("http://h/jquery.min.js", "text/javascript"), "jquery.min.js");
    EXPECT_EQ(nameOf("http://h/gtag/js?id=5", "application/javascript"), "js.js");
    EXPECT_EQ(nameOf("http://h/folder/"), "folder.png");
}

TEST(FileNames, TheSuffixTellsTheType) {
    for (const auto& [type, suffix] : {std::pair("text/css", "css"),
                                       {"Text/HTML; charset=x", "html"},
                                       {"video/webm", "webm"},
                                       {"application/atom+xml", "xml"},
                                       {"font/woff2", "woff2"}}) {
        EXPECT_EQ(suffixOf(MIMEType(type), "http://h/a.png"), suffix);
    }
    EXPECT_EQ(suffixOf(MIMEType("binary/octet-stream"), "http://h/a.WOFF2?x"), "woff2");
    EXPECT_EQ(suffixOf(MIMEType("binary/octet-stream"), "http://h/a"), "bin");
    EXPECT_EQ(suffixOf(MIMEType("a/b"), "http://h/a.b%2F..%2Fc"), "bin");
    EXPECT_EQ(suffixOf(MIMEType(""), "http://h/a.muchtoolong"), "bin");
}

TEST(FileNames, AddressesLeadNowhereElse) {
    for (const char* address :
         {"http://h/..", "http://h/%2e%2e%2f%2e%2e%2fetc%2fpasswd", "http://h/../../x", "file:///etc/passwd",
          "http://h/%00", "http://h/a\\..\\b", "http://h/-rf", "http://h/.htaccess", "http://h/~",
          "http://h/\xE6\x97\xA5", "", "data:image/png;base64,AAAA/BBBB", "about:blank", "http://h/\x1b[2J",
          "http://h/a%0Ab", "http://h/con.."}) {
        const std::string name = nameOf(address);
        EXPECT_EQ(name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_."),
                  name.npos)
            << name;
        EXPECT_TRUE(std::isalnum(name.front())) << name;
        EXPECT_TRUE(name.ends_with(".png")) << name;
        EXPECT_EQ(name.find(".."), name.npos) << name;
    }
    EXPECT_EQ(nameOf("data:image/png;base64,AAAA/BBBB"), "resource.png");
    EXPECT_LT(nameOf("http://h/" + std::string(300, 'a')).size(), 100u);
}

TEST(FileNames, AreGivenOnce) {
    FileNames names;
    const MIMEType png("image/png");
    EXPECT_EQ(names.take("http://h/a.png", png), "a.png");
    EXPECT_EQ(names.take("http://h/b/A.PNG", png), "A-2.png");
    EXPECT_EQ(names.take("http://h/a-3", png), "a-3.png");
    EXPECT_EQ(names.take("http://h/a", png), "a-4.png");
    EXPECT_EQ(names.take("http://h/a", MIMEType("text/css")), "a.css");
    EXPECT_EQ(names.take("frame-1", "html"), "frame-1.html");
    EXPECT_EQ(names.take("http://h/frame-1.html", MIMEType("text/html")), "frame-1-2.html");
}

} // namespace
} // namespace qrv::webarchive
