#include "Platform/PDFKit/PDFAttributes.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/PDFKit/PDFDate.h"
#include "Platform/PDFKit/PDFFile.h"
#include "Platform/PDFKit/PDFWriting.h"

#include <qpdf/QPDF.hh>

namespace qrv {

namespace {

constexpr const char* informationKey = "/Info";

using Change = PDFAttributeChange;

NSString nameFromPDF(const std::string& name) {
    return NSString::fromUTF8(std::string_view(name).substr(1));
}

std::string nameToPDF(const NSString& name) {
    return "/" + name.utf8();
}

/// Returns nil for a value that is no attribute.
id attributeFromPDF(const std::string& name, QPDFObjectHandle value) {
    if (value.isName()) return nameFromPDF(value.getName());
    if (!value.isString()) return {};
    if (name == "/CreationDate" || name == "/ModDate") {
        if (NSDate date = dateFromPDFText(value.getStringValue())) return date;
    }
    return NSString::fromUTF8(value.getUTF8Value());
}

Change changeTo(const NSString& name, const id& value) {
    if (const auto text = as<NSString>(value)) return {nameToPDF(name), Change::Kind::text, text.utf8()};
    const std::string date = pdfTextFromDate(as<NSDate>(value));
    if (date.empty()) {
        throw NSException(
            NSInvalidArgumentException,
            NSString::stringWithFormat(
                u"-[PDFDocument setDocumentAttributes:]: \"%@\" is neither a text nor a date", value));
    }
    return {nameToPDF(name), Change::Kind::date, date};
}

QPDFObjectHandle attributeToPDF(const Change& change) {
    switch (change.kind) {
    case Change::Kind::text:
        return QPDFObjectHandle::newUnicodeString(change.value);
    case Change::Kind::date:
        return QPDFObjectHandle::newString(change.value);
    case Change::Kind::removal:
        break;
    }
    return QPDFObjectHandle::newNull(); // which removes the entry
}

void change(QPDF& document, const std::vector<Change>& changes) {
    QPDFObjectHandle trailer = document.getTrailer();
    if (!trailer.getKey(informationKey).isDictionary()) {
        trailer.replaceKey(informationKey, document.makeIndirectObject(QPDFObjectHandle::newDictionary()));
    }
    QPDFObjectHandle information = trailer.getKey(informationKey);
    for (const Change& change : changes) information.replaceKey(change.name, attributeToPDF(change));
    document.getRoot().removeKey("/Metadata");
}

} // namespace

std::vector<Change> changesOfAttributes(const NSDictionary& present, const NSDictionary& wanted) {
    std::vector<Change> changes;
    for (const auto& [key, value] : present) {
        if (!wanted.objectForKey(key)) changes.push_back({nameToPDF(as<NSString>(key)), {}, {}});
    }
    for (const auto& [key, value] : wanted) {
        const auto name = as<NSString>(key);
        if (name.isNil()) {
            throw NSException(NSInvalidArgumentException,
                              u"-[PDFDocument setDocumentAttributes:]: a key is not a string");
        }
        if (!value.isEqual(present.objectForKey(key))) changes.push_back(changeTo(name, value));
    }
    return changes;
}

NSDictionary attributesOfPDF(const NSData& pdf) {
    const auto document = openPDF(pdf);
    if (!document) return {};
    NSMutableDictionary attributes;
    QPDFObjectHandle information = document->getTrailer().getKey(informationKey);
    if (!information.isDictionary()) return attributes.copy();
    for (const auto& [name, value] : information.ditems()) {
        if (const id attribute = attributeFromPDF(name, value)) {
            attributes.setObject_forKey(attribute, nameFromPDF(name));
        }
    }
    return attributes.copy();
}

NSData pdfByChangingAttributes(const NSData& pdf, const std::vector<Change>& changes) {
    const auto document = openPDF(pdf);
    if (!document) return {};
    if (!changes.empty()) change(*document, changes);
    return serializePDF(*document);
}

} // namespace qrv
