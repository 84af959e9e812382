#pragma once

// The text of the report.

#include "Source/Tools/batch/Report/Totals.h"
#include "Source/Tools/batch/Results/Record.h"

#include <string>
#include <vector>

namespace qrv::batch {

struct ReportRow {
    Record record;
    /// A JPEG file; empty for none.
    std::string picture;
    /// Addresses relative to the page; empty where there is no such file.
    std::string pdfAddress;
    std::string textAddress;
};

/// Lists the rows in their order. The totals may be of more archives; the notes are for the reader.
std::string reportPage(const Totals& totals, const std::vector<ReportRow>& rows,
                       const std::vector<std::string>& notes = {});

} // namespace qrv::batch
