#include "Source/Tools/webarchive/CheckCommand.h"

#include "Source/Tools/Common/JsonText.h"
#include "Source/Tools/Common/TerminalText.h"
#include "Source/Tools/webarchive/Reading/ArchiveFile.h"
#include "Source/Tools/webarchive/Reading/ResourceList.h"

#include <iostream>

namespace qrv::webarchive {

namespace {

struct Options {
    std::string archive;
    bool asJson = false;
    bool isStrict = false;
};

struct Verdict {
    bool isArchive = false;
    std::size_t frames = 0; // without the page itself
    std::size_t resources = 0;
    WebArchiveProblems problems;
};

Verdict judge(const std::string& path) {
    Verdict verdict;
    const NSData data = readFile(path);
    const WebArchive archive = WebArchive::initWithData(data, &verdict.problems);
    requireWhole(data);
    if (!archive) return verdict;
    const ResourceList list(archive);
    verdict.isArchive = true;
    verdict.frames = list.frames.size() - 1;
    verdict.resources = list.resources.size();
    return verdict;
}

/// For scripts, and for people what follows from the problem.
struct LossText {
    const char* name;
    const char* consequence;
};

LossText textOf(WebArchiveProblem::Loss loss) {
    switch (loss) {
    case WebArchiveProblem::Loss::archive:
        return {"archive", ""};
    case WebArchiveProblem::Loss::frame:
        return {"frame", "; the frame is left out"};
    case WebArchiveProblem::Loss::resource:
        return {"resource", "; the resource is left out"};
    case WebArchiveProblem::Loss::field:
        return {"field", "; the field is left out"};
    case WebArchiveProblem::Loss::rest:
        return {"rest", "; it is left out with all behind it"};
    }
    return {"", ""};
}

void writeJson(const Verdict& verdict) {
    std::vector<JsonObject> problems;
    problems.reserve(verdict.problems.kept.size());
    for (const auto& [place, reason, loss] : verdict.problems.kept) {
        problems.push_back(
            {{{"place", place}, {"reason", reason}, {"lost", std::string(textOf(loss).name)}}});
    }
    const auto number = [](std::size_t value) { return static_cast<std::int64_t>(value); };
    std::cout << jsonText({{{"isArchive", verdict.isArchive},
                            {"frames", number(verdict.frames)},
                            {"resources", number(verdict.resources)},
                            {"problemCount", number(verdict.problems.count)},
                            {"problems", std::move(problems)}}})
              << '\n';
}

std::string counted(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void writeText(const std::string& path, const Verdict& verdict) {
    std::cout << shown(path)
              << (verdict.isArchive ? " is a web archive of " + counted(verdict.resources, "resource") +
                                          " and " + counted(verdict.frames, "frame")
                                    : " is no web archive")
              << '\n';
    for (const auto& [place, reason, loss] : verdict.problems.kept) {
        std::cout << "  " << (place.empty() ? "it" : shown(place)) << ": " << shown(reason)
                  << textOf(loss).consequence << '\n';
    }
    if (const std::size_t more = verdict.problems.count - verdict.problems.kept.size())
        std::cout << "  and " << counted(more, "more problem") << '\n';
}

int check(const Options& options) {
    const Verdict verdict = judge(options.archive);
    options.asJson ? writeJson(verdict) : writeText(options.archive, verdict);
    return verdict.isArchive && (!options.isStrict || verdict.problems.count == 0) ? success : failure;
}

} // namespace

void addCheckCommand(CommandLine& commands) {
    const auto options = std::make_shared<Options>();
    auto command =
        commands.add("check", "Says whether a file is a web archive", [=] { return check(*options); });
    command.positional(options->archive, "ARCHIVE", "The file");
    command.flag(options->asJson, "--json", "Writes JSON");
    command.flag(options->isStrict, "--strict", "Fails, too, if a part of the archive is left out");
}

} // namespace qrv::webarchive
