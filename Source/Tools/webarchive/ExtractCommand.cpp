#include "Source/Tools/webarchive/ExtractCommand.h"

#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

namespace qrv::webarchive {

namespace {

struct Options {
    std::string archive;
    std::string folder;
};

int extract(const Options& options) {
    readArchive(options.archive);
    return success;
}

} // namespace

void addExtractCommand(CommandLine& commands) {
    const auto options = std::make_shared<Options>();
    auto command = commands.add("extract", "Writes a web archive as files that a browser opens",
                                [=] { return extract(*options); });
    command.positional(options->archive, "ARCHIVE", "The web archive");
    command.positional(options->folder, "FOLDER", "The folder, which is made if it is missing");
}

} // namespace qrv::webarchive
