// A logger by settings, a writer of one's own, and log statements.

// [headers]
#include "Platform/Foundation/NSNumber.h"
#include "QRVFoundation/Source/QRVLog.h"
// [headers]

#include <iostream>

using namespace qrv;

namespace {

// [statement]
constexpr char16_t LogTides[] = u"LogTides";
constexpr char16_t LogShips[] = u"LogShips";

void logSomething() {
    QRV_LOG("Harbour", __func__, LogTides, u"high water at %02d:%02d", 9, 5);
    QRV_LOG("Harbour", __func__, LogShips, u"%@ has sailed", NSString(u"Anna"));
    QRV_LOG("Harbour", __func__, nullptr, u"an area of nil is always enabled");
}

// [statement]

// [writer]
/// Writes each line to standard output.
class StandardOutputWriter : public QRVLogWriter {
public:
    void writePrefix_message_area(const NSString& prefix, const NSString& message,
                                  const NSString& /*area*/) override {
        std::cout << combinePrefix_andMessage(prefix, message).utf8() + '\n' << std::flush;
    }
};

// [writer]

} // namespace

int main() {
    // [domain]
    QRVLogger::setUpWithPersistentDomainName(u"org.example.Logging");
    logSomething();
    // [domain]

    // [options]
    const NSNumber on = NSNumber::numberWithBool(true);
    const NSDictionary options{{LogShips, on}, {QRVLoggerIncludeFile, on}, {QRVLoggerPrefix, u"harbour:"}};
    QRVLogger::setSharedLogger(
        std::make_shared<QRVLogger>(options, std::make_unique<StandardOutputWriter>()));
    logSomething();
    // [options]
}
