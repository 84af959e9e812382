#include "Source/Tools/webarchive/Extract/CharacterReferences.h"

#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

TEST(CharacterReferences, AreReadAndWritten) {
    EXPECT_EQ(withoutReferences("a&amp;b&#38;c&#x26;d&lt;&gt;&quot;&apos;&#x1F600;&#65"),
              "a&b&c&d<>\"'\xF0\x9F\x98\x80"
              "A");
    EXPECT_EQ(withoutReferences("&&;&eacute;&#;&#x;&amp"), "&&;&eacute;&#;&#x;&amp");
    EXPECT_EQ(withoutReferences("&#0;&#xD800;&#99999999999;"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(withReferences("a&b\"c'd"), "a&amp;b&quot;c'd");
}

} // namespace
} // namespace qrv::webarchive
