#include "Source/Tools/batch/Doctor/Paper.h"

#include "Platform/AppKit/DefaultPaper.h"

#include <cmath>

namespace qrv::batch {

namespace {

std::string placeOf(const DefaultPaper& paper) {
    switch (paper.source) {
    case DefaultPaper::Source::variable:
        return "PAPERSIZE";
    case DefaultPaper::Source::file:
        return paper.file;
    case DefaultPaper::Source::locale:
        return "the locale";
    case DefaultPaper::Source::none:
        break;
    }
    return "nothing";
}

} // namespace

Findings examinePaper() {
    const DefaultPaper paper = defaultPaper();
    const auto width = static_cast<std::int64_t>(std::lround(paper.size.width));
    const auto height = static_cast<std::int64_t>(std::lround(paper.size.height));
    const std::string place = placeOf(paper);
    const std::string size = std::to_string(width) + " x " + std::to_string(height) + " points";
    Finding finding{"paper",
                    "default",
                    Mark::ok,
                    paper.name + ", " + size + ", named by " + place,
                    {},
                    {{"name", paper.isKnown ? JsonValue(paper.name) : JsonValue()},
                     {"width", width},
                     {"height", height},
                     {"source", place}}};
    const std::string advice = "Set PAPERSIZE, or write the paper's name into /etc/papersize.";
    if (!paper.isKnown) {
        finding.mark = Mark::note;
        finding.text =
            place + " names a paper that is unknown, \"" + paper.name + "\": US Letter is used, " + size;
        finding.advice = advice;
    } else if (paper.source == DefaultPaper::Source::none) {
        finding.mark = Mark::note;
        finding.text = "letter, " + size + ", since nothing names another";
        finding.advice = advice;
    }
    return {finding};
}

} // namespace qrv::batch
