#include "Platform/Engine/Loading/NetErrors.h"

#include <algorithm>
#include <iterator>

namespace qrv::engine {

namespace {

struct Mapping {
    std::string_view text;
    long long code;
};

constexpr Mapping mappings[] = {
    {"ERR_ABORTED", NSURLErrorCancelled},
    {"ERR_BLOCKED_BY_CLIENT", NSURLErrorCancelled},
    {"ERR_INVALID_URL", NSURLErrorBadURL},
    {"ERR_TIMED_OUT", NSURLErrorTimedOut},
    {"ERR_CONNECTION_TIMED_OUT", NSURLErrorTimedOut},
    {"ERR_UNKNOWN_URL_SCHEME", NSURLErrorUnsupportedURL},
    {"ERR_DISALLOWED_URL_SCHEME", NSURLErrorUnsupportedURL},
    {"ERR_NAME_NOT_RESOLVED", NSURLErrorCannotFindHost},
    {"ERR_CONNECTION_REFUSED", NSURLErrorCannotConnectToHost},
    {"ERR_CONNECTION_FAILED", NSURLErrorCannotConnectToHost},
    {"ERR_ADDRESS_UNREACHABLE", NSURLErrorCannotConnectToHost},
    {"ERR_CONNECTION_CLOSED", NSURLErrorNetworkConnectionLost},
    {"ERR_CONNECTION_RESET", NSURLErrorNetworkConnectionLost},
    {"ERR_CONNECTION_ABORTED", NSURLErrorNetworkConnectionLost},
    {"ERR_TOO_MANY_REDIRECTS", NSURLErrorHTTPTooManyRedirects},
    {"ERR_FILE_NOT_FOUND", NSURLErrorResourceUnavailable},
    {"ERR_FAILED", NSURLErrorResourceUnavailable},
    {"ERR_INTERNET_DISCONNECTED", NSURLErrorNotConnectedToInternet},
    {"ERR_NETWORK_ACCESS_DENIED", NSURLErrorNotConnectedToInternet},
    {"ERR_INVALID_AUTH_CREDENTIALS", NSURLErrorUserAuthenticationRequired},
    {"ERR_SSL_PROTOCOL_ERROR", NSURLErrorSecureConnectionFailed},
};

long long codeOf(std::string_view text) {
    if (text.starts_with("net::")) text.remove_prefix(5);
    const auto* found = std::find_if(std::begin(mappings), std::end(mappings),
                                     [text](const Mapping& m) { return m.text == text; });
    return found == std::end(mappings) ? NSURLErrorUnknown : found->code;
}

} // namespace

NSError urlError(std::string_view text, const NSURL& url) {
    return urlError(codeOf(text), url);
}

NSError urlError(long long code, const NSURL& url, const NSString& description) {
    NSMutableDictionary userInfo;
    if (description) userInfo.setObject_forKey(description, NSString(NSLocalizedDescriptionKey));
    if (url) {
        userInfo.setObject_forKey(url, NSString(NSURLErrorFailingURLErrorKey));
        userInfo.setObject_forKey(url.absoluteString(), NSString(NSURLErrorFailingURLStringErrorKey));
    }
    return NSError::errorWithDomain_code_userInfo(NSURLErrorDomain, code, std::move(userInfo).copy());
}

} // namespace qrv::engine
