#pragma once

// A page that shows what became of many archives, for any browser: one file that needs no network.

#include "Source/Tools/batch/Results/Record.h"

#include <stop_token>

namespace qrv::batch {

struct ReportContents {
    std::vector<Record> records;
    /// Where the PDFs are.
    std::string folder;
    /// So many pictures of first pages are made at once.
    std::size_t jobs = 1;
};

/// Writes the report in one step; nothing after a stop. Throws Failure if it cannot be written.
void writeReport(const std::string& path, ReportContents contents, const std::stop_token& stop = {});

} // namespace qrv::batch
