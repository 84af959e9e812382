#include "Source/Tools/webarchive/Extract/StoredText.h"

#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

StoredText textOf(const std::string& bytes, const char* encoding, const char* type, const char* page = "") {
    return StoredText(WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
                          NSData(bytes), {}, NSString(type), NSString(encoding), {}),
                      page);
}

TEST(StoredText, IsUTF8WhereItsEncodingIsKnown) {
    const StoredText latin = textOf("\xE9", "iso-8859-1", "text/html");
    EXPECT_EQ(latin.text(), "\xC3\xA9");
    EXPECT_EQ(latin.file("x\xC3\xA9"), "\xEF\xBB\xBFx\xC3\xA9");
    EXPECT_EQ(latin.file("x"), "x");
    EXPECT_EQ(textOf("\x93\xFA\x96\x7B", "shift_jis", "text/html").text(), "日本");
    EXPECT_EQ(textOf(std::string("\xFF\xFE\x41\x00", 4), nullptr, "text/html").text(), "A");
}

TEST(StoredText, IsLeftAloneWhereItIsNot) {
    const StoredText unknown = textOf("\xE9", nullptr, "text/html", "iso-8859-1");
    EXPECT_EQ(unknown.text(), "\xE9");
    EXPECT_EQ(unknown.file("x\xE9"), "x\xE9");
    EXPECT_EQ(textOf("\xE9", "x-unheard-of", "text/html").text(), "\xE9");
}

TEST(StoredText, SheetsAndScriptsHaveTheEncodingOfTheirPage) {
    EXPECT_EQ(textOf("\xE9", nullptr, "text/css", "iso-8859-1").text(), "\xC3\xA9");
    EXPECT_EQ(textOf("\xC3\xA9", nullptr, "text/javascript", "iso-8859-1").text(), "\xC3\xA9");
    EXPECT_EQ(textOf("\xC3\xA9", nullptr, "text/css").file("\xC3\xA9"), "\xEF\xBB\xBF\xC3\xA9");
    EXPECT_EQ(textOf("\xE9", nullptr, "text/css").text(), "\xE9");
    const std::string own = "@charset \"koi8-r\";\xE9";
    EXPECT_EQ(textOf(own, nullptr, "text/css", "iso-8859-1").text(), own);
}

} // namespace
} // namespace qrv::webarchive
