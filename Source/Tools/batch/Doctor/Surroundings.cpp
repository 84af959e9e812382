#include "Source/Tools/batch/Doctor/Surroundings.h"

#include "Platform/Engine/Process/EngineLocator.h"
#include "Platform/Engine/Process/EngineMemory.h"
#include "Platform/Engine/Process/Machine.h"
#include "Platform/Logging/os_log.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace qrv::batch {

namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t mebibyte = 1 << 20;
/// What a large page's engine may well need.
constexpr std::uintmax_t muchMemory = 512 * mebibyte;
constexpr std::uintmax_t muchSpace = 512 * mebibyte;

JsonValue number(std::uintmax_t value) {
    return static_cast<std::int64_t>(value);
}

std::string inMebibytes(std::uintmax_t bytes) {
    return std::to_string(bytes / mebibyte) + " MiB";
}

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

Finding journal() {
    if (hasJournal())
        return {
            "journal", "journal", Mark::ok, "log lines go to the journal, too", {}, {{"reachable", true}}};
    return {"journal",
            "journal",
            Mark::note,
            "there is none: log lines go to standard error only, and nothing waits for it",
            "Nothing, unless a journal is wanted: then systemd-journald has to run, and a container needs "
            "its socket "
            "in /run/systemd/journal.",
            {{"reachable", false}}};
}

Finding reader(const std::string& name, const std::string& purpose) {
    const auto path = engine::programInPath(name);
    if (path) return {"programs", name, Mark::ok, *path + ", which " + purpose, {}, {{"path", *path}}};
    return {"programs",
            name,
            Mark::note,
            "missing: it " + purpose,
            "Install the package poppler-utils.",
            {{"path", JsonValue()}}};
}

Finding memory() {
    const std::size_t limit = engine::engineMemoryLimit({});
    const std::size_t free = engine::availableMemory();
    const bool isMuch = std::min(limit, free) >= muchMemory;
    return {
        "machine",
        "memory",
        isMuch ? Mark::ok : Mark::note,
        inMebibytes(free) + " of " + inMebibytes(engine::machineMemory()) +
            " are free; an engine alone may hold " + inMebibytes(limit),
        isMuch ? ""
               : "Large pages will fail: give the machine or the container more memory, or change "
                 "WEB2PDF_MEMORY_LIMIT.",
        {{"free", number(free)}, {"all", number(engine::machineMemory())}, {"engineLimit", number(limit)}}};
}

Finding processors(std::size_t jobs) {
    const double count = engine::availableProcessors();
    const auto percent = static_cast<std::uintmax_t>(std::lround(count * 100));
    return {"machine",
            "processors",
            Mark::ok,
            "the time of " + std::to_string(percent / 100) + "." + std::to_string(percent / 10 % 10) +
                ", for " + std::to_string(jobs) + " conversions at once",
            {},
            {{"percent", number(percent)}, {"jobs", number(jobs)}}};
}

Finding temporaryFiles() {
    const std::string chosen = variable("TMPDIR");
    const std::string folder = chosen.empty() ? "/tmp" : chosen;
    Finding finding{"machine", "temporary files", Mark::ok, {}, {}, {{"folder", folder}}};
    std::error_code error;
    const fs::space_info space = fs::space(folder, error);
    if (error || ::access(folder.c_str(), W_OK | X_OK) != 0) {
        finding.mark = Mark::problem;
        finding.text = folder + " can not be used: " + (error ? error.message() : std::strerror(errno));
        finding.advice = "Let TMPDIR name a folder that may be written to.";
        return finding;
    }
    finding.text = folder + " has " + inMebibytes(space.available) + " free";
    finding.facts.emplace_back("free", number(space.available));
    if (space.available < muchSpace) {
        finding.mark = Mark::note;
        finding.advice =
            "Make room, or let TMPDIR name another folder: PDFs of large pages need it, and an engine "
            "without a file system of its own.";
    }
    return finding;
}

Finding sharedMemory(const std::string& folder) {
    std::error_code error;
    const bool isThere = fs::is_directory(folder, error);
    if (isThere)
        return {
            "machine",
            "shared memory",
            Mark::ok,
            folder + " is there: the engine has its temporary files there, where it gets mounts of its own",
            {},
            {{"present", true}}};
    return {"machine",
            "shared memory",
            Mark::note,
            folder + " is missing: the engine's temporary files are in " +
                (variable("TMPDIR").empty() ? "/tmp" : variable("TMPDIR")),
            "Make that folder.",
            {{"present", false}}};
}

} // namespace

Findings examineSurroundings(std::size_t jobs, const std::string& sharedMemoryFolder) {
    return {journal(),
            reader("pdfinfo", "counts the pages of each PDF"),
            reader("pdftotext", "reads the text of PDFs for --text"),
            reader("pdftoppm", "draws PDFs, to look at what was made"),
            memory(),
            processors(jobs),
            temporaryFiles(),
            sharedMemory(sharedMemoryFolder)};
}

} // namespace qrv::batch
