// Conversion between text and bytes.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/Unicode.h"

namespace qrv {

NSString NSString::initWithData_encoding(const NSData& data, unsigned long encoding) {
    if (data.isNil()) return {};
    auto text = unicode::decode(data.bytes(), encoding);
    return text ? NSString(std::move(*text)) : NSString();
}

NSData NSString::dataUsingEncoding(unsigned long encoding) const {
    if (isNil()) return {};
    auto bytes = unicode::encode(view(), encoding);
    return bytes ? NSData(std::move(*bytes)) : NSData();
}

} // namespace qrv
