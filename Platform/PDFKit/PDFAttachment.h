#pragma once

// A file that is embedded in a PDF, and how that is written.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace qrv {

/// A file that the document was made of (AFRelationship /Source).
struct PDFAttachment {
    NSString name;        ///< without folders
    NSString description; ///< for people
    std::string type;     ///< MIME type
    NSDate modified;      ///< nil where nobody knows
    NSData contents;
};

/// What a PDF gets beside changed attributes.
struct PDFAdditions {
    /// An XMP packet, which takes the place of the metadata stream; nil for none.
    NSData metadata;
    std::optional<PDFAttachment> attachment;
};

/// Takes a file's bytes piece by piece.
using ByteSink = std::function<void(std::string_view bytes)>;

/// The name's bytes in a name tree. Unpaired surrogates are U+FFFD.
std::string nameInTree(const NSString& name);

/// The bytes of a string in PDF syntax.
std::string syntaxOfString(const std::string& bytes);

/// The dictionary, in PDF syntax, of the file that is embedded as this object ("7 0").
std::string fileDictionaryOf(const PDFAttachment& file, const std::string& embedded);

/// The entries of the embedded file's dictionary, in PDF syntax, but for those that compression brings: type,
/// length, date and MD5 of the contents, which are read for it once.
std::string parametersOf(const PDFAttachment& file);

/// Hands out the bytes as FlateDecode gives them back, in pieces.
void compress(std::string_view bytes, const ByteSink& sink);

} // namespace qrv
