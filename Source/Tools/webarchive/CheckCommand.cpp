#include "Source/Tools/webarchive/CheckCommand.h"

#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

namespace qrv::webarchive {

namespace {

struct Options {
    std::string archive;
    bool asJson = false;
};

int check(const Options& options) {
    readArchive(options.archive);
    return success;
}

} // namespace

void addCheckCommand(CommandLine& commands) {
    const auto options = std::make_shared<Options>();
    auto command =
        commands.add("check", "Says whether a file is a web archive", [=] { return check(*options); });
    command.positional(options->archive, "ARCHIVE", "The web archive");
    command.flag(options->asJson, "--json", "Writes JSON instead of a table");
}

} // namespace qrv::webarchive
