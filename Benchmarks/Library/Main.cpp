#include <benchmark/benchmark.h>
#include <thread>

int main(int count, char** arguments) {
    // Until its first thread, a process does without the atomic operations that programs with threads pay
    // for.
    std::thread([] {}).join();
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
