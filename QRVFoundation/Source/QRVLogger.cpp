#include "QRVFoundation/Source/QRVLogger.h"

#include "Platform/Foundation/NSAssertionHandler.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSThread.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "QRVFoundation/Source/QRVNSLogWriter.h"
#include "QRVFoundation/Source/QRVOSLogWriter.h"

#include <mutex>

namespace qrv {

namespace {

/// The shared logger and its lock. Never destroyed: lines may be logged until the very end of the process.
struct Slot {
    std::mutex mutex;
    std::shared_ptr<QRVLogger> logger;
};

Slot& slot() {
    static Slot& instance = *new Slot;
    return instance;
}

NSDictionary withDefaults(const NSDictionary& settings) {
    NSMutableDictionary all;
    for (const char16_t* key :
         {QRVLoggerIncludeFile, QRVLoggerIncludeLine, QRVLoggerIncludeThread, QRVLoggerIncludeFunction}) {
        all.setObject_forKey(NSNumber::numberWithBool(false), NSString(key));
    }
    all.setObject_forKey(NSNumber::numberWithBool(true), NSString(QRVLoggerIncludeArea));
    all.addEntriesFromDictionary(settings);
    return std::move(all).copy();
}

std::unique_ptr<QRVLogWriter> makeWriter() {
    if (QRVOSLogWriter::isOSLogAvailable()) return std::make_unique<QRVOSLogWriter>();
    return std::make_unique<QRVNSLogWriter>();
}

/// `<main: "name">` or `<0xaddress: "name">`.
NSString threadPiece() {
    const NSThread thread = NSThread::currentThread();
    if (NSThread::isMainThread()) return NSString::stringWithFormat(u"<main: \"%@\">", thread.name());
    return NSString::stringWithFormat(u"<%p: \"%@\">", thread.address(), thread.name());
}

NSString text(const char* bytes) {
    return NSString::fromUTF8(bytes ? bytes : "");
}

} // namespace

const ClassInfo QRVLogger::classInfo{"QRVLogger", &Object::classInfo};

std::shared_ptr<QRVLogger> QRVLogger::sharedLogger() {
    {
        const std::lock_guard lock(slot().mutex);
        if (slot().logger) return slot().logger;
    }
    return initDisposableLogger();
}

void QRVLogger::setSharedLogger(std::shared_ptr<QRVLogger> logger) {
    // The old logger is destroyed after the new one is in place and the lock is released.
    const std::lock_guard lock(slot().mutex);
    slot().logger.swap(logger);
}

void QRVLogger::setUpWithPersistentDomainName(const NSString& name) {
    setSharedLogger(initWithPersistentDomainName(name));
}

QRVLogger::QRVLogger() : QRVLogger(NSUserDefaults::standardUserDefaults().dictionaryRepresentation()) {}

std::shared_ptr<QRVLogger> QRVLogger::initDisposableLogger() {
    return std::make_shared<QRVLogger>(
        NSDictionary{{NSString(QRVLoggerAllAreas), NSNumber::numberWithBool(true)}});
}

std::shared_ptr<QRVLogger> QRVLogger::initWithPersistentDomainName(const NSString& name) {
    return std::make_shared<QRVLogger>(NSUserDefaults::standardUserDefaults().persistentDomainForName(name));
}

QRVLogger::QRVLogger(const NSDictionary& defaults) : QRVLogger(defaults, makeWriter()) {}

QRVLogger::QRVLogger(const NSDictionary& defaults, std::unique_ptr<QRVLogWriter> writer)
    : _defaultsDictionary(withDefaults(defaults)), _writer(std::move(writer)) {}

void QRVLogger::logFile_line_function_area_format_arguments(const char* file, unsigned long line,
                                                            const char* function, const NSString& area,
                                                            const NSString& format,
                                                            const FormatArguments& arguments) {
    const NSString message = NSString::stringWithFormat_arguments(format, arguments);
    logPrefix_message_area(prefix(file, line, function, area), message, area);
}

void QRVLogger::logFile_line_function_area_message(const char* file, unsigned long line, const char* function,
                                                   const NSString& area, const id& message) {
    logFile_line_function_area_format(file, line, function, area, u"%@", message);
}

void QRVLogger::logPrefix_message_area(const NSString& prefix, const NSString& message,
                                       const NSString& area) {
    if (!prefix) {
        NSAssertionHandler::currentHandler().handleFailureInMethod_object_file_lineNumber_description(
            u"logPrefix:message:area:", id(weak_from_this().lock()), u"QRVFoundation/Source/QRVLogger",
            __LINE__, u"Invalid parameter not satisfying: %@", NSString(u"prefix"));
    }
    _writer->writePrefix_message_area(prefix, message, area);
}

bool QRVLogger::isEnabledForArea(const NSString& area) const {
    return !area || isOptionEnabled(QRVLoggerAllAreas) || isOptionEnabled(area);
}

bool QRVLogger::isOptionEnabled(const NSString& key) const {
    const id value = _defaultsDictionary.objectForKey(key);
    const auto* boolean = value.payload<BooleanValue>();
    return boolean && boolean->boolValue();
}

NSString QRVLogger::prefix(const char* file, unsigned long line, const char* function,
                           const NSString& area) const {
    std::vector<id> pieces;
    const id fixedText = _defaultsDictionary.objectForKey(NSString(QRVLoggerPrefix));
    if (fixedText) pieces.push_back(fixedText);
    if (area && isOptionEnabled(QRVLoggerIncludeArea)) {
        pieces.push_back(NSString::stringWithFormat(u"[%@]", area));
    }
    if (isOptionEnabled(QRVLoggerIncludeFile)) {
        NSString place = text(file).lastPathComponent();
        if (isOptionEnabled(QRVLoggerIncludeLine)) place = NSString::stringWithFormat(u"%@:%lu", place, line);
        pieces.push_back(place);
    }
    if (isOptionEnabled(QRVLoggerIncludeThread)) pieces.push_back(threadPiece());
    if (isOptionEnabled(QRVLoggerIncludeFunction)) pieces.push_back(text(function));
    return NSArray(std::move(pieces)).componentsJoinedByString(u" ");
}

} // namespace qrv
