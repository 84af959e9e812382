#pragma once

// The references in pages: HTML, XHTML, SVG and other XML.

#include "Source/Tools/webarchive/Extract/StyleText.h"

namespace qrv::webarchive {

/// What the references of a page become.
struct PageLinks {
    /// Of any reference.
    Replacement reference;
    /// The same, but nothing for what is not among the files.
    Replacement file;
    /// The file of a frame, by its name and its reference, which is empty for a frame without one; nothing if
    /// it has none. Called in the order of the tags.
    std::function<std::optional<std::string>(const std::string& name, const std::string& reference)> frame;
};

/// The reference of the first base element.
std::optional<std::string> baseReference(std::string_view page);

/// Replaces the references of a page, those in its styles among them, and takes away what would keep a
/// browser from loading the files: base addresses, policies, and of elements that refer to files what asks
/// for other origins and hashes. Of the pictures that an element has to choose from, only files are left. All
/// else stays byte for byte; time in proportion to the text.
std::string withPageReferences(std::string_view page, const PageLinks& links);

} // namespace qrv::webarchive
