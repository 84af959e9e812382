#pragma once

// Making strings from formats, identifiers, characters, bytes and files, and bytes from strings.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSURL.h"

#include <cstdint>

namespace qrv {

class NSError;

// + qrvStringWithFormat:arguments:
/// Expands the format; nil gives nil.
QRV_EXPORT NSString qrvStringWithFormat_arguments(const NSString& format, const FormatArguments& arguments);
// + qrvUniqueString
/// Makes a universally unique identifier, "68753A44-4D6F-4226-9C60-0050E4C00067"; nil if that fails.
QRV_EXPORT NSString qrvUniqueString();
// + qrvUniqueString:
/// "prefix.identifier"
QRV_EXPORT NSString qrvUniqueString(const NSString& prefix);

// + qrvStringEncodingForMIMEEncoding:
/// Returns the NSStringEncoding value of an IANA character set name in any case; ISO Latin-1 for nil and for
/// an unknown name.
QRV_EXPORT unsigned long qrvStringEncodingForMIMEEncoding(const NSString& name);

// + qrvStringWithFileSystemRepresentation:
/// Returns the path in null-terminated UTF-8; nil for a null pointer and for other bytes.
QRV_EXPORT NSString qrvStringWithFileSystemRepresentation(const char* bytes);
// + qrvStringWithFileSystemRepresentation:length:
QRV_EXPORT NSString qrvStringWithFileSystemRepresentation_length(const char* bytes, std::size_t length);
// + qrvStringWithCharacter:
/// Returns the single unit, whatever its value.
QRV_EXPORT NSString qrvStringWithCharacter(char16_t character);
// + qrvStringWith32BitCharacter:
/// Returns the character of a code point; nil for an invalid code point.
QRV_EXPORT NSString qrvStringWith32BitCharacter(std::uint32_t character);

// + qrvStringWithData:encoding:error:
/// Decodes the bytes. Returns nil and error 500 with the data and the encoding if they are not valid in the
/// encoding, if the data is nil or if the encoding is unknown.
QRV_EXPORT NSString qrvStringWithData_encoding_error(const NSData& data, unsigned long encoding,
                                                     NSError* error);
// - qrvDataUsingEncoding:error:
/// Encodes the text without loss. Returns nil and error 501 with the string and the encoding if the encoding
/// cannot represent it or is unknown. A nil receiver gives nil without an error.
QRV_EXPORT NSData qrvDataUsingEncoding_error(const NSString& self, unsigned long encoding, NSError* error);
// + qrvStringWithUTF8Data:
/// Returns nil for bytes that are not UTF-8.
QRV_EXPORT NSString qrvStringWithUTF8Data(const NSData& data);
// + qrvStringWithContentsOfFile:
/// Reads a text file as UTF-8, else as UTF-16 with a byte-order mark, else as Mac OS Roman, in which all
/// bytes are valid. nil if the file cannot be read.
QRV_EXPORT NSString qrvStringWithContentsOfFile(const NSString& path);

// - qrvFileURL
/// Returns the receiver's file URL; checks the disk to recognise a directory. nil for nil and "".
QRV_EXPORT NSURL qrvFileURL(const NSString& self);
// - qrvFastFileURL
/// Returns the receiver's file URL without checking the disk, as for a file.
QRV_EXPORT NSURL qrvFastFileURL(const NSString& self);

} // namespace qrv
