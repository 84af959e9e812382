#pragma once

// The library's errors: a domain with codes and user-info keys, constructors, and operations that copy an
// error with one more key. Errors are immutable: adding information returns a new error with the receiver's
// domain and code.
//
//     setError(error, qrvErrorBySettingFilePath(QRVError1(500, {}), path));
//
// A nil receiver gives false or nil. Every operation may be called from any thread.

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURL.h"

#include <cstdint>

namespace qrv {

inline constexpr char16_t QRVErrorDomain[] = u"QRVErrorDomain";

// Codes of QRVErrorDomain.

inline constexpr long long QRVExceptionErrorCode = 5;
inline constexpr long long QRVDecodingErrorCode = 500;
inline constexpr long long QRVEncodingErrorCode = 501;
inline constexpr long long QRVRequirementErrorCode = 901;
inline constexpr long long QRVUnsupportedKeyErrorCode = 1001;
inline constexpr long long QRVValueErrorCode = 2000;

// Keys of a user-info.

inline constexpr char16_t QRVFileKey[] = u"QRVFile";
inline constexpr char16_t QRVLineKey[] = u"QRVLine";
inline constexpr char16_t QRVFunctionKey[] = u"QRVFunction";
inline constexpr char16_t QRVCodeStringKey[] = u"QRVCodeString";
inline constexpr char16_t QRVFailingObjectKey[] = u"QRVFailingObject";
inline constexpr char16_t QRVStackFramesKey[] = u"QRVStackFrames";
inline constexpr char16_t QRVUnderlyingReasonKey[] = u"QRVUnderlyingReason";
inline constexpr char16_t QRVExpectedTypeKey[] = u"QRVExpectedType";
inline constexpr char16_t QRVActualTypeKey[] = u"QRVActualType";
inline constexpr char16_t QRVArgumentsKey[] = u"QRVArguments";
inline constexpr char16_t QRVFailingKeyKey[] = u"QRVFailingKey";
inline constexpr char16_t QRVActualValueKey[] = u"QRVActualValue";
inline constexpr char16_t QRVExpectedValueKey[] = u"QRVExpectedValue";
inline constexpr char16_t QRVShortFailureReasonKey[] = u"QRVShortFailureReason";
inline constexpr char16_t QRVIsMacAppStoreVersionKey[] = u"QRVIsMacAppStoreVersion";
inline constexpr char16_t QRVIsInAppSandboxKey[] = u"QRVIsInAppSandbox";
inline constexpr char16_t QRVInputObjectKey[] = u"QRVInputObject";
inline constexpr char16_t QRVStringKey[] = u"QRVString";
inline constexpr char16_t QRVStringEncodingKey[] = u"QRVStringEncoding";
inline constexpr char16_t QRVDestinationFilePathKey[] = u"NSDestinationFilePath";

/// Makes an error of QRVErrorDomain. A nil user-info counts as empty.
QRV_EXPORT NSError QRVError1(long long code, const NSDictionary& userInfo);

// Queries.

// - qrvHasDomain:code:
/// False for a nil domain.
QRV_EXPORT bool qrvHasDomain_code(const NSError& self, const NSString& domain, long long code);
// - qrvIsFilePermissionsError
/// True for the Cocoa codes 513, 512 and 13 and for POSIX code 13, but not for the Cocoa read-permission code
/// 257.
QRV_EXPORT bool qrvIsFilePermissionsError(const NSError& self);

// Constructors.

// + qrvErrorWithDomain:code:file:line:function:codeString:userInfo:
/// Adds the source location to the user-info, which may be nil. A nil domain, and a null file, function or
/// code string or one that is not UTF-8, raise NSInvalidArgumentException.
QRV_EXPORT NSError qrvErrorWithDomain_code_file_line_function_codeString_userInfo(
    const NSString& domain, long long code, const char* file, unsigned long line, const char* function,
    const char* codeString, const NSDictionary& userInfo);
// + qrvRequirementFailedError:
QRV_EXPORT NSError qrvRequirementFailedError(const NSString& requirement);
// + qrvRequirementFailedError:userInfo:
/// Code 901; a nil requirement is stored as the empty string. If a source for stack traces is installed
/// (NSException+QRVStackTrace.h), the current one becomes the recovery suggestion.
QRV_EXPORT NSError qrvRequirementFailedError_userInfo(const NSString& requirement,
                                                      const NSDictionary& userInfo);
// + qrvErrorWithCode:failingObject:
/// A nil object is stored as "<nil>".
QRV_EXPORT NSError qrvErrorWithCode_failingObject(long long code, const id& object);
// + qrvErrorWithUnsupportedKey:forURL:
/// Code 1001. A nil key raises NSInvalidArgumentException; a nil URL stores "<nil>" as the file path.
QRV_EXPORT NSError qrvErrorWithUnsupportedKey_forURL(const id& key, const NSURL& url);
// + qrvErrorWithFailingObject:expectedClass:forURL:
/// Cocoa code 259. A nil URL, or one without a path, stores "<nil>" as the file path.
QRV_EXPORT NSError qrvErrorWithFailingObject_expectedClass_forURL(const id& object,
                                                                  const Class& expectedClass,
                                                                  const NSURL& url);
// + qrvErrorWithActualValue:expectedValue:forKey:
/// Code 2000. nil arguments are stored as "<nil>" and described as "(null)".
QRV_EXPORT NSError qrvErrorWithActualValue_expectedValue_forKey(const id& actual, const id& expected,
                                                                const id& key);
// + qrvCheckValue:matchesValue:forKey:error:
/// True if the actual value's isEqual accepts the expected one, which nil never does; otherwise false and the
/// value error with one stack frame.
QRV_EXPORT bool qrvCheckValue_matchesValue_forKey_error(const id& actual, const id& expected, const id& key,
                                                        NSError* error);

// Copies with one more key. They are plain errors, whatever the receiver's class; a nil value is stored as
// "<nil>" unless said otherwise.

// - qrvErrorBySettingObject:forKey:
/// A nil key sets nothing.
QRV_EXPORT NSError qrvErrorBySettingObject_forKey(const NSError& self, const id& object, const id& key);
// - qrvErrorByAddingUserInfo:
/// A nil or empty dictionary returns the receiver itself.
QRV_EXPORT NSError qrvErrorByAddingUserInfo(const NSError& self, const NSDictionary& userInfo);
// - qrvErrorBySettingMode:forKey:
/// Stores the mode in octal digits: 0644 as "644".
QRV_EXPORT NSError qrvErrorBySettingMode_forKey(const NSError& self, std::uint32_t mode, const id& key);
// - qrvErrorBySettingFilePath:
QRV_EXPORT NSError qrvErrorBySettingFilePath(const NSError& self, const NSString& path);
// - qrvErrorBySettingFileURL:
QRV_EXPORT NSError qrvErrorBySettingFileURL(const NSError& self, const NSURL& url);
// - qrvErrorBySettingCFilePath:
/// Bytes that are not UTF-8 become U+FFFD; a null pointer counts as nil.
QRV_EXPORT NSError qrvErrorBySettingCFilePath(const NSError& self, const char* path);
// - qrvErrorBySettingURL:
QRV_EXPORT NSError qrvErrorBySettingURL(const NSError& self, const NSURL& url);
// - qrvErrorBySettingDestinationFilePath:
QRV_EXPORT NSError qrvErrorBySettingDestinationFilePath(const NSError& self, const NSString& path);
// - qrvErrorByAddingStackFrame:line:
/// Puts "function (line)" before the existing frames; a null function is written as "(null)".
QRV_EXPORT NSError qrvErrorByAddingStackFrame_line(const NSError& self, const char* function,
                                                   unsigned long line);
// - qrvErrorBySettingDescription:
QRV_EXPORT NSError qrvErrorBySettingDescription(const NSError& self, const NSString& description);
// - qrvErrorBySettingRecoverySuggestion:
QRV_EXPORT NSError qrvErrorBySettingRecoverySuggestion(const NSError& self, const NSString& suggestion);
// - qrvErrorBySettingUnderlyingError:
QRV_EXPORT NSError qrvErrorBySettingUnderlyingError(const NSError& self, const NSError& error);
// - qrvErrorBySettingUnderlyingReason:
QRV_EXPORT NSError qrvErrorBySettingUnderlyingReason(const NSError& self, const id& reason);
// - qrvErrorBySettingFailingObject:
/// nil is stored as the null object.
QRV_EXPORT NSError qrvErrorBySettingFailingObject(const NSError& self, const id& object);
// - qrvErrorBySettingFailingObject:expectedClass:
/// Also stores the expected class and the object's own class; for a nil object both are the null object.
QRV_EXPORT NSError qrvErrorBySettingFailingObject_expectedClass(const NSError& self, const id& object,
                                                                const Class& expectedClass);
// - qrvErrorBySettingArguments:
/// nil is stored as the null object.
QRV_EXPORT NSError qrvErrorBySettingArguments(const NSError& self, const id& arguments);
// - qrvErrorBySettingHelpAnchor:
/// nil is stored as the empty string.
QRV_EXPORT NSError qrvErrorBySettingHelpAnchor(const NSError& self, const NSString& anchor);

} // namespace qrv
