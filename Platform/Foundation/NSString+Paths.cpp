// Paths as text. None of these touches the disk.

#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/Unicode.h"

namespace qrv {

namespace {

/// The path without the slashes at its end; a path of slashes only keeps one.
std::u16string_view withoutTrailingSlashes(std::u16string_view path) {
    const std::size_t last = path.find_last_not_of(u'/');
    if (last == std::u16string_view::npos) return path.substr(0, path.empty() ? 0 : 1);
    return path.substr(0, last + 1);
}

} // namespace

NSString NSString::lastPathComponent() const {
    if (isNil()) return {};
    const std::u16string_view path = withoutTrailingSlashes(view());
    const std::size_t slash = path.rfind(u'/');
    return NSString(slash == std::u16string_view::npos || path.size() == 1 ? path : path.substr(slash + 1));
}

NSString NSString::stringByDeletingLastPathComponent() const {
    if (isNil()) return {};
    const std::u16string_view path = withoutTrailingSlashes(view());
    const std::size_t slash = path.rfind(u'/');
    if (slash == std::u16string_view::npos) return u"";
    return NSString(slash == 0 ? path.substr(0, 1) : withoutTrailingSlashes(path.substr(0, slash)));
}

std::string NSString::fileSystemRepresentation() const {
    if (view().find(u'\0') != std::u16string_view::npos) return {};
    return unicode::toUTF8(view()).value_or(std::string());
}

} // namespace qrv
