#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Tests/Platform/Foundation/PropertyList/CanonicalText.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

id read(const std::string& bytes, NSError* error = nullptr) {
    return NSPropertyListSerialization::propertyListWithData(NSData(bytes), error);
}

std::string plist(const std::string& content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + content + "\n</plist>\n";
}

std::string readText(const std::string& content) {
    return canonicalText(read(plist(content)));
}

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    for (std::size_t i = 0; i < times; ++i) all += text;
    return all;
}

std::string utf16(const std::string& ascii, bool isBigEndian) {
    std::string bytes = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : ascii) bytes += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
}

struct Damage {
    const char* name;
    std::string bytes;
};

void PrintTo(const Damage& damage, std::ostream* out) {
    *out << damage.name;
}

class DamagedXML : public testing::TestWithParam<Damage> {};

class BadXMLValue : public testing::TestWithParam<const char*> {};

} // namespace

TEST(XMLReader, ReadsEveryKindOfObject) {
    EXPECT_EQ(readText("<true/>"), "true");
    EXPECT_EQ(readText("<false></false>"), "false");
    EXPECT_EQ(readText("<string>a&amp;&lt;&#x4E2D;<![CDATA[<]]></string>"), "s00610026003c4e2d003c");
    EXPECT_EQ(readText("<string/>"), "s");
    EXPECT_EQ(readText("<string> \n </string>"), "s0020000a0020") << "white space counts in strings";
    EXPECT_EQ(readText("<data> AQ I= </data>"), "d0102");
    EXPECT_EQ(readText("<data/>"), "d");
    EXPECT_EQ(readText("<date>2001-01-01T00:00:01Z</date>"), "t3ff0000000000000");
    EXPECT_EQ(readText("<array/>"), "[]");
    EXPECT_EQ(readText("<dict/>"), "{}");
    EXPECT_EQ(readText("<dict><key>b</key><array><true/><false/></array><key>a</key><dict/></dict>"),
              "{s0062=[true,false,],s0061={},}");
}

TEST(XMLReader, ReadsIntegersOfTheWholeRange) {
    EXPECT_EQ(readText("<integer>0</integer>"), "i0");
    EXPECT_EQ(readText("<integer> +7\n</integer>"), "i7");
    EXPECT_EQ(readText("<integer>-9223372036854775808</integer>"), "i-9223372036854775808");
    EXPECT_EQ(readText("<integer>18446744073709551615</integer>"), "i18446744073709551615");
    EXPECT_EQ(readText("<integer>0xFf</integer>"), "i255");
    EXPECT_EQ(readText("<integer>-0x10</integer>"), "i-16");
}

TEST(XMLReader, ReadsReals) {
    EXPECT_EQ(readText("<real>1.5</real>"), "r3ff8000000000000");
    EXPECT_EQ(readText("<real> +1.5e0 </real>"), "r3ff8000000000000");
    EXPECT_EQ(readText("<real>-infinity</real>"), "rfff0000000000000");
    EXPECT_EQ(readText("<real>+infinity</real>"), "r7ff0000000000000");
    EXPECT_EQ(readText("<real>inf</real>"), "r7ff0000000000000");
    EXPECT_EQ(readText("<real>2</real>"), "r4000000000000000");
}

TEST(XMLReader, TheDocumentTypeIsAllowedAndNotFetched) {
    EXPECT_EQ(canonicalText(read("<?xml version=\"1.0\"?><!DOCTYPE plist PUBLIC \"-//X//DTD X//EN\" "
                                 "\"http://nowhere.invalid/x.dtd\"><plist version=\"1.0\"><true/></plist>")),
              "true");
    EXPECT_EQ(canonicalText(read("<!DOCTYPE plist SYSTEM \"file:///etc/passwd\"><plist><true/></plist>")),
              "true");
}

TEST(XMLReader, CommentsInstructionsAndBlanksBetweenElementsArePassedOver) {
    EXPECT_EQ(canonicalText(read("\n \xEF\xBB\xBF")), "nil");
    EXPECT_EQ(canonicalText(read(
                  "\n\t <!-- a --><plist><?x y?><array> <!-- b --> <true/>\n</array></plist><!-- c -->")),
              "[true,]");
    EXPECT_EQ(readText("<string>a<!-- b -->c</string>"), "s00610063");
}

