#include "QRVFoundation/Source/NSError+QRV.h"

#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "QRVFoundation/Source/NSException+QRVStackTrace.h"

#include <cerrno>

namespace qrv {

namespace {

id orNilText(const id& object) {
    return object ? object : NSString(u"<nil>");
}

id orNull(const id& object) {
    return object ? object : NSNull::null();
}

NSError setting(const NSError& error, const id& object, const char16_t* key) {
    return qrvErrorBySettingObject_forKey(error, object, NSString(key));
}

NSString path(const NSURL& url) {
    return url ? url.path() : NSString();
}

} // namespace

NSError QRVError1(long long code, const NSDictionary& userInfo) {
    return NSError::errorWithDomain_code_userInfo(QRVErrorDomain, code, userInfo);
}

bool qrvHasDomain_code(const NSError& self, const NSString& domain, long long code) {
    return self.domain().isEqualToString(domain) && self.code() == code;
}

bool qrvIsFilePermissionsError(const NSError& self) {
    return qrvHasDomain_code(self, NSCocoaErrorDomain, NSFileWriteNoPermissionError) ||
           qrvHasDomain_code(self, NSCocoaErrorDomain, NSFileWriteUnknownError) ||
           qrvHasDomain_code(self, NSPOSIXErrorDomain, EACCES) ||
           qrvHasDomain_code(self, NSCocoaErrorDomain, EACCES);
}

NSError qrvErrorWithDomain_code_file_line_function_codeString_userInfo(const NSString& domain, long long code,
                                                                       const char* file, unsigned long line,
                                                                       const char* function,
                                                                       const char* codeString,
                                                                       const NSDictionary& userInfo) {
    NSMutableDictionary entries = userInfo.mutableCopy();
    entries.setObject_forKey(NSString::stringWithUTF8String(file), NSString(QRVFileKey));
    entries.setObject_forKey(NSNumber::numberWithUnsignedInteger(line), NSString(QRVLineKey));
    entries.setObject_forKey(NSString::stringWithUTF8String(function), NSString(QRVFunctionKey));
    entries.setObject_forKey(NSString::stringWithUTF8String(codeString), NSString(QRVCodeStringKey));
    return NSError::errorWithDomain_code_userInfo(domain, code, std::move(entries).copy());
}

NSError qrvRequirementFailedError(const NSString& requirement) {
    return qrvRequirementFailedError_userInfo(requirement, {});
}

NSError qrvRequirementFailedError_userInfo(const NSString& requirement, const NSDictionary& userInfo) {
    NSMutableDictionary entries = userInfo.mutableCopy();
    entries.setObject_forKey(
        NSString::stringWithFormat(u"The requirement \u201C%@\u201D was not satisfied.", requirement),
        NSString(NSLocalizedDescriptionKey));
    entries.setObject_forKey(requirement ? requirement : NSString(u""), NSString(QRVFailingObjectKey));
    if (qrvHasStackTraceSource()) {
        entries.setObject_forKey(orNilText(qrvCurrentStackTrace()),
                                 NSString(NSLocalizedRecoverySuggestionErrorKey));
    }
    return QRVError1(QRVRequirementErrorCode, std::move(entries).copy());
}

NSError qrvErrorWithCode_failingObject(long long code, const id& object) {
    return QRVError1(code, {{NSString(QRVFailingObjectKey), orNilText(object)}});
}

NSError qrvErrorWithUnsupportedKey_forURL(const id& key, const NSURL& url) {
    const NSError error = QRVError1(QRVUnsupportedKeyErrorCode, {{NSString(QRVFailingKeyKey), key}});
    return qrvErrorBySettingFileURL(error, url);
}

NSError qrvErrorWithFailingObject_expectedClass_forURL(const id& object, const Class& expectedClass,
                                                       const NSURL& url) {
    const NSError error =
        NSError::errorWithDomain_code_userInfo(NSCocoaErrorDomain, NSFileReadCorruptFileError,
                                               {{NSString(NSFilePathErrorKey), orNilText(path(url))}});
    return qrvErrorBySettingFailingObject_expectedClass(error, object, expectedClass);
}

NSError qrvErrorWithActualValue_expectedValue_forKey(const id& actual, const id& expected, const id& key) {
    const NSString description = NSString::stringWithFormat(
        u"The value for %@ was expected to be %@ but was %@.", key, expected, actual);
    return QRVError1(QRVValueErrorCode, {{NSString(QRVActualValueKey), orNilText(actual)},
                                         {NSString(QRVExpectedValueKey), orNilText(expected)},
                                         {NSString(QRVFailingKeyKey), orNilText(key)},
                                         {NSString(NSLocalizedDescriptionKey), description}});
}

bool qrvCheckValue_matchesValue_forKey_error(const id& actual, const id& expected, const id& key,
                                             NSError* error) {
    if (actual.isEqual(expected)) return true;
    const NSError mismatch = qrvErrorWithActualValue_expectedValue_forKey(actual, expected, key);
    setError(error, qrvErrorByAddingStackFrame_line(
                        mismatch, "+[NSError(QRV) qrvCheckValue:matchesValue:forKey:error:]", __LINE__));
    return false;
}

NSError qrvErrorBySettingObject_forKey(const NSError& self, const id& object, const id& key) {
    if (!self || !key) return self;
    NSMutableDictionary entries = self.userInfo().mutableCopy();
    entries.setObject_forKey(orNilText(object), key);
    return NSError::errorWithDomain_code_userInfo(self.domain(), self.code(), std::move(entries).copy());
}

NSError qrvErrorByAddingUserInfo(const NSError& self, const NSDictionary& userInfo) {
    NSError error = self;
    for (const auto& [key, value] : userInfo) error = qrvErrorBySettingObject_forKey(error, value, key);
    return error;
}

NSError qrvErrorBySettingMode_forKey(const NSError& self, std::uint32_t mode, const id& key) {
    return qrvErrorBySettingObject_forKey(self, NSString::stringWithFormat(u"%o", mode), key);
}

NSError qrvErrorBySettingFilePath(const NSError& self, const NSString& path) {
    return setting(self, path, NSFilePathErrorKey);
}

NSError qrvErrorBySettingFileURL(const NSError& self, const NSURL& url) {
    return setting(self, url ? path(url.absoluteURL()) : NSString(), NSFilePathErrorKey);
}

NSError qrvErrorBySettingCFilePath(const NSError& self, const char* path) {
    return setting(self, path ? NSString::fromFileSystem(path) : NSString(), NSFilePathErrorKey);
}

NSError qrvErrorBySettingURL(const NSError& self, const NSURL& url) {
    return setting(self, url, NSURLErrorKey);
}

NSError qrvErrorBySettingDestinationFilePath(const NSError& self, const NSString& path) {
    return setting(self, path, QRVDestinationFilePathKey);
}

NSError qrvErrorByAddingStackFrame_line(const NSError& self, const char* function, unsigned long line) {
    const NSString frame =
        NSString::stringWithFormat(u"%@ (%lu)", NSString::stringWithUTF8String(function), line);
    std::vector<id> frames{frame};
    const NSArray older = as<NSArray>(self.userInfo().objectForKey(NSString(QRVStackFramesKey)));
    frames.insert(frames.end(), older.begin(), older.end());
    return setting(self, NSArray(std::move(frames)), QRVStackFramesKey);
}

NSError qrvErrorBySettingDescription(const NSError& self, const NSString& description) {
    return setting(self, description, NSLocalizedDescriptionKey);
}

NSError qrvErrorBySettingRecoverySuggestion(const NSError& self, const NSString& suggestion) {
    return setting(self, suggestion, NSLocalizedRecoverySuggestionErrorKey);
}

NSError qrvErrorBySettingUnderlyingError(const NSError& self, const NSError& error) {
    return setting(self, error, NSUnderlyingErrorKey);
}

NSError qrvErrorBySettingUnderlyingReason(const NSError& self, const id& reason) {
    return setting(self, reason, QRVUnderlyingReasonKey);
}

NSError qrvErrorBySettingFailingObject(const NSError& self, const id& object) {
    return setting(self, orNull(object), QRVFailingObjectKey);
}

NSError qrvErrorBySettingFailingObject_expectedClass(const NSError& self, const id& object,
                                                     const Class& expectedClass) {
    const NSError failing = qrvErrorBySettingFailingObject(self, object);
    const NSError expected = setting(failing, expectedClass, QRVExpectedTypeKey);
    return setting(expected, orNull(Class::of(object)), QRVActualTypeKey);
}

NSError qrvErrorBySettingArguments(const NSError& self, const id& arguments) {
    return setting(self, orNull(arguments), QRVArgumentsKey);
}

NSError qrvErrorBySettingHelpAnchor(const NSError& self, const NSString& anchor) {
    return setting(self, anchor ? anchor : NSString(u""), NSHelpAnchorErrorKey);
}

} // namespace qrv
