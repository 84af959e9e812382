#include "Platform/Foundation/NSError.h"

#include "Platform/Foundation/NSException.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

namespace qrv {

namespace {

const ClassInfo errorClassInfo{"NSError", &Object::classInfo};

const NSErrorObject* object(const NSError& error) {
    return static_cast<const NSErrorObject*>(error.shared().get());
}

struct StandardText {
    long long code;
    const char16_t* text;
};

constexpr StandardText readTexts[] = {
    {NSFileReadNoPermissionError,
     u"The file “%@” couldn’t be opened because you don’t have permission to view it."},
    {NSFileReadCorruptFileError, u"The file “%@” couldn’t be opened because it isn’t in the correct format."},
    {NSFileReadNoSuchFileError, u"The file “%@” couldn’t be opened because there is no such file."},
    {NSFileReadTooLargeError, u"The file “%@” couldn’t be opened because it is too large."},
    {NSFileNoSuchFileError, u"The file “%@” doesn’t exist."},
    {NSFileReadUnknownError, u"The file “%@” couldn’t be opened."},
};

constexpr StandardText writeTexts[] = {
    {NSFileWriteUnknownError, u"The file “%@” couldn’t be saved in the folder “%@”."},
    {NSFileWriteNoPermissionError, u"You don’t have permission to save the file “%@” in the folder “%@”."},
    {NSFileWriteOutOfSpaceError,
     u"The file “%@” couldn’t be saved in the folder “%@” because there isn’t enough space."},
    {NSFileWriteVolumeReadOnlyError,
     u"The file “%@” couldn’t be saved in the folder “%@” because the volume is read only."},
};

constexpr StandardText urlTexts[] = {
    {NSURLErrorUnknown, u"unknown error"},
    {NSURLErrorCancelled, u"cancelled"},
    {NSURLErrorBadURL, u"bad URL"},
    {NSURLErrorTimedOut, u"The request timed out."},
    {NSURLErrorUnsupportedURL, u"unsupported URL"},
    {NSURLErrorCannotFindHost, u"A server with the specified hostname could not be found."},
    {NSURLErrorCannotConnectToHost, u"Could not connect to the server."},
    {NSURLErrorNetworkConnectionLost, u"The network connection was lost."},
    {NSURLErrorHTTPTooManyRedirects, u"too many HTTP redirects"},
    {NSURLErrorResourceUnavailable, u"resource unavailable"},
    {NSURLErrorNotConnectedToInternet, u"The Internet connection appears to be offline."},
    {NSURLErrorUserAuthenticationRequired, u"The request requires user authentication."},
    {NSURLErrorSecureConnectionFailed, u"An SSL error has occurred and a secure connection to the server "
                                       u"cannot be made."},
};

template <std::size_t n>
const char16_t* find(const StandardText (&table)[n], long long code) {
    const auto* found = std::find_if(std::begin(table), std::end(table),
                                     [code](const StandardText& t) { return t.code == code; });
    return found == std::end(table) ? nullptr : found->text;
}

NSString standardText(const NSErrorObject& error) {
    const NSString path = as<NSString>(error.userInfo.objectForKey(NSString(NSFilePathErrorKey)));
    if (error.domain.isEqual(NSString(NSCocoaErrorDomain)) && path) {
        const NSString name = path.lastPathComponent();
        if (const char16_t* text = find(readTexts, error.code)) return NSString::stringWithFormat(text, name);
        if (const char16_t* text = find(writeTexts, error.code)) {
            const NSString folder = path.stringByDeletingLastPathComponent().lastPathComponent();
            return NSString::stringWithFormat(text, name, folder);
        }
    }
    if (error.domain.isEqual(NSString(NSURLErrorDomain))) {
        if (const char16_t* text = find(urlTexts, error.code)) return text;
    }
    if (error.domain.isEqual(NSString(NSPOSIXErrorDomain)) && error.code > 0 && error.code < 4096) {
        const std::string text = std::generic_category().message(static_cast<int>(error.code));
        return NSString::stringWithFormat(u"The operation couldn’t be completed. %s", text.c_str());
    }
    return NSString::stringWithFormat(u"The operation couldn’t be completed. (%@ error %lld.)", error.domain,
                                      error.code);
}

NSString text(const NSError& error, const char16_t* key) {
    return as<NSString>(error.userInfo().objectForKey(NSString(key)));
}

NSError fileError(long long code, int number, const NSString& path) {
    NSMutableDictionary userInfo;
    if (path) userInfo.setObject_forKey(path, NSString(NSFilePathErrorKey));
    userInfo.setObject_forKey(posixError(number), NSString(NSUnderlyingErrorKey));
    return NSError::errorWithDomain_code_userInfo(NSCocoaErrorDomain, code, userInfo);
}

} // namespace

NSErrorObject::NSErrorObject(NSString theDomain, long long theCode, NSDictionary theUserInfo)
    : domain(std::move(theDomain)), code(theCode),
      userInfo(theUserInfo ? std::move(theUserInfo) : NSDictionary::dictionary()) {
    if (domain.isNil()) {
        throw NSException(NSInvalidArgumentException,
                          u"-[NSError initWithDomain:code:userInfo:]: domain cannot be nil");
    }
}

bool NSErrorObject::isEqual(const Object& other) const {
    const auto* o = dynamic_cast<const NSErrorObject*>(&other);
    return o && o->domain == domain && o->code == code && o->userInfo == userInfo;
}

std::size_t NSErrorObject::hash() const {
    return domain.hash() ^ static_cast<std::size_t>(code);
}

NSString NSErrorObject::description() const {
    const NSString own = as<NSString>(userInfo.objectForKey(NSString(NSLocalizedDescriptionKey)));
    std::u16string entries;
    for (const auto& [key, value] : userInfo) {
        if (!entries.empty()) entries.append(u", ");
        entries.append(NSString::stringWithFormat(u"%@=%@", key, value).view());
    }
    return NSString::stringWithFormat(u"Error Domain=%@ Code=%lld \"%@\" UserInfo={%@}", domain, code,
                                      own ? own : NSString(u"(null)"), NSString(std::move(entries)));
}

const ClassInfo& NSError::classInfo() {
    return errorClassInfo;
}

bool NSError::accepts(const Object& payload) {
    return dynamic_cast<const NSErrorObject*>(&payload) != nullptr;
}

NSError NSError::errorWithDomain_code_userInfo(const NSString& domain, long long code,
                                               const NSDictionary& userInfo) {
    return NSError(std::make_shared<NSErrorObject>(domain, code, userInfo));
}

NSString NSError::domain() const {
    return isNil() ? NSString() : object(*this)->domain;
}

long long NSError::code() const {
    return isNil() ? 0 : object(*this)->code;
}

NSDictionary NSError::userInfo() const {
    return isNil() ? NSDictionary() : object(*this)->userInfo;
}

NSString NSError::localizedDescription() const {
    if (isNil()) return {};
    const NSString own = text(*this, NSLocalizedDescriptionKey);
    return own ? own : standardText(*object(*this));
}

NSString NSError::localizedFailureReason() const {
    return text(*this, NSLocalizedFailureReasonErrorKey);
}

NSString NSError::localizedRecoverySuggestion() const {
    return text(*this, NSLocalizedRecoverySuggestionErrorKey);
}

NSError posixError(int number) {
    return NSError::errorWithDomain_code_userInfo(NSPOSIXErrorDomain, number, {});
}

NSError fileReadError(int number, const NSString& path) {
    switch (number) {
    case ENOENT:
    case ENOTDIR:
        return fileError(NSFileReadNoSuchFileError, number, path);
    case EACCES:
    case EPERM:
        return fileError(NSFileReadNoPermissionError, number, path);
    case EFBIG:
    case ENOMEM:
        return fileError(NSFileReadTooLargeError, number, path);
    default:
        return fileError(NSFileReadUnknownError, number, path);
    }
}

NSError fileWriteError(int number, const NSString& path) {
    switch (number) {
    case ENOENT:
    case ENOTDIR:
        return fileError(NSFileNoSuchFileError, number, path);
    case EACCES:
    case EPERM:
        return fileError(NSFileWriteNoPermissionError, number, path);
    case ENOSPC:
    case EDQUOT:
        return fileError(NSFileWriteOutOfSpaceError, number, path);
    case EROFS:
        return fileError(NSFileWriteVolumeReadOnlyError, number, path);
    default:
        return fileError(NSFileWriteUnknownError, number, path);
    }
}

} // namespace qrv
