#pragma once

// Strings from formats, identifiers, characters, bytes and files, and back to bytes.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSURL.h"

#include <cstdint>

namespace qrv {

class NSError;

// + qrvStringWithFormat:arguments:
/// The expansion of the format; nil for a nil format.
NSString qrvStringWithFormat_arguments(const NSString& format, const FormatArguments& arguments);
// + qrvUniqueString
/// A new universally unique identifier, "68753A44-4D6F-4226-9C60-0050E4C00067"; nil when none can be made.
NSString qrvUniqueString();
// + qrvUniqueString:
/// "prefix.identifier"
NSString qrvUniqueString(const NSString& prefix);

// + qrvStringEncodingForMIMEEncoding:
/// The NSStringEncoding value of an IANA character set name in any case; ISO Latin-1 for nil and for a name
/// that is not known.
unsigned long qrvStringEncodingForMIMEEncoding(const NSString& name);

// + qrvStringWithFileSystemRepresentation:
/// The path that a null-terminated text in UTF-8 names; nil for a null pointer and for other bytes.
NSString qrvStringWithFileSystemRepresentation(const char* bytes);
// + qrvStringWithFileSystemRepresentation:length:
NSString qrvStringWithFileSystemRepresentation_length(const char* bytes, std::size_t length);
// + qrvStringWithCharacter:
/// The one unit, whatever it is.
NSString qrvStringWithCharacter(char16_t character);
// + qrvStringWith32BitCharacter:
/// The character of a code point; nil for a value that is none.
NSString qrvStringWith32BitCharacter(std::uint32_t character);

// + qrvStringWithData:encoding:error:
/// The text that the bytes are in the encoding. nil and error 500 with the data and the encoding when they
/// are none, for nil data and for an encoding that is not known.
NSString qrvStringWithData_encoding_error(const NSData& data, unsigned long encoding, NSError* error);
// - qrvDataUsingEncoding:error:
/// The bytes of the text, without loss. nil and error 501 with the string and the encoding when the encoding
/// can't hold it or is not known. nil for nil, without an error.
NSData qrvDataUsingEncoding_error(const NSString& self, unsigned long encoding, NSError* error);
// + qrvStringWithUTF8Data:
/// nil for bytes that are not UTF-8.
NSString qrvStringWithUTF8Data(const NSData& data);
// + qrvStringWithContentsOfFile:
/// The file's text in UTF-8, else in UTF-16 after a byte-order mark, else in Mac OS Roman, which takes any
/// bytes. nil when the file can't be read.
NSString qrvStringWithContentsOfFile(const NSString& path);

// - qrvFileURL
/// The file URL of the receiver as a path; looks at the disk to tell a directory. nil for nil and "".
NSURL qrvFileURL(const NSString& self);
// - qrvFastFileURL
/// The same without a look at the disk, as of no directory.
NSURL qrvFastFileURL(const NSString& self);

} // namespace qrv
