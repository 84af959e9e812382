#include "Platform/Engine/Address/MIMEType.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

std::string read(std::string_view written) {
    return MIMEType(written).text();
}

TEST(MIMEType, IsInLowerCaseWithoutParametersAndWhiteSpace) {
    for (const char* written : {"text/html", "Text/HTML", "text/html;charset=utf-8", "text/html ; charset=x",
                                " \ttext/html\r\n", "text/html charset=utf-8", "text/html;", "text/html\v"}) {
        EXPECT_EQ(read(written), "text/html") << written;
    }
    EXPECT_EQ(read("application/vnd.x-y_z+json"), "application/vnd.x-y_z+json");
}

TEST(MIMEType, OfNothingIsNone) {
    for (const char* written : {"", " ", ";", "; charset=utf-8", "\"\"", "\xC3\xA9"})
        EXPECT_EQ(read(written), "") << written;
}

TEST(MIMEType, HoldsNothingThatCouldBeginAnotherHeader) {
    EXPECT_EQ(read("text/html\r\nSet-Cookie: a=b"), "text/html");
    EXPECT_EQ(read("text/html,text/plain"), "text/htmltext/plain");
    EXPECT_EQ(read(std::string_view("text/\0h\"tml\x7F", 12)), "text/html");
}

TEST(MIMEType, ThatIsTooLongIsNone) {
    EXPECT_EQ(read("a/" + std::string(125, 'b')), "a/" + std::string(125, 'b'));
    EXPECT_EQ(read("a/" + std::string(126, 'b')), "");
    EXPECT_EQ(read(std::string(2'000'000, 'a')), "");
}

TEST(MIMEType, TellsPDFFiles) {
    for (const char* type :
         {"application/pdf", "Application/PDF", "application/pdf; charset=binary", " application/pdf",
          "application/pdf charset=binary", "application/x-pdf", "text/pdf"}) {
        EXPECT_TRUE(MIMEType(type).isPDF()) << type;
    }
    for (const char* type : {"text/html", "application/pdfx", "application/octet-stream", ""}) {
        EXPECT_FALSE(MIMEType(type).isPDF()) << type;
    }
}

TEST(MIMEType, TellsImages) {
    for (const char* type : {"image/png", "Image/SVG+xml; x=y"})
        EXPECT_TRUE(MIMEType(type).isImage()) << type;
    for (const char* type : {"", "image", "text/image", "video/mp4"})
        EXPECT_FALSE(MIMEType(type).isImage()) << type;
}

TEST(MIMEType, TellsDownloads) {
    for (const char* type : {"application/octet-stream", "Application/Octet-Stream; x=y", "application/zip",
                             "application/wasm", "application/vnd.unheard-of", "binary/octet-stream"})
        EXPECT_TRUE(MIMEType(type).isDownload()) << type;
    for (const char* type :
         {"", "text/html", "application/json", "application/pdf", "application/xhtml+xml",
          "application/javascript", "application/unknown", "application/ogg", "image/png", "video/mp4"})
        EXPECT_FALSE(MIMEType(type).isDownload()) << type;
}

TEST(MIMEType, TellsMarkupStylesAndScripts) {
    for (const char* type :
         {"text/html", "text/html; charset=utf-8", "application/xhtml+xml", "image/svg+xml", "text/xml"}) {
        EXPECT_TRUE(MIMEType(type).isMarkup()) << type;
    }
    EXPECT_TRUE(MIMEType("text/css;charset=utf-8").isStyleSheet());
    for (const char* type : {"text/javascript", "application/javascript; charset=utf-8",
                             "application/x-javascript", "text/ecmascript"}) {
        EXPECT_TRUE(MIMEType(type).isScript()) << type;
    }
    for (const char* type : {"text/plain", "image/png", "application/json", ""}) {
        const MIMEType other(type);
        EXPECT_FALSE(other.isMarkup() || other.isStyleSheet() || other.isScript()) << type;
    }
}

TEST(MIMEType, TellsWhatIsShownAsText) {
    for (const char* type :
         {"text/css", "TEXT/CSV", "text/javascript", "application/javascript", "application/x-javascript",
          "application/json", "text/css; a=b", "text/vcard", "text/tab-separated-values",
          "application/ld+json", "application/x-yaml", "message/rfc822"}) {
        EXPECT_TRUE(MIMEType(type).isShownAsText()) << type;
    }
    for (const char* type : {"text/html", "text/html; charset=utf-8", "application/xhtml+xml", "image/png",
                             "text/xml", "application/rss+xml", "image/x-json", "application/zip", ""}) {
        EXPECT_FALSE(MIMEType(type).isShownAsText()) << type;
    }
}

TEST(HeaderToken, EndsWithItsParametersAndKeepsItsCase) {
    EXPECT_EQ(headerToken("utf-8; a=b"), "utf-8");
    EXPECT_EQ(headerToken("\t\"Shift_JIS\" "), "Shift_JIS");
    EXPECT_EQ(headerToken("iso 8859-1"), "iso8859-1");
    EXPECT_EQ(headerToken(""), "");
}

TEST(HeaderToken, HoldsNothingThatCouldBeginAnotherHeader) {
    EXPECT_EQ(headerToken("utf-8\r\n\r\n<script>"), "utf-8script");
    EXPECT_EQ(headerToken("utf-8,\xC3\xA9="), "utf-8");
    EXPECT_EQ(headerToken(std::string(128, 'a')), "");
}

} // namespace
} // namespace qrv::engine
