#include "Platform/Foundation/MDItem.h"

#include <cerrno>
#include <optional>
#include <sys/xattr.h>

namespace qrv {

namespace {

std::optional<std::string> extendedAttribute(const std::string& path, const char* name) {
    for (;;) {
        const ssize_t size = ::getxattr(path.c_str(), name, nullptr, 0);
        if (size < 0) return std::nullopt;
        std::string value(static_cast<std::size_t>(size), '\0');
        const ssize_t length = ::getxattr(path.c_str(), name, value.data(), value.size());
        // It may have grown between the two calls.
        if (length < 0 && errno == ERANGE) continue;
        if (length < 0) return std::nullopt;
        value.resize(static_cast<std::size_t>(length));
        return value;
    }
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view space = " \t\r\n";
    const std::size_t first = text.find_first_not_of(space);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}

} // namespace

NSArray keywordsOfFile(const NSString& path) {
    const std::optional<std::string> tags =
        extendedAttribute(path.fileSystemRepresentation(), "user.xdg.tags");
    if (!tags) return {};
    std::vector<id> keywords;
    std::string_view rest = *tags;
    while (!rest.empty()) {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        const std::string_view keyword = trimmed(rest.substr(0, comma));
        if (!keyword.empty()) keywords.push_back(NSString::fromUTF8(keyword));
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    return NSArray(std::move(keywords));
}

} // namespace qrv
