#pragma once

// The texts of an archive, in encodings that a browser finds out from the file alone.

#include "Platform/WebArchive/WebResource.h"

#include <string>

namespace qrv::webarchive {

/// A text to be changed and written.
class StoredText {
public:
    /// Reads text in the encoding that the resource or its byte-order mark says. A sheet or script without
    /// either that does not say itself is UTF-8, or else in the encoding of its page, which may be empty.
    StoredText(const WebResource& resource, const std::string& encodingOfPage);

    /// In UTF-8 if the encoding is known, otherwise the bytes as they are, of which the browser makes out the
    /// encoding as it did before.
    const std::string& text() const { return text_; }

    /// What is to be written for a text that has taken the place of text(): if it needs one and may have one,
    /// with a byte-order mark, which for browsers goes before all else that a page says of its encoding.
    std::string file(std::string text) const;

private:
    std::string text_;
    bool isUTF8_;
};

} // namespace qrv::webarchive
