#pragma once

// Errors as values: a domain, a code and a user-info. An operation that can fail takes an `NSError*`, which
// may be null and is written to on failure only.

#include "Platform/Foundation/NSDictionary.h"

namespace qrv {

inline constexpr char16_t NSCocoaErrorDomain[] = u"NSCocoaErrorDomain";
inline constexpr char16_t NSPOSIXErrorDomain[] = u"NSPOSIXErrorDomain";
inline constexpr char16_t NSOSStatusErrorDomain[] = u"NSOSStatusErrorDomain";
inline constexpr char16_t NSURLErrorDomain[] = u"NSURLErrorDomain";

// Keys of a user-info.

inline constexpr char16_t NSLocalizedDescriptionKey[] = u"NSLocalizedDescription";
inline constexpr char16_t NSLocalizedFailureReasonErrorKey[] = u"NSLocalizedFailureReason";
inline constexpr char16_t NSLocalizedRecoverySuggestionErrorKey[] = u"NSLocalizedRecoverySuggestion";
inline constexpr char16_t NSUnderlyingErrorKey[] = u"NSUnderlyingError";
inline constexpr char16_t NSFilePathErrorKey[] = u"NSFilePath";
inline constexpr char16_t NSURLErrorKey[] = u"NSURL";
inline constexpr char16_t NSHelpAnchorErrorKey[] = u"NSHelpAnchor";
inline constexpr char16_t NSURLErrorFailingURLErrorKey[] = u"NSErrorFailingURLKey";
inline constexpr char16_t NSURLErrorFailingURLStringErrorKey[] = u"NSErrorFailingURLStringKey";

// Codes of NSCocoaErrorDomain.

inline constexpr long long NSFileNoSuchFileError = 4;
inline constexpr long long NSFileReadUnknownError = 256;
inline constexpr long long NSFileReadNoPermissionError = 257;
inline constexpr long long NSFileReadCorruptFileError = 259;
inline constexpr long long NSFileReadNoSuchFileError = 260;
inline constexpr long long NSFileReadTooLargeError = 263;
inline constexpr long long NSFileWriteUnknownError = 512;
inline constexpr long long NSFileWriteNoPermissionError = 513;
inline constexpr long long NSFileWriteOutOfSpaceError = 640;
inline constexpr long long NSFileWriteVolumeReadOnlyError = 642;

// Codes of NSURLErrorDomain.

inline constexpr long long NSURLErrorUnknown = -1;
inline constexpr long long NSURLErrorCancelled = -999;
inline constexpr long long NSURLErrorBadURL = -1000;
inline constexpr long long NSURLErrorTimedOut = -1001;
inline constexpr long long NSURLErrorUnsupportedURL = -1002;
inline constexpr long long NSURLErrorCannotFindHost = -1003;
inline constexpr long long NSURLErrorCannotConnectToHost = -1004;
inline constexpr long long NSURLErrorNetworkConnectionLost = -1005;
inline constexpr long long NSURLErrorHTTPTooManyRedirects = -1007;
inline constexpr long long NSURLErrorResourceUnavailable = -1008;
inline constexpr long long NSURLErrorNotConnectedToInternet = -1009;
inline constexpr long long NSURLErrorUserAuthenticationRequired = -1013;
inline constexpr long long NSURLErrorSecureConnectionFailed = -1200;

class QRV_EXPORT NSError : public Handle<NSError> {
public:
    using Handle::Handle;
    NSError() = default;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + errorWithDomain:code:userInfo:
    /// A nil user-info counts as an empty one. A nil domain raises NSInvalidArgumentException.
    static NSError errorWithDomain_code_userInfo(const NSString& domain, long long code,
                                                 const NSDictionary& userInfo);

    // - domain
    NSString domain() const;
    // - code
    long long code() const;
    // - userInfo
    NSDictionary userInfo() const;
    // - localizedDescription
    /// The user-info's description, or else the standard text of the domain and code; nil only for a nil
    /// receiver.
    NSString localizedDescription() const;
    // - localizedFailureReason
    /// The user-info's entry, or nil.
    NSString localizedFailureReason() const;
    // - localizedRecoverySuggestion
    /// The user-info's entry, or nil.
    NSString localizedRecoverySuggestion() const;
};

/// The payload. To make an error class of your own, derive from it and override objectClass.
class QRV_EXPORT NSErrorObject : public Object, public NSCoding {
public:
    NSErrorObject(NSString domain, long long code, NSDictionary userInfo);

    const ClassInfo& objectClass() const override { return NSError::classInfo(); }

    /// Compares domain, code and user-info.
    bool isEqual(const Object& other) const override;
    std::size_t hash() const override;
    /// "Error Domain=... Code=... "description" UserInfo={...}"
    NSString description() const override;

    const NSString domain;
    const long long code;
    const NSDictionary userInfo;
};

/// Makes an error of NSPOSIXErrorDomain from an errno value, described in the system's words.
QRV_EXPORT NSError posixError(int number);
/// Makes the error of a failed file operation: NSCocoaErrorDomain with the code that fits the errno value,
/// the path (unless nil) under NSFilePathErrorKey and the POSIX error under NSUnderlyingErrorKey.
QRV_EXPORT NSError fileReadError(int number, const NSString& path);
QRV_EXPORT NSError fileWriteError(int number, const NSString& path);

/// Stores the error unless the destination is null.
inline void setError(NSError* destination, const NSError& error) {
    if (destination) *destination = error;
}

} // namespace qrv
