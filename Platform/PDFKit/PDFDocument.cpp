#include "Platform/PDFKit/PDFDocument.h"

#include "Platform/PDFKit/ConfinedPDF.h"
#include "Platform/PDFKit/PDFUpdate.h"

namespace qrv {

PDFDocument::PDFDocument(NSData bytes, PDFEnding ending)
    : bytes_(std::move(bytes)), ending_(std::make_unique<PDFEnding>(std::move(ending))),
      attributes_(ending_->attributes) {}

PDFDocument::~PDFDocument() = default;

std::unique_ptr<PDFDocument> PDFDocument::initWithURL(const NSURL& url) {
    const NSString path = url.isFileURL() ? url.path() : NSString();
    if (path.isNil()) return nullptr;
    const NSData bytes = NSData::initWithContentsOfFile_options_error(path, 0, nullptr);
    auto ending = endingOfPDF(bytes);
    return ending ? std::unique_ptr<PDFDocument>(new PDFDocument(bytes, std::move(*ending))) : nullptr;
}

void PDFDocument::setDocumentAttributes(const NSDictionary& attributes) {
    changesOfAttributes(ending_->attributes, attributes); // raises
    attributes_ = attributes;
}

bool PDFDocument::writeToFile(const NSString& path) const {
    if (path.isNil()) return false;
    const std::string update =
        updateOfPDF(*ending_, bytes_.length(), changesOfAttributes(ending_->attributes, attributes_));
    std::string file;
    file.reserve(bytes_.length() + update.size());
    file.append(bytes_.bytes()).append(update);
    return NSData(std::move(file)).writeToFile_atomically(path, true);
}

} // namespace qrv
