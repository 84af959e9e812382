// Logs as many lines as its argument says, through a shared logger: ManyLines COUNT

#include "QRVFoundation/Source/QRVLog.h"

#include <cstdlib>

int main(int argc, char** argv) {
    const int count = argc > 1 ? std::atoi(argv[1]) : 0;
    qrv::QRVLogger::setSharedLogger(qrv::QRVLogger::initDisposableLogger());
    for (int i = 0; i < count; ++i) QRV_LOG("ManyLines", __func__, u"Area", u"line %d", i);
}
