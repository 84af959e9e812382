#include "Source/Tools/webarchive/CatCommand.h"

#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

#include <iostream>

namespace qrv::webarchive {

namespace {

struct Options {
    std::string archive;
};

int cat(const Options& options) {
    std::cout << readArchive(options.archive).mainResource().data().bytes();
    return success;
}

} // namespace

void addCatCommand(CommandLine& commands) {
    const auto options = std::make_shared<Options>();
    auto command = commands.add("cat", "Writes the bytes of a resource", [=] { return cat(*options); });
    command.positional(options->archive, "ARCHIVE", "The web archive");
}

} // namespace qrv::webarchive
