#pragma once

// The macro that log statements use.
//
//     QRV_LOG("Source/Tools/web2pdf", "int main(int, char **)", u"LogWeb2PDF", u"started with %@", path);

#include "QRVFoundation/Source/QRVLogger.h"

/// Logs a line of the area (nil is always enabled) with the given source unit and function and the line of
/// the call. The format and its arguments are evaluated only if the area is enabled.
#define QRV_LOG(unit, function, area, ...)                                                                   \
    do {                                                                                                     \
        const ::qrv::QRVLogArea qrvArea = (area);                                                            \
        if (const std::shared_ptr<::qrv::QRVLogger> qrvLogger =                                              \
                ::qrv::QRVLogger::sharedLoggerForArea(qrvArea)) {                                            \
            qrvLogger->logFile_line_function_area_format(unit, __LINE__, function, qrvArea.string(),         \
                                                         __VA_ARGS__);                                       \
        }                                                                                                    \
    } while (false)
