#pragma once

// Writes to an open file descriptor.

#include "Platform/Foundation/NSData.h"

namespace qrv {

/// Does not own the descriptor, which stays open until closeFile. One thread at a time.
class QRV_EXPORT NSFileHandle {
public:
    // - initWithFileDescriptor:
    explicit NSFileHandle(int descriptor) : descriptor_(descriptor) {}

    // + fileHandleWithStandardOutput
    static NSFileHandle fileHandleWithStandardOutput();

    // - writeData:
    /// Writes all bytes, and waits for a non-blocking descriptor to become ready. Failures are not reported;
    /// what could not be written is lost. nil writes nothing. Writing to a pipe without a reader raises
    /// SIGPIPE unless the process ignores that signal.
    void writeData(const NSData& data);

    // - closeFile
    /// Closes the descriptor; later writes are lost. Closing twice does nothing.
    void closeFile();

private:
    int descriptor_;
};

} // namespace qrv
