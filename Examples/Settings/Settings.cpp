// Settings of a program, read from its preference file with defaults of several kinds.

// [headers]
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "QRVFoundation/Source/NSUserDefaults+QRV.h"
// [headers]

#include <iostream>

using namespace qrv;

int main(int argc, char** argv) {
    // [process]
    NSProcessInfo::processInfo().setArguments(argc, argv);
    const NSUserDefaults settings = NSUserDefaults::standardUserDefaults();
    // [process]

    // [registered]
    settings.registerDefaults({{u"Harbour", u"Leith"}, {u"Berths", NSNumber::numberWithInteger(4)}});
    std::cout << settings.objectForKey(u"Harbour") << ", " << settings.objectForKey(u"Berths") << '\n';
    // [registered]

    // [typed]
    std::cout << qrvStringForKey_defaultValue(settings, u"Harbour", u"none") << '\n'
              << qrvIntegerForKey_defaultValue(settings, u"Berths", 1) << '\n'
              << qrvDoubleForKey_defaultValue(settings, u"Depth", 2.5) << '\n'
              << qrvStringForKey_defaultValue(settings, u"Berths", u"not a text") << '\n';
    const NSSize paper = qrvSizeForKey_defaultValue(settings, u"Paper", {595, 842});
    std::cout << paper.width << " by " << paper.height << '\n';
    // [typed]

    // [domain]
    const NSString domain = u"org.example.Settings";
    std::cout << std::boolalpha << qrvBoolForKey_domain_defaultValue(settings, u"ShowsTides", domain, false)
              << '\n'
              << qrvIntegerForKey_domain_defaultValue(settings, u"Pilots", domain, 2) << '\n'
              << qrvObjectForKey_domain_defaultValue(settings, u"Flags", domain, NSArray::array()) << '\n';
    // [domain]
}
