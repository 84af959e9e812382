#include "Source/Tools/Archiving/XMPPacket.h"

#include "Platform/Foundation/PropertyList/XMLCharacters.h"
#include "Platform/Foundation/PropertyList/XMLDate.h"
#include "Platform/PDFKit/PDFDocument.h"

#include <string_view>

namespace qrv {

namespace {

constexpr std::string_view beginning = "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
                                       R"(<x:xmpmeta xmlns:x="adobe:ns:meta/">
<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
<rdf:Description rdf:about=""
    xmlns:dc="http://purl.org/dc/elements/1.1/"
    xmlns:xmp="http://ns.adobe.com/xap/1.0/"
    xmlns:pdf="http://ns.adobe.com/pdf/1.3/"
    xmlns:pdfaExtension="http://www.aiim.org/pdfa/ns/extension/"
    xmlns:pdfaSchema="http://www.aiim.org/pdfa/ns/schema#"
    xmlns:pdfaProperty="http://www.aiim.org/pdfa/ns/property#"
    xmlns:web2pdf=")";

constexpr std::string_view end = R"(</rdf:Description>
</rdf:RDF>
</x:xmpmeta>
<?xpacket end="w"?>
)";

/// PDF/A wants properties of other namespaces described where they are used.
constexpr std::string_view schemaBeginning =
    R"(<pdfaExtension:schemas><rdf:Bag><rdf:li rdf:parseType="Resource">
<pdfaSchema:schema>Origin of a PDF that was made of a web archive</pdfaSchema:schema>
<pdfaSchema:namespaceURI>)";
constexpr std::string_view schemaEnd = R"(</pdfaSchema:namespaceURI>
<pdfaSchema:prefix>web2pdf</pdfaSchema:prefix>
<pdfaSchema:property><rdf:Seq>
<rdf:li rdf:parseType="Resource">
<pdfaProperty:name>ArchiveSHA256</pdfaProperty:name>
<pdfaProperty:valueType>Text</pdfaProperty:valueType>
<pdfaProperty:category>external</pdfaProperty:category>
<pdfaProperty:description>SHA-256 of the web archive, in hexadecimal digits</pdfaProperty:description>
</rdf:li>
<rdf:li rdf:parseType="Resource">
<pdfaProperty:name>Engine</pdfaProperty:name>
<pdfaProperty:valueType>Text</pdfaProperty:valueType>
<pdfaProperty:category>external</pdfaProperty:category>
<pdfaProperty:description>Name and version of the engine that drew the page</pdfaProperty:description>
</rdf:li>
</rdf:Seq></pdfaSchema:property>
</rdf:li></rdf:Bag></pdfaExtension:schemas>
)";

NSString withCharactersOfXML(const NSString& text) {
    std::u16string units(NSString::fromUTF8(text.utf8()).view()); // without unpaired surrogates
    for (char16_t& unit : units) {
        if (!canStandInXML(unit)) unit = u'\uFFFD';
    }
    return NSString(std::move(units));
}

std::string escaped(const NSString& text) {
    return escapedForXML(withCharactersOfXML(text).utf8());
}

class Packet {
public:
    explicit Packet(const NSDictionary& attributes) : attributes_(attributes) {
        text_.append(beginning).append(Web2PDFNamespace).append("\">\n");
    }

    /// The names are those of the format.
    void add(const std::string& name, const NSString& value) { addIn("", "", name, value); }

    /// A text for readers of every language.
    void addAlternative(const std::string& name, const NSString& value) {
        addIn("<rdf:Alt><rdf:li xml:lang=\"x-default\">", "</rdf:li></rdf:Alt>", name, value);
    }

    void addList(const std::string& name, const NSString& value) {
        addIn("<rdf:Seq><rdf:li>", "</rdf:li></rdf:Seq>", name, value);
    }

    void add(const std::string& name, const NSDate& date) {
        if (!date) return;
        if (const auto text = plist::formatXMLDate(date.timeIntervalSinceReferenceDate()))
            add(name, NSString::fromUTF8(*text));
    }

    NSString attribute(const char16_t* key) const {
        return as<NSString>(attributes_.objectForKey(NSString(key)));
    }

    /// nil for an attribute that is no date in its usual form.
    NSDate dateAttribute(const char16_t* key) const {
        return as<NSDate>(attributes_.objectForKey(NSString(key)));
    }

    NSData finished() {
        text_.append(schemaBeginning).append(Web2PDFNamespace).append(schemaEnd).append(end);
        return NSData(std::move(text_));
    }

private:
    void addIn(std::string_view before, std::string_view after, const std::string& name,
               const NSString& value) {
        if (value.length() == 0) return;
        text_.append("<").append(name).append(">").append(before).append(escaped(value)).append(after);
        text_.append("</").append(name).append(">\n");
    }

    const NSDictionary& attributes_;
    std::string text_;
};

} // namespace

NSData xmpPacketOf(const PDFOrigin& origin) {
    Packet packet(origin.attributes);
    packet.add("dc:format", NSString(u"application/pdf"));
    packet.addAlternative("dc:title", packet.attribute(PDFDocumentTitleAttribute));
    packet.addList("dc:creator", packet.attribute(PDFDocumentAuthorAttribute));
    packet.addAlternative("dc:description", packet.attribute(PDFDocumentSubjectAttribute));
    packet.add("dc:source", origin.source);
    packet.add("pdf:Keywords", packet.attribute(u"Keywords"));
    packet.add("pdf:Producer", packet.attribute(PDFDocumentProducerAttribute));
    packet.add("xmp:CreatorTool", packet.attribute(PDFDocumentCreatorAttribute));
    packet.add("xmp:CreateDate", packet.dateAttribute(PDFDocumentCreationDateAttribute));
    packet.add("xmp:ModifyDate", packet.dateAttribute(PDFDocumentModificationDateAttribute));
    packet.add("xmp:MetadataDate", origin.converted);
    packet.add("web2pdf:ArchiveSHA256", NSString::fromUTF8(origin.archiveSHA256));
    packet.add("web2pdf:Engine", origin.engine);
    return packet.finished();
}

} // namespace qrv
