#include "QRVFoundation/Source/NSException+QRVStackTrace.h"

#include <atomic>

namespace qrv {

namespace {

std::atomic<QRVStackTraceSource> currentSource = nullptr;

} // namespace

void qrvSetStackTraceSource(QRVStackTraceSource source) {
    currentSource = source;
}

bool qrvHasStackTraceSource() {
    return currentSource != nullptr;
}

NSString qrvCurrentStackTrace() {
    const QRVStackTraceSource source = currentSource;
    if (!source) NSException::doesNotRecognizeSelector(u"NSException", u"qrvCurrentStackTrace");
    return source();
}

} // namespace qrv
