#pragma once

// Immutable bytes. Copies and subranges share their storage.

#include "Platform/Foundation/NSString.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qrv {

class NSError;

/// Options for reading and writing, with the platform's values.
enum NSDataWritingOptions : unsigned long {
    NSDataWritingDirect = 0,
    /// Writes to a new file, which takes the destination's place when it is complete.
    NSDataWritingAtomic = 1,
};

class QRV_EXPORT NSData : public Handle<NSData> {
public:
    using Handle::Handle;
    NSData() = default;
    explicit NSData(std::string bytes);
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + data
    static NSData data() { return NSData(std::string()); }

    // - initWithContentsOfFile:options:error:
    /// Reads the whole file. On failure returns nil and an error of NSCocoaErrorDomain (260 no such file, 257
    /// no permission, 263 too large, 256 otherwise) with the path, unless nil, under NSFilePathErrorKey and
    /// the POSIX error under NSUnderlyingErrorKey. Folders, pipes, sockets and devices cannot be read, nor
    /// links to them; trying to waits for nobody. Where MappedFile.h allows it, a large file is not copied,
    /// and then may change under its reader. No options are defined: pass 0.
    static NSData initWithContentsOfFile_options_error(const NSString& path, unsigned long options,
                                                       NSError* error);

    /// 0 for nil.
    std::size_t length() const { return bytes().size(); }

    /// Empty for nil. Valid for as long as a handle to this payload exists.
    std::string_view bytes() const;
    std::span<const std::uint8_t> span() const;
    // - subdataWithRange:
    /// Shares the bytes. A range beyond the end raises NSRangeException.
    NSData subdataWithRange(NSRange range) const;

    /// Whether the bytes are those of a file that is not copied, and a part of it could not be read when it
    /// was needed: it was cut short, or its disk failed. That part reads as zeros. False for nil.
    bool isCutOff() const;

    /// Has bytes of a file that is not copied take no memory until they are needed again. Does nothing for
    /// others and for nil.
    void forgetPages() const;

    // - writeToFile:options:error:
    /// Replaces the file's contents; the permissions follow the umask. On failure returns false and an error
    /// of NSCocoaErrorDomain (4 no such folder, 513 no permission, 640 no space, 642 read-only volume, 512
    /// otherwise), with the same user-info as for reading; an atomic write then leaves an existing file
    /// untouched. It leaves no temporary file behind, and when the process is killed meanwhile only on file
    /// systems without unnamed files. A symbolic link is followed, and its target replaced or made. Folders,
    /// pipes, sockets and devices are refused without opening them.
    bool writeToFile_options_error(const NSString& path, NSDataWritingOptions options, NSError* error) const;
    // - writeToFile:atomically:
    bool writeToFile_atomically(const NSString& path, bool atomically) const;

private:
    NSData(std::shared_ptr<const void> storage, std::string_view bytes);
};

} // namespace qrv
