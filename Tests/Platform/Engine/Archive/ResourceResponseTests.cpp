#include "Platform/Engine/Archive/ResourceResponse.h"

#include <gmock/gmock.h>
#include <map>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

WebResource resource(const NSString& type, const NSString& encoding = {}) {
    return WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
        NSData(std::string("text")), NSURL::URLWithString(u"http://h/"), type, encoding, {});
}

WebResource hostile(const std::string& type, const std::string& encoding = {}) {
    return resource(NSString::fromUTF8(type), NSString::fromUTF8(encoding));
}

std::map<std::string, std::string> headers(const WebResource& stored, const ResourceRequest& request) {
    std::map<std::string, std::string> result;
    const Json list = responseHeaders(stored, request);
    for (const Json& header : list.elements()) result[header["name"].string()] = header["value"].string();
    EXPECT_EQ(result.size(), list.size());
    return result;
}

using Headers = std::map<std::string, std::string>;

TEST(ResourceResponse, ContentTypeIsTheStoredTypeAndEncoding) {
    EXPECT_EQ(contentType(resource(u"text/html"), true), "text/html");
    EXPECT_EQ(contentType(resource(u"text/html", u""), true), "text/html");
    EXPECT_EQ(contentType(resource(u"text/html", u"UTF-8"), true), "text/html; charset=UTF-8");
    EXPECT_EQ(contentType(resource(u"text/css", u"iso-8859-1"), false), "text/css; charset=iso-8859-1");
    EXPECT_EQ(contentType(resource(u"Image/SVG+XML"), false), "image/svg+xml");
    EXPECT_EQ(contentType(resource(u"application/vnd.x-y_z+json"), false), "application/vnd.x-y_z+json");
}

TEST(ResourceResponse, AllowsTheHeadersThatAreAskedFor) {
    EXPECT_EQ(
        headers(resource(u"a/b"), {.url = "http://h/", .origin = "http://o", .headers = "x-own,x-other"})
            .at("Access-Control-Allow-Headers"),
        "x-own,x-other");
}

TEST(ResourceResponse, KindsOfTextAreShownAsPlainText) {
    for (const char16_t* type :
         {u"text/css", u"TEXT/CSV", u"text/javascript", u"application/javascript",
          u"application/x-javascript", u"application/json", u"text/css; a=b", u"text/vcard",
          u"text/tab-separated-values", u"application/ld+json", u"application/x-yaml", u"message/rfc822"}) {
        EXPECT_EQ(contentType(resource(type, u"utf-8"), true), "text/plain; charset=utf-8");
    }
    EXPECT_EQ(contentType(resource(u"text/css"), false), "text/css");
    EXPECT_EQ(contentType(resource(u"application/json"), false), "application/json");
    for (const char16_t* type : {u"text/html", u"text/plain", u"application/xhtml+xml", u"image/png",
                                 u"text/xml", u"application/rss+xml", u"image/x-json", u"application/zip"}) {
        EXPECT_EQ(contentType(resource(type), true), NSString(type).utf8());
    }
}

TEST(ResourceResponse, TypesAndEncodingsBeginNoOtherHeader) {
    EXPECT_EQ(contentType(hostile("text/html\r\nSet-Cookie: a=b"), false), "text/html");
    EXPECT_EQ(contentType(hostile("text/html", "utf-8\r\n\r\n<script>"), false),
              "text/html; charset=utf-8script");
    EXPECT_EQ(contentType(hostile("text/html\n", "\tutf-8 "), false), "text/html; charset=utf-8");
    EXPECT_EQ(contentType(hostile("text/html,text/plain"), false), "text/htmltext/plain");
    EXPECT_EQ(contentType(hostile("text/html; charset=utf-7", "utf-8; a=b"), false),
              "text/html; charset=utf-8");
    EXPECT_EQ(contentType(hostile("text/html", "\"utf-8\""), false), "text/html; charset=utf-8");
    EXPECT_EQ(contentType(hostile(std::string("text/\0html\x7F", 11), "\xC3\xA9"
                                                                      "a"),
                          false),
              "text/html; charset=a");
}

TEST(ResourceResponse, EnormousTypesAndEncodingsAreNone) {
    const std::string enormous(2'000'000, 'a');
    EXPECT_EQ(contentType(hostile("text/html", enormous), true), "text/html");
    EXPECT_EQ(contentType(hostile(enormous, "utf-8"), true), "");
}

TEST(ResourceResponse, WithoutATypeThereIsNoHeaderOfIt) {
    EXPECT_EQ(headers(resource(u"", u"utf-8"), {.url = "http://h/", .origin = {}}),
              (Headers{{"Access-Control-Allow-Origin", "*"}}));
}

TEST(ResourceResponse, AllowsEveryOrigin) {
    EXPECT_EQ(headers(resource(u"font/woff"), {.url = "http://h/", .origin = {}}),
              (Headers{{"Content-Type", "font/woff"}, {"Access-Control-Allow-Origin", "*"}}));
    EXPECT_EQ(headers(resource(u"font/woff"), {.url = "https://h/", .origin = "http://other"}),
              (Headers{{"Content-Type", "font/woff"},
                       {"Access-Control-Allow-Origin", "http://other"},
                       {"Access-Control-Allow-Credentials", "true"}}));
    EXPECT_EQ(headers(resource(u"font/woff"),
                      {.url = "https://h/", .origin = "null"})["Access-Control-Allow-Origin"],
              "null");
}

std::string policy(const char* url, bool isDocument = true) {
    return headers(resource(u"text/html"),
                   {.url = url, .origin = {}, .isDocument = isDocument})["Content-Security-Policy"];
}

TEST(ResourceResponse, DocumentsAreInASandboxWithoutForms) {
    for (const char* url : {"https://h/", "http://h/"}) {
        EXPECT_THAT(policy(url), StartsWith("sandbox allow-scripts allow-same-origin ")) << url;
        EXPECT_THAT(policy(url), Not(HasSubstr("allow-forms"))) << url;
        EXPECT_THAT(policy(url), Not(HasSubstr("allow-top-navigation"))) << url;
        EXPECT_EQ(policy(url, false), "") << url;
    }
}

TEST(ResourceResponse, DocumentsOverHTTPSAskForTheirFramesOverHTTPS) {
    EXPECT_THAT(policy("https://h/"), HasSubstr("; upgrade-insecure-requests"));
    EXPECT_THAT(policy("http://h/"), Not(HasSubstr("upgrade")));
}

TEST(ResourceResponse, TextsAreTextsWhateverTheyHold) {
    const auto options = [](const char16_t* type, bool isDocument) {
        return headers(
            resource(type, u"utf-8"),
            {.url = "http://h/", .origin = {}, .isDocument = isDocument})["X-Content-Type-Options"];
    };
    EXPECT_EQ(options(u"text/plain", true), "nosniff");
    EXPECT_EQ(options(u"text/csv", true), "nosniff");
    EXPECT_EQ(options(u"text/html", true), "") << "its styles and scripts may have wrong types";
    EXPECT_EQ(options(u"text/plain", false), "");
}

} // namespace
} // namespace qrv::engine
