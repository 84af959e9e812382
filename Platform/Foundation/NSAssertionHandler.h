#pragma once

// Handles failed preconditions: raises an exception with the description as its reason.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class QRV_EXPORT NSAssertionHandler {
public:
    // + currentHandler
    /// Returns the calling thread's handler, which is the same for all threads, since it has no state.
    static NSAssertionHandler& currentHandler();

    // - handleFailureInMethod:object:file:lineNumber:description:
    /// Raises NSInternalInconsistencyException with the formatted description. The user-info names the
    /// method, the object (unless nil), the file and the line.
    template <class... Arguments>
    [[noreturn]] void handleFailureInMethod_object_file_lineNumber_description(
        const NSString& selector, const id& object, const NSString& file, long long line,
        FormatFor<Arguments...> format, const Arguments&... arguments) {
        raise(selector, object, file, line, NSString::expanded(format, PassedFormatArguments(arguments...)));
    }

    // - handleFailureInFunction:file:lineNumber:description:
    /// The same for a function.
    template <class... Arguments>
    [[noreturn]] void
    handleFailureInFunction_file_lineNumber_description(const NSString& function, const NSString& file,
                                                        long long line, FormatFor<Arguments...> format,
                                                        const Arguments&... arguments) {
        raise(function, id(), file, line, NSString::expanded(format, PassedFormatArguments(arguments...)));
    }

private:
    [[noreturn]] static void raise(const NSString& place, const id& object, const NSString& file,
                                   long long line, const NSString& description);
};

} // namespace qrv
