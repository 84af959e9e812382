#pragma once

// Four-character codes: 32 bits as four characters of Mac OS Roman, most significant byte first.

#include "Platform/Foundation/NSString.h"

#include <cstdint>

namespace qrv {

// + qrvStringWithFourCharCode:
/// 'TEXT' for 0x54455854; the unknown code for 0.
QRV_EXPORT NSString qrvStringWithFourCharCode(std::uint32_t code);
// - qrvFourCharCodeValue
/// Returns the code of a text of exactly four units, or 0 if it cannot be encoded in Mac OS Roman. Any other
/// length, nil included, fails an assertion.
QRV_EXPORT std::uint32_t qrvFourCharCodeValue(const NSString& self);
// + qrvUnknownCode
/// Four U+0000.
QRV_EXPORT NSString qrvUnknownCode();
// - qrvIsUnknownCode
QRV_EXPORT bool qrvIsUnknownCode(const NSString& self);

} // namespace qrv
