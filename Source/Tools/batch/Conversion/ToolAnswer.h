#pragma once

// What the tool says of a conversion: its answer, and what its log tells besides.

#include "Source/Tools/batch/Results/Record.h"

#include <optional>
#include <string>
#include <vector>

namespace qrv::batch {

struct ToolAnswer {
    /// Nothing: it succeeded.
    std::optional<ConversionError> error;
};

/// The answer in what the tool wrote on standard output; nothing where that is no answer.
std::optional<ToolAnswer> answerOfTool(const std::string& output);

struct MissingResources {
    std::int64_t count = 0;
    /// The first ones, which the tool names.
    std::vector<MissingResource> named;
};

/// What the log says was missing; of several such lines the last.
MissingResources missingInLog(const std::string& log);

} // namespace qrv::batch
