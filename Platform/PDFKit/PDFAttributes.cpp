#include "Platform/PDFKit/PDFAttributes.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/PDFKit/PDFDate.h"

#include <qpdf/QPDFObjectHandle.hh>

namespace qrv {

namespace {

using Change = PDFAttributeChange;

NSString nameFromPDF(const std::string& name) {
    return NSString::fromUTF8(std::string_view(name).substr(1));
}

std::string nameToPDF(const NSString& name) {
    return QPDFObjectHandle::newName("/" + name.utf8()).unparse();
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

NSDictionary attributesIn(QPDFObjectHandle information) {
    NSMutableDictionary attributes;
    if (!information.isDictionary()) return attributes.copy();
    for (const auto& [name, value] : information.ditems()) {
        if (const id attribute = attributeFromPDF(name, value)) {
            attributes.setObject_forKey(attribute, nameFromPDF(name));
        }
    }
    return attributes.copy();
}

std::string syntaxOf(const Change& change) {
    return change.kind == Change::Kind::date ? QPDFObjectHandle::newString(change.value).unparse()
                                             : QPDFObjectHandle::newUnicodeString(change.value).unparse();
}

} // namespace qrv
