#pragma once

// What kind of resource the engine is given. Types come from the archive, as some server once wrote them.

#include <string>
#include <string_view>

namespace qrv::engine {

/// A MIME type such as "text/html": in lower case, without parameters and white space. What no type may hold
/// is left out, and what is too long for one is none, so that it can stand in a header as it is.
class MIMEType {
public:
    /// "Text/HTML; charset=utf-8"
    explicit MIMEType(std::string_view written);

    /// Empty for no type.
    const std::string& text() const { return text_; }

    bool isPDF() const;
    /// HTML and everything in XML: references stand in tags.
    bool isMarkup() const;

    bool isStyleSheet() const { return text_ == "text/css"; }

    bool isScript() const;
    /// Text that is shown as it is. The engine would save such a page, or show it in a form of its own.
    bool isShownAsText() const;

private:
    std::string text_;
};

/// The value of a header in front of its parameters, without what could begin another header, value or
/// parameter. Empty when it is too long for a name.
std::string headerToken(std::string_view value);

} // namespace qrv::engine
