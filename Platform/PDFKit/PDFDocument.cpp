#include "Platform/PDFKit/PDFDocument.h"

#include "Platform/Foundation/FileReplacement.h"
#include "Platform/PDFKit/ConfinedPDF.h"
#include "Platform/PDFKit/PDFUpdate.h"

#include <cerrno>

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

bool PDFDocument::setAdditions(PDFAdditions additions) {
    auto catalog = catalogOfPDF(bytes_);
    if (!catalog) return false;
    catalog_ = std::make_unique<PDFCatalog>(std::move(*catalog));
    additions_ = std::make_unique<PDFAdditions>(std::move(additions));
    return true;
}

bool PDFDocument::writeToFile(const NSString& path) const {
    if (path.isNil()) return false;
    if (additions_) return writeWithAdditions(path);
    const std::string update =
        updateOfPDF(*ending_, bytes_.length(), changesOfAttributes(ending_->attributes, attributes_));
    std::string file;
    file.reserve(bytes_.length() + update.size());
    file.append(bytes_.bytes()).append(update);
    return NSData(std::move(file)).writeToFile_atomically(path, true);
}

/// Never has the whole file in memory: what is attached may be large.
bool PDFDocument::writeWithAdditions(const NSString& path) const {
    const auto changes = changesOfAttributes(ending_->attributes, attributes_);
    const auto write = [&](int descriptor) {
        int error = writeAll(descriptor, bytes_.bytes());
        writeUpdateOfPDF(*ending_, *catalog_, bytes_.length(), changes, *additions_,
                         [&](std::string_view bytes) {
                             if (!error) error = writeAll(descriptor, bytes);
                         });
        const bool isComplete = !additions_->attachment || !additions_->attachment->contents.isCutOff();
        return !error && !isComplete ? EIO : error;
    };
    return replaceFile(path.fileSystemRepresentation(), write) == 0;
}

} // namespace qrv
