#pragma once

// Writes log lines to standard error: each line as a whole, and without harming the program.

#include <chrono>
#include <string_view>

namespace qrv {

/// Writes the line, which ends in a line feed, to a descriptor. Lines of up to PIPE_BUF (4096) bytes, and to
/// files of any length, are one write(2) each, so that lines of several threads and processes do not
/// interleave.
///
/// A closed descriptor or a missing reader is ignored (without SIGPIPE, whatever the process does with that
/// signal). A stalled reader is waited for as long as `patience` allows; then lines are dropped until it
/// reads again. A terminal that its user has stopped stops who writes to it as standard error. Any thread.
void writeLogLine(int descriptor, std::string_view line,
                  std::chrono::milliseconds patience = std::chrono::milliseconds(100));

/// Writes the line to standard error in the same way.
void writeStandardErrorLine(std::string_view line);

} // namespace qrv
