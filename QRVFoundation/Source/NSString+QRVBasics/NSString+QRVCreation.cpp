#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVCreation.h"

#include "Platform/Foundation/CFUUID.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/Unicode.h"
#include "QRVFoundation/Source/NSError+QRV.h"

#include <bit>
#include <cstring>

namespace qrv {

namespace {

/// Makes the error of a conversion: the object that failed under its key, the encoding and the reason.
NSError conversionError(long long code, const char16_t* key, const id& input, unsigned long encoding,
                        const char16_t* reason) {
    NSMutableDictionary userInfo;
    if (input) userInfo.setObject_forKey(input, NSString(key));
    userInfo.setObject_forKey(NSNumber::numberWithUnsignedInteger(encoding), NSString(QRVStringEncodingKey));
    userInfo.setObject_forKey(NSString(reason), NSString(NSLocalizedFailureReasonErrorKey));
    return QRVError1(code, userInfo);
}

bool startsWithByteOrderMark(const NSData& data) {
    return data.bytes().starts_with("\xFF\xFE") || data.bytes().starts_with("\xFE\xFF");
}

} // namespace

NSString qrvStringWithFormat_arguments(const NSString& format, const FormatArguments& arguments) {
    return NSString::stringWithFormat_arguments(format, arguments);
}

NSString qrvUniqueString() {
    return newUUIDString();
}

NSString qrvUniqueString(const NSString& prefix) {
    return NSString::stringWithFormat(u"%@.%@", prefix, qrvUniqueString());
}

unsigned long qrvStringEncodingForMIMEEncoding(const NSString& name) {
    return unicode::encodingOfCharset(name.utf8()).value_or(NSISOLatin1StringEncoding);
}

NSString qrvStringWithFileSystemRepresentation(const char* bytes) {
    return qrvStringWithFileSystemRepresentation_length(bytes, bytes ? std::strlen(bytes) : 0);
}

NSString qrvStringWithFileSystemRepresentation_length(const char* bytes, std::size_t length) {
    return NSString::stringWithFileSystemRepresentation_length(bytes, length);
}

NSString qrvStringWithCharacter(char16_t character) {
    return NSString(std::u16string_view(&character, 1));
}

NSString qrvStringWith32BitCharacter(std::uint32_t character) {
    static_assert(std::endian::native == std::endian::little);
    std::string bytes(sizeof character, '\0');
    std::memcpy(bytes.data(), &character, sizeof character);
    return qrvStringWithData_encoding_error(NSData(bytes), NSUTF32LittleEndianStringEncoding, nullptr);
}

NSString qrvStringWithData_encoding_error(const NSData& data, unsigned long encoding, NSError* error) {
    NSString text = NSString::initWithData_encoding(data, encoding);
    if (text.isNil()) {
        setError(error, conversionError(QRVDecodingErrorCode, QRVInputObjectKey, data, encoding,
                                        u"Error decoding data to string."));
    }
    return text;
}

NSData qrvDataUsingEncoding_error(const NSString& self, unsigned long encoding, NSError* error) {
    NSData data = self.dataUsingEncoding(encoding);
    if (data.isNil() && self) {
        setError(error, conversionError(QRVEncodingErrorCode, QRVStringKey, self, encoding,
                                        u"Error encoding data from string."));
    }
    return data;
}

NSString qrvStringWithUTF8Data(const NSData& data) {
    return qrvStringWithData_encoding_error(data, NSUTF8StringEncoding, nullptr);
}

NSString qrvStringWithContentsOfFile(const NSString& path) {
    const NSData data = NSData::initWithContentsOfFile_options_error(path, 0, nullptr);
    if (data.isNil()) return {};
    if (NSString text = qrvStringWithUTF8Data(data)) return text;
    if (startsWithByteOrderMark(data)) {
        if (NSString text = qrvStringWithData_encoding_error(data, NSUTF16StringEncoding, nullptr)) {
            return text;
        }
    }
    return qrvStringWithData_encoding_error(data, NSMacOSRomanStringEncoding, nullptr);
}

NSURL qrvFileURL(const NSString& self) {
    return NSURL::fileURLWithPath(self);
}

NSURL qrvFastFileURL(const NSString& self) {
    return NSURL::fileURLWithPath_isDirectory(self, false);
}

} // namespace qrv
