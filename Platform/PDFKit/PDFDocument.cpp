#include "Platform/PDFKit/PDFDocument.h"

#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/PDFKit/ConfinedPDF.h"
#include "Platform/PDFKit/PDFAttributes.h"

namespace qrv {

PDFDocument::PDFDocument(NSData bytes, const NSDictionary& attributes)
    : bytes_(std::move(bytes)), attributesInFile_(attributes), attributes_(attributes) {}

std::unique_ptr<PDFDocument> PDFDocument::initWithURL(const NSURL& url) {
    const NSString path = url.isFileURL() ? url.path() : NSString();
    if (path.isNil()) return nullptr;
    const NSData bytes = NSData::initWithContentsOfFile_options_error(path, 0, nullptr);
    const auto list = workOnPDF("reading a PDF", bytes, [&](std::string&) {
        return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
            attributesOfPDF(bytes), NSPropertyListBinaryFormat_v1_0, nullptr);
    });
    if (!list) return nullptr;
    const auto attributes = as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(*list));
    return attributes ? std::unique_ptr<PDFDocument>(new PDFDocument(bytes, attributes)) : nullptr;
}

void PDFDocument::setDocumentAttributes(const NSDictionary& attributes) {
    changesOfAttributes(attributesInFile_, attributes); // raises
    attributes_ = attributes;
}

bool PDFDocument::writeToFile(const NSString& path) const {
    if (path.isNil()) return false;
    const auto changes = changesOfAttributes(attributesInFile_, attributes_);
    const auto written = workOnPDF("writing a PDF", bytes_,
                                   [&](std::string&) { return pdfByChangingAttributes(bytes_, changes); });
    return written && *written && written->writeToFile_atomically(path, true);
}

} // namespace qrv
