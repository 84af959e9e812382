#include "Platform/Engine/Process/Sandbox/EngineKind.h"

namespace qrv::engine {

EngineKind engineKind(const std::string& program) {
    const std::string name = program.substr(program.rfind('/') + 1);
    const bool isBrowser =
        name.find("chrom") != std::string::npos && name.find("headless") == std::string::npos;
    return isBrowser ? EngineKind::browser : EngineKind::headlessShell;
}

} // namespace qrv::engine
