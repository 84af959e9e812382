#pragma once

// Writes log lines to the system log, for systems without the unified log.

#include "QRVFoundation/Source/QRVLogWriter.h"

namespace qrv {

class QRV_EXPORT QRVNSLogWriter : public QRVLogWriter {
public:
    // - writePrefix:message:area:
    /// Writes one line, however long; the area is not shown.
    void writePrefix_message_area(const NSString& prefix, const NSString& message,
                                  const NSString& area) override;
};

} // namespace qrv
