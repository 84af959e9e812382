#include "QRVFoundation/Source/NSUserDefaults+QRV.h"

#include <benchmark/benchmark.h>

namespace qrv {

namespace {

/// The file of the domain org.example.settled sets Key to "set"; there is none of org.example.missing.
void setting(benchmark::State& state, const NSString& domain, const NSString& expected) {
    const NSUserDefaults defaults = NSUserDefaults::standardUserDefaults();
    const NSString key = u"Key";
    const auto read = [&] { return qrvObjectForKey_domain_defaultValue(defaults, key, domain, {}); };
    if (!(read() == expected)) return state.SkipWithError("the setting has another value");
    for ([[maybe_unused]] auto turn : state) benchmark::DoNotOptimize(read());
}

} // namespace

BENCHMARK_CAPTURE(setting, missing, u"org.example.missing", NSString());
BENCHMARK_CAPTURE(setting, settled, u"org.example.settled", u"set");

} // namespace qrv
