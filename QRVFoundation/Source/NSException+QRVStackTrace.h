#pragma once

// Optional hooks for stack traces. The library uses them where they are there and provides none: an
// exception class of one's own implements the interfaces, a program installs a source for the current trace.

#include "Platform/Foundation/NSException.h"

namespace qrv {

/// For exceptions that know where they were raised.
struct QRVStackTraceSupplier {
    virtual ~QRVStackTraceSupplier() = default;
    // - qrvStackTrace
    /// nil stands for the current stack trace.
    virtual NSString qrvStackTrace() const = 0;
};

/// For exceptions that also have a shortened trace.
struct QRVShortStackTraceSupplier {
    virtual ~QRVShortStackTraceSupplier() = default;
    // - qrvShortStackTrace
    virtual NSString qrvShortStackTrace() const = 0;
};

using QRVStackTraceSource = NSString (*)();

/// Installs what `qrvCurrentStackTrace` answers; null removes it. To be set once at start-up.
void qrvSetStackTraceSource(QRVStackTraceSource source);
/// Whether a source is installed.
bool qrvHasStackTraceSource();

// + qrvCurrentStackTrace
/// The trace of the calling thread. Raises NSInvalidArgumentException when no source is installed.
NSString qrvCurrentStackTrace();

} // namespace qrv
