#include "Platform/PDFKit/PDFDocument.h"

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/PDFKit/PDFDate.h"
#include "Platform/PDFKit/PDFFile.h"

#include <qpdf/QPDF.hh>

namespace qrv {

namespace {

constexpr const char* informationKey = "/Info";

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

QPDFObjectHandle attributeToPDF(const id& value) {
    if (const auto text = as<NSString>(value)) return QPDFObjectHandle::newUnicodeString(text.utf8());
    const std::string date = pdfTextFromDate(as<NSDate>(value));
    if (date.empty()) {
        throw NSException(
            NSInvalidArgumentException,
            NSString::stringWithFormat(
                u"-[PDFDocument setDocumentAttributes:]: \"%@\" is neither a text nor a date", value));
    }
    return QPDFObjectHandle::newString(date);
}

struct Change {
    std::string name;
    QPDFObjectHandle value; // null: the entry is removed
};

/// Returns the changes that turn the present attributes into the wanted ones.
std::vector<Change> changesTo(const NSDictionary& present, const NSDictionary& wanted) {
    std::vector<Change> changes;
    for (const auto& [key, value] : present) {
        if (!wanted.objectForKey(key)) {
            changes.push_back({nameToPDF(as<NSString>(key)), QPDFObjectHandle::newNull()});
        }
    }
    for (const auto& [key, value] : wanted) {
        const auto name = as<NSString>(key);
        if (name.isNil()) {
            throw NSException(NSInvalidArgumentException,
                              u"-[PDFDocument setDocumentAttributes:]: a key is not a string");
        }
        if (!value.isEqual(present.objectForKey(key))) {
            changes.push_back({nameToPDF(name), attributeToPDF(value)});
        }
    }
    return changes;
}

} // namespace

PDFDocument::PDFDocument(std::shared_ptr<QPDF> file) : file_(std::move(file)) {}

std::unique_ptr<PDFDocument> PDFDocument::initWithURL(const NSURL& url) {
    const NSString path = url.isFileURL() ? url.path() : NSString();
    if (path.isNil()) return nullptr;
    const NSData bytes = NSData::initWithContentsOfFile_options_error(path, 0, nullptr);
    std::shared_ptr<QPDF> file = openPDF(bytes);
    return file ? std::unique_ptr<PDFDocument>(new PDFDocument(std::move(file))) : nullptr;
}

NSDictionary PDFDocument::documentAttributes() const {
    NSMutableDictionary attributes;
    QPDFObjectHandle information = file_->getTrailer().getKey(informationKey);
    if (!information.isDictionary()) return attributes;
    for (const auto& [name, value] : information.ditems()) {
        if (const id attribute = attributeFromPDF(name, value)) {
            attributes.setObject_forKey(attribute, nameFromPDF(name));
        }
    }
    return attributes;
}

void PDFDocument::setDocumentAttributes(const NSDictionary& attributes) {
    const std::vector<Change> changes = changesTo(documentAttributes(), attributes);
    if (changes.empty()) return;
    QPDFObjectHandle trailer = file_->getTrailer();
    if (!trailer.getKey(informationKey).isDictionary()) {
        trailer.replaceKey(informationKey, file_->makeIndirectObject(QPDFObjectHandle::newDictionary()));
    }
    QPDFObjectHandle information = trailer.getKey(informationKey);
    for (const Change& change : changes) information.replaceKey(change.name, change.value);
    file_->getRoot().removeKey("/Metadata");
}

bool PDFDocument::writeToFile(const NSString& path) const {
    const NSData bytes = path ? serializePDF(*file_) : NSData();
    return bytes && bytes.writeToFile_atomically(path, true);
}

} // namespace qrv
