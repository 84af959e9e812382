#include "QRVFoundation/Source/NSError+QRVDescription.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "Platform/Logging/NSLog.h"
#include "QRVFoundation/Source/NSError+QRV.h"
#include "QRVFoundation/Source/NSException+QRVStackTrace.h"

#include <algorithm>
#include <string_view>

namespace qrv {

namespace {

NSComparisonResult compareKeys(const id& a, const id& b) {
    if (const NSNumber number = as<NSNumber>(a); number && b.isKindOfClass(NSNumber::classInfo())) {
        return number.compare(as<NSNumber>(b));
    }
    if (const NSDate date = as<NSDate>(a); date && b.isKindOfClass(NSDate::classInfo())) {
        return date.compare(as<NSDate>(b));
    }
    // Keys are strings; any others are ordered by their text.
    return a.description().compare(b.description());
}

NSString joined(const std::vector<id>& pieces) {
    return NSArray(pieces).componentsJoinedByString(u",\n");
}

NSString printedArray(const NSArray& array) {
    std::vector<id> elements;
    for (const id& element : array) elements.push_back(prettyPrint(element));
    return NSString::stringWithFormat(u"(\n%@\n)", joined(elements));
}

NSString printedDictionary(const NSDictionary& dictionary) {
    NSDictionary::Entries sorted = dictionary.entries();
    std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) {
        return compareKeys(a.first, b.first) == NSOrderedAscending;
    });
    std::vector<id> entries;
    for (const auto& [key, value] : sorted) {
        entries.push_back(NSString::stringWithFormat(u"%@ = %@", key, prettyPrint(value)));
    }
    return NSString::stringWithFormat(u"{\n%@\n}", joined(entries));
}

NSString printed(const id& object) {
    if (const NSString string = as<NSString>(object)) return NSString::stringWithFormat(u"\"%@\"", string);
    if (const NSArray array = as<NSArray>(object)) return printedArray(array);
    if (const NSDictionary dictionary = as<NSDictionary>(object)) return printedDictionary(dictionary);
    return object.description().stringByReplacingOccurrencesOfString_withString(u"\\n", u"\n");
}

/// "name - reason", then the trace.
NSString failureReason(const NSException& exception, const NSString& trace) {
    return NSString::stringWithFormat(u"%@ - %@\nStack Trace: %@", exception.name(), exception.reason(),
                                      trace);
}

NSString stackTrace(const NSException& exception) {
    const auto* supplier = dynamic_cast<const QRVStackTraceSupplier*>(&exception);
    if (!supplier) return u"<unknown>";
    const NSString trace = supplier->qrvStackTrace();
    return trace ? trace : qrvCurrentStackTrace();
}

bool isOfClassNamed(const id& object, std::string_view name) {
    for (const ClassInfo* info = object.objectClass(); info; info = info->superclass) {
        if (info->name == name) return true;
    }
    return false;
}

id archivable(const id& value) {
    if (const NSError error = as<NSError>(value)) return qrvArchivableError(error);
    // Objects of other programs become text even if they can be archived.
    if (isOfClassNamed(value, "SBObject") || isOfClassNamed(value, "NSAppleEventDescriptor") ||
        !value.payload<NSCoding>()) {
        return value.description();
    }
    return value;
}

} // namespace

NSString qrvFullDescription(const NSError& self) {
    if (!self) return {};
    if (NSUserDefaults::standardUserDefaults().boolForKey(u"ErrorShortLogging")) NSLog(u"Error: %@", self);

    NSMutableDictionary entries = self.userInfo().mutableCopy();
    const auto addMissing = [&](const char16_t* key, const NSString& value) {
        const NSString name = key;
        if (value && !entries.objectForKey(name)) entries.setObject_forKey(value, name);
    };
    addMissing(NSLocalizedDescriptionKey, self.localizedDescription());
    addMissing(NSLocalizedFailureReasonErrorKey, self.localizedFailureReason());
    addMissing(NSLocalizedRecoverySuggestionErrorKey, self.localizedRecoverySuggestion());

    const NSString underlyingKey = NSUnderlyingErrorKey;
    if (const NSError underlying = as<NSError>(entries.objectForKey(underlyingKey))) {
        entries.setObject_forKey(qrvFullDescription(underlying), underlyingKey);
    }
    return NSString::stringWithFormat(u"<NSError Domain=%@ Code=%ld UserInfo=%@>", self.domain(), self.code(),
                                      prettyPrint(std::move(entries).copy()));
}

NSString prettyPrint(const id& object) {
    if (!object) return {};
    if (const NSError error = as<NSError>(object)) return qrvFullDescription(error);
    return printed(object).stringByReplacingOccurrencesOfString_withString(u"\n", u"\n    ");
}

NSError qrvErrorFromException(const NSException& exception) {
    NSMutableDictionary entries = exception.userInfo().mutableCopy();
    entries.setObject_forKey(exception.name(), NSString(NSLocalizedDescriptionKey));
    entries.setObject_forKey(failureReason(exception, stackTrace(exception)),
                             NSString(NSLocalizedFailureReasonErrorKey));
    if (const auto* supplier = dynamic_cast<const QRVShortStackTraceSupplier*>(&exception)) {
        entries.setObject_forKey(failureReason(exception, supplier->qrvShortStackTrace()),
                                 NSString(QRVShortFailureReasonKey));
    }
    entries.setObject_forKey(exception.reason(), NSString(NSLocalizedRecoverySuggestionErrorKey));
    // The flags QRVIsMacAppStoreVersion and QRVIsInAppSandbox would be set by process-information objects
    // that provide them. None does (the library asks its own questions without an object), so neither is ever
    // set.
    return QRVError1(QRVExceptionErrorCode, std::move(entries).copy());
}

NSError qrvArchivableError(const NSError& self) {
    if (!self) return {};
    NSMutableDictionary entries;
    for (const auto& [key, value] : self.userInfo()) entries.setObject_forKey(archivable(value), key);
    return NSError::errorWithDomain_code_userInfo(self.domain(), self.code(), std::move(entries).copy());
}

} // namespace qrv
