#include "Platform/Engine/Process/Sandbox/LaunchStep.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace qrv::engine {

namespace {

struct Explanation {
    const char* what = "";   // is missing, and what that means
    const char* remedy = ""; // or what else is to be known
};

constexpr const char* allowNamespaces =
    "The kernel has to allow user namespaces, and a container's seccomp profile clone and unshare with them";

Explanation explanation(LaunchStep::Kind kind) {
    switch (kind) {
    case LaunchStep::Kind::namespaces:
        return {"no namespaces of its own for the engine; it is kept from sockets and files alone",
                allowNamespaces};
    case LaunchStep::Kind::identityMap:
        return {"the engine's identity can not be mapped into its user namespace; it is nobody there",
                "A container should not run the tool as root without capabilities, and needs a /proc to "
                "write to"};
    case LaunchStep::Kind::temporaryFolder:
        return {
            "no file system of its own for the engine's temporary files; they are in a folder of the "
            "caller's",
            "An engine that is started again has none; otherwise a container's seccomp profile has to allow "
            "mount"};
    case LaunchStep::Kind::processFolder:
        return {"no list of processes of its own for the engine; it sees which others there are",
                "A container that masks parts of /proc refuses it, and that is no great loss"};
    case LaunchStep::Kind::fileRules:
        return {"no file rules for the engine; it can open what its user can",
                "The kernel needs Landlock, and a container's seccomp profile has to allow its calls"};
    case LaunchStep::Kind::sandboxNamespaces:
        return {"the engine's own sandbox gets no user namespace", allowNamespaces};
    case LaunchStep::Kind::sandboxRoot:
        return {"the engine's own sandbox gets no root folder of its own",
                "A container's seccomp profile has to allow chroot"};
    case LaunchStep::Kind::engineSandbox:
        return {"the engine's own sandbox can not work here; it runs without, cut off from the network",
                "With WEB2PDF_REQUIRE_SANDBOX=1 it would not run"};
    case LaunchStep::Kind::identity:
        return {"the engine can not be started without the rights of root",
                "A container should run the tool as another user than root"};
    case LaunchStep::Kind::requiredSandbox:
        return {"the engine's own sandbox can not work here, and WEB2PDF_REQUIRE_SANDBOX is set",
                "The log says before what is refused"};
    case LaunchStep::Kind::systemCallFilter:
        return {"the engine can not be cut off from the network", "The kernel needs seccomp filters"};
    case LaunchStep::Kind::descriptors:
        return {"the engine's descriptors can not be set up", "The limit of open files may be too low"};
    case LaunchStep::Kind::execution:
        return {"the engine can not be executed",
                "Its file, or the interpreter that it names, may be damaged or for another machine"};
    }
    return {};
}

} // namespace

std::string LaunchStep::text() const {
    const Explanation told = explanation(kind);
    return std::string(told.what) + " (" + std::strerror(error) + "). " + told.remedy + ".";
}

void LaunchReporter::report(LaunchStep::Kind kind, int error) const {
    LaunchStep step{kind, error};
    while (::write(descriptor_, &step, sizeof step) < 0 && errno == EINTR) {
    }
}

} // namespace qrv::engine