TEST(XMLReader, ThePlistElementMayBeMissing) {
    EXPECT_EQ(canonicalText(read("<dict><key>a</key><true/></dict>")), "{s0061=true,}");
}

TEST(XMLReader, ReadsTheEncodingsOfXML) {
    const std::string content = "<plist><string>a</string></plist>";
    EXPECT_EQ(canonicalText(read("\xEF\xBB\xBF" + content)), "s0061");
    EXPECT_EQ(canonicalText(read(utf16(content, true))), "s0061");
    EXPECT_EQ(canonicalText(read(utf16(content, false))), "s0061");
    EXPECT_EQ(canonicalText(read("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><string>\xE9</string>")),
              "s00e9");
    EXPECT_EQ(canonicalText(read("<?xml version=\"1.0\" encoding=\"US-ASCII\"?><string>e</string>")),
              "s0065");
}

TEST(XMLReader, ContainersNestedAsDeepAsAllowedAreRead) {
    EXPECT_TRUE(read(plist(repeated("<array>", 512) + repeated("</array>", 512))));
}

TEST(XMLReader, ALaterEntryOfTheSameKeyReplacesTheEarlier) {
    EXPECT_EQ(readText("<dict><key>a</key><true/><key>a</key><false/></dict>"), "{s0061=false,}");
}

