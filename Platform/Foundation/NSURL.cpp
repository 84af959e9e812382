#include "Platform/Foundation/NSURL.h"

#include "Platform/Foundation/ASCII.h"
#include "Platform/Foundation/PercentEscapes.h"
#include "Platform/Foundation/URLPieces.h"

#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>
#include <typeinfo>
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

NSURL make(NSString text) {
    return NSURL(std::make_shared<URLObject>(std::move(text)));
}

} // namespace

const ClassInfo& NSURL::classInfo() {
    return urlClassInfo;
}

bool NSURL::accepts(const Object& payload) {
    return typeid(payload) == typeid(URLObject);
}

NSURL NSURL::URLWithString(const NSString& text) {
    if (text.length() == 0) return {};
    return make(NSString::fromUTF8(percentEscaped(text.utf8())));
}

NSURL NSURL::fileURLWithPath(const NSString& path) {
    if (path.length() == 0) return {};

    struct stat status {};

    const bool isDirectory =
        ::stat(path.fileSystemRepresentation().c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    return fileURLWithPath_isDirectory(path, isDirectory);
}

NSURL NSURL::fileURLWithPath_isDirectory(const NSString& path, bool isDirectory) {
    std::string absolute = path.fileSystemRepresentation();
    if (absolute.empty()) return {};
    if (absolute.front() != '/') {
        if (char* folder = ::getcwd(nullptr, 0)) {
            absolute.insert(0, std::string(folder) + "/");
            std::free(folder); // NOLINT: the system allocated it
        }
    }
    if (isDirectory && absolute.back() != '/') absolute.push_back('/');
    return make(NSString::fromUTF8("file://" + percentEscaped(absolute, "-._~/!$&'()*+,=:@")));
}

NSString NSURL::absoluteString() const {
    return description();
}

NSString NSURL::scheme() const {
    const std::string text = absoluteString().utf8();
    const std::string_view scheme = splitURL(text).scheme;
    return scheme.empty() ? NSString() : NSString::fromUTF8(scheme);
}

NSString NSURL::host() const {
    const std::string text = absoluteString().utf8();
    std::string_view host = splitURL(text).authority;
    const std::size_t at = host.rfind('@');
    if (at != std::string_view::npos) host.remove_prefix(at + 1);
    if (host.starts_with('[')) {
        const std::size_t end = std::min(host.find(']'), host.size());
        host = host.substr(1, end - 1);
    } else {
        host = host.substr(0, host.rfind(':'));
    }
    return host.empty() ? NSString() : NSString::fromUTF8(percentDecoded(host));
}

NSString NSURL::path() const {
    if (isNil()) return {};
    const std::string text = absoluteString().utf8();
    const URLPieces pieces = splitURL(text);
    std::string_view path = pieces.path;
    // An opaque URL ("about:blank", "mailto:...") has no path.
    if (!pieces.scheme.empty() && !pieces.hasAuthority && !path.starts_with('/')) return {};
    if (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return NSString::fromFileSystem(percentDecoded(path));
}

bool NSURL::isFileURL() const {
    const std::string text = absoluteString().utf8();
    return lowered(splitURL(text).scheme) == "file";
}

} // namespace qrv
