#include "Source/Tools/webarchive/ExtractCommand.h"

#include "Platform/MHTML/MHTMLWriter.h"
#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/webarchive/Extract/Extraction.h"
#include "Source/Tools/webarchive/Output/OutputFile.h"
#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

namespace qrv::webarchive {

namespace {

struct Options {
    std::string archive;
    std::string folder;
    bool replaces = false;
    bool asMHTML = false;
};

void writeMHTML(const std::string& archive, const std::string& file) {
    requireOutput(file, archive);
    static_cast<void>(rulesForOutput(file).enforce());
    const NSData data = MHTMLFromArchive(readArchive(archive));
    if (!data) throw Failure(archive + " would become a file that is far larger");
    writeOutput(file, data);
}

int extract(const Options& options) {
    if (options.asMHTML) {
        writeMHTML(options.archive, options.folder);
        return success;
    }
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
    command.positional(options->folder, "FOLDER",
                       "The folder, which is made if it is missing; or the MHTML file");
    command.flag(options->replaces, "--force",
                 "Writes to a folder that is not empty, too, and replaces files there");
    command.flag(options->asMHTML, "--mhtml", "Writes one MHTML file instead of a folder");
}

} // namespace qrv::webarchive
