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

bool isFile(const std::string& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

/// A row, and the PDF's path if it has one.
struct Entry {
    ReportRow row;
    std::string pdf;
};

Entry entryOf(Record record, const std::string& folder, const std::string& report) {
    Entry entry{{std::move(record), {}, {}, {}}, {}};
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

} // namespace

void writeReport(const std::string& path, ReportContents contents, const std::stop_token& stop) {
    std::sort(contents.records.begin(), contents.records.end(),
              [](const Record& a, const Record& b) { return a.archive < b.archive; });
    std::vector<ReportRow> rows;
    std::vector<std::string> paths;
    for (Record& record : contents.records) {
        Entry entry = entryOf(std::move(record), contents.folder, path);
        rows.push_back(std::move(entry.row));
        paths.push_back(std::move(entry.pdf));
    }
    const std::string note = addPictures(rows, std::move(paths), contents.jobs, stop);
    if (stop.stop_requested()) return;
    if (const int error = replaceFile(path, reportPage(rows, note)))
        throw Failure(path + ": " + std::strerror(error));
}

} // namespace qrv::batch
