#include "Platform/Foundation/NSURL.h"

#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace qrv {

namespace {

const ClassInfo urlClassInfo{"NSURL", &Object::classInfo};

class URLObject final : public Object, public NSCoding {
public:
    explicit URLObject(NSString text) : text_(std::move(text)) {}

    const ClassInfo& objectClass() const override { return urlClassInfo; }

    bool isEqual(const Object& other) const override {
        const auto* o = dynamic_cast<const URLObject*>(&other);
        return o && o->text_ == text_;
    }

    std::size_t hash() const override { return text_.hash(); }

    NSString description() const override { return text_; }

private:
    const NSString text_;
};

bool isAlphanumeric(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isHex(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Percent-encodes every byte that is neither alphanumeric nor in `kept`.
std::string escaped(const std::string& bytes, std::string_view kept) {
    std::string result;
    for (const char c : bytes) {
        if (isAlphanumeric(c) || kept.find(c) != std::string_view::npos) {
            result.push_back(c);
        } else {
            constexpr char digits[] = "0123456789ABCDEF";
            const auto byte = static_cast<unsigned char>(c);
            result.append({'%', digits[byte >> 4], digits[byte & 15]});
        }
    }
    return result;
}

/// Percent-decodes; malformed escapes stay.
NSString unescaped(std::u16string_view text) {
    std::string bytes = unicode::toUTF8Lossy(text);
    std::string result;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '%' && i + 2 < bytes.size() && isHex(bytes[i + 1]) && isHex(bytes[i + 2])) {
            result.push_back(static_cast<char>(std::stoi(bytes.substr(i + 1, 2), nullptr, 16)));
            i += 2;
        } else {
            result.push_back(bytes[i]);
        }
    }
    return NSString::fromUTF8(result);
}

/// The parts of a URL, as views into it.
struct Parts {
    std::u16string_view scheme;
    std::u16string_view authority;
    bool hasAuthority = false;
    std::u16string_view path;
};

bool isLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isScheme(std::u16string_view text) {
    return !text.empty() && isLetter(text[0]) && std::all_of(text.begin(), text.end(), [](char16_t c) {
        return isLetter(c) || (c >= u'0' && c <= u'9') || c == u'+' || c == u'-' || c == u'.';
    });
}

Parts split(std::u16string_view url) {
    Parts parts;
    std::u16string_view rest = url.substr(0, url.find_first_of(u"?#"));
    const std::size_t colon = rest.find_first_of(u":/");
    if (colon != std::u16string_view::npos && rest[colon] == u':' && isScheme(rest.substr(0, colon))) {
        parts.scheme = rest.substr(0, colon);
        rest.remove_prefix(colon + 1);
    }
    if (rest.starts_with(u"//")) {
        rest.remove_prefix(2);
        const std::size_t end = std::min(rest.find(u'/'), rest.size());
        parts.authority = rest.substr(0, end);
        parts.hasAuthority = true;
        rest.remove_prefix(end);
    }
    parts.path = rest;
    return parts;
}

NSURL make(NSString text) {
    return NSURL(std::make_shared<URLObject>(std::move(text)));
}

} // namespace

const ClassInfo& NSURL::classInfo() {
    return urlClassInfo;
}

NSURL NSURL::URLWithString(const NSString& text) {
    if (text.length() == 0) return {};
    // Keeps reserved and unreserved characters, and existing escapes.
    return make(NSString::fromUTF8(escaped(text.utf8(), "-._~:/?#[]@!$&'()*+,;=%")));
}

NSURL NSURL::fileURLWithPath(const NSString& path) {
    if (path.length() == 0) return {};

    struct stat status {};

    const bool isDirectory =
        ::stat(path.fileSystemRepresentation().c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    return fileURLWithPath_isDirectory(path, isDirectory);
}

NSURL NSURL::fileURLWithPath_isDirectory(const NSString& path, bool isDirectory) {
    if (path.length() == 0) return {};
    std::string absolute = path.utf8();
    if (absolute.front() != '/') {
        if (char* folder = ::getcwd(nullptr, 0)) {
            absolute.insert(0, std::string(folder) + "/");
            std::free(folder); // NOLINT: the system allocated it
        }
    }
    if (isDirectory && absolute.back() != '/') absolute.push_back('/');
    return make(NSString::fromUTF8("file://" + escaped(absolute, "-._~/!$&'()*+,=:@")));
}

NSString NSURL::absoluteString() const {
    return description();
}

NSString NSURL::scheme() const {
    const NSString text = absoluteString();
    const Parts parts = split(text.view());
    return parts.scheme.empty() ? NSString() : NSString(parts.scheme);
}

NSString NSURL::host() const {
    const NSString text = absoluteString();
    std::u16string_view host = split(text.view()).authority;
    const std::size_t at = host.rfind(u'@');
    if (at != std::u16string_view::npos) host.remove_prefix(at + 1);
    if (host.starts_with(u'[')) {
        const std::size_t end = std::min(host.find(u']'), host.size());
        host = host.substr(1, end - 1);
    } else {
        host = host.substr(0, host.rfind(u':'));
    }
    return host.empty() ? NSString() : unescaped(host);
}

NSString NSURL::path() const {
    const NSString text = absoluteString();
    if (text.isNil()) return {};
    const Parts parts = split(text.view());
    std::u16string_view path = parts.path;
    // An opaque URL ("about:blank", "mailto:...") has no path.
    if (!parts.scheme.empty() && !parts.hasAuthority && !path.starts_with(u'/')) return {};
    if (path.size() > 1 && path.ends_with(u'/')) path.remove_suffix(1);
    return unescaped(path);
}

bool NSURL::isFileURL() const {
    const NSString text = absoluteString();
    const std::u16string_view scheme = split(text.view()).scheme;
    constexpr std::u16string_view file = u"file";
    return std::equal(scheme.begin(), scheme.end(), file.begin(), file.end(),
                      [](char16_t a, char16_t b) { return (a | 0x20) == b; });
}

} // namespace qrv
