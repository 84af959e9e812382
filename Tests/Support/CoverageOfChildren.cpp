// In the build for coverage only: counts what processes execute that end at once or close the file system to
// themselves. The linker puts these functions in the place of those that they are named after.

#include "Platform/Confinement/FileRules.h"
#include "Platform/Confinement/SystemCallFilter.h"

extern "C" {

void __gcov_dump();
void __gcov_reset();

[[noreturn]] void __real__exit(int status);
bool __real__ZNK3qrv9FileRules7enforceEv(const qrv::FileRules* rules);
bool __real__ZNK3qrv16SystemCallFilter7installEv(const qrv::SystemCallFilter* filter);

/// Adds what was counted to the files. To be counted anew, it has to be forgotten here.
static void writeCounts() {
    __gcov_dump();
    __gcov_reset();
}

[[noreturn]] void __wrap__exit(int status) {
    writeCounts();
    __real__exit(status);
}

bool __wrap__ZNK3qrv9FileRules7enforceEv(const qrv::FileRules* rules) {
    qrv::FileRules open = *rules;
    open.allow(COVERAGE_FOLDER, qrv::FileRules::change);
    return __real__ZNK3qrv9FileRules7enforceEv(&open);
}

/// Behind most filters nothing can be opened any more.
bool __wrap__ZNK3qrv16SystemCallFilter7installEv(const qrv::SystemCallFilter* filter) {
    writeCounts();
    return __real__ZNK3qrv16SystemCallFilter7installEv(filter);
}
}
