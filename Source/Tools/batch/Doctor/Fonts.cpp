#include "Source/Tools/batch/Doctor/Fonts.h"

namespace qrv::batch {

namespace {

constexpr char area[] = "fonts";

/// What is shown by no font has one all the same, whose empty boxes stand for it.
std::string fontsOnSheet(const SampleRun& run, std::size_t sheet) {
    std::string names;
    if (sheet >= run.fonts.size()) return names;
    for (const std::string& name : run.fonts[sheet]) names += (names.empty() ? "" : ", ") + name;
    return names;
}

Finding fontsFor(const WritingSystem& system, std::size_t missing, const std::string& fonts) {
    const bool isCovered = missing == 0;
    Finding finding{area,
                    system.name,
                    Mark::ok,
                    std::string(system.sample) + "  ",
                    {},
                    {{"covered", isCovered},
                     {"sample", std::string(system.sample)},
                     {"fonts", isCovered ? fonts : std::string()},
                     {"package", std::string(system.package)}}};
    if (isCovered) {
        finding.text += fonts.empty() ? "in a font without a name" : fonts;
        return finding;
    }
    finding.mark = &system == &writingSystems().front() ? Mark::problem : Mark::note;
    finding.text += "no font for " + std::to_string(missing) +
                    " of these characters: pages show boxes, and their text can "
                    "not be searched";
    finding.advice = std::string("Install the package ") + system.package + ".";
    return finding;
}

} // namespace

Findings examineFonts(const SampleRun& run) {
    if (!run.report)
        return {{area, "all", Mark::note, "not known, since no page could be converted",
                 "Fix the engine first."}};
    Findings findings;
    const std::vector<WritingSystem>& systems = writingSystems();
    for (std::size_t i = 0; i < systems.size(); ++i)
        findings.push_back(fontsFor(systems[i], run.report->missing[i], fontsOnSheet(run, i)));
    return findings;
}

} // namespace qrv::batch
