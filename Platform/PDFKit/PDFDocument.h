#pragma once

// A PDF file, whose document information can be read and changed.
//
//     if (auto document = PDFDocument::initWithURL(url)) {
//         NSMutableDictionary attributes = document->documentAttributes().mutableCopy();
//         attributes.setObject_forKey(title, NSString(PDFDocumentTitleAttribute));
//         document->setDocumentAttributes(attributes);
//         document->writeToFile(url.path());
//     }
//
// What the PDF library does with the file's bytes happens in a confined child. One thread at a time may use a
// document.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSURL.h"

#include <memory>

namespace qrv {

struct PDFAdditions;
struct PDFCatalog;
struct PDFEnding;

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
    ~PDFDocument();

    // - initWithURL:
    /// Reads the file at once. Returns null if the URL is no file URL, or if the file cannot be read, is no
    /// PDF, is encrypted or is damaged (damage is not repaired), and if it is too much for its limits, which
    /// is logged.
    static std::unique_ptr<PDFDocument> initWithURL(const NSURL& url);

    // - documentAttributes
    /// The entries of the document information that are texts, names or dates; a date in an unusual form is
    /// returned as text. Empty if there are none, never nil.
    const NSDictionary& documentAttributes() const { return attributes_; }

    // - setDocumentAttributes:
    /// Removes entries that are missing from the dictionary; entries equal to those of `documentAttributes`
    /// keep their form in the file. Unpaired surrogates become U+FFFD. A change removes the metadata stream,
    /// which would contradict the attributes. Values other than NSString and NSDate (of the years 0 to 9999)
    /// and keys other than NSString raise NSInvalidArgumentException and change nothing.
    void setDocumentAttributes(const NSDictionary& attributes);

    /// Has the file get metadata, which have to say what the attributes say, and an attachment beside what is
    /// embedded already. False, and it gets nothing, where its catalog cannot be replaced.
    bool setAdditions(PDFAdditions additions);

    // - writeToFile:
    /// Replaces the file in one step; what has changed is appended to the bytes that were read, which stay as
    /// they are. Returns false, and leaves an existing file untouched, if it cannot be written, or if the
    /// attachment's contents could not be read to their end.
    bool writeToFile(const NSString& path) const;

private:
    bool writeWithAdditions(const NSString& path) const;

    PDFDocument(NSData bytes, PDFEnding ending);

    NSData bytes_;
    std::unique_ptr<PDFEnding> ending_; // of the file
    NSDictionary attributes_;
    std::unique_ptr<PDFAdditions> additions_; // null for none
    std::unique_ptr<PDFCatalog> catalog_;     // with additions
};

} // namespace qrv
