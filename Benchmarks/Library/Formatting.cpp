#include "Platform/Foundation/NSString.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <string>

namespace qrv {

namespace {

/// The format has to give the expected text; its arguments are where the compiler cannot see them.
template <class Text, class Format>
void measure(benchmark::State& state, const Text& expected, const Format& format) {
    if (!(format() == expected)) return state.SkipWithError("the text is another one");
    for ([[maybe_unused]] auto turn : state) benchmark::DoNotOptimize(format());
}

void texts(benchmark::State& state) {
    const NSString name = u"page.webarchive";
    const NSString part = u"main resource";
    int status = 404;
    benchmark::DoNotOptimize(status);
    measure(state, NSString(u"page.webarchive: main resource is 404"),
            [&] { return NSString::stringWithFormat(u"%@: %@ is %d", name, part, status); });
}

void textsOfFmt(benchmark::State& state) {
    const std::string name = "page.webarchive";
    const std::string part = "main resource";
    int status = 404;
    benchmark::DoNotOptimize(status);
    measure(state, std::string("page.webarchive: main resource is 404"),
            [&] { return fmt::format("{}: {} is {}", name, part, status); });
}

struct Numbers {
    Numbers() { benchmark::DoNotOptimize(*this); }

    double width = 612.25;
    double height = 1.0 / 3;
    double scale = 0.8125;
};

void numbers(benchmark::State& state) {
    const Numbers given;
    measure(state, NSString(u"612.250000 0.33 0.8125"), [&] {
        return NSString::stringWithFormat(u"%f %.2f %g", given.width, given.height, given.scale);
    });
}

void numbersOfFmt(benchmark::State& state) {
    const Numbers given;
    measure(state, std::string("612.250000 0.33 0.8125"),
            [&] { return fmt::format("{:f} {:.2f} {:g}", given.width, given.height, given.scale); });
}

} // namespace

BENCHMARK(texts);
BENCHMARK(textsOfFmt);
BENCHMARK(numbers);
BENCHMARK(numbersOfFmt);

} // namespace qrv
