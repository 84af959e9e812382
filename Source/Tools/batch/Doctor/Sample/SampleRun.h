#pragma once

// One real conversion, of the sample page by the tool, in a temporary folder that is gone afterwards.

#include "Source/Tools/batch/Doctor/Sample/EngineProcesses.h"
#include "Source/Tools/batch/Doctor/Sample/SamplePage.h"

#include <chrono>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace qrv::batch {

struct SampleRun {
    /// Why there is no PDF; empty if there is one.
    std::string error;
    /// What the tool logged, without date and process.
    std::vector<std::string> log;
    /// Those of the log's lines that are the platform's own remarks.
    std::vector<std::string> remarks;
    std::chrono::milliseconds time{};
    std::vector<EngineProcess> processes;
    /// Whether somebody called the port of this machine that the page was told of.
    bool wasCalled = false;
    /// What the page says; nothing if that was lost.
    std::optional<SampleReport> report;
    /// For each sheet of the PDF the names of its fonts.
    std::vector<std::vector<std::string>> fonts;
};

/// Runs the tool as a batch does, with the environment and the settings as they are, for at most this time
/// and until it is stopped, which is an error. Any thread.
SampleRun runSample(const std::string& tool, std::chrono::milliseconds timeLimit,
                    const std::stop_token& stop = {});

} // namespace qrv::batch
