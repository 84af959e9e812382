#pragma once

// A page that shows what became of many archives, for any browser: one file that needs no network.

#include "Source/Tools/batch/Results/Record.h"

#include <cstddef>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace qrv::batch {

/// An archive and its last record.
struct ReportItem {
    /// Its path, which may be another one than it was.
    std::string_view archive;
    const Record* record;
};

struct ReportContents {
    std::vector<ReportItem> items;
    /// Gives a record with what is missing, of which those of the items need have only how much.
    std::function<Record(const Record&)> whole;
    /// Where the PDFs are.
    std::string folder;
    /// So many pictures of first pages are made at once.
    std::size_t jobs = 1;
};

/// Writes the report in one step; nothing after a stop. Of very many archives it has all totals and lists
/// those with the most to tell. Throws Failure if it cannot be written.
void writeReport(const std::string& path, ReportContents contents, const std::stop_token& stop = {});

} // namespace qrv::batch
