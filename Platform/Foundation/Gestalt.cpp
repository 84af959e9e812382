#include "Platform/Foundation/Gestalt.h"

#include "Platform/Foundation/NSProcessInfo.h"

namespace qrv {

int Gestalt(std::uint32_t selector, std::int32_t* response) {
    const NSOperatingSystemVersion version = NSProcessInfo::processInfo().operatingSystemVersion();
    switch (selector) {
    case gestaltSystemVersionMajor:
        *response = static_cast<std::int32_t>(version.majorVersion);
        return 0;
    case gestaltSystemVersionMinor:
        *response = static_cast<std::int32_t>(version.minorVersion);
        return 0;
    case gestaltSystemVersionBugFix:
        *response = static_cast<std::int32_t>(version.patchVersion);
        return 0;
    default:
        return gestaltUndefSelectorErr;
    }
}

} // namespace qrv
