#include "Source/Tools/batch/Report/Report.h"

#include "Platform/Foundation/FileReplacement.h"
#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/batch/Report/FileLinks.h"
#include "Source/Tools/batch/Report/FirstPages.h"
#include "Source/Tools/batch/Report/Quantities.h"
#include "Source/Tools/batch/Report/ReportPage.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace qrv::batch {

namespace {

namespace fs = std::filesystem;

/// With more of them, the page would take long to make and to open.
constexpr std::size_t mostPictures = 1000;
constexpr std::size_t mostRows = 20'000;

bool isFile(const std::string& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

/// A row, and the PDF's path if it has one.
struct Entry {
    ReportRow row;
    std::string pdf;
};

Entry entryOf(const ReportItem& item, const ReportContents& contents, const std::string& report) {
    const std::string& folder = contents.folder;
    Entry entry{{contents.whole(*item.record), {}, {}, {}}, {}};
    entry.row.record.archive = item.archive;
    if (!entry.row.record.isConverted()) return entry;
    const std::optional<std::string> pdf = pathBelow(folder, entry.row.record.pdf);
    if (!pdf || !isFile(*pdf)) return entry;
    entry.pdf = *pdf;
    entry.row.pdfAddress = addressFrom(report, *pdf);
    const std::optional<std::string> text = pathBelow(folder, entry.row.record.text);
    if (text && isFile(*text)) entry.row.textAddress = addressFrom(report, *text);
    return entry;
}

/// Gives the rows their pictures. What the reader has to know of those that are not there; may be empty.
std::string addPictures(std::vector<ReportRow>& rows, std::vector<std::string> paths, std::size_t jobs,
                        const std::stop_token& stop) {
    const auto count = paths.size() - std::count(paths.begin(), paths.end(), "");
    const std::optional<std::string> program = pictureProgram();
    if (count == 0) return {};
    if (!program) return "There are no pictures of first pages, since the program pdftoppm is not installed.";
    std::size_t left = mostPictures;
    for (std::string& path : paths) {
        if (path.empty()) continue;
        if (left == 0) {
            path.clear();
        } else {
            --left;
        }
    }
    std::vector<std::string> pictures = picturesOfFirstPages(*program, paths, jobs, stop);
    for (std::size_t at = 0; at < rows.size(); ++at) rows[at].picture = std::move(pictures[at]);
    if (count <= mostPictures) return {};
    return "Only the first " + countText(mostPictures) + " PDFs have a picture here.";
}

/// Keeps as many items as can be listed, those before all others that have failed, and then those that lack
/// something. What the reader has to know of the others; may be empty.
std::string chooseItems(std::vector<ReportItem>& items) {
    if (items.size() <= mostRows) return {};
    const auto rank = [](const ReportItem& item) {
        return std::pair(-static_cast<int>(verdictOf(*item.record)), item.archive);
    };
    std::nth_element(items.begin(), items.begin() + mostRows, items.end(),
                     [&](const ReportItem& a, const ReportItem& b) { return rank(a) < rank(b); });
    const std::string all = countText(static_cast<std::int64_t>(items.size()));
    items.resize(mostRows);
    return "Of " + all + " archives, " + countText(mostRows) +
           " are listed here: those that failed before all others, then those that lack "
           "resources. The results beside the PDFs, web2pdf-batch*.jsonl, have every one.";
}

} // namespace

void writeReport(const std::string& path, ReportContents contents, const std::stop_token& stop) {
    Totals totals;
    for (const ReportItem& item : contents.items) totals.add(*item.record);
    std::vector<std::string> notes{chooseItems(contents.items)};
    std::sort(contents.items.begin(), contents.items.end(),
              [](const ReportItem& a, const ReportItem& b) { return a.archive < b.archive; });
    std::vector<ReportRow> rows;
    std::vector<std::string> paths;
    for (const ReportItem& item : contents.items) {
        Entry entry = entryOf(item, contents, path);
        rows.push_back(std::move(entry.row));
        paths.push_back(std::move(entry.pdf));
    }
    notes.push_back(addPictures(rows, std::move(paths), contents.jobs, stop));
    std::erase(notes, "");
    if (stop.stop_requested()) return;
    if (const int error = replaceFile(path, reportPage(totals, rows, notes)))
        throw Failure(path + ": " + std::strerror(error));
}

} // namespace qrv::batch
