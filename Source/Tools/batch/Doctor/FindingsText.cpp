#include "Source/Tools/batch/Doctor/FindingsText.h"

#include "Source/Tools/Common/TerminalText.h"

#include <algorithm>
#include <sstream>

namespace qrv::batch {

namespace {

struct Sign {
    const char* name;
    const char* colour;
};

Sign signOf(Mark mark) {
    switch (mark) {
    case Mark::ok:
        return {"ok", "\033[32m"};
    case Mark::note:
        return {"note", "\033[33m"};
    case Mark::problem:
        break;
    }
    return {"problem", "\033[1;31m"};
}

std::int64_t count(const Findings& findings, Mark mark) {
    return std::count_if(findings.begin(), findings.end(),
                         [mark](const Finding& finding) { return finding.mark == mark; });
}

std::string counted(std::int64_t number, const std::string& name) {
    return std::to_string(number) + " " + name + (number == 1 ? "" : "s");
}

std::string padded(std::string text, std::size_t columns) {
    text.append(columns - std::min(columns, columnsOf(text)), ' ');
    return text;
}

std::string lineOf(const Finding& finding, std::size_t checkColumns, bool hasColours) {
    constexpr std::size_t signColumns = 7;
    const Sign sign = signOf(finding.mark);
    std::string line = "  ";
    if (hasColours) line += sign.colour;
    line += padded(sign.name, signColumns);
    if (hasColours) line += "\033[0m";
    line += "  " + padded(shown(finding.check), checkColumns) + "  " + shown(finding.text) + "\n";
    std::istringstream advice(finding.advice);
    for (std::string one; std::getline(advice, one);)
        line += std::string(2 + signColumns + 2 + checkColumns + 2, ' ') + "→ " + shown(one) + "\n";
    return line;
}

JsonObject objectOf(const Finding& finding) {
    JsonObject object{{{"area", finding.area},
                       {"check", finding.check},
                       {"mark", std::string(signOf(finding.mark).name)},
                       {"text", finding.text},
                       {"advice", finding.advice.empty() ? JsonValue() : JsonValue(finding.advice)}}};
    object.fields.insert(object.fields.end(), finding.facts.begin(), finding.facts.end());
    return object;
}

} // namespace

bool isFit(const Findings& findings) {
    return count(findings, Mark::problem) == 0;
}

std::string textOf(const Findings& findings, bool hasColours) {
    std::size_t checkColumns = 0;
    for (const Finding& finding : findings)
        checkColumns = std::max(checkColumns, columnsOf(shown(finding.check)));
    std::string text;
    const std::string* area = nullptr;
    for (const Finding& finding : findings) {
        if (!area || *area != finding.area) text += (area ? "\n" : "") + shown(finding.area) + "\n";
        area = &finding.area;
        text += lineOf(finding, checkColumns, hasColours);
    }
    const std::int64_t problems = count(findings, Mark::problem);
    text += problems == 0 ? "\nConversions work here" : "\nConversions do not work here as they must";
    return text + ": " + counted(problems, "problem") + ", " + counted(count(findings, Mark::note), "note") +
           ".\n";
}

std::string jsonTextOf(const Findings& findings) {
    std::vector<JsonObject> objects;
    objects.reserve(findings.size());
    for (const Finding& finding : findings) objects.push_back(objectOf(finding));
    return jsonText({{{"fit", isFit(findings)},
                      {"problems", count(findings, Mark::problem)},
                      {"notes", count(findings, Mark::note)},
                      {"findings", std::move(objects)}}});
}

} // namespace qrv::batch
