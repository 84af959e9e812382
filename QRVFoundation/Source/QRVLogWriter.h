#pragma once

// Writes the lines of a logger: a prefix, a message and an area. Writing never reports failures. Any thread.

#include "Platform/Foundation/NSString.h"

namespace qrv {

/// The abstract base class of log writers.
class QRV_EXPORT QRVLogWriter {
public:
    // - init
    /// Reads QRVIsInXcode from the environment.
    QRVLogWriter();
    virtual ~QRVLogWriter() = default;
    QRVLogWriter(const QRVLogWriter&) = delete;
    QRVLogWriter& operator=(const QRVLogWriter&) = delete;

    // - combinePrefix:andMessage:
    /// Joins the two with one blank, also if the prefix is empty; nil is written as "(null)".
    NSString combinePrefix_andMessage(const NSString& prefix, const NSString& message) const;
    // - writePrefix:message:area:
    /// Writes one line; the area may be nil. Raises NSInvalidArgumentException unless overridden.
    virtual void writePrefix_message_area(const NSString& prefix, const NSString& message,
                                          const NSString& area);

protected:
    const bool _isInXcode;
};

} // namespace qrv
