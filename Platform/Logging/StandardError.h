#pragma once

// Lines on the standard error stream, for logs: written whole, and never at the price of the program.

#include <chrono>
#include <string_view>

namespace qrv {

/// Writes the line, which ends in a line feed, to a descriptor. Up to PIPE_BUF (4096) bytes, and to files of
/// any length, it is one write(2), so that lines of several threads and processes do not mix.
///
/// Logging must not harm: a closed descriptor or a reader that has gone is ignored (without SIGPIPE, whatever
/// the process does with that signal), and a reader that takes nothing is waited for as long as the patience
/// lasts, then lines are dropped until it reads again. Any thread.
void writeLogLine(int descriptor, std::string_view line,
                  std::chrono::milliseconds patience = std::chrono::milliseconds(100));

/// The same to standard error.
void writeStandardErrorLine(std::string_view line);

} // namespace qrv
