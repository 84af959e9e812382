#pragma once

// Records as JSON, a line each: what scripts read, and what a later run goes by.

#include "Source/Tools/batch/Results/Record.h"

#include <string>
#include <string_view>

namespace qrv::batch {

/// One line, with its line break. A path that is no UTF-8 has U+FFFD for each byte that is none, and a second
/// field with its bytes in Base64 ("archive_bytes", "pdf_bytes", "text_bytes").
std::string lineOf(const Record& record);

/// The record of a line; nothing where it is none, such as one that was cut off.
std::optional<Record> recordOfLine(std::string_view line);

} // namespace qrv::batch
