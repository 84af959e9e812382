#include "Platform/Foundation/CollectionDescription.h"

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(CollectionDescription, AnArrayShowsOneElementALine) {
    EXPECT_EQ(NSArray({NSNumber::numberWithInteger(1), NSString(u"two words")}).description(),
              NSString(u"(\n    1,\n    \"two words\"\n)"));
    EXPECT_EQ(NSArray::array().description(), NSString(u"(\n)"));
}

TEST(CollectionDescription, ADictionaryShowsItsKeysSorted) {
    const NSDictionary d = {{NSString(u"b"), NSString(u"x")}, {NSString(u"a b"), NSString(u"")}};
    EXPECT_EQ(d.description(), NSString(u"{\n    \"a b\" = \"\";\n    b = x;\n}"));
    EXPECT_EQ(NSDictionary::dictionary().description(), NSString(u"{\n}"));
}

TEST(CollectionDescription, NestedCollectionsAreIndentedFurther) {
    const NSDictionary d = {{NSString(u"k"), NSArray({NSString(u"v"), NSDictionary::dictionary()})}};
    EXPECT_EQ(d.description(), NSString(u"{\n    k = (\n        v,\n        {\n        }\n    );\n}"));
}

TEST(CollectionDescription, SpecialCharactersAreQuotedAndEscaped) {
    EXPECT_EQ(NSArray({NSString(u"a\"\\\né")}).description(), NSString(u"(\n    \"a\\\"\\\\\\n\\U00e9\"\n)"));
    EXPECT_EQ(NSArray({NSString(u"A_z$/:.9")}).description(), NSString(u"(\n    A_z$/:.9\n)"));
}

TEST(CollectionDescription, NestingBeyondReasonIsCut) {
    NSArray nested = NSArray::array();
    for (int i = 0; i < 2000; ++i) nested = NSArray(std::vector<id>{nested});
    EXPECT_NE(nested.description().rangeOfString(u"...").location, NSNotFound);
}

} // namespace qrv
