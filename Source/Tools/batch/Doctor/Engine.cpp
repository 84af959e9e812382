#include "Source/Tools/batch/Doctor/Engine.h"

#include "Platform/Engine/Process/EngineLocator.h"
#include "Platform/Engine/Process/Sandbox/EngineKind.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <unistd.h>

namespace qrv::batch {

namespace {

constexpr char area[] = "engine";

struct FoundEngine {
    std::string path;
    const char* by; ///< one word for scripts
    const char* where;
};

/// Where the locator has it from: the same search with less and less of what it goes by.
std::optional<FoundEngine> findEngine() {
    const auto all = engine::EngineSearch::fromEnvironment();
    const auto path = engine::locateEngine(all);
    if (!path) return std::nullopt;
    if (!all.chosen.empty()) return FoundEngine{*path, "variable", "named by WEB2PDF_ENGINE"};
    if (path == all.places.front()) return FoundEngine{*path, "build", "named when the program was built"};
    if (std::find(all.places.begin(), all.places.end(), *path) != all.places.end())
        return FoundEngine{*path, "place", "found in a distribution's place"};
    return FoundEngine{*path, "PATH", "found in PATH"};
}

Finding missingEngine() {
    const std::string chosen = engine::EngineSearch::fromEnvironment().chosen;
    if (chosen.empty())
        return {area, "program", Mark::problem, "there is no engine in the known places and in PATH",
                "Install the package chromium-headless-shell, or name an engine by WEB2PDF_ENGINE."};
    return {area, "program", Mark::problem, "WEB2PDF_ENGINE names no executable file: " + chosen,
            "Correct the variable, or unset it: then the known places count."};
}

} // namespace

Findings examineEngine(const std::string& tool) {
    Findings findings;
    const bool hasTool = ::access(tool.c_str(), X_OK) == 0;
    const std::string why = hasTool        ? ""
                            : tool.empty() ? "there is no web2pdf beside this program or in PATH"
                                           : " can not be run: " + std::string(std::strerror(errno));
    findings.push_back({area,
                        "tool",
                        hasTool ? Mark::ok : Mark::problem,
                        tool + why,
                        hasTool ? "" : "Install the package web2pdf, or name the tool by --tool.",
                        {{"path", tool}}});
    if (const auto found = findEngine()) {
        const bool isBrowser = engine::engineKind(found->path) == engine::EngineKind::browser;
        findings.push_back(
            {area,
             "program",
             Mark::ok,
             found->path + ", " + (isBrowser ? "a full browser" : "a headless shell") + ", " + found->where,
             isBrowser ? "The package chromium-headless-shell is smaller and faster." : "",
             {{"path", found->path},
              {"kind", std::string(isBrowser ? "browser" : "headless-shell")},
              {"found", std::string(found->by)}}});
    } else {
        findings.push_back(missingEngine());
    }
    return findings;
}

Findings examineConversion(const SampleRun& run) {
    const auto milliseconds = static_cast<std::int64_t>(run.time.count());
    const std::vector<std::pair<std::string, JsonValue>> facts{{"milliseconds", milliseconds}};
    if (!run.error.empty()) {
        std::string advice;
        for (const std::string& remark : run.remarks) advice += "The tool says: " + remark + "\n";
        return {{area, "conversion", Mark::problem, "a sample page could not be converted: " + run.error,
                 advice + "As long as this fails, every conversion will.", facts}};
    }
    Findings findings{{area,
                       "conversion",
                       Mark::ok,
                       "a sample page was converted in " + std::to_string(milliseconds) + " ms",
                       {},
                       facts}};
    if (run.report) {
        findings.push_back({area,
                            "version",
                            Mark::ok,
                            run.report->version + ", as the engine that ran calls itself",
                            {},
                            {{"version", run.report->version}}});
    } else {
        findings.push_back({area, "version", Mark::problem,
                            "the PDF does not say what the sample page has found out",
                            "Scripts of pages do not run to their end here: see what the tool logs."});
    }
    for (const EngineProcess& process : run.processes) {
        if (!process.type.empty() || process.program.empty()) continue;
        findings.push_back(
            {area, "process", Mark::ok, "what ran is " + process.program, {}, {{"path", process.program}}});
    }
    return findings;
}

} // namespace qrv::batch
