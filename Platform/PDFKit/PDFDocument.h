#pragma once

// A PDF file whose document information can be read and changed.
//
//     if (auto document = PDFDocument::initWithURL(url)) {
//         NSMutableDictionary attributes = document->documentAttributes().mutableCopy();
//         attributes.setObject_forKey(title, NSString(PDFDocumentTitleAttribute));
//         document->setDocumentAttributes(attributes);
//         document->writeToFile(url.path());
//     }
//
// One thread at a time may use a document.

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSURL.h"

#include <memory>

class QPDF;

namespace qrv {

// Keys of documentAttributes. Both dates are NSDate, everything else is NSString.
inline constexpr char16_t PDFDocumentTitleAttribute[] = u"Title";
inline constexpr char16_t PDFDocumentAuthorAttribute[] = u"Author";
inline constexpr char16_t PDFDocumentSubjectAttribute[] = u"Subject";
inline constexpr char16_t PDFDocumentCreatorAttribute[] = u"Creator";
inline constexpr char16_t PDFDocumentProducerAttribute[] = u"Producer";
inline constexpr char16_t PDFDocumentCreationDateAttribute[] = u"CreationDate";
inline constexpr char16_t PDFDocumentModificationDateAttribute[] = u"ModDate";

class PDFDocument {
public:
    // - initWithURL:
    /// The document in a file, read at once. Null when the URL is no file URL and when the file cannot be
    /// read, is no PDF, is encrypted or is damaged (a damaged file is not repaired by guessing).
    static std::unique_ptr<PDFDocument> initWithURL(const NSURL& url);

    // - documentAttributes
    /// The entries of the document information that are text, names or dates; a date in an unusual form is
    /// given as its text. Empty when there are none, never nil.
    NSDictionary documentAttributes() const;

    // - setDocumentAttributes:
    /// Entries that are absent from the dictionary are removed; those that are equal to what
    /// `documentAttributes` gives keep the form they have in the file. An unpaired surrogate becomes U+FFFD.
    /// After a change the document has no metadata stream, since that would contradict the attributes. Values
    /// other than NSString and NSDate (of the years 0 to 9999) and keys other than NSString raise
    /// NSInvalidArgumentException and change nothing.
    void setDocumentAttributes(const NSDictionary& attributes);

    // - writeToFile:
    /// Replaces the file in one step; false when it cannot be written or when the document turned out to be
    /// damaged, and then an existing file stays as it was.
    bool writeToFile(const NSString& path) const;

private:
    explicit PDFDocument(std::shared_ptr<QPDF> file);

    std::shared_ptr<QPDF> file_;
};

} // namespace qrv
