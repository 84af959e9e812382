#pragma once

// Absolute URLs and their parts, by the generic URL syntax.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class QRV_EXPORT NSURL : public Handle<NSURL> {
public:
    using Handle::Handle;
    NSURL() = default;
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + URLWithString:
    /// Percent-encodes, in UTF-8, characters that a URL must not contain; existing escapes stay. nil and
    /// empty text give nil.
    static NSURL URLWithString(const NSString& text);
    // + fileURLWithPath:
    /// Checks the disk: a directory's URL ends in a slash. A relative path is resolved against the working
    /// folder.
    static NSURL fileURLWithPath(const NSString& path);
    // + fileURLWithPath:isDirectory:
    /// Does not touch the disk.
    static NSURL fileURLWithPath_isDirectory(const NSString& path, bool isDirectory);

    // - absoluteString
    /// The whole URL, which is also its description.
    NSString absoluteString() const;

    // - absoluteURL
    NSURL absoluteURL() const { return *this; }

    // - scheme
    /// As written, without the colon; nil if there is none.
    NSString scheme() const;
    // - host
    /// Percent-decoded, without user, port and the brackets of an IPv6 address; nil if missing or empty.
    NSString host() const;
    // - path
    /// Percent-decoded, without a trailing slash (except "/" itself); nil for a URL without a path such as
    /// "about:blank".
    NSString path() const;
    // - isFileURL
    /// Whether the scheme is "file", in any case.
    bool isFileURL() const;
};

} // namespace qrv
