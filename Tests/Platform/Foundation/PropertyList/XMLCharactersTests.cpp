#include "Platform/Foundation/PropertyList/XMLCharacters.h"

#include <gtest/gtest.h>
#include <string>

namespace qrv {
namespace {

TEST(XMLCharacters, AreAllButControlsAndTheTwoLast) {
    std::u16string found;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        if (!canStandInXML(static_cast<char16_t>(unit))) found.push_back(static_cast<char16_t>(unit));
    }
    std::u16string refused;
    for (char16_t unit = 0; unit < 0x20; ++unit) {
        if (unit != 0x09 && unit != 0x0A && unit != 0x0D) refused.push_back(unit);
    }
    EXPECT_EQ(found, refused + u"\xFFFE\xFFFF");
}

TEST(XMLCharacters, AreEscaped) {
    EXPECT_EQ(escapedForXML("a<b>&amp;\r\n\"'ä"), "a&lt;b&gt;&amp;amp;&#13;\n\"'ä");
    EXPECT_EQ(escapedForXML("\"'<", true), "&quot;&#39;&lt;");
    EXPECT_EQ(escapedForXML(""), "");
}

} // namespace
} // namespace qrv
