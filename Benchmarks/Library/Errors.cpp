#include "QRVFoundation/Source/NSError+QRVDescription.h"

#include <benchmark/benchmark.h>

namespace qrv {

namespace {

/// An error with that many underlying errors, one below the other.
NSError errorAbove(long long depth) {
    NSError error = NSError::errorWithDomain_code_userInfo(
        u"org.example", 0, {{NSString(NSLocalizedDescriptionKey), NSString(u"The page is missing.")}});
    for (long long level = 1; level <= depth; ++level) {
        error = NSError::errorWithDomain_code_userInfo(
            u"org.example", level,
            {{NSString(NSLocalizedDescriptionKey), NSString(u"The page was not shown.")},
             {NSString(NSUnderlyingErrorKey), error}});
    }
    return error;
}

void fullDescription(benchmark::State& state) {
    const NSError error = errorAbove(state.range(0));
    NSString description;
    for ([[maybe_unused]] auto turn : state)
        benchmark::DoNotOptimize(description = qrvFullDescription(error));
    if (description.utf8().find("The page is missing.") == std::string::npos) {
        state.SkipWithError("the innermost error is not shown");
    }
}

} // namespace

BENCHMARK(fullDescription)->Arg(5);
// It may take so long that one is enough.
BENCHMARK(fullDescription)->Arg(1000)->Repetitions(1);

} // namespace qrv
