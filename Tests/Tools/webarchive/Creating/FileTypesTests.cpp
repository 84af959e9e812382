#include "Source/Tools/webarchive/Creating/FileTypes.h"

#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

TEST(FileTypes, GoByTheLastPartOfTheName) {
    EXPECT_EQ(typeOfFile("page.html"), "text/html");
    EXPECT_EQ(typeOfFile("/a.b/style.min.CSS"), "text/css");
    EXPECT_EQ(typeOfFile("logo.svg"), "image/svg+xml");
    EXPECT_EQ(typeOfFile("font.woff2"), "font/woff2");
    EXPECT_EQ(typeOfFile(".js"), "text/javascript");
}

TEST(FileTypes, AreUnknownWithoutOne) {
    for (const char* name : {"", "page", "html", "page.", "page.html.gz", "a.css/b", "a.unheard"})
        EXPECT_EQ(typeOfFile(name), "") << name;
}

} // namespace
} // namespace qrv::webarchive
