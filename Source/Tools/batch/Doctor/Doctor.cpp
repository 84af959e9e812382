#include "Source/Tools/batch/Doctor/Doctor.h"

#include "Source/Tools/batch/Doctor/Engine.h"
#include "Source/Tools/batch/Doctor/FindingsText.h"
#include "Source/Tools/batch/Doctor/Fonts.h"
#include "Source/Tools/batch/Doctor/Isolation.h"
#include "Source/Tools/batch/Doctor/Paper.h"
#include "Source/Tools/batch/Doctor/Settings.h"
#include "Source/Tools/batch/Doctor/Surroundings.h"
#include "Source/Tools/batch/Doctor/Variables.h"
#include "Source/Tools/batch/Interruption.h"
#include "Source/Tools/batch/Program.h"

#include <cstdlib>
#include <future>
#include <iostream>
#include <optional>
#include <stop_token>
#include <unistd.h>

namespace qrv::batch {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds sampleTimeLimit(120);

bool hasColours() {
    const char* const none = std::getenv("NO_COLOR");
    return ::isatty(STDOUT_FILENO) == 1 && (!none || !*none);
}

/// Nothing if a signal came.
std::optional<SampleRun> runUnlessInterrupted(const std::string& tool) {
    Interruption interruption; // before there are threads
    std::stop_source stop;
    auto running =
        std::async(std::launch::async, [&] { return runSample(tool, sampleTimeLimit, stop.get_token()); });
    while (running.wait_for(0ms) != std::future_status::ready)
        if (interruption.waitFor(20ms)) stop.request_stop();
    SampleRun run = running.get();
    return interruption.hasCome() ? std::nullopt : std::optional(std::move(run));
}

} // namespace

int examineMachine(const DoctorOptions& options) {
    Findings findings = examineEngine(options.tool);
    const std::optional<SampleRun> run = runUnlessInterrupted(options.tool);
    if (!run) return interrupted;
    append(findings, examineConversion(*run));
    if (!run->processes.empty() || run->error.empty()) append(findings, examineIsolation(*run));
    append(findings, examineFonts(*run));
    append(findings, examinePaper());
    append(findings, examineSettings());
    append(findings, examineVariables(run->log));
    append(findings, examineSurroundings(options.jobs));
    std::cout << (options.asJson ? jsonTextOf(findings) + "\n" : textOf(findings, hasColours()));
    return isFit(findings) ? success : failure;
}

} // namespace qrv::batch
