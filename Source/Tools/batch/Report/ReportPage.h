#pragma once

// The text of the report.

#include "Source/Tools/batch/Results/Record.h"

namespace qrv::batch {

struct ReportRow {
    Record record;
    /// A JPEG file; empty for none.
    std::string picture;
    /// Addresses relative to the page; empty where there is no such file.
    std::string pdfAddress;
    std::string textAddress;
};

/// In the order of the rows. The note is for the reader; it may be empty.
std::string reportPage(const std::vector<ReportRow>& rows, const std::string& note = {});

} // namespace qrv::batch
