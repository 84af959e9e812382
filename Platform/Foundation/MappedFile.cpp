#include "Platform/Foundation/MappedFile.h"

#include <array>
#include <atomic>
#include <csignal>
#include <mutex>
#include <sys/mman.h>
#include <unistd.h>

namespace qrv {

namespace {

constexpr std::size_t smallest = std::size_t{256} << 10;
constexpr std::size_t mostMappings = 16;
const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));

/// A mapping as the signal handler sees it: free while it has no start.
struct Mapping {
    std::atomic<char*> start = nullptr;
    std::atomic<std::size_t> length = 0;
    std::atomic<bool> isCutOff = false;

    bool contains(const char* place) const {
        const char* const first = start;
        return first && place >= first && place < first + length;
    }
};

std::array<Mapping, mostMappings> mappings;
std::mutex claiming; // of a free mapping; the handler does without
std::atomic<bool> isAllowed = false;

/// Puts zeros in the place of the page at `place` and of all behind it. False if no mapped file has that
/// page.
bool putZeros(const char* place) {
    for (Mapping& mapping : mappings) {
        if (!mapping.contains(place)) continue;
        mapping.isCutOff = true;
        const std::size_t offset = static_cast<std::size_t>(place - mapping.start) / pageSize * pageSize;
        return ::mmap(mapping.start + offset, mapping.length - offset, PROT_READ,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED;
    }
    return false;
}

/// Async-signal-safe calls only.
void pageIsMissing(int signal, siginfo_t* information, void* /*context*/) {
    const bool isFault = information->si_code > 0; // not sent by a process
    if (isFault && putZeros(static_cast<const char*>(information->si_addr))) return;
    std::signal(signal, SIG_DFL);
    ::raise(signal); // arrives when the handler returns
}

void unmap(Mapping& mapping, const std::string_view* bytes) {
    mapping.start = nullptr;
    ::munmap(const_cast<char*>(bytes->data()), bytes->size());
    delete bytes;
}

} // namespace

void allowMappedFiles() {
    struct sigaction action {};

    action.sa_sigaction = &pageIsMissing;
    action.sa_flags = SA_SIGINFO;
    ::sigemptyset(&action.sa_mask);
    isAllowed = ::sigaction(SIGBUS, &action, nullptr) == 0;
}

std::shared_ptr<const std::string_view> mapFile(int descriptor, std::size_t length) {
    if (!isAllowed || length < smallest) return nullptr;
    const std::lock_guard lock(claiming);
    for (Mapping& mapping : mappings) {
        if (mapping.start) continue;
        void* const start = ::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, descriptor, 0);
        if (start == MAP_FAILED) return nullptr;
        mapping.isCutOff = false;
        mapping.length = length;
        mapping.start = static_cast<char*>(start);
        return {new std::string_view(mapping.start, length),
                [&mapping](const std::string_view* bytes) { unmap(mapping, bytes); }};
    }
    return nullptr;
}

void forgetPages(std::string_view bytes) {
    for (const Mapping& mapping : mappings) {
        if (!mapping.contains(bytes.data())) continue;
        const std::size_t offset =
            static_cast<std::size_t>(bytes.data() - mapping.start) / pageSize * pageSize;
        const std::size_t end = static_cast<std::size_t>(bytes.data() - mapping.start) + bytes.size();
        ::madvise(mapping.start + offset, end - offset, MADV_DONTNEED);
    }
}

bool isCutOff(std::string_view bytes) {
    for (const Mapping& mapping : mappings) {
        if (mapping.contains(bytes.data())) return mapping.isCutOff;
    }
    return false;
}

} // namespace qrv
