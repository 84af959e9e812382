// Any bytes as a file of settings, which are read in every way in which they can be asked for.

#include "Fuzz/FuzzInput.h"
#include "Platform/Foundation/CFPreferences.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "Tests/Support/TemporaryFolder.h"

#include <cstdlib>

using namespace qrv;
using namespace qrv::fuzz;

namespace {

constexpr char16_t domain[] = u"fuzz";

const TemporaryFolder& settings() {
    static const TemporaryFolder folder;
    return folder;
}

void checkValue(const NSString& key) {
    const id value = CFPreferencesCopyAppValue(key, domain);
    bool isBoolean = false;
    bool isInteger = false;
    const bool boolean = CFPreferencesGetAppBooleanValue(key, domain, &isBoolean);
    const long long integer = CFPreferencesGetAppIntegerValue(key, domain, &isInteger);
    require(!value.isNil() || !(isBoolean || isInteger));
    require(isBoolean || !boolean);
    require(isInteger || integer == 0);
    // Every description can be shown in a log.
    require(value.isNil() || !value.description().isNil());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    settings().write("preferences/fuzz.plist", FuzzInput(bytes, size).rest());
    ::setenv("XDG_CONFIG_HOME", settings().path().c_str(), 1);
    ::setenv("XDG_CONFIG_DIRS", "/nowhere", 1);
    const NSDictionary all = preferencesOfDomain(domain);
    require(NSUserDefaults::standardUserDefaults().persistentDomainForName(domain).count() == all.count());
    checkValue(u"absent");
    for (const auto& [key, value] : all) checkValue(as<NSString>(key));
    return 0;
}
