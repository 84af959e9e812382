#include "QRVFoundation/Source/QRVLogger.h"

#include "Platform/Foundation/NSAssertionHandler.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSThread.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "QRVFoundation/Source/QRVNSLogWriter.h"
#include "QRVFoundation/Source/QRVOSLogWriter.h"

#include <algorithm>
#include <mutex>
#include <utility>

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

bool isTrue(const id& value) {
    const auto* boolean = value.payload<BooleanValue>();
    return boolean && boolean->boolValue();
}

/// Never destroyed: lines may be logged until the very end of the process.
const NSDictionary& settingsOfDisposableLogger() {
    static const auto& settings = *new NSDictionary{{QRVLoggerAllAreas, NSNumber::numberWithBool(true)}};
    return settings;
}

NSString text(const char* bytes) {
    return NSString::fromUTF8(bytes ? bytes : "");
}

} // namespace

const ClassInfo QRVLogger::classInfo{"QRVLogger", &Object::classInfo};

QRVLogger::Options::Options(const NSDictionary& settings)
    : prefix(settings.objectForKey(QRVLoggerPrefix)), switchedOn_{QRVLoggerIncludeArea} {
    for (const auto& [key, value] : settings) {
        const NSString name = as<NSString>(key);
        if (!name) continue;
        const auto place = std::lower_bound(switchedOn_.begin(), switchedOn_.end(), name);
        const bool isThere = place != switchedOn_.end() && *place == name;
        const bool shouldBe = isTrue(value);
        if (shouldBe && !isThere) switchedOn_.insert(place, name);
        if (!shouldBe && isThere) switchedOn_.erase(place);
    }
    allAreas = isOn(QRVLoggerAllAreas);
    includesFile = isOn(QRVLoggerIncludeFile);
    includesLine = isOn(QRVLoggerIncludeLine);
    includesThread = isOn(QRVLoggerIncludeThread);
    includesFunction = isOn(QRVLoggerIncludeFunction);
    includesArea = isOn(QRVLoggerIncludeArea);
}

bool QRVLogger::Options::isOn(std::u16string_view name) const {
    const auto place =
        std::lower_bound(switchedOn_.begin(), switchedOn_.end(), name,
                         [](const NSString& a, std::u16string_view b) { return a.view() < b; });
    return place != switchedOn_.end() && place->view() == name;
}

std::shared_ptr<QRVLogger> QRVLogger::sharedLogger() {
    {
        const std::lock_guard lock(slot().mutex);
        if (slot().logger) return slot().logger;
    }
    return initDisposableLogger();
}

std::shared_ptr<QRVLogger> QRVLogger::sharedLoggerForArea(const QRVLogArea& area) {
    {
        const std::lock_guard lock(slot().mutex);
        if (const auto& logger = slot().logger)
            return area.isNil() || logger->options_.hasArea(area.name()) ? logger : nullptr;
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
    return std::make_shared<QRVLogger>(settingsOfDisposableLogger());
}

std::shared_ptr<QRVLogger> QRVLogger::initWithPersistentDomainName(const NSString& name) {
    return std::make_shared<QRVLogger>(NSUserDefaults::standardUserDefaults().persistentDomainForName(name));
}

QRVLogger::QRVLogger(const NSDictionary& defaults) : QRVLogger(defaults, makeWriter()) {}

QRVLogger::QRVLogger(const NSDictionary& defaults, std::unique_ptr<QRVLogWriter> writer)
    : options_(defaults), _writer(std::move(writer)) {}

void QRVLogger::logFile_line_function_area_format_arguments(const char* file, unsigned long line,
                                                            const char* function, const NSString& area,
                                                            const NSString& format,
                                                            const FormatArguments& arguments) {
    log(file, line, function, area, NSString::stringWithFormat_arguments(format, arguments));
}

void QRVLogger::log(const char* file, unsigned long line, const char* function, const NSString& area,
                    const NSString& message) {
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
    return !area || options_.hasArea(area.view());
}

bool QRVLogger::isOptionEnabled(const NSString& key) const {
    return key && options_.isOn(key.view());
}

NSString QRVLogger::prefix(const char* file, unsigned long line, const char* function,
                           const NSString& area) const {
    std::u16string prefix;
    bool isFirst = true;
    const auto add = [&](auto... texts) {
        if (!std::exchange(isFirst, false)) prefix.push_back(u' ');
        (prefix.append(texts), ...);
    };
    if (options_.prefix) add(options_.prefix.description().view());
    if (area && options_.includesArea) add(u"[", area.view(), u"]");
    if (options_.includesFile) {
        const NSString name = text(file).lastPathComponent();
        if (options_.includesLine) {
            add(name.view(), u":", NSString::stringWithFormat(u"%lu", line).view());
        } else {
            add(name.view());
        }
    }
    if (options_.includesThread) add(threadPiece().view());
    if (options_.includesFunction) add(text(function).view());
    return NSString(std::move(prefix));
}

} // namespace qrv
