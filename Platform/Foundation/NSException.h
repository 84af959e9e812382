#pragma once

// Exceptions for programming errors, with a name, a reason and a user-info. Expected failures are NSError
// values instead.

#include "Platform/Foundation/NSDictionary.h"

#include <exception>
#include <string>

namespace qrv {

inline constexpr char16_t NSRangeException[] = u"NSRangeException";
inline constexpr char16_t NSInvalidArgumentException[] = u"NSInvalidArgumentException";
inline constexpr char16_t NSInternalInconsistencyException[] = u"NSInternalInconsistencyException";

class QRV_EXPORT NSException : public std::exception {
public:
    NSException(NSString name, NSString reason, NSDictionary userInfo = {});

    // - name
    const NSString& name() const { return name_; }

    // - reason
    virtual NSString reason() const { return reason_; }

    // - userInfo
    const NSDictionary& userInfo() const { return userInfo_; }

    /// "name: reason", in UTF-8.
    const char* what() const noexcept override { return what_.c_str(); }

    // + doesNotRecognizeSelector:
    /// Raises NSInvalidArgumentException "-[class selector]: unrecognized selector sent to instance", as
    /// calling an abstract operation does.
    [[noreturn]] static void doesNotRecognizeSelector(const NSString& className, const NSString& selector);

private:
    NSString name_;
    NSString reason_;
    NSDictionary userInfo_;
    std::string what_;
};

} // namespace qrv
