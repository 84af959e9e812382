#pragma once

// Four-character codes: 32 bits as four characters of Mac OS Roman, the most significant byte first.

#include "Platform/Foundation/NSString.h"

#include <cstdint>

namespace qrv {

// + qrvStringWithFourCharCode:
/// 'TEXT' for 0x54455854; the unknown code for 0.
NSString qrvStringWithFourCharCode(std::uint32_t code);
// - qrvFourCharCodeValue
/// The code of a text of exactly four units, or 0 when it has no Mac OS Roman form. Any other length, nil
/// included, fails an assertion.
std::uint32_t qrvFourCharCodeValue(const NSString& self);
// + qrvUnknownCode
/// Four U+0000.
NSString qrvUnknownCode();
// - qrvIsUnknownCode
bool qrvIsUnknownCode(const NSString& self);

} // namespace qrv
