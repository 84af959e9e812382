#include "Source/Tools/webarchive/ListCommand.h"

#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

namespace qrv::webarchive {

namespace {

struct Options {
    std::string archive;
    bool asJson = false;
};

int list(const Options& options) {
    readArchive(options.archive);
    return success;
}

} // namespace

void addListCommand(CommandLine& commands) {
    const auto options = std::make_shared<Options>();
    auto command =
        commands.add("list", "Lists the resources of a web archive", [=] { return list(*options); });
    command.positional(options->archive, "ARCHIVE", "The web archive");
    command.flag(options->asJson, "--json", "Writes JSON instead of a table");
}

} // namespace qrv::webarchive
