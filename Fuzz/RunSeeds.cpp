// Runs a fuzz target over the files of a folder, once each: what the fuzzer does before it begins to change
// them.

#include "Fuzz/FuzzInput.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

int main(int count, char** arguments) {
    if (count != 2) return 2;
    int seeds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
        std::fprintf(stderr, "%s\n", entry.path().filename().c_str()); // names the one that fails
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++seeds;
    }
    std::printf("%d seeds\n", seeds);
    return seeds > 0 ? 0 : 1;
}
