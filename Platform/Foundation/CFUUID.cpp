#include "Platform/Foundation/CFUUID.h"

#include <array>
#include <sys/random.h>

namespace qrv {

NSString newUUIDString() {
    std::array<unsigned char, 16> bytes{};
    // A request of this size is never cut short.
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) return {};
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40); // version 4
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80); // the standard variant
    std::u16string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        constexpr char16_t digits[] = u"0123456789ABCDEF";
        if (i == 4 || i == 6 || i == 8 || i == 10) text.push_back(u'-');
        text.append({digits[bytes[i] >> 4], digits[bytes[i] & 15]});
    }
    return NSString(std::move(text));
}

} // namespace qrv
