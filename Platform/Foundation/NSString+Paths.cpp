// Paths as text. Only standardising accesses the disk.

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <optional>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace qrv {

namespace {

/// Removes trailing slashes; a path of slashes only keeps one.
std::u16string_view withoutTrailingSlashes(std::u16string_view path) {
    const std::size_t last = path.find_last_not_of(u'/');
    if (last == std::u16string_view::npos) return path.substr(0, path.empty() ? 0 : 1);
    return path.substr(0, last + 1);
}

/// Returns the index of the extension's dot in a path without trailing slashes, or npos.
std::size_t extensionDot(std::u16string_view path) {
    const std::size_t dot = path.rfind(u'.');
    const std::size_t slash = path.rfind(u'/');
    const std::size_t name = slash == std::u16string_view::npos ? 0 : slash + 1;
    const bool hasDotInside = dot != std::u16string_view::npos && dot > name && dot + 1 < path.size();
    return hasDotInside ? dot : std::u16string_view::npos;
}

/// Calls `visit` with each non-empty component.
template <class Visit>
void forEachName(std::u16string_view path, const Visit& visit) {
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find(u'/'), path.size());
        if (slash > 0) visit(path.substr(0, slash));
        path.remove_prefix(std::min(slash + 1, path.size()));
    }
}

void appendName(std::u16string& path, std::u16string_view name) {
    if (!path.empty() && path.back() != u'/') path.push_back(u'/');
    path.append(name);
}

/// Returns the home folder of a user by name, or of this process's user for an empty name.
std::optional<std::string> homeFolder(const std::string& user) {
    const char* home = user.empty() ? std::getenv("HOME") : nullptr;
    if (home && *home) return home;
    std::vector<char> buffer(1 << 14);

    struct passwd entry {};

    struct passwd* found = nullptr;
    if (user.empty()) {
        ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
    } else {
        ::getpwnam_r(user.c_str(), &entry, buffer.data(), buffer.size(), &found);
    }
    return found ? std::optional<std::string>(found->pw_dir) : std::nullopt;
}

std::u16string expandingTilde(std::u16string_view path) {
    if (!path.starts_with(u'~')) return std::u16string(path);
    const std::size_t end = std::min(path.find(u'/'), path.size());
    const auto home = homeFolder(unicode::toUTF8Lossy(path.substr(1, end - 1)));
    if (!home) return std::u16string(path);
    return unicode::fromFileName(*home).append(path.substr(end));
}

/// Replaces an absolute path by its parent folder's, after following a symbolic link at its end, if there is
/// one.
void moveToRealParent(std::u16string& path) {
    if (path.size() < PATH_MAX) {
        if (char* resolved = ::realpath(NSString(path).fileSystemRepresentation().c_str(), nullptr)) {
            path = unicode::fromFileName(resolved);
            std::free(resolved); // NOLINT: the system allocated it
        }
    }
    path.resize(std::max<std::size_t>(path.rfind(u'/'), 1));
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

NSString NSString::pathExtension() const {
    if (isNil()) return {};
    const std::u16string_view path = withoutTrailingSlashes(view());
    const std::size_t dot = extensionDot(path);
    return dot == std::u16string_view::npos ? NSString(u"") : NSString(path.substr(dot + 1));
}

NSString NSString::stringByDeletingPathExtension() const {
    if (isNil()) return {};
    const std::u16string_view path = withoutTrailingSlashes(view());
    return NSString(path.substr(0, extensionDot(path)));
}

NSString NSString::stringByAppendingPathComponent(const NSString& component) const {
    if (isNil()) return {};
    std::u16string path;
    if (view().starts_with(u'/') || (view().empty() && component.view().starts_with(u'/')))
        path.push_back(u'/');
    for (const std::u16string_view part : {view(), component.view()}) {
        forEachName(part, [&](std::u16string_view name) { appendName(path, name); });
    }
    return NSString(std::move(path));
}

NSString NSString::stringByAppendingPathExtension(const NSString& extension) const {
    if (isNil()) return {};
    const std::u16string_view path = withoutTrailingSlashes(view());
    if (path.empty() || path == u"/" || extension.length() == 0) return NSString(path);
    return NSString(std::u16string(path).append(u".").append(extension.view()));
}

NSString NSString::stringByStandardizingPath() const {
    if (isNil()) return {};
    const std::u16string expanded = expandingTilde(view());
    const bool isAbsolute = expanded.starts_with(u'/');
    std::u16string path = isAbsolute ? u"/" : u"";
    forEachName(expanded, [&](std::u16string_view name) {
        if (name == u".." && isAbsolute) {
            moveToRealParent(path);
        } else if (name != u".") {
            appendName(path, name);
        }
    });
    return path.empty() && !expanded.empty() ? NSString(u".") : NSString(std::move(path));
}

NSArray NSString::pathComponents() const {
    if (isNil()) return {};
    std::vector<id> components;
    if (view().starts_with(u'/')) components.push_back(NSString(u"/"));
    forEachName(view(), [&](std::u16string_view name) { components.push_back(NSString(name)); });
    const bool isOnlySlashes = view().find_first_not_of(u'/') == std::u16string_view::npos;
    if (view().ends_with(u'/') && !isOnlySlashes) components.push_back(NSString(u"/"));
    return NSArray(std::move(components));
}

NSString NSString::stringWithFileSystemRepresentation_length(const char* bytes, std::size_t length) {
    return bytes ? fromFileSystem({bytes, length}) : NSString();
}

NSString NSString::fromFileSystem(std::string_view bytes) {
    return NSString(unicode::fromFileName(bytes));
}

std::string NSString::fileSystemRepresentation() const {
    if (view().find(u'\0') != std::u16string_view::npos) return {};
    return unicode::toFileName(view()).value_or(std::string());
}

} // namespace qrv
