#pragma once

// An open file descriptor that bytes are written to.

#include "Platform/Foundation/NSData.h"

namespace qrv {

/// Does not own the descriptor: it stays open until closeFile. One thread at a time.
class NSFileHandle {
public:
    // - initWithFileDescriptor:
    explicit NSFileHandle(int descriptor) : descriptor_(descriptor) {}

    // + fileHandleWithStandardOutput
    static NSFileHandle fileHandleWithStandardOutput();

    // - writeData:
    /// All bytes, however many steps it takes, waiting where the descriptor does not. A failure is not
    /// reported: what could not be written is lost. nil writes nothing. Writing to a pipe without a reader
    /// raises SIGPIPE unless the process ignores that signal.
    void writeData(const NSData& data);

    // - closeFile
    /// Nothing can be written afterwards; closing again does nothing.
    void closeFile();

private:
    int descriptor_;
};

} // namespace qrv
