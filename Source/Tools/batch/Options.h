#pragma once

// What web2pdf-batch is asked to do.

#include "Source/Tools/Common/CommandLine.h"
#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/batch/Selection/Shard.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qrv::batch {

/// Wrong arguments: ends the program with their exit status.
class UsageError : public Failure {
public:
    using Failure::Failure;
};

struct Options {
    std::vector<std::string> sources;
    std::optional<std::string> output;
    std::string mode = "print";
    std::optional<std::int64_t> jobs;
    bool isSeparatedByNul = false;
    std::optional<std::string> base;
    std::optional<std::int64_t> timeout;
    std::optional<std::int64_t> retries;
    bool retriesFailed = false;
    bool convertsAnew = false;
    bool isStrict = false;
    std::optional<std::string> shard;
    bool isDryRun = false;
    bool isQuiet = false;
    std::optional<std::string> report;
    bool writesXMP = false;
    bool attachesArchive = false;
    bool writesText = false;
    bool writesManifest = false;
    bool asksDoctor = false;
    bool asJson = false;
    std::optional<std::string> tool;
};

/// Declares them; they are filled in when the arguments are read.
void declareOptions(CommandLine::Command program, Options& options);

/// Throws UsageError for options that do not go together.
void checkOptions(const Options& options);

/// All archives without the option. Throws UsageError for a text that is no shard.
Shard shardOf(const Options& options);

} // namespace qrv::batch
