#pragma once

// The files that a page on disk refers to: those in its folder, or in a folder around that, and no others.

#include "Platform/Foundation/FileDescriptor.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSURL.h"

#include <string>
#include <vector>

namespace qrv::webarchive {

class PageFolder {
public:
    /// The files below `root`, empty for the page's own folder, as a page sees them that has this address.
    /// Throws Failure if a folder cannot be opened, or the page is not below the root.
    PageFolder(const std::string& page, const std::string& root, const NSURL& address);

    /// What is to be had at an address, or why it is not: "there is no such file".
    struct File {
        std::string name; ///< its path, from the root on; empty when the address stands for none
        NSData bytes;     ///< nil when it cannot be had
        std::string refusal;
    };

    /// The file at an address, which is as far from the page's as the file is from the page: its query does
    /// not count. Neither "..", nor a symbolic link, nor an escaped "/" leads out of the root; a link that
    /// starts at the root of the file system is refused wherever it leads.
    File fileAt(const NSURL& url) const;

private:
    FileDescriptor root_;
    std::string origin_;                // of the page's address: scheme and authority
    std::vector<std::string> place_;    // the folders from the root to the page
    std::vector<std::string> segments_; // of the page's address, without its last
};

} // namespace qrv::webarchive
