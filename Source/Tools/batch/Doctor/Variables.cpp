#include "Source/Tools/batch/Doctor/Variables.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace qrv::batch {

namespace {

constexpr char area[] = "environment";

// What is asked of a value here; for others the tool says it.
bool isAnything(std::string_view) {
    return true;
}

bool isPositive(std::string_view text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(number) && number > 0;
}

bool isAbsolute(std::string_view path) {
    return path.starts_with('/');
}

bool isOne(std::string_view text) {
    return text == "1";
}

struct Variable {
    const char* name;
    bool (*counts)(std::string_view) = isAnything;
    const char* remark = ""; ///< what else is to be known
};

constexpr char passed[] = "for the tool alone: a batch has its own";

constexpr Variable variables[] = {
    {"OutPath", isAnything, passed},
    {"WEB2PDF_DEADLINE", isPositive, passed},
    {"WEB2PDF_ENGINE"},
    {"WEB2PDF_ENGINE_START_TIMEOUT", isPositive},
    {"WEB2PDF_MEMORY_LIMIT"},
    {"WEB2PDF_REQUIRE_SANDBOX", isOne},
    {"WEB2PDF_XMP", isOne},
    {"WEB2PDF_ATTACH_ARCHIVE", isOne},
    {"SOURCE_DATE_EPOCH"},
    {"PAPERSIZE"},
    {"PAPERCONF"},
    {"XDG_CONFIG_HOME", isAbsolute},
    {"XDG_CONFIG_DIRS", isAbsolute},
    {"XDG_DATA_HOME", isAbsolute},
    {"TMPDIR"},
    {"FONTCONFIG_FILE"},
    {"FONTCONFIG_PATH"},
    {"FONTCONFIG_SYSROOT"},
    {"TZ"},
    {"LANGUAGE"},
    {"LC_ALL"},
    {"LC_PAPER"},
    {"LANG"},
    {"QRVIsInXcode"},
    {"NO_COLOR"},
};

/// "NAME is no positive number and does not count: ..."
std::string remarkOn(const std::string& name, const std::vector<std::string>& log) {
    const auto found = std::find_if(
        log.begin(), log.end(), [&](const std::string& line) { return line.starts_with(name + " is no "); });
    return found == log.end() ? std::string() : *found;
}

Finding findingOf(const Variable& variable, const std::string& value, const std::vector<std::string>& log) {
    Finding finding{area, variable.name, Mark::ok, value, {}, {}};
    const bool counts = variable.counts(value) && remarkOn(variable.name, log).empty();
    finding.facts = {{"value", value}, {"counts", counts}};
    if (!counts) {
        finding.mark = Mark::note;
        finding.text += "  (does not count)";
        finding.advice = "Correct or unset it; the manual says which values count.";
    } else if (*variable.remark) {
        finding.text += std::string("  (") + variable.remark + ")";
    }
    return finding;
}

} // namespace

Findings examineVariables(const std::vector<std::string>& log) {
    Findings findings;
    for (const Variable& variable : variables)
        if (const char* const value = std::getenv(variable.name))
            findings.push_back(findingOf(variable, value, log));
    if (findings.empty())
        findings.push_back({area, "variables", Mark::ok, "none is set that changes conversions"});
    return findings;
}

} // namespace qrv::batch
