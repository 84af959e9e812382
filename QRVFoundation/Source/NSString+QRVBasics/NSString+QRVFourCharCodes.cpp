#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVFourCharCodes.h"

#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVCreation.h"
#include "QRVFoundation/Source/QRVFunctions.h"

namespace qrv {

NSString qrvStringWithFourCharCode(std::uint32_t code) {
    if (code == 0) return qrvUnknownCode();
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<char>(code >> shift & 0xFF));
    return qrvStringWithData_encoding_error(NSData(std::move(bytes)), NSMacOSRomanStringEncoding, nullptr);
}

std::uint32_t qrvFourCharCodeValue(const NSString& self) {
    if (self.length() != 4) {
        QRVFunctions::assertionFailedForFile_line_object_selector_format(
            "QRVFoundation/Source/NSString+QRVBasics", __LINE__, self, "qrvFourCharCodeValue",
            u"Precondition Failed: %s", "[self length] == 4");
    }
    const NSData data = qrvDataUsingEncoding_error(self, NSMacOSRomanStringEncoding, nullptr);
    std::uint32_t code = 0;
    for (const std::uint8_t byte : data.span()) code = code << 8 | byte;
    return code;
}

NSString qrvUnknownCode() {
    return NSString::stringWithFormat(u"%c%c%c%c", 0, 0, 0, 0);
}

bool qrvIsUnknownCode(const NSString& self) {
    return self.isEqualToString(qrvUnknownCode());
}

} // namespace qrv
