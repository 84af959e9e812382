#pragma once

// Large files in memory that are not copied there: the system reads a page when it is needed, and may forget
// it.

#include <cstddef>
#include <memory>
#include <string_view>

namespace qrv {

/// Lets mapFile work, from here to the end of the process. Takes over SIGBUS, with which the system tells
/// that a mapped page cannot be read: the file was cut short meanwhile, or its disk fails. In a mapped file
/// that and all behind it then reads as zeros; anywhere else the signal ends the process as ever. To be
/// called by programs, since signals are theirs, before they start threads.
void allowMappedFiles();

/// The file's first `length` bytes, read-only, for as long as the pointer lives; what others write to the
/// file may show in them. Null if that is not allowed, if the file is so small that a copy is cheaper, or if
/// it cannot be mapped. Any thread.
std::shared_ptr<const std::string_view> mapFile(int descriptor, std::size_t length);

/// Lets go of the memory that the system keeps mapped for these bytes, where they are in a mapped file: it
/// may map megabytes around every byte that is read. They are read again when they are needed. Any thread.
void forgetPages(std::string_view bytes);

/// Whether these bytes are in a mapped file of which a part could not be read. Any thread.
bool isCutOff(std::string_view bytes);

} // namespace qrv
