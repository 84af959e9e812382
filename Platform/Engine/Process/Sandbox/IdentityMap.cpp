#include "Platform/Engine/Process/Sandbox/IdentityMap.h"

#include "Platform/Foundation/FileDescriptor.h"

#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace qrv::engine {

namespace {

bool writeFile(const char* path, const char* text) {
    const FileDescriptor file(::open(path, O_WRONLY | O_CLOEXEC));
    auto size = static_cast<ssize_t>(std::strlen(text));
    return file && ::write(file.get(), text, static_cast<std::size_t>(size)) == size;
}

char* appendNumber(char* at, unsigned number) {
    char digits[16];
    int count = 0;
    do digits[count++] = static_cast<char>('0' + number % 10);
    while ((number /= 10) > 0);
    while (count > 0) *at++ = digits[--count];
    return at;
}

/// Maps one identity: "inside outside 1".
bool writeMap(const char* path, unsigned inside, unsigned outside) {
    char line[48];
    char* end = appendNumber(line, inside);
    *end++ = ' ';
    end = appendNumber(end, outside);
    std::memcpy(end, " 1\n", 4);
    return writeFile(path, line);
}

/// Root is never mapped to root, which would restore its rights.
unsigned identityInside(unsigned outside) {
    constexpr unsigned nobody = 65534;
    return outside == 0 ? nobody : outside;
}

} // namespace

bool mapIdentity(unsigned user, unsigned group) {
    ::prctl(PR_SET_DUMPABLE, 1, 0, 0, 0); // a change of identity makes /proc/self inaccessible to the process
    return writeFile("/proc/self/setgroups", "deny") &&
           writeMap("/proc/self/uid_map", identityInside(user), user) &&
           writeMap("/proc/self/gid_map", identityInside(group), group);
}

} // namespace qrv::engine
