#include "Source/Tools/batch/Children/PDFReader.h"

#include "Platform/Engine/Process/Sandbox/EngineFiles.h"

#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

namespace qrv::batch {

namespace {

constexpr std::chrono::seconds timeLimit{60};
constexpr std::size_t memoryLimit = std::size_t{2} << 30;
/// Of texts; a picture has a few kilobytes.
constexpr std::size_t mostOutput = std::size_t{512} << 20;

FileRules filesFor(const std::string& program, const std::string& pdf) {
    std::vector<std::string> environment;
    for (char** entry = environ; *entry; ++entry) environment.emplace_back(*entry);
    FileRules rules = engine::filesToStart(program, environment);
    rules.allow("/usr/share/poppler", FileRules::read); // encodings of Asian fonts
    rules.allow("/dev/null", FileRules::read | FileRules::write);
    rules.allow(pdf, FileRules::read);
    return rules;
}

SystemCallFilter callsForReaders() {
    SystemCallFilter filter = SystemCallFilter::allowingAll();
    filter.refuse({SYS_socket, SYS_socketpair, SYS_connect, SYS_io_uring_setup, SYS_ptrace,
                   SYS_process_vm_readv, SYS_process_vm_writev, SYS_unshare, SYS_mount, SYS_bpf, SYS_keyctl,
                   SYS_perf_event_open},
                  EPERM);
    filter.compile();
    return filter;
}

} // namespace

ChildEnd runPDFReader(const std::string& program, std::vector<std::string> arguments, const std::string& pdf,
                      const std::stop_token& stop) {
    static const SystemCallFilter calls = callsForReaders();
    const FileRules files = filesFor(program, pdf);
    ChildCommand command;
    command.program = program;
    command.arguments = std::move(arguments);
    command.timeLimit = timeLimit;
    command.memoryLimit = memoryLimit;
    command.mostOutput = mostOutput;
    command.files = &files;
    command.calls = &calls;
    return runChild(command, stop);
}

} // namespace qrv::batch
