#pragma once

// Replaces the contents of files in one step, and leaves nothing behind wherever a write ends.

#include <functional>
#include <string>
#include <string_view>

namespace qrv {

/// Makes these bytes the file's contents, with permissions by the umask; a symbolic link stays and what it
/// names is replaced or made. The old contents stay until the new ones are complete, which have no name until
/// then. Where the file system or a missing /proc does not allow that, they have one beside the file, which
/// is removed on failure. Returns 0 or an errno value: EISDIR for a folder, ENOTSUP for a pipe, socket or
/// device, which is not opened. Any thread.
int replaceFile(const std::string& path, std::string_view bytes);

/// Writes contents to the descriptor of a new file, which may be asked of it twice. Returns 0 or an errno
/// value.
using FileWriting = std::function<int(int descriptor)>;

/// The same for contents that are made while they are written; those that fail replace nothing.
int replaceFile(const std::string& path, const FileWriting& write);

/// For the thread that is about to end the process with _exit: removes the temporary names of other threads'
/// new files, and lets them make no more. Waits 0.2 seconds at most for a thread that is about to rename one.
void abandonReplacements();

/// 0 for a path at which a file can be written or made as far as its kind goes; else what replaceFile
/// returns.
int refusalToWrite(const std::string& path);

/// Writes all of it, from the descriptor's position. Returns 0 or an errno value.
int writeAll(int descriptor, std::string_view bytes);

} // namespace qrv
