#include "Platform/WebArchive/WebResource.h"

#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {
namespace {

const NSData bytes(std::string("abc"));
const NSURL url = NSURL::URLWithString(u"http://h/a");

TEST(WebResource, GivesBackWhatItWasMadeOf) {
    const WebResource resource = WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
        bytes, url, u"text/html", u"UTF-8", u"menu");
    EXPECT_TRUE(resource.data().isIdenticalTo(bytes));
    EXPECT_EQ(resource.URL(), url);
    EXPECT_EQ(resource.MIMEType(), NSString(u"text/html"));
    EXPECT_EQ(resource.textEncodingName(), NSString(u"UTF-8"));
    EXPECT_EQ(resource.frameName(), NSString(u"menu"));
}

TEST(WebResource, TellsItsClass) {
    const id resource =
        WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(bytes, url, u"text/html", {}, {});
    EXPECT_TRUE(resource.isKindOfClass(WebResource::classInfo()));
    EXPECT_FALSE(resource.isKindOfClass(NSData::classInfo()));
    EXPECT_EQ(as<WebResource>(resource).data(), bytes);
}

TEST(WebResource, NeedsBytesAndTypeOnly) {
    const auto make = &WebResource::initWithData_URL_MIMEType_textEncodingName_frameName;
    const WebResource least = make(NSData::data(), {}, u"", {}, {});
    ASSERT_FALSE(least.isNil());
    EXPECT_EQ(least.data().length(), 0u);
    EXPECT_TRUE(least.URL().isNil());
    EXPECT_TRUE(least.textEncodingName().isNil());
    EXPECT_TRUE(least.frameName().isNil());
    EXPECT_TRUE(make({}, url, u"text/html", {}, {}).isNil());
    EXPECT_TRUE(make(bytes, url, {}, {}, {}).isNil());
}

TEST(WebResource, NilHasNothing) {
    const WebResource none;
    EXPECT_TRUE(none.data().isNil());
    EXPECT_TRUE(none.URL().isNil());
    EXPECT_TRUE(none.MIMEType().isNil());
    EXPECT_TRUE(none.textEncodingName().isNil());
    EXPECT_TRUE(none.frameName().isNil());
}

} // namespace
} // namespace qrv
