#include "Platform/WebKit/WebArchive.h"

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"

#include <algorithm>
#include <optional>

namespace qrv {

namespace {

const ClassInfo archiveClassInfo{"WebArchive", &Object::classInfo};

// A property list may share one dictionary between many places, so that a small file unfolds into an archive
// without end; these bounds are far above what any page holds.
constexpr int maximumDepth = 64;
constexpr int maximumFrames = 10'000;

class ArchiveObject final : public Object {
public:
    ArchiveObject(WebResource main, NSArray resources, NSArray frames)
        : mainResource(std::move(main)), subresources(std::move(resources)),
          subframeArchives(std::move(frames)) {}

    const ClassInfo& objectClass() const override { return archiveClassInfo; }

    const WebResource mainResource;
    const NSArray subresources;
    const NSArray subframeArchives;
};

template <class T>
T value(const NSDictionary& dictionary, const char16_t* key) {
    return as<T>(dictionary.objectForKey(NSString(key)));
}

WebResource readResource(const NSDictionary& dictionary) {
    return WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
        value<NSData>(dictionary, u"WebResourceData"),
        NSURL::URLWithString(value<NSString>(dictionary, u"WebResourceURL")),
        value<NSString>(dictionary, u"WebResourceMIMEType"),
        value<NSString>(dictionary, u"WebResourceTextEncodingName"),
        value<NSString>(dictionary, u"WebResourceFrameName"));
}

/// An optional array of dictionaries: nullopt when the field is there and something else.
std::optional<NSArray> dictionaries(const NSDictionary& root, const char16_t* key) {
    const id field = root.objectForKey(NSString(key));
    if (field.isNil()) return NSArray::array();
    const NSArray array = as<NSArray>(field);
    const bool valid = array && std::all_of(array.begin(), array.end(), [](const id& element) {
                           return element.isKindOfClass(NSDictionary::classInfo());
                       });
    return valid ? std::optional(array) : std::nullopt;
}

class Reader {
public:
    WebArchive read(const NSDictionary& root, int depth) {
        const auto resources = dictionaries(root, u"WebSubresources");
        const auto frames = dictionaries(root, u"WebSubframeArchives");
        if (!resources || !frames) return {};
        const WebResource main = readResource(value<NSDictionary>(root, u"WebMainResource"));
        if (main.isNil()) return {};

        std::vector<id> subresources;
        for (const id& element : *resources) {
            if (const WebResource resource = readResource(as<NSDictionary>(element)); resource.URL()) {
                subresources.push_back(resource);
            }
        }
        std::vector<id> subframes;
        for (const id& element : *frames) {
            if (depth >= maximumDepth || frames_ >= maximumFrames) break;
            ++frames_;
            if (const WebArchive frame = read(as<NSDictionary>(element), depth + 1))
                subframes.push_back(frame);
        }
        return WebArchive(std::make_shared<ArchiveObject>(main, NSArray(std::move(subresources)),
                                                          NSArray(std::move(subframes))));
    }

private:
    int frames_ = 0;
};

const ArchiveObject* object(const WebArchive& archive) {
    return static_cast<const ArchiveObject*>(archive.shared().get());
}

} // namespace

const ClassInfo& WebArchive::classInfo() {
    return archiveClassInfo;
}

WebArchive WebArchive::initWithData(const NSData& data) {
    const auto root = as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(data, nullptr));
    return root ? Reader().read(root, 0) : WebArchive();
}

WebResource WebArchive::mainResource() const {
    return isNil() ? WebResource() : object(*this)->mainResource;
}

NSArray WebArchive::subresources() const {
    return isNil() ? NSArray() : object(*this)->subresources;
}

NSArray WebArchive::subframeArchives() const {
    return isNil() ? NSArray() : object(*this)->subframeArchives;
}

} // namespace qrv
