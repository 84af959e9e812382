#pragma once

// Absolute URLs and their parts, by the generic syntax of RFC 3986.

#include "Platform/Foundation/NSString.h"

namespace qrv {

class NSURL : public id {
public:
    using id::id;
    NSURL() = default;
    static const ClassInfo& classInfo();

    // + URLWithString:
    /// Characters that no URL may hold are percent-escaped as UTF-8; what is escaped stays. nil for nil and
    /// for text without any character.
    static NSURL URLWithString(const NSString& text);
    // + fileURLWithPath:
    /// Looks at the disk: the URL of a directory ends in a slash. A relative path is taken from the working
    /// folder.
    static NSURL fileURLWithPath(const NSString& path);
    // + fileURLWithPath:isDirectory:
    /// Does not touch the disk.
    static NSURL fileURLWithPath_isDirectory(const NSString& path, bool isDirectory);

    // - absoluteString
    /// The whole URL; also its description.
    NSString absoluteString() const;

    // - absoluteURL
    NSURL absoluteURL() const { return *this; }

    // - scheme
    /// As written, without the colon; nil without one.
    NSString scheme() const;
    // - host
    /// Without user, port and the brackets of an IPv6 address, percent-decoded; nil when there is none or it
    /// is empty.
    NSString host() const;
    // - path
    /// Percent-decoded, without a trailing slash (but "/" stays); nil for a URL such as "about:blank", which
    /// has no path.
    NSString path() const;
    // - isFileURL
    /// The scheme is "file", in capital or small letters.
    bool isFileURL() const;
};

} // namespace qrv
