#pragma once

// MIME types. They come from the archive, as some server wrote them.

#include <string>
#include <string_view>

namespace qrv::engine {

/// A MIME type such as "text/html": in lower case, without parameters and white space. Characters that no
/// type may contain are removed, and a text that is too long is no type, so that it can be written into a
/// header.
class MIMEType {
public:
    /// "Text/HTML; charset=utf-8"
    explicit MIMEType(std::string_view written);

    /// Empty for no type.
    const std::string& text() const { return text_; }

    bool isPDF() const;
    bool isImage() const;
    /// A file that no engine shows as a page: it would begin to save it, if only to find that it may not.
    bool isDownload() const;
    /// HTML and everything in XML: references stand in tags.
    bool isMarkup() const;

    bool isStyleSheet() const { return text_ == "text/css"; }

    bool isScript() const;
    /// Text to be shown as it is, which the engine would otherwise download or show in its own way.
    bool isShownAsText() const;

private:
    std::string text_;
};

/// Returns a header's value without its parameters and without characters that could begin another header,
/// value or parameter; empty if it is too long for a name.
std::string headerToken(std::string_view value);

} // namespace qrv::engine
