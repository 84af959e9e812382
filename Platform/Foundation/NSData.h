#pragma once

// Immutable bytes. Copies and parts share the storage.

#include "Platform/Foundation/NSString.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qrv {

class NSError;

/// Options of reading and writing, with the platform's values.
enum NSDataWritingOptions : unsigned long {
    NSDataWritingDirect = 0,
    /// Written to a temporary file beside the destination and moved into place.
    NSDataWritingAtomic = 1,
};

class NSData : public id {
public:
    using id::id;
    NSData() = default;
    explicit NSData(std::string bytes);
    static const ClassInfo& classInfo();

    // + data
    static NSData data() { return NSData(std::string()); }

    // - initWithContentsOfFile:options:error:
    /// The whole file, or nil and an error of NSCocoaErrorDomain (260 no such file, 257 no permission, 256
    /// otherwise) with the path, unless nil, under NSFilePathErrorKey and the POSIX error under
    /// NSUnderlyingErrorKey. Reading a directory fails. No options are defined: pass 0.
    static NSData initWithContentsOfFile_options_error(const NSString& path, unsigned long options,
                                                       NSError* error);

    /// 0 for nil.
    std::size_t length() const { return bytes().size(); }

    /// Empty for nil. Valid as long as any handle on this payload lives.
    std::string_view bytes() const;
    std::span<const std::uint8_t> span() const;
    // - subdataWithRange:
    /// Shares the bytes. Raises NSRangeException beyond the end.
    NSData subdataWithRange(NSRange range) const;

    // - writeToFile:options:error:
    /// Replaces the file's contents, with permissions by the umask. On failure false and an error of
    /// NSCocoaErrorDomain (4 no such folder, 513 no permission, 640 no space, 642 read-only volume, 512
    /// otherwise); an atomic write then leaves an existing file as it was and no temporary file behind. A
    /// symbolic link stays and its target is replaced; devices and pipes are written to.
    bool writeToFile_options_error(const NSString& path, NSDataWritingOptions options, NSError* error) const;
    // - writeToFile:atomically:
    bool writeToFile_atomically(const NSString& path, bool atomically) const;
};

} // namespace qrv
