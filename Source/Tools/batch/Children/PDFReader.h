#pragma once

// Small programs that read PDF files, which are not to be trusted: pdfinfo, pdftotext, pdftoppm. Each runs
// behind rules: it opens the PDF, libraries and fonts and no other file, writes none, and has no sockets.

#include "Source/Tools/batch/Children/ChildProcess.h"

namespace qrv::batch {

/// Runs the program, whose arguments name the PDF and standard output. What it may use of time, memory and
/// output is bounded. Any thread.
ChildEnd runPDFReader(const std::string& program, std::vector<std::string> arguments, const std::string& pdf,
                      const std::stop_token& stop);

} // namespace qrv::batch