TEST(XMLReader, EveryCutOfAFileIsRefused) {
    const std::string whole =
        "<?xml version=\"1.0\"?><plist><dict><key>a</key><array><data>AQI=</data><real>1</real>"
        "</array></dict></plist>";
    ASSERT_TRUE(read(whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(read(whole.substr(0, length))) << length;
}

TEST(XMLReader, TheErrorSaysWhatIsWrongAndWhere) {
    NSError error;
    EXPECT_FALSE(read("<plist><bad/></plist>", &error));
    EXPECT_EQ(error.code(), 3840);
    EXPECT_EQ(error.userInfo().objectForKey(NSString(u"NSDebugDescription")),
              NSString(u"unknown element at byte 7"));
}

TEST_P(DamagedXML, IsRefused) {
    NSError error;
    EXPECT_FALSE(read(GetParam().bytes, &error));
    EXPECT_EQ(error.code(), NSPropertyListReadCorruptError);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DamagedXML,
    testing::Values(
        Damage{"Nothing", ""}, Damage{"OnlyBlanks", " \n"}, Damage{"Text", "hello"},
        Damage{"OldTextForm", "{ a = b; }"}, Damage{"HTML", "<html><body/></html>"},
        Damage{"NoObject", plist("")}, Damage{"TwoObjects", plist("<true/><true/>")},
        Damage{"UnknownElement", plist("<set/>")}, Damage{"CapitalElement", plist("<True/>")},
        Damage{"PlistInPlist", plist("<plist><true/></plist>")},
        Damage{"PlistInArray", "<array><plist/></array>"},
        Damage{"TextOutsideAValue", plist("<array>x<true/></array>")},
        Damage{"TextInTrue", plist("<true>x</true>")}, Damage{"ElementInTrue", plist("<true><true/></true>")},
        Damage{"ElementInString", plist("<string><true/></string>")},
        Damage{"KeyAtTheRoot", plist("<key>a</key>")},
        Damage{"KeyInArray", plist("<array><key>a</key></array>")},
        Damage{"ValueWithoutKey", plist("<dict><true/></dict>")},
        Damage{"KeyWithoutValue", plist("<dict><key>a</key></dict>")},
        Damage{"TwoKeys", plist("<dict><key>a</key><key>b</key><true/></dict>")},
        Damage{"TwoValues", plist("<dict><key>a</key><true/><true/></dict>")},
        Damage{"ContainerAsKey", plist("<dict><dict/><true/></dict>")},
        Damage{"ElementsThatCross", plist("<array><dict></array></dict>")},
        Damage{"InternalEntity", "<!DOCTYPE plist [<!ENTITY a \"x\">]><plist><string>&a;</string></plist>"},
        Damage{"EntityThatIsNotUsed",
               "<!DOCTYPE plist [<!ENTITY a \"x\">]><plist><string>b</string></plist>"},
        Damage{"ExternalEntity", "<!DOCTYPE plist [<!ENTITY a SYSTEM "
                                 "\"file:///etc/passwd\">]><plist><string>&a;</string></plist>"},
        Damage{"ParameterEntity", "<!DOCTYPE plist [<!ENTITY % a \"x\">]><plist><string>b</string></plist>"},
        Damage{"ManyLaughs",
               "<!DOCTYPE plist [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\"><!ENTITY c "
               "\"&b;&b;&b;&b;&b;&b;&b;&b;\">]><plist><string>&c;</string></plist>"},
        Damage{"UnknownEntity", plist("<string>&nbsp;</string>")},
        Damage{"UnknownEntityWithAnExternalType",
               "<!DOCTYPE plist SYSTEM \"x.dtd\"><plist><string>&nbsp;</string></plist>"},
        Damage{"ControlCharacter", plist("<string>\x01</string>")},
        Damage{"ReferenceToAControlCharacter", plist("<string>&#1;</string>")},
        Damage{"ReferenceToASurrogate", plist("<string>&#xD800;</string>")},
        Damage{"InvalidUTF8", plist("<string>\xFF</string>")},
        Damage{"OverlongUTF8", plist("<string>\xC0\x80</string>")},
        Damage{"SurrogateInUTF8", plist("<string>\xED\xA0\x80</string>")},
        Damage{"UTF16WithHalfAPair",
               std::string("\xFE\xFF\0<\0s\0t\0r\0i\0n\0g\0>\xD8\0\0<\0/\0s\0t\0r\0i\0n\0g\0>", 38)},
        Damage{"UTF16OfOddLength", utf16("<plist><true/></plist>", true) + "x"},
        Damage{"UnknownEncoding", "<?xml version=\"1.0\" encoding=\"x-none\"?><true/>"},
        Damage{"WrongEncoding", "<?xml version=\"1.0\" encoding=\"UTF-16\"?><true/>"},
        Damage{"NestedTooDeep", plist(repeated("<array>", 513) + repeated("</array>", 513))},
        Damage{"NestedFarTooDeep", repeated("<array>", 1000000)},
        Damage{"DictionariesNestedTooDeep",
               plist(repeated("<dict><key>a</key>", 513) + "<true/>" + repeated("</dict>", 513))}),
    [](const auto& damage) { return damage.param.name; });

TEST_P(BadXMLValue, IsRefused) {
    EXPECT_FALSE(read(plist(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(
    Values, BadXMLValue,
    testing::Values("<integer/>", "<integer>x</integer>", "<integer>1.5</integer>", "<integer>1 2</integer>",
                    "<integer>18446744073709551616</integer>", "<integer>-9223372036854775809</integer>",
                    "<integer>0x</integer>", "<integer>--1</integer>", "<integer>+-1</integer>", "<real/>",
                    "<real>x</real>", "<real>1,5</real>", "<real>1 2</real>", "<real>+-1</real>",
                    "<real>++1</real>", "<date/>", "<date>2001-01-01</date>",
                    "<date>2001-01-01 00:00:00</date>", "<date>2001-13-01T00:00:00Z</date>",
                    "<date>2001-00-01T00:00:00Z</date>", "<date>2001-02-29T00:00:00Z</date>",
                    "<date>2001-01-01T24:00:00Z</date>", "<date>2001-01-01T00:60:00Z</date>",
                    "<date>2001-01-01T00:00:60Z</date>", "<date>2001-01-01T00:00:00+01:00</date>",
                    "<date>x001-01-01T00:00:00Z</date>", "<data>A</data>", "<data>AAAAA</data>",
                    "<data>A===</data>", "<data>AQ=I</data>", "<data>AQI==</data>", "<data>=</data>",
                    "<data>AQ!I</data>", "<data>AQ-_</data>"));

} // namespace qrv
