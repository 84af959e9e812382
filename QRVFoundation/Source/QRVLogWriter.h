#pragma once

// What a logger hands its lines to: a prefix, a message and an area, to be emitted. Writing is fire and
// forget, from any thread.

#include "Platform/Foundation/NSString.h"

namespace qrv {

/// Abstract.
class QRVLogWriter {
public:
    // - init
    /// Reads QRVIsInXcode from the environment.
    QRVLogWriter();
    virtual ~QRVLogWriter() = default;
    QRVLogWriter(const QRVLogWriter&) = delete;
    QRVLogWriter& operator=(const QRVLogWriter&) = delete;

    // - combinePrefix:andMessage:
    /// The two with one blank between them, also after an empty prefix; nil reads "(null)".
    NSString combinePrefix_andMessage(const NSString& prefix, const NSString& message) const;
    // - writePrefix:message:area:
    /// Emits one line; the area may be nil. Raises NSInvalidArgumentException unless overridden.
    virtual void writePrefix_message_area(const NSString& prefix, const NSString& message,
                                          const NSString& area);

protected:
    const bool _isInXcode;
};

} // namespace qrv
