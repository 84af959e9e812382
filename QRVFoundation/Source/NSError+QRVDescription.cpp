#include "QRVFoundation/Source/NSError+QRVDescription.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "Platform/Logging/NSLog.h"
#include "QRVFoundation/Source/NSError+QRV.h"
#include "QRVFoundation/Source/NSException+QRVStackTrace.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

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

/// Describes values in one pass: whatever is inside another value is indented with it, each line of it.
class Describer {
public:
    NSString text() { return NSString(std::move(text_)); }

    void describe(const id& object) {
        if (const NSError error = as<NSError>(object)) return describe(error);
        ++depth_;
        if (const NSString string = as<NSString>(object)) {
            quote([&] { append(string.view()); });
        } else if (const NSArray array = as<NSArray>(object)) {
            list(u"(", array, u")", [&](const id& element) { describe(element); });
        } else if (const NSDictionary dictionary = as<NSDictionary>(object)) {
            entries(dictionary.entries());
        } else {
            append(
                object.description().stringByReplacingOccurrencesOfString_withString(u"\\n", u"\n").view());
        }
        --depth_;
    }

    void describe(const NSError& error) {
        if (!logsErrors_)
            logsErrors_ = NSUserDefaults::standardUserDefaults().boolForKey(u"ErrorShortLogging");
        if (*logsErrors_) NSLog(u"Error: %@", error);
        append(u"<NSError Domain=");
        append(error.domain().view());
        append(NSString::stringWithFormat(u" Code=%ld UserInfo=", error.code()).view());
        NSDictionary::Entries all = error.userInfo().entries();
        if (!error.userInfo().objectForKey(NSLocalizedDescriptionKey))
            all.emplace_back(NSLocalizedDescriptionKey, error.localizedDescription());
        ++depth_;
        entries(std::move(all), true);
        --depth_;
        append(u">");
    }

private:
    /// Of an error: the error beneath it stands as a text.
    void entries(NSDictionary::Entries sorted, bool isOfError = false) {
        std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) {
            return compareKeys(a.first, b.first) == NSOrderedAscending;
        });
        list(u"{", sorted, u"}", [&](const auto& entry) {
            append(entry.first.description().view());
            append(u" = ");
            const NSError underlying = isOfError && as<NSString>(entry.first) == NSUnderlyingErrorKey
                                           ? as<NSError>(entry.second)
                                           : NSError();
            if (!underlying) return describe(entry.second);
            ++depth_;
            quote([&] { describe(underlying); });
            --depth_;
        });
    }

    template <class List, class Describe>
    void list(std::u16string_view opening, const List& elements, std::u16string_view closing,
              const Describe& describeElement) {
        append(opening);
        bool isFirst = true;
        for (const auto& element : elements) {
            append(std::exchange(isFirst, false) ? u"\n" : u",\n");
            describeElement(element);
        }
        append(isFirst ? u"\n\n" : u"\n");
        append(closing);
    }

    template <class Write>
    void quote(const Write& write) {
        text_.push_back(u'"');
        write();
        text_.push_back(u'"');
    }

    void append(std::u16string_view part) {
        constexpr std::size_t indentation = 4;
        for (std::size_t end = part.find(u'\n'); end != part.npos; end = part.find(u'\n')) {
            text_.append(part, 0, end + 1).append(depth_ * indentation, u' ');
            part.remove_prefix(end + 1);
        }
        text_.append(part);
    }

    std::optional<bool> logsErrors_; // asked for when the first error comes
    std::size_t depth_ = 0;
    std::u16string text_;
};

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
    return prettyPrint(self);
}

NSString prettyPrint(const id& object) {
    if (!object) return {};
    Describer describer;
    describer.describe(object);
    return describer.text();
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
