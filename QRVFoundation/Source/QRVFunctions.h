#pragma once

// Programming errors: exceptions that carry their source location, failed assertions, and simple diagnostic
// lines through a replaceable sink.
//
//     if (!(key)) QRVFunctions::assertionFailedForFile_line_object_selector_format(
//         "QRVFoundation/Source/Unit", __LINE__, self, "objectForKey:", u"No key for %@", object);
//
// `file` is a source path and `selector` a method's name, both null-terminated UTF-8; a null file counts as
// empty, a null selector as none. Every operation may be called from any thread.

#include "Platform/Foundation/NSException.h"

namespace qrv {

inline constexpr char16_t QRVExceptionName[] = u"QRVException";
inline constexpr char16_t QRVAssertionFailedException[] = u"QRVAssertionFailedException";
/// Key of an exception's user-info: the location where it was raised, in the form of `describe`.
inline constexpr char16_t QRVExceptionLocationKey[] = u"QRVExceptionLocation";

/// Returns "file:line -selector" with the last component of the path, and "+" if the object is a class;
/// "file:line " with a trailing blank if there is no object or selector.
QRV_EXPORT NSString describe(const char* file, unsigned long line, const id& object, const char* selector);

/// The exception that QRVFunctions raises.
class QRV_EXPORT QRVException : public NSException {
public:
    using NSException::NSException;

    // - reason
    /// "reason at location".
    NSString reason() const override;

    // - qrvReason
    /// The reason without the location.
    NSString qrvReason() const { return NSException::reason(); }
};

/// Receives the diagnostic lines instead of the system log.
struct QRV_EXPORT QRVLoggingDelegate {
    virtual ~QRVLoggingDelegate() = default;
    // - logString:
    virtual void logString(const NSString& string) = 0;
};

class QRV_EXPORT QRVFunctions {
public:
    static const ClassInfo classInfo;

    QRVFunctions() = delete;

    // + raiseFile:line:object:selector:name:userInfo:format:
    /// Raises a QRVException with the expanded format as its reason, under the name ("QRVException" if nil),
    /// with the user-info (which may be nil) and the location.
    template <class... Arguments>
    [[noreturn]] static void raiseFile_line_object_selector_name_userInfo_format(
        const char* file, unsigned long line, const id& object, const char* selector, const NSString& name,
        const NSDictionary& userInfo, FormatFor<Arguments...> format, const Arguments&... arguments) {
        raise(describe(file, line, object, selector), name, userInfo,
              NSString::expanded(format, PassedFormatArguments(arguments...)));
    }

    // + assertionFailedForFile:line:object:selector:format:
    /// Logs "location: Assertion Failed: message" and raises a QRVAssertionFailedException with the message
    /// as its reason.
    template <class... Arguments>
    [[noreturn]] static void
    assertionFailedForFile_line_object_selector_format(const char* file, unsigned long line, const id& object,
                                                       const char* selector, FormatFor<Arguments...> format,
                                                       const Arguments&... arguments) {
        failAssertion(describe(file, line, object, selector),
                      NSString::expanded(format, PassedFormatArguments(arguments...)));
    }

    // + logFile:line:object:selector:format:
    /// Logs "location] message".
    template <class... Arguments>
    static void logFile_line_object_selector_format(const char* file, unsigned long line, const id& object,
                                                    const char* selector, FormatFor<Arguments...> format,
                                                    const Arguments&... arguments) {
        logString(
            NSString::stringWithFormat(u"%@] %@", describe(file, line, object, selector),
                                       NSString::expanded(format, PassedFormatArguments(arguments...))));
    }

    // + logFunction:format:
    /// Logs "function message".
    template <class... Arguments>
    static void logFunction_format(const char* function, FormatFor<Arguments...> format,
                                   const Arguments&... arguments) {
        logString(
            NSString::stringWithFormat(u"%@ %@", NSString::stringWithUTF8String(function),
                                       NSString::expanded(format, PassedFormatArguments(arguments...))));
    }

    // + logString:
    /// Logs to the logging delegate, or to the system log if there is none.
    static void logString(const NSString& string);
    // + setLoggingDelegate:
    /// Not owned; null restores the system log. To be called once at start-up.
    static void setLoggingDelegate(QRVLoggingDelegate* delegate);

    // + stringFromPointer:typeEncoding:
    /// Returns the value at the pointer as text, by its type encoding:
    ///
    ///     c s S i I q Q f d D        char, short, int and 64-bit integers, float, double, long double;
    ///                                a char of 1 or 0 reads YES or NO
    ///     * r*  [8c]  ^v             const char*, characters in place, const void*
    ///     : #                        const char* (a selector's name), Class
    ///     @ ^{__CFString=} r^{__CFString=}   id, or any handle derived from it
    ///     {_NSRange=QQ} {CGPoint=dd} {CGSize=dd} {CGRect={CGPoint=dd}{CGSize=dd}}
    ///
    /// Any other encoding, or a null pointer, fails an assertion of this class.
    static NSString stringFromPointer_typeEncoding(const void* pointer, const char* typeEncoding);

private:
    [[noreturn]] static void raise(const NSString& location, const NSString& name,
                                   const NSDictionary& userInfo, const NSString& reason);
    [[noreturn]] static void failAssertion(const NSString& location, const NSString& message);
};

} // namespace qrv
