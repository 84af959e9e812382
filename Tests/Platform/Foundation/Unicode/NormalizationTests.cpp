#include "Platform/Foundation/Unicode.h"

#include <gtest/gtest.h>

namespace qrv::unicode {
namespace {

TEST(Normalization, CompatibilityFormHasNoVariants) {
    EXPECT_EQ(compatibilityForm(u"\uFB01"), u"fi");
    EXPECT_EQ(compatibilityForm(u"\u2F42"), u"\u6587");
    EXPECT_EQ(compatibilityForm(u"\uFEFB"), u"\u0644\u0627");
    EXPECT_EQ(compatibilityForm(u"e\u0301"), u"\u00E9");
    // The character that becomes the most others.
    EXPECT_EQ(compatibilityForm(u"\uFDFA").size(), 18u);
}

TEST(Normalization, CompatibilityFormKeepsTheRest) {
    EXPECT_EQ(compatibilityForm(u""), u"");
    EXPECT_EQ(compatibilityForm(u"Text \u6587 \U0001F600"), u"Text \u6587 \U0001F600");
}

} // namespace
} // namespace qrv::unicode
