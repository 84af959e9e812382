#include "Source/Tools/Archiving/XMPPacket.h"

#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const NSDate date = NSDate::dateWithTimeIntervalSinceReferenceDate(1709210096 - NSTimeIntervalSince1970);

std::string packetOf(const PDFOrigin& origin) {
    return std::string(xmpPacketOf(origin).bytes());
}

std::string titled(const NSString& title) {
    return packetOf({{{NSString(u"Title"), title}}, {}, {}, {}, {}});
}

/// What an XML parser reads as the title; what it complains of.
std::string titleRead(const std::string& packet) {
    const TemporaryFolder folder;
    const std::string path = folder.write("packet.xml", packet).utf8();
    return outputOf(
        "/usr/bin/python3 -c 'import sys, xml.etree.ElementTree as t; "
        "sys.stdout.buffer.write(t.parse(sys.argv[1]).find("
        "\".//{http://purl.org/dc/elements/1.1/}title//\"\n\"{http://www.w3.org/1999/02/22-rdf-syntax-ns#}"
        "li\").text.encode())' '" +
        path + "'");
}

TEST(XMPPacket, SaysTheSameAsTheAttributes) {
    const PDFOrigin origin{{{NSString(u"Title"), NSString(u"A title")},
                            {NSString(u"Author"), NSString(u"a.example")},
                            {NSString(u"Subject"), NSString(u"S")},
                            {NSString(u"Keywords"), NSString(u"some, words")},
                            {NSString(u"Producer"), NSString(u"Maker 1")},
                            {NSString(u"Creator"), NSString(u"Quillvane")},
                            {NSString(u"CreationDate"), date},
                            {NSString(u"ModDate"), date}},
                           u"http://a.example/",
                           "0123abcd",
                           u"Engine/1",
                           NSDate::dateWithTimeIntervalSinceReferenceDate(0)};
    const char* const properties[] = {
        "<dc:format>application/pdf</dc:format>",
        "<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">A title</rdf:li></rdf:Alt></dc:title>",
        "<dc:creator><rdf:Seq><rdf:li>a.example</rdf:li></rdf:Seq></dc:creator>",
        "<dc:description><rdf:Alt><rdf:li xml:lang=\"x-default\">S</rdf:li></rdf:Alt></dc:description>",
        "<dc:source>http://a.example/</dc:source>",
        "<pdf:Keywords>some, words</pdf:Keywords>",
        "<pdf:Producer>Maker 1</pdf:Producer>",
        "<xmp:CreatorTool>Quillvane</xmp:CreatorTool>",
        "<xmp:CreateDate>2024-02-29T12:34:56Z</xmp:CreateDate>",
        "<xmp:ModifyDate>2024-02-29T12:34:56Z</xmp:ModifyDate>",
        "<xmp:MetadataDate>2001-01-01T00:00:00Z</xmp:MetadataDate>",
        "<web2pdf:ArchiveSHA256>0123abcd</web2pdf:ArchiveSHA256>",
        "<web2pdf:Engine>Engine/1</web2pdf:Engine>",
    };
    for (const char* property : properties) EXPECT_THAT(packetOf(origin), HasSubstr(property));
}

TEST(XMPPacket, LeavesOutWhatNobodyKnows) {
    const std::string packet =
        packetOf({{{NSString(u"Title"), NSString(u"")}, {NSString(u"CreationDate"), NSString(u"yesterday")}},
                  {},
                  {},
                  {},
                  {}});
    for (const char* name : {"<dc:title", "<dc:source", "Date>", "<web2pdf:", "<pdf:"})
        EXPECT_THAT(packet, Not(HasSubstr(name)));
}

TEST(XMPPacket, IsAPacketWhoseOwnPropertiesAreDescribed) {
    const std::string packet = titled(u"x");
    EXPECT_THAT(packet,
                AllOf(StartsWith("<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"),
                      testing::EndsWith("<?xpacket end=\"w\"?>\n")));
    const std::string uri = Web2PDFNamespace;
    EXPECT_THAT(packet, HasSubstr("xmlns:web2pdf=\"" + uri + "\""));
    EXPECT_THAT(packet, HasSubstr("<pdfaSchema:namespaceURI>" + uri + "</pdfaSchema:namespaceURI>"));
    EXPECT_THAT(packet, HasSubstr("<pdfaProperty:name>ArchiveSHA256</pdfaProperty:name>"));
    EXPECT_THAT(packet, HasSubstr("<pdfaProperty:name>Engine</pdfaProperty:name>"));
}

class Title : public testing::TestWithParam<std::pair<std::u16string, std::string>> {};

TEST_P(Title, IsReadByAParserAsFarAsXMLHasItsCharacters) {
    const auto& [given, read] = GetParam();
    EXPECT_EQ(titleRead(titled(NSString(given))), read);
}

INSTANTIATE_TEST_SUITE_P(
    XMPPacket, Title,
    testing::Values(std::pair(u"Grüße “漢字” עברית \U0001F600", "Grüße “漢字” עברית \U0001F600"),
                    std::pair(u"<b>&amp;</b> ]]> \"'", "<b>&amp;</b> ]]> \"'"),
                    std::pair(u"<?xpacket end=\"w\"?></rdf:li><!-- ", "<?xpacket end=\"w\"?></rdf:li><!-- "),
                    std::pair(u" a\tb\nc\r\nd\re ", " a\tb\nc\r\nd\re "),
                    std::pair(u"\x01"
                              u"a\x08\x1F\x7F\x85",
                              "\uFFFDa\uFFFD\uFFFD\x7F\u0085"),
                    std::pair(std::u16string(u"nul\0x", 5), "nul\uFFFDx"),
                    std::pair(std::u16string{u'a', 0xD800, u'b', 0xDC00, 0xFFFE, 0xFFFF},
                              "a\uFFFDb\uFFFD\uFFFD\uFFFD"),
                    std::pair(u"\uFEFFmark", "\uFEFFmark"),
                    std::pair(std::u16string(3'000'000, u'<'), std::string(3'000'000, '<'))));

} // namespace
} // namespace qrv
