#pragma once

// Optional hooks for stack traces. The library provides none itself: an exception class may implement the
// interfaces, and a program may install a source for the current trace.

#include "Platform/Foundation/NSException.h"

namespace qrv {

/// For exceptions that know where they were raised.
struct QRV_EXPORT QRVStackTraceSupplier {
    virtual ~QRVStackTraceSupplier() = default;
    // - qrvStackTrace
    /// nil means the current stack trace.
    virtual NSString qrvStackTrace() const = 0;
};

/// For exceptions that also have a shortened trace.
struct QRV_EXPORT QRVShortStackTraceSupplier {
    virtual ~QRVShortStackTraceSupplier() = default;
    // - qrvShortStackTrace
    virtual NSString qrvShortStackTrace() const = 0;
};

using QRVStackTraceSource = NSString (*)();

/// Installs the source that `qrvCurrentStackTrace` uses; null removes it. To be called once at start-up.
QRV_EXPORT void qrvSetStackTraceSource(QRVStackTraceSource source);
/// Whether a source is installed.
QRV_EXPORT bool qrvHasStackTraceSource();

// + qrvCurrentStackTrace
/// Returns the calling thread's trace. Raises NSInvalidArgumentException if no source is installed.
QRV_EXPORT NSString qrvCurrentStackTrace();

} // namespace qrv
