// Converts one archive many times in one process, as a long-lived program would, and prints what it holds on
// to:
//
//     Repeat COUNT MODE ARCHIVE PDF RESULT
//
// A line after each twentieth of the runs: their number, resident KiB, descriptors, and child processes. Ends
// with status 1 when a run does not succeed. The settings are those of the environment.

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Source/Tools/web2pdf.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace {

using namespace qrv;

struct Exit {};

long residentKiB() {
    long total = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) >> 10);
}

auto descriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

auto children() {
    std::ifstream file("/proc/thread-self/children");
    return std::distance(std::istream_iterator<int>(file), {});
}

bool hasSucceeded(const char* resultPath) {
    const NSData data =
        NSData::initWithContentsOfFile_options_error(NSString::fromUTF8(resultPath), 0, nullptr);
    const auto result = as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(data));
    const auto succeeded = as<NSNumber>(result.objectForKey(NSString(u"succeeded")));
    return succeeded && succeeded.boolValue();
}

bool convertOnce(const char* resultPath) {
    std::filesystem::remove(resultPath);
    try {
        runWeb2PDF();
    } catch (const Exit&) {
        return hasSucceeded(resultPath);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 6) return 2;
    const int count = std::max(20, std::atoi(argv[1]));
    char identifier[] = "uid";
    std::array<char*, 5> arguments{argv[0], argv[2], argv[3], argv[4], identifier};
    NSProcessInfo::processInfo().setArguments(static_cast<int>(arguments.size()), arguments.data());
    ::setenv("OutPath", argv[5], 1);
    setProcessExitForTesting([](int) { throw Exit{}; });
    for (int run = 1; run <= count; ++run) {
        if (!convertOnce(argv[5])) return 1;
        if (run % (count / 20) == 0)
            std::cout << run << ' ' << residentKiB() << ' ' << descriptors() << ' ' << children()
                      << std::endl;
    }
}
