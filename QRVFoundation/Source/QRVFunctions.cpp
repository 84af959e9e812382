#include "QRVFoundation/Source/QRVFunctions.h"

#include "Platform/Logging/NSLog.h"

#include <atomic>

namespace qrv {

namespace {

std::atomic<QRVLoggingDelegate*> loggingDelegate = nullptr;

} // namespace

const ClassInfo QRVFunctions::classInfo{"QRVFunctions", &Object::classInfo};

NSString describe(const char* file, unsigned long line, const id& object, const char* selector) {
    const NSString name = NSString::fromUTF8(file ? file : "").lastPathComponent();
    const NSString place = NSString::stringWithFormat(u"%@:%lu", name, line);
    if (!object || !selector) return NSString::stringWithFormat(u"%@ %@", place, NSString(u""));
    const char16_t marker = Class::of(object) == object ? u'+' : u'-';
    const NSString method = NSString::stringWithFormat(u"%C%@", marker, NSString::fromUTF8(selector));
    return NSString::stringWithFormat(u"%@ %@", place, method);
}

NSString QRVException::reason() const {
    return NSString::stringWithFormat(u"%@ at %@", qrvReason(),
                                      userInfo().objectForKey(NSString(QRVExceptionLocationKey)));
}

void QRVFunctions::raise(const NSString& location, const NSString& name, const NSDictionary& userInfo,
                         const NSString& reason) {
    NSMutableDictionary entries = userInfo.mutableCopy();
    entries.setObject_forKey(location, NSString(QRVExceptionLocationKey));
    throw QRVException(name ? name : NSString(QRVExceptionName), reason, std::move(entries).copy());
}

void QRVFunctions::failAssertion(const NSString& location, const NSString& message) {
    logString(NSString::stringWithFormat(u"%@: Assertion Failed: %@", location, message));
    raise(location, QRVAssertionFailedException, {}, message);
}

void QRVFunctions::logString(const NSString& string) {
    if (QRVLoggingDelegate* delegate = loggingDelegate) {
        delegate->logString(string);
    } else {
        NSLog(u"%@", string);
    }
}

void QRVFunctions::setLoggingDelegate(QRVLoggingDelegate* delegate) {
    loggingDelegate = delegate;
}

} // namespace qrv
