#include "Source/Tools/webarchive/ExtractCommand.h"

#include "Source/Tools/webarchive/Extract/Extraction.h"
#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

namespace qrv::webarchive {

namespace {

struct Options {
    std::string archive;
    std::string folder;
    bool replaces = false;
};

int extract(const Options& options) {
    Extraction extraction(readArchive(options.archive));
    OutputFolder folder(options.folder, options.replaces, extraction.mostBytes());
    folder.confineToIt();
    extraction.write(folder);
    return success;
}

} // namespace

void addExtractCommand(CommandLine& commands) {
    const auto options = std::make_shared<Options>();
    auto command = commands.add("extract", "Writes a web archive as files that a browser opens",
                                [=] { return extract(*options); });
    command.positional(options->archive, "ARCHIVE", "The web archive");
    command.positional(options->folder, "FOLDER", "The folder, which is made if it is missing");
    command.flag(options->replaces, "--force",
                 "Writes to a folder that is not empty, too, and replaces files there");
}

} // namespace qrv::webarchive
