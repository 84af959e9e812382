#include "Source/Tools/batch/Options.h"

namespace qrv::batch {

namespace {

constexpr std::int64_t mostJobs = 1024;
constexpr std::int64_t mostSeconds = std::int64_t{7} * 24 * 60 * 60;
constexpr std::int64_t mostRetries = 100;

} // namespace

void declareOptions(CommandLine::Command program, Options& options) {
    program.positionals(
        options.sources, "SOURCE",
        "A web archive; a folder, which is searched whole for *.webarchive; or -, which reads a "
        "list of them from standard input, a line each");
    program.option(options.output, "-o,--output", "The folder that the PDFs and the results go to", "FOLDER");
    program.choice(options.mode, "-m,--mode", {"print", "screen"},
                   "What is made: a print on sheets of paper, or one page of the document's size; print");
    program.number(options.jobs, "-j,--jobs", 1, mostJobs,
                   "How many are converted at once; as many as keep the processors busy and fit the memory");
    program.flag(options.isSeparatedByNul, "-0,--null", "The list's paths end with NUL");
    program.option(options.base, "--base", "The folder that the PDFs of a list keep the way from", "FOLDER");
    program.number(options.timeout, "--timeout", 0, mostSeconds,
                   "Seconds that each may take, 0 for any; 120");
    program.number(options.retries, "--retries", 0, mostRetries,
                   "How often to try again what can pass, such as an engine that ended; 2");
    program.flag(options.retriesFailed, "--retry-failed", "Tries again what failed in earlier runs");
    program.flag(options.convertsAnew, "--no-resume", "Converts again what earlier runs have converted");
    program.flag(options.isStrict, "--strict", "Resources that are missing are a failure");
    program.option(options.shard, "--shard", "Converts only part I of N, from 0 to N-1", "I/N");
    program.flag(options.isDryRun, "-n,--dry-run", "Says what would be converted, and does nothing");
    program.flag(options.isQuiet, "-q,--quiet", "Says nothing; the exit status and the results tell");
    program.option(
        options.report, "--report",
        "Writes a report in HTML; without SOURCE of what is in the folder already, of all its shards",
        "FILE");
    program.flag(options.writesXMP, "--xmp", "Puts title, address, hash and more into each PDF, as XMP");
    program.flag(options.attachesArchive, "--attach", "Attaches each archive to its PDF");
    program.flag(options.writesText, "--text", "Writes the text of each PDF's pages beside it");
    program.flag(options.writesManifest, "--manifest",
                 "Writes the hashes of all PDFs, as sha256sum reads them");
    program.flag(options.asksDoctor, "--doctor", "Examines this machine, and says what to do about it");
    program.flag(options.asJson, "--json", "Has --doctor write JSON");
    program.option(options.tool, "--tool", "The program web2pdf; the one beside this program, or in PATH",
                   "FILE");
}

void checkOptions(const Options& options) {
    if (options.asJson && !options.asksDoctor) throw UsageError("--json goes with --doctor");
    if (options.asksDoctor) return;
    if (!options.output || options.output->empty()) throw UsageError("-o says which folder the PDFs go to");
    if (options.base && options.base->empty()) throw UsageError("--base is the name of a folder");
    if (options.sources.empty() && !options.report) throw UsageError("SOURCE says what is converted");
}

Shard shardOf(const Options& options) {
    if (!options.shard) return {};
    const std::optional<Shard> shard = shardOfText(*options.shard);
    if (!shard) throw UsageError("--shard is I/N, with I from 0 to N-1, and not " + *options.shard);
    return *shard;
}

} // namespace qrv::batch
